#include "io/module_library.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string_view>
#include <tuple>
#include <utility>

namespace ocifip {
namespace {

// libyang brings it along, and there are no data of it.
constexpr std::string_view kUnused = "ietf-yang-schema-mount";

std::string text_or_nothing(const char* text) { return text == nullptr ? "" : text; }

std::vector<std::string> features_of(const lys_module* module) {
  std::vector<std::string> features;
  std::uint32_t at = 0;
  const lysp_feature* feature = nullptr;
  while ((feature = lysp_feature_next(feature, module->parsed, &at)) != nullptr) {
    if ((feature->flags & LYS_FENABLED) != 0) features.emplace_back(feature->name);
  }
  return features;
}

struct ContextDeleter {
  void operator()(ly_ctx* context) const { ly_ctx_destroy(context); }
};
using Context = std::unique_ptr<ly_ctx, ContextDeleter>;

// The library of modules has modules of its own. They are built in, and the models do without them.
Context library_of_modules() {
  ly_ctx* context = nullptr;
  ly_ctx_new(nullptr, 0, &context);
  return Context(context);
}

// A module or submodule that is there.
struct Known {
  const lys_module* module = nullptr;
  const lysp_submodule* submodule = nullptr;
  std::string revision;
};

std::optional<Known> find_module(const ly_ctx* context, const std::string& name,
                                 const std::string& revision) {
  const bool is_any = revision.empty();
  const lys_module* module = ly_ctx_get_module_implemented(context, name.c_str());
  const bool is_other =
      module != nullptr && !is_any && revision != text_or_nothing(module->revision);
  if (module == nullptr || is_other) {
    module = is_any ? ly_ctx_get_module_latest(context, name.c_str())
                    : ly_ctx_get_module(context, name.c_str(), revision.c_str());
  }
  if (module != nullptr) return Known{module, nullptr, text_or_nothing(module->revision)};
  const lysp_submodule* submodule =
      is_any ? ly_ctx_get_submodule_latest(context, name.c_str())
             : ly_ctx_get_submodule(context, name.c_str(), revision.c_str());
  if (submodule == nullptr) return std::nullopt;
  const char* own = submodule->revs == nullptr ? nullptr : submodule->revs[0].date;
  return Known{submodule->mod, submodule, text_or_nothing(own)};
}

// The text of its file in the folder of the models; nothing when it has none.
std::optional<std::string> text_of_file(const ly_ctx* context, const std::string& name,
                                        const std::string& revision) {
  char* file = nullptr;
  LYS_INFORMAT format = LYS_IN_UNKNOWN;
  lys_search_localfile(ly_ctx_get_searchdirs(context), 0, name.c_str(),
                       revision.empty() ? nullptr : revision.c_str(), &file, &format);
  if (file == nullptr) return std::nullopt;
  std::ifstream stream(file);
  std::free(file);
  if (!stream || format != LYS_IN_YANG) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::optional<std::string> printed(const Known& known) {
  char* text = nullptr;
  ly_out* out = nullptr;
  if (ly_out_new_memory(&text, 0, &out) != LY_SUCCESS) return std::nullopt;
  const LY_ERR result = known.submodule == nullptr
                            ? lys_print_module(out, known.module, LYS_OUT_YANG, 0, 0)
                            : lys_print_submodule(out, known.submodule, LYS_OUT_YANG, 0, 0);
  std::optional<std::string> copy;
  if (result == LY_SUCCESS) copy.emplace(text_or_nothing(text));
  ly_out_free(out, nullptr, 1);
  return copy;
}

// Adds the modules of a context that are not there.
void add_modules(const ly_ctx* context, std::vector<Module>& modules) {
  std::uint32_t at = 0;
  while (const lys_module* module = ly_ctx_get_module_iter(context, &at)) {
    const bool is_there = std::any_of(modules.begin(), modules.end(), [&](const Module& each) {
      return each.name == module->name && each.revision == text_or_nothing(module->revision);
    });
    if (is_there || module->name == kUnused) continue;
    modules.push_back({module->name, text_or_nothing(module->revision), module->ns,
                       module->implemented != 0, features_of(module)});
  }
}

std::optional<std::string> text_in(const ly_ctx* context, const std::string& name,
                                   const std::string& revision) {
  const std::optional<Known> known = find_module(context, name, revision);
  if (!known) return std::nullopt;
  std::optional<std::string> text = text_of_file(context, name, known->revision);
  return text ? text : printed(*known);
}

}  // namespace

std::vector<Module> module_list(const Models& models) {
  std::vector<Module> modules;
  add_modules(models.context(), modules);
  const Context library = library_of_modules();
  if (library) add_modules(library.get(), modules);
  std::sort(modules.begin(), modules.end(), [](const Module& left, const Module& right) {
    return std::make_tuple(!left.is_implemented, std::cref(left.name), std::cref(left.revision)) <
           std::make_tuple(!right.is_implemented, std::cref(right.name), std::cref(right.revision));
  });
  return modules;
}

std::optional<std::string> module_text(const Models& models, const std::string& name,
                                       const std::string& revision) {
  std::optional<std::string> text = text_in(models.context(), name, revision);
  if (text) return text;
  const Context library = library_of_modules();
  return library ? text_in(library.get(), name, revision) : std::nullopt;
}

}  // namespace ocifip
