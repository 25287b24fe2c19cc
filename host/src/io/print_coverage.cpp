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

using Row = std::array<std::string, 5>;

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

std::string cell_of(const LeafUse& use, std::string_view name) {
  return std::string(word_of(use, name)) + (use.code.empty() ? "" : ": " + use.code);
}

// The native paths of all uses, each with the uses that it has where these are not all.
std::string natives_of(const Uses& uses) {
  std::vector<std::string_view> paths;
  for (const auto& [name, use] : uses) {
    for (const std::string& path : use->native) {
      if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
        paths.emplace_back(path);
      }
    }
  }
  std::string text;
  for (const std::string_view path : paths) {
    std::string names;
    std::size_t count = 0;
    for (const auto& [name, use] : uses) {
      if (std::find(use->native.begin(), use->native.end(), path) != use->native.end()) {
        names.append(names.empty() ? "" : ", ").append(name);
        ++count;
      }
    }
    text.append(text.empty() ? "" : ", ").append(short_native(path));
    if (count < uses.size()) {
      text.append(" (").append(names).append(")");
    }
  }
  return text;
}

Row row_of(const LeafCoverage& leaf) {
  std::string read = cell_of(leaf.read, "read");
  if (leaf.read_config) {
    read += " (config: " + cell_of(*leaf.read_config, "read-config") + ')';
  }
  return {std::string(short_leaf(leaf.path)), cell_of(leaf.edit, "edit"), std::move(read),
          cell_of(leaf.read_back, "read-back"), natives_of(uses_of(leaf))};
}

std::string print_table(const Coverage& coverage) {
  std::vector<Row> rows = {{"LEAF", "EDIT", "READ", "READ-BACK", "NATIVE"}};
  for (const LeafCoverage& leaf : coverage.leaves) {
    rows.push_back(row_of(leaf));
  }
  std::array<std::size_t, std::tuple_size_v<Row>> widths{};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      widths.at(i) = std::max(widths.at(i), row.at(i).size() + 2);
    }
  }
  std::string out;
  for (Row& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      row.at(i).resize(std::max(widths.at(i), row.at(i).size()), ' ');
      line += row.at(i);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out.append(line).append("\n");
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
