// What a row of a model can say of a leaf or of a hook, beside its place and its tag. A kind is one
// line here: how the callback comes to be, and, of a generated one, its result as an expression
// over `call` (a Call) and `step` (the leaf's tag behind a "/").
//
//   OWN        written by hand
//   GENERATED  from the expression that follows
//   SHARED     from a function that takes a Call, without code of its own
//   MAN        leaf_<level>_<path> calls man_leaf_<level>_<path>, which is of the kind that follows
//   READ_ONLY  of the kind that follows; the walker calls it on reads alone
//   UNMAPPED   there is none: an exported dispatcher leads to the model's duck_map_leaf
//   IGNORED    the same without the dispatcher
#ifndef YMAP_KINDS_H_
#define YMAP_KINDS_H_

// clang-format off

// --- leaves --------------------------------------------------------------------------------------

#define YMAP_KIND_BY_HAND       OWN
#define YMAP_KIND_MAN(...)      MAN, YMAP_KIND_##__VA_ARGS__
#define YMAP_KIND_ON_READ(...)  READ_ONLY, YMAP_KIND_##__VA_ARGS__
#define YMAP_KIND_IDLE          SHARED, ymap::idle_leaf
#define YMAP_KIND_REFUSED       SHARED, ymap::refuse_leaf
#define YMAP_KIND_UNMAPPED      UNMAPPED
#define YMAP_KIND_IGNORED       IGNORED

// Calls another callback, on every request or on reads alone.
#define YMAP_KIND_CALLING(function)          GENERATED, function(call.ctx, call.in, call.out)
#define YMAP_KIND_CALLING_ON_READ(function)  GENERATED, ymap::is_read(call.ctx) ? function(call.ctx, call.in, call.out) : ymap::YMAP_OK

// To native: an edited leaf (further arguments: EditOptions), one that reads alone ask for, with the
// value that they look for or without, and one that they ask a private summary for.
#define YMAP_KIND_EDIT(module_namespace, path, ...)  GENERATED, ymap::edit_leaf(call, ymap::module_namespace, path __VA_OPT__(, {__VA_ARGS__}))
#define YMAP_KIND_QUERY(module_namespace, path)      GENERATED, ymap::query_native(call, ymap::module_namespace, path)
#define YMAP_KIND_ASK(module_namespace, path)        GENERATED, ymap::ask_native(call, ymap::module_namespace, path)
#define YMAP_KIND_MIRROR(place)                      GENERATED, ymap::query_mirrored(call, ymap::place, step)

// What a function of ymap does with the call and, perhaps, an argument.
#define YMAP_KIND_DOES(function, ...)  GENERATED, ymap::function(call __VA_OPT__(, ymap::__VA_ARGS__))

// To OpenConfig: a copy of the value, always or where configuration is wanted, or in upper case; and a
// leaf of "config" with its twin in "state". The latter with a value, as a leaf of an interface's
// configuration, whose subinterface is made current first.
#define YMAP_KIND_COPY(path)                        GENERATED, ymap::add_openconfig(call, path, call.in->value)
#define YMAP_KIND_COPY_CONFIG(path)                 GENERATED, ymap::wants_config(call.ctx) ? ymap::add_openconfig(call, path, call.in->value) : ymap::YMAP_OK
#define YMAP_KIND_COPY_UPPER(path)                  GENERATED, ymap::add_in_upper_case(call, path)
#define YMAP_KIND_TWINS(stem, leaf)                 GENERATED, ymap::add_twins(call, YMAP_TWINS_AT(stem, leaf), call.in->value)
#define YMAP_KIND_PLACED_TWINS(stem, leaf, value)   GENERATED, ymap::add_placed_twins(call, YMAP_TWINS_AT(stem, leaf), value)

// The key of an OpenConfig entry, and then its copy in "config", where configuration is wanted, in "state",
// or in both, each where it is wanted.
#define YMAP_KIND_KEY_WITH_CONFIG(stem, leaf)       GENERATED, ymap::add_key_and_twins(call, stem "/" leaf, {stem "/config/" leaf, nullptr}, call.in->value)
#define YMAP_KIND_KEY_WITH_STATE(stem, leaf)        GENERATED, ymap::add_key_and_copy(call, stem "/" leaf, stem "/state/" leaf)
#define YMAP_KIND_KEY_AND_TWINS(stem, leaf)         GENERATED, ymap::add_key_and_twins(call, stem "/" leaf, YMAP_TWINS_AT(stem, leaf), call.in->value)

// --- hooks of containers and lists ---------------------------------------------------------------

//   NONE       the model's fallback
//   REFUSING   the same, and an edit that ends at the node is refused
//   OWN        cont_<level>_<path> or list_<level>_<path>, written by hand
//   PLACING    the same; what it makes current, and its trim prefix, end with the entry
//   GENERATED  as OWN, from the expression that follows, in a frame of the kind given
#define YMAP_HOOK_duck       NONE
#define YMAP_HOOK_refused    REFUSING
#define YMAP_HOOK_cont       OWN, cont
#define YMAP_HOOK_list       OWN, list
#define YMAP_HOOK_placing    PLACING, list
#define YMAP_HOOK_idle_cont  GENERATED, cont, kGenerated, ymap::YMAP_OK
#define YMAP_HOOK_idle_list  GENERATED, list, kGenerated, ymap::YMAP_OK
// What a function of ymap does with the call and an argument, in the frame of one written by hand.
#define YMAP_HOOK_cont_does(function, argument)  GENERATED, cont, kContainer, ymap::function(call, ymap::argument)
#define YMAP_HOOK_list_does(function, argument)  GENERATED, list, kByHand, ymap::function(call, ymap::argument)
// Writes an OpenConfig container.
#define YMAP_HOOK_cont_writing(path)  GENERATED, cont, kContainer, ymap::add_openconfig(call, path, nullptr)
#define YMAP_HOOK_list_writing(path)  GENERATED, list, kByHand, ymap::add_openconfig(call, path, nullptr)
// Writes an OpenConfig container that nothing will be written to.
#define YMAP_HOOK_cont_if_empty(path)  GENERATED, cont, kContainer, call.child_count == 0 ? ymap::add_openconfig(call, path, nullptr) : ymap::YMAP_OK

// clang-format on

#endif  // YMAP_KINDS_H_
