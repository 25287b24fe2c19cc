// The frame of a callback: its lines on both channels, its argument checks, and the null context.

#include <map>
#include <set>
#include <tuple>

#include "mapping_test.h"
#include "models.h"

using namespace recording;

namespace {

// A callback of either form, entered without children.
struct Callback {
  std::string name;
  yfw_map_leaf_callback call;
  std::string tag;
  bool silent = false;  // an augment hook, which writes neither a start nor an end line

  friend std::ostream& operator<<(std::ostream& stream, const Callback& callback) {
    return stream << callback.name;
  }
};

// clang-format off
#define LEAF_FORM(function, ...) Callback{#function, function, __VA_ARGS__}
#define CONTAINER_FORM(function, tag) \
  Callback{#function, [](yfw_map_ctx* c, const Node* in, Node* o) { return function(c, in, 0, o); }, tag}
// clang-format on

const std::vector<Callback> kCallbacks = {
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_mtu, "mtu"),
    LEAF_FORM(ymap_oc_2_ombrix_v4_dhcpclient, "dhcp-client"),
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_lvlb_ipv4_config_enabled, "enabled"),
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_duck_map_list, "address"),
    CONTAINER_FORM(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4, "ipv4"),
    CONTAINER_FORM(ymap_ox_ocifip_openconfigifip_duck_map_container, "config"),
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_lvla_ipv4, "ipv4"),
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_lvla_ipv4_addresses_address, "address"),
    LEAF_FORM(ymap_ox_ocifip_openconfiginterfaces_lvla_interfaces, "interfaces"),
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface, "ipv4"),
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_lvla_ipv4_parse_augments, "foreign", true),
    LEAF_FORM(ymap_ox_ocifip_openconfigifip_lvla_subinterface_parse_augments, "foreign", true),
};

using Sites = MappingTest;

class Frame : public MappingTest, public testing::WithParamInterface<Callback> {};

TEST_P(Frame, WritesItsStartAndItsEnd) {
  request(YFW_MAP_REQUEST_READ_CONFIG);
  GetParam().call(&ctx, plant(node(GetParam().tag.c_str())), &out);
  const std::string written = lines_of(GetParam().name);
  const bool silent = GetParam().silent;
  EXPECT_EQ(written.starts_with("trc Start\n"), !silent) << written;
  EXPECT_EQ(written.ends_with("trc End\n"), !silent) << written;
}

TEST_P(Frame, ReportsMissingArguments) {
  Node* in = plant(node(GetParam().tag.c_str()));
  const std::string name = " " + GetParam().name + " ";
  const std::string start = GetParam().silent ? "" : "trc" + name + "Start; ";
  for (const bool without_out : {false, true}) {
    SCOPED_TRACE(without_out ? "without output tree" : "without node");
    platform.forget_calls();
    EXPECT_EQ(GetParam().call(&ctx, without_out ? in : nullptr, without_out ? nullptr : &out),
              0xaaf2a000);
    EXPECT_EQ(platform.recorded(~0U),
              calls(start + "err" + name + "Invalid arguments passed!; error_path"));
  }
}

TEST_P(Frame, StopsTheProcessWithoutContext) {
  const Node* in = plant(node("x"));
  EXPECT_DEATH(GetParam().call(nullptr, in, &out),
               "ymap_.*:[0-9]+: cerrno " + GetParam().name + "\\(.*`NULL != ctx' failed");
}

INSTANTIATE_TEST_SUITE_P(Callbacks, Frame, testing::ValuesIn(kCallbacks),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(Sites, HaveWordsOfTheirOwn) {
  platform.logs_errors = platform.logs_traces = true;
  std::map<std::string, const void*> words;
  for (const Callback& each : kCallbacks) {
    Node* in = plant(node(each.tag.c_str()).in(kForeign));
    for (int round = 0; round < 2; ++round) {
      each.call(&ctx, in, &out);
      each.call(&ctx, nullptr, &out);
    }
  }
  ASSERT_EQ(platform.log.size(), platform.buffer.size());
  for (std::size_t i = 0; i < platform.log.size(); ++i) {
    EXPECT_EQ(platform.log[i].word_value, 0xffffffff);
    const std::string& line = platform.buffer[i].text;
    const std::string site = line.substr(line.find(':'));
    const auto known = words.emplace(site, platform.log[i].word).first;
    EXPECT_EQ(known->second, platform.log[i].word) << "changes: " << site;
  }
  std::set<const void*> distinct;
  for (const auto& [site, word] : words) {
    EXPECT_TRUE(distinct.insert(word).second) << "shared: " << site;
  }
  EXPECT_GT(distinct.size(), kCallbacks.size());
}

class Channels : public MappingTest {
 protected:
  // Writes "Start" and "Invalid arguments passed!".
  cerrno write_two_lines() {
    return ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_mtu(&ctx, nullptr, &out);
  }
  [[nodiscard]] std::string context() const {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "ctx=%p,", static_cast<const void*>(&ctx));
    return text.data();
  }
  // The line with its source line, a number above 0, as "LINE".
  [[nodiscard]] static std::string without_source_line(std::string line) {
    const std::size_t from = line.find(':', line.find(": ", line.find(": ") + 1) + 1) + 1;
    const std::size_t digits = line.find_first_not_of("0123456789", from) - from;
    EXPECT_GT(std::stoi(line.substr(from, digits)), 0) << line;
    return line.replace(from, digits, "LINE");
  }
};

TEST_F(Channels, DebugLogGetsPrefixContextAndMessage) {
  platform.logs_errors = platform.logs_traces = true;
  write_two_lines();
  ASSERT_EQ(platform.log.size(), 2U);
  for (const auto& [line, channel, prefix, message] :
       {std::tuple{platform.log[0], ctx.trace_channel, "TRC: YFW: ", "Start"},
        {platform.log[1], ctx.error_channel, "ERR: YFW: ", "Invalid arguments passed!"}}) {
    EXPECT_EQ(line.channel, channel);
    EXPECT_EQ(line.reserved, 0U);
    EXPECT_EQ(line.format, std::string(prefix) + "ctx=%p," + message);
    EXPECT_EQ(line.text, prefix + context() + message);
  }
}

TEST_F(Channels, TraceBufferGetsSequenceFunctionLineContextAndMessage) {
  platform.trace_sequence = 40;
  write_two_lines();
  ASSERT_EQ(platform.buffer.size(), 2U);
  for (const BufferLine& each : platform.buffer) {
    EXPECT_EQ(each.buffer, ctx.trace_buffer);
    EXPECT_EQ(each.flags, 0x10101000000U);
  }
  const std::string place =
      ": ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_mtu:LINE " + context();
  EXPECT_EQ(without_source_line(platform.buffer[0].text), "#41: TRC" + place + "Start");
  EXPECT_EQ(without_source_line(platform.buffer[1].text),
            "#42: ERR" + place + "Invalid arguments passed!");
}

TEST_F(Channels, AreIndependent) {
  for (const unsigned wanted : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
    SCOPED_TRACE(wanted);
    next(YFW_MAP_REQUEST_MERGE);
    platform.logs_errors = (wanted & 1) != 0;
    platform.logs_traces = (wanted & 2) != 0;
    ctx.trace_buffer_on = (wanted & 4) != 0;
    EXPECT_EQ(write_two_lines(), 0xaaf2a000);
    std::string logged;
    for (const LogLine& each : platform.log) {
      logged += each.text.substr(0, 3);
    }
    EXPECT_EQ(logged,
              std::string(platform.logs_traces ? "TRC" : "") + (platform.logs_errors ? "ERR" : ""));
    EXPECT_EQ(platform.buffer.size(), ctx.trace_buffer_on != 0 ? 2U : 0U);
    EXPECT_EQ(platform.trace_sequence, platform.buffer.size());
  }
}

TEST_F(Channels, TraceBufferLinesAreCutAndDebugLinesAreNot) {
  platform.logs_traces = true;
  const std::string tag(300, 't');
  request(YFW_MAP_REQUEST_READ_CONFIG);
  ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface(
      &ctx, plant(node("subinterface", {node(tag.c_str())})), &out);
  ASSERT_GE(platform.buffer.size(), 2U);
  EXPECT_EQ(platform.buffer[1].text.size(), 249U);
  EXPECT_TRUE(platform.buffer[1].text.ends_with("ttt"));
  EXPECT_TRUE(platform.log[1].text.ends_with("Processing tag '" + tag + "'"));
}

}  // namespace
