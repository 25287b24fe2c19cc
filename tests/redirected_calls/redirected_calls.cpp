#include "redirected_calls.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>

namespace ocifip {
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

// Writes to a page that the loader may have made read-only.
void write(void** place, void* value) {
  const auto page_size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  void* page = reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(place) & -page_size);
  if (mprotect(page, page_size, PROT_READ | PROT_WRITE) != 0) {
    throw std::runtime_error("a library's calls cannot be redirected");
  }
  *place = value;
}

const void* library_of(const void* address) {
  Dl_info info{};
  return dladdr(address, &info) == 0 ? nullptr : info.dli_fbase;
}

}  // namespace

bool are_in_one_library(const void* first, const void* second) {
  return library_of(first) != nullptr && library_of(first) == library_of(second);
}

RedirectedCalls::RedirectedCalls(const std::string& library, const Redirect& redirect) {
  const std::unique_ptr<void, int (*)(void*)> loaded(
      dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD), dlclose);
  link_map* map = nullptr;
  if (loaded == nullptr || dlinfo(loaded.get(), RTLD_DI_LINKMAP, &map) != 0) {
    throw std::runtime_error(library + " is not loaded");
  }
  try {
    // Calls, and addresses of functions that are kept.
    redirect_table(*map, DT_JMPREL, DT_PLTRELSZ, redirect);
    redirect_table(*map, DT_RELA, DT_RELASZ, redirect);
  } catch (...) {
    restore();
    throw;
  }
}

void RedirectedCalls::redirect_table(const link_map& library, std::int64_t table, std::int64_t size,
                                     const Redirect& redirect) {
  const auto* symbols = dynamic_table<ElfW(Sym)>(library, DT_SYMTAB);
  const auto* names = dynamic_table<char>(library, DT_STRTAB);
  const std::span references(dynamic_table<ElfW(Rela)>(library, table),
                             dynamic_entry(library, size) / sizeof(ElfW(Rela)));
  for (const ElfW(Rela) & reference : references) {
    const ElfW(Sym)& symbol = symbols[ELF64_R_SYM(reference.r_info)];
    if (symbol.st_name == 0 || symbol.st_shndx != SHN_UNDEF) {
      continue;  // the library's own
    }
    auto** place = reinterpret_cast<void**>(library.l_addr + reference.r_offset);
    void* address = redirect(names + symbol.st_name, *place);
    if (address != *place) {
      former_.emplace_back(place, *place);
      write(place, address);
    }
  }
}

void RedirectedCalls::restore() {
  for (const auto& [place, address] : former_) {
    *place = address;
  }
}

}  // namespace ocifip
