// What the types of leaves take, by libyang.
#ifndef OCIFIP_HOST_IO_LEAF_TYPES_H_
#define OCIFIP_HOST_IO_LEAF_TYPES_H_

#include <string>
#include <string_view>
#include <unordered_map>

struct lysc_node;
struct lysc_type;

namespace ocifip {

// Whether the type of a leaf or leaf-list takes a text. What a reference leads to need not be
// there. `canonical`, when given, becomes the form that libyang keeps the value in.
bool takes(const lysc_node* leaf, std::string_view text, std::string* canonical = nullptr);

// Whether a text is plainly a number of a type of integers, as JSON writes it too, which is the
// case of most. Others that the type takes are libyang's to judge.
bool is_plain_number(const lysc_type* type, std::string_view text);

// Whether the values of a leaf are IPv4 or IPv6 addresses. A type of addresses is known by what it
// takes: modules define their own, as patterns of strings.
bool has_ipv4_values(const lysc_node* leaf);
bool has_ipv6_values(const lysc_node* leaf);

// What a leaf takes, to be put behind "is not": "a number from 0 to 32", "one of ALL, DISABLE".
std::string expected_value(const lysc_node* leaf);

// The same as takes() for the many values of a document.
class ValueCheck {
 public:
  bool takes(const lysc_node* leaf, const std::string& value);

  // Returns whether the leaf takes the value. A number is put into the form that it has in a
  // mapping: "+024" becomes "24". An identity of a module that is not among the models, or of a
  // prefix that is the document's own, cannot be judged and is taken.
  bool settle(const lysc_node* leaf, std::string& value);

 private:
  // Whether a type takes a value without a look at the type's restrictions, or has just taken it.
  [[nodiscard]] bool is_known(const lysc_type* type, const std::string& value) const;

  // The value that a type took last. The key of an entry comes again in its settings, and many
  // settings are alike.
  std::unordered_map<const lysc_type*, std::string> taken_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_LEAF_TYPES_H_
