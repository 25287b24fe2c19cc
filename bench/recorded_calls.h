// How a call of a service is written to a recording, and made again from it. Each type of argument
// has its own way; a service with an argument of another type cannot be recorded.
#ifndef OCIFIP_BENCH_RECORDED_CALLS_H_
#define OCIFIP_BENCH_RECORDED_CALLS_H_

#include <array>
#include <concepts>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "im/address_manager.h"
#include "im/event_manager.h"
#include "im/interface_manager.h"
#include "recording.h"
#include "sysdb/sysdb.h"
#include "yfw/mapping.h"

namespace ocifip::bench {

using Word = std::uint32_t;

// Where output nodes are kept that the plug-in has in variables of its own. The first two are not
// its own: the root of the output, and the slot of the request state.
enum NodeName : Word { kNoNode, kRootNode, kSlotNode, kFirstVariable };
inline constexpr Word kVariables = 8;

// The number of no service: the plug-in has written to the slot of the request state.
inline constexpr Word kSetSlot = 0;

// There is no way back to whoever records: the plug-in knows no exceptions.
[[noreturn]] inline void cannot_record(const char* reason) {
  std::fprintf(stderr, "the calls of the plug-in cannot be recorded: %s\n", reason);
  std::abort();
}

class Recorder {
 public:
  explicit Recorder(Recording& to) : recording(to) {}

  Recording& recording;
  yfw_map_ctx* ctx = nullptr;
  nidl_yfw_datatree* out = nullptr;
  Word list_length = 0;  // of the list of texts that is written next

  void begin_entry(yfw_map_ctx* context, nidl_yfw_datatree* root) {
    ctx = context;
    out = root;
    variables_ = {};
    slot_ = slot();
    recording.entries.push_back(recording.words.size());
  }

  void begin_call(Word service) {
    if (slot() != slot_) {
      word(kSetSlot);
      word(name_of(slot()));
    }
    word(service);
  }
  void end_call() { slot_ = slot(); }

  void word(Word value) { recording.words.push_back(value); }
  void wide(std::uint64_t value) {
    const auto [known, is_new] =
        indexes_.try_emplace(value, static_cast<Word>(recording.wide.size()));
    if (is_new) {
      recording.wide.push_back(value);
    }
    word(known->second);
  }
  void pointer(const void* value) { wide(reinterpret_cast<std::uintptr_t>(value)); }

  // Texts and structures may be in buffers: a copy is kept, one of each content.
  void bytes(const void* value, std::size_t size) {
    const std::string_view content(static_cast<const char*>(value), size);
    auto known = copies_.find(content);
    if (known == copies_.end()) {
      void* copy = recording.copies.allocate(size, alignof(std::max_align_t));
      std::memcpy(copy, value, size);
      known = copies_.emplace(static_cast<const char*>(copy), size).first;
    }
    pointer(known->data());
  }
  void text(const char* value) {
    if (value == nullptr) {
      pointer(nullptr);
    } else {
      bytes(value, std::strlen(value) + 1);
    }
  }

  [[nodiscard]] Word name_of(const nidl_yfw_datatree* node) const {
    if (node == nullptr || node == out) {
      return node == nullptr ? kNoNode : kRootNode;
    }
    for (Word i = 0; i < kVariables; ++i) {
      if (variables_[i] == node) {
        return kFirstVariable + i;
      }
    }
    if (node == slot()) {
      return kSlotNode;
    }
    cannot_record("it hands over an output node that it was not given");
  }
  [[nodiscard]] Word place_of(nidl_yfw_datatree** place) {
    if (place == nullptr) {
      return kNoNode;
    }
    if (ctx->request_state != nullptr && place == &ctx->request_state->current_list_node) {
      return kSlotNode;
    }
    next_variable_ = (next_variable_ + 1) % kVariables;
    return kFirstVariable + next_variable_;
  }
  // What a service stored where place_of was asked for last.
  void store(nidl_yfw_datatree** place) {
    if (place != nullptr && place != &ctx->request_state->current_list_node) {
      variables_[next_variable_] = *place;
    }
  }

  static inline Recorder* active = nullptr;

 private:
  [[nodiscard]] nidl_yfw_datatree* slot() const {
    return ctx->request_state != nullptr ? ctx->request_state->current_list_node : nullptr;
  }

  std::unordered_map<std::uint64_t, Word> indexes_;  // of Recording::wide
  std::unordered_set<std::string_view> copies_;
  std::array<const nidl_yfw_datatree*, kVariables> variables_{};
  Word next_variable_ = 0;
  nidl_yfw_datatree* slot_ = nullptr;  // as the last call left it
};

struct Player {
  const Recording* recording = nullptr;
  std::size_t entry = 0;
  const Word* next = nullptr;
  yfw_map_ctx* ctx = nullptr;
  std::array<nidl_yfw_datatree*, kFirstVariable + kVariables> nodes{};
  // What services write to, and the floor has no use for.
  std::array<char, 256> text{};
  alignas(std::max_align_t) std::array<std::byte, 256> other{};
  std::array<const char*, 16> list{};
  imc_attr_response* response = nullptr;
  iparm_list* addresses = nullptr;
  event_manager* events = nullptr;
  imc_conn_ctx* connection = nullptr;
  sysdb_list* items = nullptr;

  Word word() { return *next++; }
  std::uint64_t wide() { return recording->wide[word()]; }
  nidl_yfw_datatree*& node(Word name) {
    return name == kSlotNode ? ctx->request_state->current_list_node : nodes[name];
  }
};

// --- arguments -----------------------------------------------------------------------------------

// How an argument of each type is written, and read back.

template <class T>
struct Type {};

template <std::integral T>
inline constexpr bool kIsWide = sizeof(T) > sizeof(Word);

template <std::integral T>
void write(Recorder& to, T value) {
  kIsWide<T> ? to.wide(static_cast<std::uint64_t>(value)) : to.word(static_cast<Word>(value));
}
template <std::integral T>
T read(Player& from, Type<T>) {
  return static_cast<T>(kIsWide<T> ? from.wide() : from.word());
}

// Where a service writes to: nothing is recorded, and the player has places of its own.
template <class T>
concept Place = std::is_pointer_v<T> && !std::is_const_v<std::remove_pointer_t<T>>;

template <Place T>
void write(Recorder&, T) {}
template <Place T>
T read(Player& from, Type<T>) {
  return reinterpret_cast<T>(from.other.data());
}

inline char* read(Player& from, Type<char*>) { return from.text.data(); }
inline imc_attr_response** read(Player& from, Type<imc_attr_response**>) { return &from.response; }
inline iparm_list** read(Player& from, Type<iparm_list**>) { return &from.addresses; }
inline iparm_list* read(Player& from, Type<iparm_list*>) { return from.addresses; }
inline event_manager** read(Player& from, Type<event_manager**>) { return &from.events; }
inline event_manager* read(Player& from, Type<event_manager*>) { return from.events; }
inline imc_conn_ctx** read(Player& from, Type<imc_conn_ctx**>) { return &from.connection; }
inline imc_conn_ctx* read(Player& from, Type<imc_conn_ctx*>) { return from.connection; }
inline void write(Recorder&, const imc_conn_ctx*) {}
inline const imc_conn_ctx* read(Player& from, Type<const imc_conn_ctx*>) { return from.connection; }
inline sysdb_list** read(Player& from, Type<sysdb_list**>) { return &from.items; }
inline sysdb_list* read(Player& from, Type<sysdb_list*>) { return from.items; }
inline yfw_map_ctx* read(Player& from, Type<yfw_map_ctx*>) { return from.ctx; }
inline yfw_itree_stack* read(Player& from, Type<yfw_itree_stack*>) {
  return from.ctx->request_state->visited_entries;
}

// What the interface manager has answered last.
inline void write(Recorder&, const std::uint8_t*) {}
inline const std::uint8_t* read(Player& from, Type<const std::uint8_t*>) {
  return from.response == nullptr ? nullptr : from.response->data;
}

// A binding that the plug-in keeps.
inline void write(Recorder& to, sysdb_handle* value) { to.pointer(value); }
inline sysdb_handle* read(Player& from, Type<sysdb_handle*>) {
  return reinterpret_cast<sysdb_handle*>(from.wide());
}

// Others stay where they are, or a copy of them does. Nodes of the input are the same when the
// recording is played.
template <class T>
const T* read(Player& from, Type<const T*>) {
  return reinterpret_cast<const T*>(from.wide());
}
inline void write(Recorder& to, const nidl_yfw_datatree* value) { to.pointer(value); }
inline void write(Recorder& to, const char* value) { to.text(value); }
inline void write(Recorder& to, const imc_attr_request* value) { to.bytes(value, sizeof *value); }
// A filter, or an address of at most so many bytes.
inline void write(Recorder& to, const void* value) {
  value == nullptr ? to.pointer(nullptr) : to.bytes(value, IPARM_ADDRESS_SIZE);
}

// Nodes of the output.
inline void write(Recorder& to, nidl_yfw_datatree* value) { to.word(to.name_of(value)); }
inline nidl_yfw_datatree* read(Player& from, Type<nidl_yfw_datatree*>) {
  return from.node(from.word());
}
inline void write(Recorder& to, nidl_yfw_datatree** value) { to.word(to.place_of(value)); }
inline nidl_yfw_datatree** read(Player& from, Type<nidl_yfw_datatree**>) {
  const Word name = from.word();
  return name == kNoNode ? nullptr : &from.node(name);
}

inline void write(Recorder& to, const yfw_map_stitch_request* value) {
  yfw_map_stitch_request request = *value;
  request.base = nullptr;
  to.bytes(&request, sizeof request);
  write(to, value->base);
}
inline const yfw_map_stitch_request* read(Player& from, Type<const yfw_map_stitch_request*>) {
  auto* request = reinterpret_cast<yfw_map_stitch_request*>(from.wide());
  request->base = from.node(from.word());
  return request;
}

inline void write(Recorder& to, const char* const* texts) {
  to.word(to.list_length);
  for (Word i = 0; i < to.list_length; ++i) {
    to.text(texts[i]);
  }
}
inline const char* const* read(Player& from, Type<const char* const*>) {
  const Word length = from.word();
  for (Word i = 0; i < length; ++i) {
    from.list[i] = read(from, Type<const char*>());
  }
  return from.list.data();
}

// --- services ------------------------------------------------------------------------------------

inline constexpr std::size_t kNoList = 100;

// A service: its number, its function and, if one of its arguments is a list of texts, which of the
// others is the length.
template <Word kNumber, auto kFunction, std::size_t kLength = kNoList>
struct Service;

template <Word kNumber, class R, class... A, R (*kFunction)(A...), std::size_t kLength>
struct Service<kNumber, kFunction, kLength> {
  static R record(A... arguments) {
    Recorder& to = *Recorder::active;
    if constexpr (kLength != kNoList) {
      to.list_length = std::get<kLength>(std::tie(arguments...));
    }
    to.begin_call(kNumber);
    (write(to, arguments), ...);
    if constexpr (std::is_void_v<R>) {
      kFunction(arguments...);
      to.end_call();
    } else {
      const R result = kFunction(arguments...);
      (note_stored(to, arguments), ...);
      to.end_call();
      return result;
    }
  }

  static void play(Player& from) {
    // Braces read the arguments in their order.
    std::apply(kFunction, std::tuple<A...>{bench::read(from, Type<A>())...});
  }

  static void read(Player& from) {
    std::apply([](A... arguments) { (hold(arguments), ...); },
               std::tuple<A...>{bench::read(from, Type<A>())...});
  }

 private:
  // What the service stored where an argument points to.
  static void note_stored(Recorder& to, nidl_yfw_datatree** where) { to.store(where); }
  template <class T>
  static void note_stored(Recorder&, T) {}

  // Keeps the compiler from leaving out what nobody uses.
  template <class T>
  static void hold(T value) {
    asm volatile("" : : "r"(value) : "memory");
  }
};

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_RECORDED_CALLS_H_
