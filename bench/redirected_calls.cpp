#include "redirected_calls.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace ocifip::bench {
namespace {

// An entry of a library's dynamic section, 0 when there is none.
ElfW(Addr) dynamic_entry(const link_map& library, ElfW(Sxword) tag) {
  const ElfW(Dyn)* entry = library.l_ld;
  while (entry->d_tag != DT_NULL && entry->d_tag != tag) {
    ++entry;
  }
  return entry->d_tag == tag ? entry->d_un.d_ptr : 0;
}

template <class T>
const T* dynamic_table(const link_map& library, ElfW(Sxword) tag) {
  return reinterpret_cast<const T*>(dynamic_entry(library, tag));
}

const void* library_of(const void* address) {
  Dl_info info{};
  return dladdr(address, &info) == 0 ? nullptr : info.dli_fbase;
}

// Writes to a page that the loader has made read-only.
void write(void** place, void* value) {
  const auto page_size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  void* page = reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(place) & -page_size);
  if (mprotect(page, page_size, PROT_READ | PROT_WRITE) != 0) {
    throw std::runtime_error("a library's calls cannot be redirected");
  }
  *place = value;
  mprotect(page, page_size, PROT_READ);
}

}  // namespace

RedirectedCalls::RedirectedCalls(void* library, std::span<const Redirection> redirections,
                                 const void* provider, void* others) {
  link_map* map = nullptr;
  if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0) {
    throw std::runtime_error("the library is not loaded");
  }
  const auto* symbols = dynamic_table<ElfW(Sym)>(*map, DT_SYMTAB);
  const auto* names = dynamic_table<char>(*map, DT_STRTAB);
  const std::span calls(dynamic_table<ElfW(Rela)>(*map, DT_JMPREL),
                        dynamic_entry(*map, DT_PLTRELSZ) / sizeof(ElfW(Rela)));
  for (const ElfW(Rela) & call : calls) {
    const std::string_view name = names + symbols[call.r_info >> 32].st_name;
    const auto found = std::find_if(redirections.begin(), redirections.end(),
                                    [&](const Redirection& each) { return each.function == name; });
    auto** place = reinterpret_cast<void**>(map->l_addr + call.r_offset);
    const bool is_other = others != nullptr && library_of(*place) == library_of(provider);
    if (found != redirections.end() || is_other) {
      former_.emplace_back(place, *place);
      write(place, found != redirections.end() ? found->to : others);
    }
  }
}

RedirectedCalls::~RedirectedCalls() {
  for (const auto& [place, value] : former_) {
    write(place, value);
  }
}

}  // namespace ocifip::bench
