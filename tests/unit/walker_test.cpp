// The walker engine, over a small table whose callbacks are the test's, in both directions.

#include "ymap_walker.h"

#include "mapping_test.h"
#include "yfw/text.h"

using namespace recording;
using ymap::Direction;
using ymap::Row;
using ymap::RowKind;

namespace {

constexpr auto kWrite = NIDL_YFW_EDIT_WRITE;
constexpr auto kDelete = NIDL_YFW_EDIT_DELETE;
constexpr auto kRemove = NIDL_YFW_EDIT_REMOVE;

// The callbacks note their calls, and fail when they are told to.
cerrno duck_container(yfw_map_ctx*, const Node* in, std::uint32_t count, Node*) {
  return platform.serve(kNotes, std::string("container ") + in->tag, count);
}
cerrno own_hook(yfw_map_ctx*, const Node* in, std::uint32_t count, Node*) {
  return platform.serve(kNotes, std::string("hook ") + in->tag, count);
}
// Makes the entry current, unless it is called "nowhere".
cerrno placing_hook(yfw_map_ctx* ctx, const Node* in, std::uint32_t, Node* out) {
  const cerrno result = platform.serve(kNotes, std::string("hook ") + in->tag);
  if (ctx->request_state != nullptr && std::string(in->children[0].value) != "nowhere") {
    ctx->request_state->current_list_node = out;
  }
  yfw_map_copy_trim_path_list_ctx(ctx, "/placed");
  return result;
}
cerrno duck_list(yfw_map_ctx*, const Node* in, Node*) {
  return platform.serve(kNotes, std::string("entry ") + in->tag);
}
cerrno duck_leaf(yfw_map_ctx*, const Node* in, Node*) {
  return platform.serve(kNotes, std::string("duck ") + in->tag);
}
cerrno own_leaf(yfw_map_ctx*, const Node* in, Node*) {
  return platform.serve(kNotes, std::string("leaf ") + in->tag);
}

constexpr Row container(const char* tag, const char* name,
                        yfw_map_container_callback hook = nullptr, std::uint8_t flags = 0) {
  return {.tag = tag,
          .name = name,
          .callback = {.hook = hook},
          .kind = RowKind::kContainer,
          .flags = flags};
}
constexpr Row list(const char* tag, const char* name, ymap::RowIndex number,
                   yfw_map_container_callback hook = nullptr, std::uint8_t flags = 0) {
  return {.tag = tag,
          .name = name,
          .callback = {.hook = hook},
          .list = number,
          .kind = RowKind::kList,
          .flags = flags};
}
constexpr Row leaf_row(const char* tag, const char* name,
                       yfw_map_leaf_callback callback = own_leaf) {
  return {.tag = tag, .name = name, .callback = {.leaf = callback}, .kind = RowKind::kLeaf};
}

enum : ymap::RowIndex { kTop, kItem = 5, kOther = 10, kPlaced = 12, kUnsupported = 14 };

// clang-format off
constexpr Row kRows[] = {
    container("top", "walk_top"),
      leaf_row("a", "leaf_a"),
      leaf_row("unmapped", "leaf_unmapped", nullptr),
      container("inner", "walk_inner", own_hook),
        leaf_row("a", "leaf_inner_a"),
      list("item", "walk_item", 0),
        leaf_row("id", "leaf_id"),
        leaf_row("zone", "leaf_zone"),
        container("config", "walk_config"),
          leaf_row("v", "leaf_v"),
      list("other", "walk_other", 1, own_hook),
        leaf_row("id", "leaf_other_id"),
      list("placed", "walk_placed", 1, placing_hook, ymap::kPlaces),
        leaf_row("id", "leaf_placed_id"),
      container("unsupported", "walk_unsupported", nullptr, ymap::kRefusesEdits),
        leaf_row("a", "leaf_unsupported_a"),
};
constexpr ymap::Nesting kNesting[] = {
    {0, false}, {1, false}, {2, false}, {3, false}, {4, false}, {3, true}, {5, false}, {6, false}, {7, false},
    {8, false}, {9, false}, {8, true}, {5, true}, {10, false}, {11, false}, {10, true}, {12, false}, {13, false},
    {12, true}, {14, false}, {15, false}, {14, true}, {0, true}};
// clang-format on
constexpr ymap::List kLists[] = {{"/m:top/m:item", {"id", "zone"}},
                                 {"/m:top/m:other", {"id", "zone"}}};

constexpr ymap::Index kIndex = make_index(kRows, kNesting);
// A table's own for each direction, as a model has but one.
std::array words = {ymap::fresh_site_words<kIndex.site_count>(),
                    ymap::fresh_site_words<kIndex.site_count>()};

constexpr const char* kOwn = "urn:example:own";
Tree own(const char* tag, std::vector<Tree> children = {}) {
  return node(tag, std::move(children)).in(kOwn);
}
Tree own(const char* tag, const char* value) { return leaf(tag, value).in(kOwn); }

class Engine : public MappingTest {
 protected:
  Engine() { request(YFW_MAP_REQUEST_READ_CONFIG); }

  static ymap::Model model(Direction direction) {
    return {.module_namespace = kOwn,
            .direction = direction,
            .duck_map_container = duck_container,
            .duck_map_list = duck_list,
            .duck_map_leaf = duck_leaf,
            .file = "rows",
            .rows = kRows,
            .row_count = std::size(kRows),
            .lists = kLists,
            .first_site = kIndex.first_site.data(),
            .slots = kIndex.slots.data(),
            .slot_mask = kIndex.slots.size() - 1,
            .parents = kIndex.parents.data(),
            .words = words[static_cast<std::size_t>(direction)].data()};
  }
  cerrno walk(Direction direction, const Node* in, ymap::RowIndex row = kTop) {
    return ymap::walk(model(direction), row, &ctx, in, &out);
  }
  // All lines but those of starts and ends.
  static std::string messages() {
    std::string messages;
    std::istringstream all(platform.recorded(kLines));
    for (std::string line; std::getline(all, line);) {
      messages += line.ends_with(" Start") || line.ends_with(" End") ? "" : line + "\n";
    }
    return messages;
  }
};

class Walker : public Engine, public testing::WithParamInterface<Direction> {
 protected:
  cerrno walk(const Tree& tree, ymap::RowIndex row = kTop) {
    return Engine::walk(GetParam(), plant(tree), row);
  }
  static bool to_native() { return GetParam() == Direction::kToNative; }
};

INSTANTIATE_TEST_SUITE_P(Both, Walker,
                         testing::Values(Direction::kToOpenConfig, Direction::kToNative),
                         [](const auto& instance) {
                           return instance.param == Direction::kToNative ? "ToNative"
                                                                         : "ToOpenConfig";
                         });

// --- what both directions share ------------------------------------------------------------------

TEST_P(Walker, VisitsInOrderBetweenPushAndPop) {
  EXPECT_EQ(
      walk(own("top",
               {own("a", "1"), own("unmapped", "2"), own("inner", {own("a", "3")}), own("inner"),
                own("item", {own("id", "1"), own("config", {own("v", "2")}), own("zone", "z")})})),
      0U);
  // Only the OpenConfig walkers remember their entries.
  EXPECT_EQ(platform.recorded(~0U),
            calls(std::string("trc walk_top Start; push 1 top; container top 5; "
                              "trc leaf_a Start; leaf a; trc leaf_a End; "
                              "trc leaf_unmapped Start; duck unmapped; trc leaf_unmapped End; "
                              "trc walk_inner Start; push 1 inner; hook inner 1; "
                              "trc leaf_inner_a Start; leaf a; trc leaf_inner_a End; "
                              "pop inner; trc walk_inner End; "
                              "trc walk_inner Start; push 1 inner; hook inner 0; pop inner; "
                              "trc walk_inner End; "
                              "trc walk_item Start; push 2 item; ") +
                  (to_native() ? "remember item; " : "") +
                  "current /m:top/m:item; entry item; list item; "
                  "trc leaf_id Start; leaf id; trc leaf_id End; "
                  "trc walk_config Start; push 1 config; container config 1; "
                  "trc leaf_v Start; leaf v; trc leaf_v End; pop config; trc walk_config End; "
                  "trc leaf_zone Start; leaf zone; trc leaf_zone End; " +
                  (to_native() ? "forget item; " : "") +
                  "pop item; unlist item; trc walk_item End; pop top; trc walk_top End"));
}

TEST_P(Walker, LeavesTheOutputListAloneWhenTheEntryIsNotTaken) {
  platform.takes_entries = false;
  EXPECT_EQ(walk(own("item", {own("id", "1")}), kItem), 0U);
  EXPECT_EQ(platform.calls_of("list"), 1);
  EXPECT_EQ(platform.calls_of("unlist"), 0);
}

TEST_P(Walker, MarksTheKeysOfTheCurrentEntry) {
  for (const auto& [request_op, recording] : {std::pair{YFW_MAP_REQUEST_READ_CONFIG, 0U},
                                              {YFW_MAP_REQUEST_READ_CONFIG, 5U},
                                              {YFW_MAP_REQUEST_MERGE, 5U}}) {
    next(request_op);
    platform.fail("current", 1, recording);
    Node* entry = plant(own("item", {own("id", "1"), own("zone", "z"), own("config")}));
    EXPECT_EQ(Engine::walk(GetParam(), entry, kItem), 0U);
    const int key = NIDL_YFW_FLAG_KEY | (to_native() ? NIDL_YFW_FLAG_REQUEST_KEY : 0);
    for (std::uint32_t i = 0; i < 3; ++i) {
      const bool marked = recording == 0 && i < 2;
      EXPECT_EQ(entry->children[i].key_mark, marked ? 1 : 0) << i;
      EXPECT_EQ(entry->children[i].flags & ~NIDL_YFW_FLAG_HAS_VALUE, marked ? key : 0) << i;
    }
  }
}

TEST_P(Walker, StopsAtTheFirstFailure) {
  const Tree tree = own("top", {own("inner", {own("a", "1")}), own("a", "2")});
  for (const auto& [failing, visited] :
       {std::pair{"container top", "container top 2 result=0xaaf2f600; "},
        {"hook inner",
         "container top 2; push 1 inner; hook inner 1 result=0xaaf2f600; pop inner; "},
        {"leaf a",
         "container top 2; push 1 inner; hook inner 1; leaf a result=0xaaf2f600; pop inner; "}}) {
    SCOPED_TRACE(failing);
    next(YFW_MAP_REQUEST_READ_CONFIG);
    platform.fail(failing, 1, 0xaaf2f600);  // which only an entry's hook may skip by
    EXPECT_EQ(walk(tree), 0xaaf2f600);
    EXPECT_EQ(platform.recorded(kHierarchy | kNotes),
              calls(std::string("push 1 top; ") + visited + "pop top"));
    EXPECT_TRUE(platform.recorded(kLines).ends_with("trc walk_top End\n"));
  }
}

TEST_P(Walker, ReportsWhatItCannotRead) {
  struct Case {
    const char* name;
    Tree tree;
    cerrno result;
    std::string visited;
    std::string message;
  };
  Tree untagged = own("a", "1");
  untagged.tag.reset();
  Tree unmarked = broken("top", 3);
  unmarked.flags = 0;
  // clang-format off
  for (const auto& [name, tree, result, visited, message] : {
           Case{"container", broken("top", 2), 0xaaf29e00, "", "err walk_top Failed to get subtrees!"},
           Case{"entry", own("top", {broken("item", 1)}), 0xaaf29e00, "container top 1",
                "err walk_item Failed to get subtrees!"},
           Case{"mark without count", broken("top", 0), 0, "container top 0", ""},
           Case{"no mark", unmarked, 0, "container top 0", ""},
           Case{"untagged child", own("top", {own("a", "1"), untagged, own("a", "2")}), 0xaaf29e00,
                "container top 3; leaf a", "err walk_top Tag name is not available!"},
           Case{"childless entry", own("top", {own("other"), own("a", "1")}), 0,
                "container top 2; hook other 0; leaf a", "err walk_other No keys specified with a list node."},
       }) {
    // clang-format on
    SCOPED_TRACE(name);
    next(YFW_MAP_REQUEST_READ_CONFIG);
    EXPECT_EQ(walk(tree), result);
    EXPECT_EQ(platform.recorded(kNotes), calls(visited));
    EXPECT_EQ(messages(), calls(message));
    EXPECT_TRUE(platform.recorded(kLines).ends_with("trc walk_top End\n"));
  }
}

TEST_P(Walker, NotesXpathErrorsAndMapsOn) {
  Tree error = own("a", "1");
  error.kind = NIDL_YFW_KIND_XPATH_ERROR;
  error.flags = NIDL_YFW_FLAG_XPATH_ERROR;
  Tree unflagged = error;
  unflagged.flags = 0;
  Tree other_kind = error;
  other_kind.kind = NIDL_YFW_KIND_LEAF;
  EXPECT_EQ(walk(own("top", {unflagged, other_kind})), 0U);
  EXPECT_EQ(state.flags, 0U);
  EXPECT_EQ(messages(), "");
  EXPECT_EQ(walk(own("top", {error})), 0U);
  EXPECT_EQ(state.flags, 0x100U);
  EXPECT_TRUE(platform.recorded(kLines | kNotes)
                  .ends_with(calls("container top 1; trc leaf_a Start; "
                                   "trc leaf_a got xpath error node ; leaf a; trc leaf_a End; "
                                   "trc walk_top End")));
}

TEST_P(Walker, SkipsEntriesThatTheirHookHasNoKeysFor) {
  for (const cerrno result : {0xaaf2f600U, 0xaaf2f000U}) {
    SCOPED_TRACE(result);
    const bool skipped = result == 0xaaf2f600U;
    next(YFW_MAP_REQUEST_READ_CONFIG);
    platform.fail("hook other", 1, result);
    platform.fail("entry item", 1, result);
    const Tree tree =
        own("top", {own("other", {own("id", "1")}), own("item", {own("id", "1")}), own("a", "1")});
    EXPECT_EQ(walk(tree), skipped ? 0U : result);
    EXPECT_EQ(platform.calls_of("leaf a"), skipped ? 1 : 0);
    EXPECT_EQ(platform.calls_of("leaf id") + platform.calls_of("list"), 0);
    // The entry's own walker tells its caller.
    platform.fail("entry item", 1, result);
    EXPECT_EQ(walk(own("item", {own("id", "1")}), kItem), result);
  }
}

// Every service that can fail, failing once. The fixture checks that all is balanced afterwards.
TEST_P(Walker, StaysBalancedWhateverFails) {
  const Tree tree =
      own("top", {own("inner", {own("a", "1")}),
                  own("item", {own("id", "1"), own("zone", "z"), own("config", {own("v", "2")})}),
                  own("a", "3"), own("stranger", "4")});
  int failures = 0;
  do {
    next(YFW_MAP_REQUEST_MERGE);
    platform.fail("any", ++failures, 77);
    walk(tree);
  } while (platform.calls_of("any") >= failures);
  EXPECT_GT(failures, 15);
}

// --- native data ---------------------------------------------------------------------------------

using NativeWalker = Engine;

TEST_F(NativeWalker, PassesOverWhatIsNotMapped) {
  const Tree tree = own("top", {own("stranger", "1"), own("inner", {leaf("x").in(kForeign)}),
                                own("a", "2").in(kForeign)});
  EXPECT_EQ(walk(Direction::kToOpenConfig, plant(tree)), 0U);
  EXPECT_EQ(platform.recorded(kLines | kNotes | kRefusals),
            calls("trc walk_top Start; container top 3; trc walk_top Unsupported tag. Ignoring.; "
                  "trc walk_inner Start; hook inner 1; trc walk_inner_parse_augments Start; "
                  "trc walk_inner_parse_augments End; trc walk_inner End; "
                  "trc leaf_a Start; leaf a; trc leaf_a End; trc walk_top End"));
}

TEST_F(NativeWalker, ChecksTheArgumentsOfAnAugmentHook) {
  const Node* in = plant(own("a"));
  for (const bool without_out : {false, true}) {
    platform.forget_calls();
    EXPECT_EQ(ymap::parse_augments(model(Direction::kToOpenConfig), kTop, &ctx,
                                   without_out ? in : nullptr, without_out ? nullptr : &out),
              0xaaf2a000);
    EXPECT_EQ(platform.recorded(~0U), calls("trc walk_top_parse_augments Start; err "
                                            "walk_top_parse_augments Invalid arguments passed!; "
                                            "error_path"));
  }
}

TEST_F(NativeWalker, DoesNotCheckKeys) {
  const Tree tree = own("item", {own("id", "").with(kDelete), own("config", {own("v")})});
  request(YFW_MAP_REQUEST_MERGE);
  EXPECT_EQ(walk(Direction::kToOpenConfig, plant(tree.with_all(kDelete)), kItem), 0U);
  EXPECT_EQ(messages() + platform.recorded(kRefusals | kQuestions), "");
}

// --- OpenConfig requests -------------------------------------------------------------------------

using RequestWalker = Engine;

TEST_F(RequestWalker, RefusesWhatIsNotMapped) {
  struct Case {
    const char* name;
    std::uint32_t request_op;
    Tree tree;
    cerrno result;
    std::string message;
    std::string refusals;  // and questions
  };
  const Tree unknown = own("top", {own("stranger", "1"), own("a", "1")});
  const Tree foreign = own("top", {leaf("visitor", "1").in(kForeign)});
  const Tree deleted = own("top", {own("inner", {own("a", "1")}).with_all(kDelete)});
  const Tree config = own("config", {own("v")}).with_all(kDelete);
  const Tree entry = own("top", {own("item", {own("id", "1"), own("zone", "z"), config})});
  Tree deleted_entry = entry;
  deleted_entry.children[0].operation = kRemove;
  const std::string unsupported = "err walk_top Unsupported tag is specified in the request.";
  const std::string refused = "strdup =\"stranger\" as YFW MAP; error_path";
  const std::string subtree = " Delete request with subtree present";
  const std::string inner = "strdup =\"inner\" as YFW MAP; error_path";
  const std::string config_refused = "strdup =\"config\" as YFW MAP; error_path";
  // clang-format off
  for (const auto& [name, request_op, tree, result, message, refusals] : {
           Case{"unknown, merge", 1, unknown, 0xaaf2ee00, unsupported, refused},
           Case{"unknown, other edit", 3, unknown, 0xaaf2ee00, unsupported, refused},
           Case{"unknown, configuration read", 0, unknown, 0, "", ""},
           Case{"unknown, state read", 10, unknown, 0, "", ""},
           Case{"foreign, added", 1, foreign, 0xaaf2f800, "",
                "is_request_add visitor; strdup =\"visitor\" as YFW MAP; error_path"},
           Case{"foreign, deleted", 1, foreign.with_all(kDelete).with(kWrite), 0, "", "is_request_add visitor"},
           Case{"foreign, read", 0, foreign, 0, "", "is_request_add visitor"},
           Case{"deleted with children", 1, deleted, 0xaaf2a000, "trc walk_inner" + subtree, inner},
           Case{"removed with children", 1, own("top", {own("inner", {own("a")}).with(kRemove)}), 0xaaf2a000,
                "trc walk_inner" + subtree, inner},
           Case{"deleted at the top", 1, own("top", {own("a")}).with(kDelete), 0xaaf2a000,
                "trc walk_top" + subtree, "strdup =\"top\" as YFW MAP; error_path"},
           Case{"read of a node that says delete", 0, deleted, 0, "", ""},
           Case{"deleted without children", 1, own("top", {own("inner").with(kDelete)}), 0, "", ""},
           // What lies below a deleted entry inherits the delete.
           Case{"below an entry that goes", 3, deleted_entry, 0, "", ""},
           Case{"below an entry that stays", 3, entry, 0xaaf2a000, "trc walk_config" + subtree, config_refused},
       }) {
    // clang-format on
    SCOPED_TRACE(name);
    next(request_op);
    EXPECT_EQ(walk(Direction::kToNative, plant(tree)), result);
    EXPECT_EQ(messages(), calls(message));
    EXPECT_EQ(platform.recorded(kRefusals | kQuestions), calls(refusals));
  }
}

TEST_F(RequestWalker, ChecksKeys) {
  struct Case {
    const char* name;
    std::uint32_t request_op;
    nidl_yfw_edit_oper operation;  // of the entry
    bool list_wide;
    std::vector<Tree> children;
    cerrno result;
    std::string error;    // "" for none
    std::string refused;  // key whose tag is recorded
    int leafrefs;         // checks made
    cerrno leafref = 0;   // of the first
  };
  const Tree id = own("id", "1");
  const Tree zone = own("zone", "z");
  const Tree other = own("config");
  const std::string count = "List key node error.";
  const std::string empty = "Empty list key specified.";
  const std::string deleted = "The key node should not have delete operation.";
  // clang-format off
  for (const Case& each : {
           Case{"both", 1, kWrite, false, {id, zone}, 0, "", "", 2},
           Case{"checked in a replace", 8, kWrite, false, {zone, id}, 0, "", "", 2},
           Case{"checked in a create", 15, kWrite, false, {id, zone}, 0, "", "", 2},
           Case{"other edits do not check", 3, kWrite, false, {id, zone}, 0, "", "", 0},
           Case{"mismatch", 1, kWrite, false, {id, zone}, 77, "leafref value check fail", "id", 1, 77},
           Case{"one missing", 1, kWrite, false, {id}, 0xaaf2f000, count, "zone", 1},
           Case{"the other missing", 1, kWrite, false, {zone}, 0xaaf2f000, count, "id", 1},
           Case{"twice", 1, kWrite, false, {id, zone, id}, 0xaaf2f000, count, "id", 3},
           Case{"empty", 1, kWrite, false, {id, own("zone", "")}, 0xaaf2f000, empty, "zone", 1},
           Case{"no value", 1, kWrite, false, {own("id")}, 0xaaf2f000, empty, "id", 0},
           Case{"deleted", 1, kWrite, false, {id.with(kDelete), zone}, 0xaaf2f200, deleted, "id", 1},
           Case{"removed", 3, kWrite, false, {id, zone.with(kRemove)}, 0xaaf2f200, deleted, "zone", 0},
           Case{"deleted with its entry", 1, kDelete, false, {id.with(kDelete), zone}, 0, "", "", 2},
           Case{"none, whole list", 1, kDelete, true, {other}, 0, "", "", 0},
           Case{"none, one entry", 1, kDelete, false, {other}, 0xaaf2f000, count, "id", 0},
           Case{"none, nothing deleted", 1, kWrite, true, {other}, 0xaaf2f000, count, "id", 0},
           Case{"some, whole list", 1, kDelete, true, {id}, 0xaaf2f000, count, "zone", 1},
           Case{"read without keys", 0, kWrite, false, {other}, 0, "", "", 0},
           Case{"read of an empty key", 10, kWrite, false, {own("id", "")}, 0, "", "", 0},
       }) {
    // clang-format on
    SCOPED_TRACE(each.name);
    next(each.request_op);
    platform.fail("leafref", 1, each.leafref);
    state.list_wide = each.list_wide ? 1 : 0;
    EXPECT_EQ(
        walk(Direction::kToNative, plant(own("item", each.children).with(each.operation)), kItem),
        each.result);
    EXPECT_EQ(messages(), each.error.empty() ? "" : "err walk_item " + each.error + "\n");
    EXPECT_EQ(platform.recorded(kRefusals),
              each.refused.empty()
                  ? ""
                  : calls("strdup =\"" + each.refused + "\" as YFW MAP; error_path"));
    EXPECT_EQ(platform.calls_of("leafref"), each.leafrefs);
    // A refused entry reaches neither its hook nor its children.
    EXPECT_EQ(platform.recorded(kNotes).empty(), each.result != 0);
  }
}

// Where nothing is mapped, an edit may neither end nor go on; the fallback is called all the same.
TEST_F(RequestWalker, RefusesEditsWhereNothingIsMapped) {
  struct Case {
    const char* name;
    std::uint32_t request_op;
    Tree tree;
    cerrno result;
    std::string refusals;
  };
  const std::string refused = "error_path; strdup =\"unsupported\" as unsupported";
  for (const auto& [name, request_op, tree, result, refusals] :
       {Case{"written", 1, own("unsupported"), 0xaaf2ee00, refused},
        Case{"deleted", 1, own("unsupported").with(kDelete), 0xaaf2ee00, refused},
        Case{"read", 0, own("unsupported"), 0, ""},
        Case{"deleted with content", 1, own("unsupported", {own("a", "1")}).with_all(kDelete), 0,
             ""}}) {
    SCOPED_TRACE(name);
    next(request_op);
    EXPECT_EQ(walk(Direction::kToNative, plant(tree), kUnsupported), result);
    EXPECT_EQ(platform.recorded(kRefusals), calls(refusals));
    EXPECT_TRUE(platform.recorded(kNotes).starts_with("container unsupported"));
    EXPECT_EQ(messages(), "");
  }
}

// What the hook of an entry makes current, and the trim prefix that it leaves, are the entry's
// alone; the content of an entry that has no place is passed over.
TEST_F(Engine, PlacesOneEntryApartFromAnother) {
  struct Case {
    const char* id;
    cerrno hook_result;
    std::string visited;
  };
  for (const auto& [id, hook_result, visited] :
       {Case{"here", 0, "hook placed; leaf id"}, Case{"nowhere", 0, "hook placed"},
        Case{"here", 0xaaf2f600, "hook placed result=0xaaf2f600"}}) {
    SCOPED_TRACE(visited);
    next(YFW_MAP_REQUEST_READ_CONFIG);
    Node outer{};
    state.current_list_node = &outer;
    platform.fail("hook placed", 1, hook_result);
    EXPECT_EQ(
        Engine::walk(Direction::kToOpenConfig, plant(own("placed", {own("id", id)})), kPlaced),
        hook_result);
    EXPECT_EQ(platform.recorded(kNotes), calls(visited));
    EXPECT_EQ(state.current_list_node, &outer);
    EXPECT_EQ(platform.recorded(kWrites), calls("trim /placed; untrim"));
  }
  ctx.request_state = nullptr;
  platform.forget_calls();
  EXPECT_EQ(
      Engine::walk(Direction::kToOpenConfig, plant(own("placed", {own("id", "nowhere")})), kPlaced),
      0U);
  EXPECT_EQ(platform.recorded(kNotes), calls("hook placed; leaf id"));
  ctx.request_state = &state;
}

TEST_F(RequestWalker, HoldsKeysAgainstTheListsConfig) {
  request(YFW_MAP_REQUEST_MERGE);
  walk(Direction::kToNative, plant(own("item", {own("id", "1"), own("zone", "z")})), kItem);
  EXPECT_EQ(platform.recorded(kQuestions), calls("leafref /m:top/m:item config =\"1\" item; "
                                                 "leafref /m:top/m:item config =\"z\" item"));
}

}  // namespace
