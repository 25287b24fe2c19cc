// Cases of tests that stand in text files.
//
// A file holds blocks, parted by empty lines, of fields "key: text". A text may stand in the lines
// behind its key instead, each two blanks in: it is then all of these lines, each with a line feed,
// but where a backslash ends the line. "\x" and two digits are a byte. A line that begins with "#"
// is a comment. A block with the field "section" is no case: its fields are also those of the cases
// behind it, up to the next section.
#ifndef CASES_H_
#define CASES_H_

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace cases {

struct Case {
  std::string where;  // file and line
  std::map<std::string, std::string> fields;

  [[nodiscard]] bool has(const std::string& key) const { return fields.count(key) != 0; }
  // The text of a field, "" without it.
  [[nodiscard]] std::string operator[](const std::string& key) const;
  // The same with a line feed behind it, if there is any text.
  [[nodiscard]] std::string lines(const std::string& key) const;
};

// The cases of a file. Throws std::runtime_error for one that holds none, or anything else.
std::vector<Case> read(const std::string& file);

// The words of a text, and its lines.
std::vector<std::string> words_of(const std::string& text);
std::vector<std::string> lines_of(const std::string& text);

inline std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.where; }

}  // namespace cases

#endif  // CASES_H_
