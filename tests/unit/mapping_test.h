// The fixture of every test that calls the plug-in: a context on the recording platform, an output
// tree, and input trees written as nested values.
#ifndef MAPPING_TEST_H_
#define MAPPING_TEST_H_

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "recording_platform.h"

namespace recording {

inline constexpr const char* kIfIp = "http://openconfig.net/yang/interfaces/ip";
inline constexpr const char* kInterfaces = "http://openconfig.net/yang/interfaces";
inline constexpr const char* kForeign = "urn:example:foreign";

// An input node to be made.
struct Tree {
  std::optional<std::string> tag;
  std::optional<std::string> value;
  std::vector<Tree> children;
  nidl_yfw_edit_oper operation = NIDL_YFW_EDIT_WRITE;
  const char* module_namespace = kIfIp;
  unsigned flags = 0;  // beyond those that follow from value and children
  std::uint8_t kind = 0;
  std::uint32_t lost_children = 0;  // claimed by the node, but not there

  [[nodiscard]] Tree in(const char* module) const;
  // The node with another operation; `with_all` changes all below, too.
  [[nodiscard]] Tree with(nidl_yfw_edit_oper other) const;
  [[nodiscard]] Tree with_all(nidl_yfw_edit_oper other) const;
};

Tree node(const char* tag, std::vector<Tree> children = {});
Tree leaf(const char* tag, std::optional<std::string> value = std::nullopt);
// A node with a subtree mark that has no children to show: `claimed` many of them.
Tree broken(const char* tag, std::uint32_t claimed);

// The node that a text tells of: TAG[@MODULE][!OPERATION][?COUNT][=VALUE][{CHILD CHILD...}]
// A child has its parent's module and operation unless it has its own; the outermost one has
// openconfig-if-ip's, and "write". "?" is for children that the node claims and does not have, the
// tag "-" for none.
Tree tree_of(const std::string& text);

// An operation by its name in a tree's text.
nidl_yfw_edit_oper operation_of(const std::string& name);

// Puts a text in the place of each occurrence of another.
void replace_all(std::string& text, const std::string& from, const std::string& to);

// Calls as Platform::recorded gives them, from a text that parts them by "; ".
std::string calls(const std::string& text);

// What a function wrote to the trace buffer, a line each: "trc MESSAGE" or "err MESSAGE".
std::string lines_of(const std::string& function);

class MappingTest : public testing::Test {
 protected:
  MappingTest();
  ~MappingTest() override;

  // Fails on what a callback must never leave behind. Runs after every test.
  void TearDown() override;

  // Makes the nodes; they live as long as the test.
  Node* plant(const Tree& tree);

  // Begins the next case of a table: a fresh request on a platform that knows the same interfaces.
  void next(std::uint32_t request_op);
  void request(std::uint32_t operation) { state.request.request_op = operation; }
  // The request's refused tag and error message; "-" for none.
  [[nodiscard]] std::string refused_tag() const;
  [[nodiscard]] std::string error_message() const;

  yfw_map_request_state state{};
  yfw_map_ctx ctx{};
  Node out{};

 private:
  void begin_request(std::uint32_t request_op);
  void end_request();
  Node made(const Tree& tree);
  const char* kept(const std::optional<std::string>& text);

  std::deque<std::vector<Node>> arrays_;
  std::deque<std::string> texts_;
};

// Runs a body in a process of its own, in which the library has not been used yet. The body's
// failures are the test's.
#define IN_FRESH_PROCESS(...)                       \
  do {                                              \
    GTEST_FLAG_SET(death_test_style, "threadsafe"); \
    EXPECT_EXIT(                                    \
        {                                           \
          __VA_ARGS__                               \
          std::exit(HasFailure() ? 1 : 0);          \
        },                                          \
        testing::ExitedWithCode(0), "");            \
  } while (false)

}  // namespace recording

#endif  // MAPPING_TEST_H_
