#include "io/models.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <set>
#include <system_error>
#include <unordered_map>

#include "io/leaf_types.h"
#include "io/libyang_log.h"
#include "io/text.h"
#include "io/yang_text.h"
#include "ocifip/host.h"

namespace ocifip {
namespace {

// Namespaces of native modules: this, and the name of the module.
constexpr std::string_view kNativeNamespaces = "urn:halvane:yang:";

constexpr std::uint16_t kDataNodes =
    LYS_CONTAINER | LYS_LIST | LYS_LEAF | LYS_LEAFLIST | LYS_ANYXML | LYS_ANYDATA;

struct QualifiedName {
  std::string_view tag;
  std::string_view module_namespace;
  bool operator==(const QualifiedName&) const = default;
};

struct QualifiedNameHash {
  std::size_t operator()(const QualifiedName& name) const {
    return std::hash<std::string_view>()(name.tag);  // few children differ in their modules alone
  }
};

struct ModuleNames {
  std::string name;
  std::string module_namespace;
};

// What is looked up about a schema node; libyang's private pointer leads to it.
struct Index {
  std::string tag;
  const ModuleNames* module = nullptr;
  std::size_t position = 0;
  bool names_by_ipv6 = false;
  std::optional<bool> has_constraints;  // these when they have been asked for
  std::optional<bool> has_far_constraints;
  std::vector<const lysc_node*> children;
  std::vector<std::string> keys;
  std::unordered_map<QualifiedName, const lysc_node*, QualifiedNameHash> by_name;
};

Index& index_of(const lysc_node* node) { return *static_cast<Index*>(node->priv); }

bool is_flagged(const lysc_node* node, int flag) { return (node->flags & flag) != 0; }

// The text of a file; empty when it cannot be read.
std::string text_of(const std::filesystem::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The names of the modules in a folder; files of several revisions ("name@date.yang") count once.
std::set<std::string> modules_in(const std::string& folder) {
  std::error_code error;
  std::set<std::string> names;
  if (std::filesystem::exists(folder, error) && !std::filesystem::is_directory(folder, error)) {
    throw load_error("models in", folder, "that is a file, not a folder");
  }
  std::filesystem::directory_iterator file(folder, error);
  for (; !error && file != std::filesystem::directory_iterator(); file.increment(error)) {
    const auto& path = file->path();
    if (path.extension() != ".yang") continue;
    if (file->is_directory(error)) {
      throw load_error("models in", folder,
                       in_short(path.filename().string()) + " is a folder, not a module");
    }
    if (is_submodule(text_of(path))) continue;
    const auto stem = path.stem().string();
    names.insert(stem.substr(0, stem.find('@')));
  }
  if (error) throw load_error("models in", folder, error.message());
  if (names.empty()) throw load_error("models in", folder, "no modules there");
  return names;
}

// Gives libyang the module or submodule that it asks for; `folder` is the context's.
LY_ERR read_module(const char* module, const char* revision, const char* submodule,
                   const char* submodule_revision, void* folder, LYS_INFORMAT* format,
                   const char** text, void (**free_text)(void* text, void* folder)) {
  const char* const folders[] = {static_cast<const char*>(folder), nullptr};
  char* file = nullptr;
  const auto found =
      submodule == nullptr
          ? lys_search_localfile(folders, 0, module, revision, &file, format)
          : lys_search_localfile(folders, 0, submodule, submodule_revision, &file, format);
  if (found != LY_SUCCESS || file == nullptr) return LY_ENOTFOUND;
  const auto content = *format == LYS_IN_YANG ? without_anchors(text_of(file)) : text_of(file);
  std::free(file);
  *text = strdup(content.c_str());
  *free_text = [](void* given, void* /*folder*/) { std::free(given); };
  return *text == nullptr ? LY_EMEM : LY_SUCCESS;
}

// Whether a module imports another.
bool imports(const lys_module* module, const lys_module* other) {
  const auto* found = module->parsed->imports;
  for (LY_ARRAY_COUNT_TYPE at = 0; at < LY_ARRAY_COUNT(module->parsed->imports); ++at, ++found) {
    if (found->module == other) return true;
  }
  return false;
}

const lysc_type* type_of(const lysc_node* leaf) {
  return leaf->nodetype == LYS_LEAF ? reinterpret_cast<const lysc_node_leaf*>(leaf)->type
                                    : reinterpret_cast<const lysc_node_leaflist*>(leaf)->type;
}

bool has_references(const lysc_type* type) {
  if (type->basetype == LY_TYPE_LEAFREF || type->basetype == LY_TYPE_INST) return true;
  if (type->basetype != LY_TYPE_UNION) return false;
  lysc_type* const* members = reinterpret_cast<const lysc_type_union*>(type)->types;
  return std::any_of(members, members + LY_ARRAY_COUNT(members), has_references);
}

std::string first_reason(const ly_ctx* context) {
  const auto* item = first_error(context);
  if (item == nullptr) return "unknown reason";
  const std::string place = item->path == nullptr ? "" : item->path;
  return item->msg + (place.empty() ? place : " (" + place + ')');
}

}  // namespace

struct Models::Impl {
  explicit Impl(const std::string& folder);

  void load(const std::string& folder);
  void index_modules();
  void index_tree();
  const Index& index(const lysc_node* parent) const { return parent ? index_of(parent) : top; }

  std::unique_ptr<ly_ctx, decltype(&ly_ctx_destroy)> context{nullptr, &ly_ctx_destroy};
  std::set<const lys_module*> built_in;
  std::unordered_map<std::string_view, std::string_view> names;  // by namespace
  std::unordered_map<std::string_view, std::string_view> namespaces;
  Index top;
  std::deque<Index> indexes;
  std::unordered_map<const lys_module*, ModuleNames> module_names;

 private:
  void add_child(Index& parent, const lysc_node* node, std::vector<const lysc_node*>& unvisited);
};

Models::Impl::Impl(const std::string& folder) {
  load(folder);
  index_modules();
  index_tree();
}

void Models::Impl::load(const std::string& folder) {
  const QuietLog quiet;
  const auto modules = modules_in(folder);
  ly_ctx* created = nullptr;
  // Nothing is compiled before all modules are there: a default may be an identity of a module that
  // the one with the leaf imports, which counts only when it is loaded for itself.
  constexpr auto kOptions =
      LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIR_CWD | LY_CTX_EXPLICIT_COMPILE;
  if (ly_ctx_new(folder.c_str(), kOptions, &created) != LY_SUCCESS) {
    throw load_error("models in", folder, "libyang refuses the folder");
  }
  context.reset(created);
  ly_ctx_set_module_imp_clb(created, &read_module, const_cast<char*>(folder.c_str()));

  std::uint32_t at = 0;
  while (const auto* module = ly_ctx_get_module_iter(created, &at)) built_in.insert(module);

  const char* every_feature[] = {"*", nullptr};
  for (const auto& module : modules) {
    if (ly_ctx_load_module(created, module.c_str(), nullptr, every_feature) == nullptr) {
      throw load_error("models in", folder, in_short(module) + ": " + first_reason(created));
    }
  }
  const auto compiled = ly_ctx_compile(created);
  ly_ctx_set_module_imp_clb(created, nullptr, nullptr);
  if (compiled != LY_SUCCESS) throw load_error("models in", folder, first_reason(created));
}

void Models::Impl::index_modules() {
  std::uint32_t at = 0;
  while (const auto* module = ly_ctx_get_module_iter(context.get(), &at)) {
    names.emplace(module->ns, module->name);
    namespaces.emplace(module->name, module->ns);
  }
}

void Models::Impl::add_child(Index& parent, const lysc_node* node,
                             std::vector<const lysc_node*>& unvisited) {
  if ((node->nodetype & kDataNodes) == 0) return;
  Index& own = indexes.emplace_back();
  own.tag = node->name;
  own.module =
      &module_names.try_emplace(node->module, ModuleNames{node->module->name, node->module->ns})
           .first->second;
  own.position = parent.children.size();
  const bool is_name = Models::is_key(node) || node->nodetype == LYS_LEAFLIST;
  own.names_by_ipv6 = is_name && has_ipv6_values(node);
  // The context is this object's own, and libyang leaves the pointer to its user.
  const_cast<lysc_node*>(node)->priv = &own;
  parent.children.push_back(node);
  if (Models::is_key(node)) parent.keys.emplace_back(node->name);
  parent.by_name.emplace(QualifiedName{node->name, node->module->ns}, node);
  unvisited.push_back(node);
}

void Models::Impl::index_tree() {
  std::vector<const lysc_node*> unvisited;
  std::uint32_t at = 0;
  while (const auto* module = ly_ctx_get_module_iter(context.get(), &at)) {
    if (module->compiled == nullptr || built_in.contains(module)) continue;
    const lysc_node* node = nullptr;
    while ((node = lys_getnext(node, nullptr, module->compiled, 0)) != nullptr) {
      add_child(top, node, unvisited);
    }
  }
  while (!unvisited.empty()) {
    const auto* parent = unvisited.back();
    unvisited.pop_back();
    Index& index = index_of(parent);
    // libyang has moved the keys of a list to its front, in the order of the key statement.
    const lysc_node* node = nullptr;
    while ((node = lys_getnext(node, parent, nullptr, 0)) != nullptr) {
      add_child(index, node, unvisited);
    }
  }
}

Models::Models(const std::string& folder) : impl_(std::make_unique<Impl>(folder)) {}
Models::~Models() = default;

const ly_ctx* Models::context() const { return impl_->context.get(); }

bool Models::has_annotation(std::string_view name) const {
  const auto colon = name.find(':');
  if (colon == std::string_view::npos) return false;
  const std::string module_name(name.substr(0, colon));
  const auto* module = ly_ctx_get_module_implemented(context(), module_name.c_str());
  if (module == nullptr || module->compiled == nullptr) return false;
  const auto* instance = module->compiled->exts;
  for (LY_ARRAY_COUNT_TYPE at = 0; at < LY_ARRAY_COUNT(instance); ++at) {
    const bool is_annotation = std::string_view(instance[at].def->name) == "annotation";
    if (is_annotation && name.substr(colon + 1) == instance[at].argument) return true;
  }
  return false;
}

std::string_view Models::module_of(std::string_view module_namespace) const {
  const auto found = impl_->names.find(module_namespace);
  if (found != impl_->names.end()) return found->second;
  const bool is_native = module_namespace.starts_with(kNativeNamespaces);
  return is_native ? module_namespace.substr(kNativeNamespaces.size()) : std::string_view();
}

std::string_view Models::namespace_of(std::string_view module) const {
  const auto found = impl_->namespaces.find(module);
  return found == impl_->namespaces.end() ? std::string_view() : found->second;
}

const lysc_node* Models::child(const lysc_node* parent, std::string_view tag,
                               std::string_view module_namespace) const {
  const Index& index = impl_->index(parent);
  if (parent == nullptr && module_namespace.empty()) {
    std::vector<const lysc_node*> found;
    std::copy_if(index.children.begin(), index.children.end(), std::back_inserter(found),
                 [tag](const lysc_node* node) { return tag == node->name; });
    const auto chosen = std::find_if(found.begin(), found.end(), [&found](const lysc_node* node) {
      return std::all_of(found.begin(), found.end(), [node](const lysc_node* other) {
        return other == node || imports(node->module, other->module);
      });
    });
    return chosen == found.end() ? nullptr : *chosen;
  }
  if (module_namespace.empty()) module_namespace = parent->module->ns;
  const auto found = index.by_name.find({tag, module_namespace});
  return found == index.by_name.end() ? nullptr : found->second;
}

const std::vector<const lysc_node*>& Models::children(const lysc_node* parent) const {
  return impl_->index(parent).children;
}

std::size_t Models::position(const lysc_node* node) { return index_of(node).position; }

const std::vector<std::string>& Models::keys(const lysc_node* list) { return index_of(list).keys; }

NodeKind Models::kind(const lysc_node* node) {
  switch (node->nodetype) {
    case LYS_LIST:
      return NodeKind::kList;
    case LYS_LEAF:
      return NodeKind::kLeaf;
    case LYS_LEAFLIST:
      return NodeKind::kLeafList;
    default:
      return NodeKind::kContainer;
  }
}

const std::string& Models::tag(const lysc_node* node) { return index_of(node).tag; }
const std::string& Models::module(const lysc_node* node) { return index_of(node).module->name; }
const std::string& Models::module_namespace(const lysc_node* node) {
  return index_of(node).module->module_namespace;
}
bool Models::is_leaf(const lysc_node* node) {
  return (node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

bool Models::is_any(const lysc_node* node) { return (node->nodetype & LYD_NODE_ANY) != 0; }
bool Models::is_key(const lysc_node* node) { return is_flagged(node, LYS_KEY); }
bool Models::is_state(const lysc_node* node) { return is_flagged(node, LYS_CONFIG_R); }

bool Models::is_plain_container(const lysc_node* node) {
  return node->nodetype == LYS_CONTAINER && !is_flagged(node, LYS_PRESENCE);
}

bool Models::names_by_ipv6(const lysc_node* node) {
  return node != nullptr && index_of(node).names_by_ipv6;
}

namespace {

bool is_within_choice(const lysc_node* node) {
  return node->parent != nullptr && (node->parent->nodetype & (LYS_CHOICE | LYS_CASE)) != 0;
}

bool is_conditional(const lysc_node* node) {
  if (lysc_node_musts(node) != nullptr || lysc_node_when(node) != nullptr) return true;
  // Choices and cases are no data nodes, but have conditions.
  return is_within_choice(node) && is_conditional(node->parent);
}

// Whether the data of a node itself may be wrong for what stands elsewhere.
bool is_far_constrained(const lysc_node* node) {
  if (is_conditional(node)) return true;
  if (node->nodetype == LYS_LIST) {
    const auto* list = reinterpret_cast<const lysc_node_list*>(node);
    if (list->uniques != nullptr || list->min != 0 || list->max != UINT32_MAX) return true;
  }
  return Models::is_leaf(node) && has_references(type_of(node));
}

bool has_number_of_values(const lysc_node* node) {
  if (node->nodetype != LYS_LEAFLIST) return false;
  const auto* values = reinterpret_cast<const lysc_node_leaflist*>(node);
  return values->min != 0 || values->max != UINT32_MAX;
}

bool is_constrained(const lysc_node* node) {
  return is_far_constrained(node) || is_flagged(node, LYS_MAND_TRUE) || is_within_choice(node) ||
         has_number_of_values(node) || Models::is_any(node);
}

// Whether something holds of a node or of one below it, which is remembered.
bool is_anywhere(const lysc_node* node, std::optional<bool> Index::*known,
                 bool (*is)(const lysc_node*)) {
  Index& index = index_of(node);
  std::optional<bool>& found = index.*known;
  if (!found) {
    found =
        is(node) || std::any_of(index.children.begin(), index.children.end(),
                                [&](const auto* child) { return is_anywhere(child, known, is); });
  }
  return *found;
}

}  // namespace

bool Models::has_far_constraints(const lysc_node* node) const {
  return is_anywhere(node, &Index::has_far_constraints, is_far_constrained);
}

bool Models::has_constraints(const lysc_node* node) const {
  return is_anywhere(node, &Index::has_constraints, is_constrained);
}

bool Models::is_empty_leaf(const lysc_node* node) {
  return node->nodetype == LYS_LEAF &&
         reinterpret_cast<const lysc_node_leaf*>(node)->type->basetype == LY_TYPE_EMPTY;
}

}  // namespace ocifip
