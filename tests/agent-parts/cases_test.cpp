// The parts of the agent that need neither a device nor a socket, by cases in text files:
//
// framing.txt    bytes: what arrives, in one part and byte by byte. framing: "chunks" or "marks".
//                limit: most bytes of a message (default 100). messages: what comes of it, a line
//                each. error: what it ends with. within: that a message has begun and not ended.
// selection.txt  data: XML elements. filter: elements of a subtree filter, or xpath: an expression,
// with
//                the prefixes a and b. selected: what is chosen. reach: the filter of what the
//                expression can reach, "everything" for no limit. error: why it is none.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "cases.h"
#include "framing.h"
#include "rpc_error.h"
#include "selection.h"

namespace ocifip::agent {
namespace {

using cases::Case;

struct Found {
  std::string messages;
  std::string error;
  bool is_within = false;
};

// Hands bytes over in parts of a size.
Found read_frames(const Case& each, std::size_t part) {
  const std::string bytes = each["bytes"];
  FrameReader reader(each.has("limit") ? std::stoul(each["limit"]) : 100);
  reader.use(each["framing"] == "chunks" ? Framing::kChunks : Framing::kEndMark);
  Found found;
  try {
    for (std::size_t at = 0; at < bytes.size(); at += part) {
      reader.add(std::string_view(bytes).substr(at, part));
      while (const auto message = reader.next()) found.messages += *message + '\n';
    }
  } catch (const FramingError& error) {
    found.error = error.what();
  }
  found.is_within = reader.is_within_message();
  return found;
}

class Framings : public testing::TestWithParam<Case> {};

TEST_P(Framings, AreReadInParts) {
  const Case& each = GetParam();
  for (const std::size_t part : {std::size_t{1}, std::size_t{2}, std::size_t{1000}}) {
    const Found found = read_frames(each, part);
    EXPECT_EQ(found.messages, each.lines("messages")) << each.where << ", in parts of " << part;
    EXPECT_EQ(found.error, each["error"]) << each.where << ", in parts of " << part;
    EXPECT_TRUE(!found.error.empty() || found.is_within == each.has("within")) << each.where;
  }
}

INSTANTIATE_TEST_SUITE_P(Agent, Framings,
                         testing::ValuesIn(cases::read(OCIFIP_CASES "framing.txt")));

TEST(Framing, WritesWhatIsRead) {
  for (const Framing framing : {Framing::kEndMark, Framing::kChunks}) {
    FrameReader reader(100);
    reader.use(framing);
    reader.add(framed("<a/>", framing) + framed("<b/>", framing));
    EXPECT_EQ(reader.next(), "<a/>");
    EXPECT_EQ(reader.next(), "<b/>");
    EXPECT_EQ(reader.next(), std::nullopt);
  }
}

class Selections : public testing::TestWithParam<Case> {};

// Lists are named "entry"; their key is "name".
std::vector<std::string> keys_of(const Path& path) {
  return path.back().second == "entry" ? std::vector<std::string>{"name"}
                                       : std::vector<std::string>();
}

std::vector<Path> places_of(const std::string& name_space, const std::string& name) {
  if (name_space != "urn:a" || name != "p") return {};
  return {{{"urn:a", "top"}, {"urn:a", "p"}}, {{"urn:b", "other"}, {"urn:b", "in"}}};
}

std::string selected(const Case& each) {
  if (!each.has("xpath")) {
    const XmlDocument given = parse_xml("<filter>" + each["filter"] + "</filter>");
    const XmlDocument filter = without_attributes(top(given));
    return select_subtree(each["data"], top(filter));
  }
  return XPathSelection::select_now(each["data"], {each["xpath"], {{"a", "urn:a"}, {"b", "urn:b"}}},
                                    keys_of, std::chrono::seconds(10));
}

TEST_P(Selections, ChooseAsTheirFilterSays) {
  const Case& each = GetParam();
  try {
    EXPECT_EQ(selected(each), each["selected"]) << each.where;
    EXPECT_EQ("", each["error"]) << each.where;
  } catch (const OperationError& error) {
    EXPECT_EQ(error.what(), each["error"]) << each.where;
  }
  if (each.has("reach")) {
    const std::string reach =
        reach_of({each["xpath"], {{"a", "urn:a"}, {"b", "urn:b"}}}, places_of);
    EXPECT_EQ(reach.empty() ? "everything" : reach, each["reach"]) << each.where;
  }
}

INSTANTIATE_TEST_SUITE_P(Agent, Selections,
                         testing::ValuesIn(cases::read(OCIFIP_CASES "selection.txt")));

// What an expression comes to on more data than are looked at without a process of its own.
std::string selected_of_much(const std::string& xpath, std::chrono::seconds patience) {
  std::string data = "<top xmlns=\"urn:a\">";
  for (int i = 0; i < 3000; ++i) data += "<entry><name>n" + std::to_string(i) + "</name></entry>";
  try {
    return XPathSelection::select_now(data + "</top>", {xpath, {{"a", "urn:a"}}}, keys_of,
                                      patience);
  } catch (const OperationError& error) {
    return error.errors.front().tag + ": " + error.what();
  }
}

TEST(Selection, OfMuchDataIsAsThatOfLittle) {
  const std::chrono::seconds patience(20);
  EXPECT_EQ(selected_of_much("/a:top/a:entry[a:name='n2999']", patience),
            "<top xmlns=\"urn:a\"><entry xmlns=\"urn:a\"><name>n2999</name></entry></top>");
  EXPECT_EQ(selected_of_much("/a:top/a:entry[contains(., 'x')]", patience), "");
  EXPECT_EQ(selected_of_much("/a:top[", patience),
            "invalid-value: \"/a:top[\" is no XPath expression that can be evaluated");
  const std::string all = selected_of_much("/", patience);
  EXPECT_EQ(all.size(), std::string("<top xmlns=\"urn:a\"></top>").size() + 3000 * 29 + 10890);
}

// However little the data are.
TEST(Selection, OfLongTextsEnds) {
  const std::string slow = "//*[//*[//*[contains(translate('" + std::string(5000, 'a') + "', '" +
                           std::string(5000, 'b') + "', ''), 'q')]]]";
  std::string data;
  for (int i = 0; i < 100; ++i) data += "<a xmlns=\"urn:a\"/>";
  try {
    XPathSelection::select_now(data, {slow, {}}, keys_of, std::chrono::seconds(1));
    FAIL() << "it is done";
  } catch (const OperationError& error) {
    EXPECT_EQ(error.errors.front().tag, "resource-denied");
  }
}

TEST(Selection, EndsWhenItTakesTooMuch) {
  const std::string slow = "//*[//*[contains(string(/), 'x')]]";
  EXPECT_EQ(selected_of_much(slow, std::chrono::seconds(1)),
            "resource-denied: \"" + slow + "\" takes too long or too much memory");
}

}  // namespace
}  // namespace ocifip::agent
