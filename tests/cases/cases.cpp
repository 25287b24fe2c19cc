#include "cases.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace cases {
namespace {

std::string unescaped(std::string text) {
  if (text.ends_with("\\\n")) text.resize(text.size() - 2);
  for (std::size_t at = text.find("\\x"); at != std::string::npos; at = text.find("\\x", at + 1)) {
    text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
  }
  return text;
}

class Reader {
 public:
  void take(const std::string& line, const std::string& where) {
    const std::size_t colon = line.find(':');
    if (line.empty()) {
      end_block();
    } else if (line.starts_with("  ") && !key_.empty()) {
      block_.fields[key_] += unescaped(line.substr(2) + "\n");
    } else if (!line.starts_with("#")) {
      key_ = line.substr(0, colon);
      if (colon == std::string::npos || line[0] == ' ' || block_.has(key_)) {
        throw std::runtime_error(where + ": no field, or a second one");
      }
      block_.where = block_.fields.empty() ? where : block_.where;
      block_.fields[key_] = unescaped(line.substr(std::min(colon + 2, line.size())));
    }
  }

  void end_block() {
    key_.clear();
    Case block = std::exchange(block_, {});
    if (block.has("section")) {
      section_ = block;
    } else if (!block.fields.empty()) {
      block.fields.insert(section_.fields.begin(), section_.fields.end());
      cases_.push_back(block);
    }
  }

  std::vector<Case> cases_;

 private:
  Case section_;
  Case block_;
  std::string key_;
};

}  // namespace

std::string Case::operator[](const std::string& key) const {
  const auto found = fields.find(key);
  return found != fields.end() ? found->second : "";
}

std::string Case::lines(const std::string& key) const {
  const std::string text = (*this)[key];
  return text.empty() || text.back() == '\n' ? text : text + "\n";
}

std::vector<Case> read(const std::string& file) {
  std::ifstream stream(file);
  Reader reader;
  int number = 0;
  for (std::string line; std::getline(stream, line);) {
    reader.take(line,
                std::filesystem::path(file).filename().string() + ":" + std::to_string(++number));
  }
  reader.end_block();
  if (reader.cases_.empty()) throw std::runtime_error(file + ": no cases");
  return reader.cases_;
}

std::vector<std::string> words_of(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace cases
