// The coverage of the models as text, for ocifip/host.h.
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ocifip/host.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;
using Uses = std::vector<std::pair<std::string_view, const LeafUse*>>;

Uses uses_of(const LeafCoverage& leaf) {
  Uses uses = {{"edit", &leaf.edit}, {"read", &leaf.read}};
  if (leaf.read_config) {
    uses.emplace_back("read-config", &*leaf.read_config);
  }
  uses.emplace_back("read-back", &leaf.read_back);
  return uses;
}

std::string_view word_of(const LeafUse& use, std::string_view name) {
  switch (use.result) {
    case LeafUse::Result::kMapped:
      return "mapped";
    case LeafUse::Result::kRefused:
      return "refused";
    default:
      return name == "read-back" ? "nothing" : "ignored";
  }
}

// --- JSON ----------------------------------------------------------------------------------------

Json object_of(const LeafUse& use, std::string_view name) {
  Json object = {{"result", word_of(use, name)}};
  if (!use.code.empty()) {
    object["code"] = use.code;
  }
  if (!use.native.empty()) {
    object["native"] = use.native;
  }
  return object;
}

std::string print_json(const Coverage& coverage) {
  std::string out = "[";
  const char* before = "\n  ";
  for (const LeafCoverage& leaf : coverage.leaves) {
    Json object = {{"path", leaf.path}};
    for (const auto& [name, use] : uses_of(leaf)) {
      object[std::string(name)] = object_of(*use, name);
    }
    out.append(before).append(object.dump());
    before = ",\n  ";
  }
  return out + "\n]\n";
}

// --- the table -----------------------------------------------------------------------------------

// What most leaves begin with.
constexpr std::string_view kCommonStems[] = {
    "/openconfig-interfaces:interfaces/interface/subinterfaces/subinterface/",
    "openconfig-if-ip:",
};

constexpr std::size_t kWidth = 120;

using Row = std::array<std::string, 4>;

// From the last node on that names its module.
std::string_view short_native(std::string_view path) {
  const auto module = path.rfind('/', path.rfind(':'));
  return path.substr(module == std::string_view::npos ? 0 : module + 1);
}

std::string_view short_leaf(std::string_view path) {
  for (const std::string_view stem : kCommonStems) {
    path.remove_prefix(path.starts_with(stem) ? stem.size() : 0);
  }
  return path;
}

// Appends a detail of a leaf, in lines that are not longer than the table is wide.
void append_detail(std::string& out, const std::string& detail) {
  std::string line = "    ";
  std::string_view left = detail;
  while (line.size() + left.size() > kWidth) {
    const std::size_t room = kWidth - line.size();
    const auto end = left.find_last_of("/ ", room - 1);
    const std::size_t size = end == std::string_view::npos ? room : end + 1;
    line += left.substr(0, size);
    line.erase(line.find_last_not_of(' ') + 1);
    out.append(line).append("\n");
    line = "        ";
    left.remove_prefix(size);
  }
  out.append(line).append(left).append("\n");
}

// The native paths of all uses, each with the uses that it has where these are not all.
void append_natives(std::string& out, const Uses& uses) {
  std::vector<std::string_view> paths;
  for (const auto& [name, use] : uses) {
    for (const std::string& path : use->native) {
      if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
        paths.emplace_back(path);
      }
    }
  }
  for (const std::string_view path : paths) {
    std::string names;
    std::size_t count = 0;
    for (const auto& [name, use] : uses) {
      if (std::find(use->native.begin(), use->native.end(), path) != use->native.end()) {
        names.append(names.empty() ? "" : ", ").append(name);
        ++count;
      }
    }
    append_detail(out, std::string(short_native(path)) +
                           (count < uses.size() ? " (" + names + ")" : std::string()));
  }
}

// The codes of refusals, and what is special about a read of configuration.
void append_remarks(std::string& out, const LeafCoverage& leaf) {
  if (leaf.read_config && leaf.read_config->code.empty()) {
    append_detail(out, "read-config " + std::string(word_of(*leaf.read_config, "read-config")));
  }
  for (const auto& [name, use] : uses_of(leaf)) {
    if (!use->code.empty()) {
      append_detail(out, std::string(name) + " refused: " + use->code);
    }
  }
}

Row row_of(const LeafCoverage& leaf) {
  return {std::string(short_leaf(leaf.path)), std::string(word_of(leaf.edit, "edit")),
          std::string(word_of(leaf.read, "read")),
          std::string(word_of(leaf.read_back, "read-back"))};
}

void append_row(std::string& out, const Row& row, std::size_t leaf_width) {
  constexpr std::size_t kCell = 9;
  std::string line = row[0];
  line.resize(std::max(leaf_width, line.size()), ' ');
  for (std::size_t i = 1; i < row.size(); ++i) {
    line.append(row.at(i)).append(kCell - row.at(i).size(), ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  out.append(line).append("\n");
}

std::string print_table(const Coverage& coverage) {
  const Row header = {"LEAF", "EDIT", "READ", "READ-BACK"};
  std::size_t width = header[0].size() + 2;
  for (const LeafCoverage& leaf : coverage.leaves) {
    width = std::max(width, short_leaf(leaf.path).size() + 2);
  }
  std::string out;
  append_row(out, header, width);
  for (const LeafCoverage& leaf : coverage.leaves) {
    append_row(out, row_of(leaf), width);
    append_remarks(out, leaf);
    append_natives(out, uses_of(leaf));
  }
  return out;
}

}  // namespace

std::string Coverage::text(Format format) const {
  if (format != Format::kJson && format != Format::kTree) {
    throw InputError("the coverage is shown as json or tree");
  }
  return format == Format::kJson ? print_json(*this) : print_table(*this);
}

}  // namespace ocifip
