// Runs the scenarios with each call that the plug-in makes of its platform failing in turn: the
// first, the second, and so on, until a run makes fewer calls. Whatever fails, nothing is left
// behind, and the callback that was entered returns what is documented.
#include <gtest/gtest.h>
#include <wordexp.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <variant>

#include "cases.h"
#include "footing.h"
#include "im/interface_manager.h"
#include "io/save_file.h"
#include "options.h"
#include "result_codes.h"
#include "session.h"
#include "streams.h"

namespace ocifip::faults {
namespace {

// --- what is documented --------------------------------------------------------------------------

// What the entered callback returns.
struct Documented {
  cerrno stops_with = kOk;  // nothing is written any more; 0: it returns what it does undisturbed
  bool is_unseen = false;   // nor is anything else written
  bool stops_late = false;  // what comes before the stop is written
  bool rewrites = false;    // another operation than otherwise may be rewritten
};

const std::map<std::string, Documented> kOutcomes = {
    {"passes it on", {.stops_with = kFault}},
    {"refuses the value", {.stops_with = 0xaaf2f400}},
    {"finds no entry", {.stops_with = kNotFound}},
    {"finds no entry later", {.stops_with = kNotFound, .stops_late = true}},
    {"finds no name", {.stops_with = 0xaaf29e00}},
    {"fails the interface", {.stops_with = 0xaaf29e00}},
    {"fails its configuration", {.stops_with = 0xaaf29e00, .stops_late = true}},
    {"finds no interface", {.stops_with = IMC_INTERFACE_UNKNOWN}},
    {"is refused the lookup", {.stops_with = kUnavailable}},
    {"is out of memory", {.stops_with = 12}},
    {"refuses the address", {.stops_with = 0xaaf2ee00}},
    {"goes on", {}},
    {"goes on without it", {.rewrites = true}},
    {"unseen", {.is_unseen = true}}};

// A call that was made to fail.
struct Failed {
  std::string service;
  std::string walked;  // instance path of the node that was being walked
  std::string texts;   // those of the call, and the service that was called before it
  bool in_second_pass = false;
  std::size_t written = 0;  // characters of calls recorded before
};

constexpr std::string_view kPush = "yfw_map_add_to_node_hierarchy";
constexpr std::string_view kPop = "yfw_map_remove_from_node_hierarchy";

Documented documented(const Failed& failed) {
  static const std::vector<cases::Case> exceptions = cases::read(OCIFIP_CASES "exceptions.txt");
  // An entry walks what is read or deleted a second time, and returns what came of the first.
  if (failed.in_second_pass) {
    return kOutcomes.at("goes on");
  }
  for (const auto& each : exceptions) {
    if (failed.service == each["service"] &&
        failed.walked.find(each["walked"]) != std::string::npos &&
        failed.texts.find(each["texts"]) != std::string::npos) {
      return kOutcomes.at(each["then"]);
    }
  }
  return {.stops_with = kFault};
}

// --- a run ---------------------------------------------------------------------------------------

// A callback that was entered.
struct Entered {
  cerrno result;
  std::vector<bool> overrides;
};

// Of calls that are alike, in one scenario or in several, only the first few fail.
constexpr int kMostAlike = 3;

class Trial {
 public:
  // Lets the nth call fail, none for 0. An undisturbed run, if given, tells what would be without.
  Trial(std::uint64_t nth, const Trial* undisturbed) : nth_(nth), undisturbed_(undisturbed) {}

  void map(const tool::CommandLine& line, Device device);

  // Of an undisturbed run: the calls that are to fail, by their numbers.
  [[nodiscard]] const std::vector<std::uint64_t>& worth_failing() const { return worth_failing_; }
  [[nodiscard]] const std::optional<Failed>& failed() const { return failed_; }

 private:
  // A callback that has been entered and not been left.
  struct Frame {
    Request& request;
    const InputNode& in;
    std::size_t depth;
    std::map<const InputNode*, int> walks{};  // of the nodes that it enters itself
    bool in_second_pass = false;

    // Whether a node of its own that it enters has been walked, or stands for its deletion.
    bool begins_second_pass(const InputNode* node) {
      const auto children = children_of(in);
      const bool is_below = node >= children.data() && node < children.data() + children.size();
      return ++walks[node] > 1 || (in.kind == NIDL_YFW_KIND_LIST && !is_below);
    }
  };

  template <std::size_t kIndex>
  static cerrno enter(yfw_map_ctx* ctx, const InputNode* in, nidl_yfw_datatree* out) {
    return current_->observe(current_->callbacks_[kIndex], ctx, *in, out);
  }
  template <std::size_t... kIndex>
  static constexpr std::array<yfw_map_leaf_callback, sizeof...(kIndex)> stand_ins(
      std::index_sequence<kIndex...>) {
    return {enter<kIndex>...};
  }

  cerrno observe(yfw_map_leaf_callback callback, yfw_map_ctx* ctx, const InputNode& in,
                 nidl_yfw_datatree* out);
  bool fails(const ServiceCall& call);
  void note(const ServiceCall& call, const Frame& frame);
  void check(const Entered& entered, const Footing& footing, bool failed_here, Frame& frame);
  void check_stop(const Entered& entered, const Documented& outcome, const Frame& frame) const;
  void check_going_on(const Entered& entered, bool may_rewrite) const;
  void check_outcome(const Outcome& outcome);

  static inline Trial* current_ = nullptr;

  std::uint64_t nth_;
  const Trial* undisturbed_;
  std::uint64_t calls_ = 0;
  const char* previous_ = "";
  std::vector<yfw_map_leaf_callback> callbacks_;
  std::vector<Frame> frames_;
  std::vector<Entered> entered_;
  static inline std::map<std::string, int> alike_;
  std::vector<std::uint64_t> worth_failing_;
  std::optional<Failed> failed_;
  std::string written_;
};

bool Trial::fails(const ServiceCall& call) {
  // Requests by which the host finds out what is refused record nothing, and are left alone.
  if (frames_.empty() || frames_.back().request.recorder() == nullptr) {
    return false;
  }
  Frame& frame = frames_.back();
  // A pass begins where a node is entered, and has ended when nothing is being walked any more.
  if (frame.request.hierarchy().nodes().size() == frame.depth) {
    frame.in_second_pass = call.service == kPush && frame.begins_second_pass(call.node);
  }
  const char* previous = std::exchange(previous_, call.service);
  ++calls_;
  if (undisturbed_ == nullptr) {
    note(call, frame);
  }
  if (calls_ != nth_) {
    return false;
  }
  failed_ = {call.service, instance_path(models(), frame.request.hierarchy().nodes()),
             call.texts() + " after " + previous, frame.in_second_pass,
             frame.request.recorder()->text().size()};
  return true;
}

// Calls of one service with one path, or by one caller, from one place of the schema are alike; so
// are those that enter or leave siblings.
void Trial::note(const ServiceCall& call, const Frame& frame) {
  const std::string texts = call.texts();
  auto nodes = frame.request.hierarchy().nodes();
  std::string kind = call.service;
  if (call.service == kPop) {
    nodes = nodes.first(nodes.size() - 1);
  } else if (call.service != kPush) {
    kind.append(texts, 0, texts.find(']'));
  }
  for (const InputNode* node : nodes) {
    kind.append("/").append(node->tag);
  }
  if (++alike_[kind + (frame.in_second_pass ? " again" : "")] <= kMostAlike) {
    worth_failing_.push_back(calls_);
  }
}

cerrno Trial::observe(yfw_map_leaf_callback callback, yfw_map_ctx* ctx, const InputNode& in,
                      nidl_yfw_datatree* out) {
  Request& request = Request::of(ctx);
  if (request.recorder() == nullptr) {
    return callback(ctx, &in, out);
  }
  const Footing footing(request, in);
  const bool failed_before = failed_.has_value();
  frames_.push_back({request, in, request.hierarchy().nodes().size()});
  const cerrno result = callback(ctx, &in, out);
  Frame frame = std::move(frames_.back());
  frames_.pop_back();
  entered_.push_back({result, footing.overrides()});
  check(entered_.back(), footing, failed_.has_value() != failed_before, frame);
  return result;
}

void Trial::check(const Entered& entered, const Footing& footing, bool failed_here, Frame& frame) {
  // A list that the framework has not been told of has no edit operation of its own.
  const bool is_untold = failed_ && failed_->service == kPush;
  const std::string disturbed = footing.disturbed();
  EXPECT_TRUE(disturbed.empty() || (is_untold && disturbed == " list-operation")) << disturbed;
  if (undisturbed_ == nullptr || !failed_here) {
    return;
  }
  const Documented outcome = documented(*failed_);
  if (outcome.stops_with != kOk) {
    check_stop(entered, outcome, frame);
  } else {
    // Nor is a node that it has not been told of one in which leaves can be looked up.
    check_going_on(entered, outcome.rewrites || is_untold);
  }
}

void Trial::check_stop(const Entered& entered, const Documented& outcome,
                       const Frame& frame) const {
  EXPECT_EQ(entered.result, outcome.stops_with);
  if (!outcome.stops_late) {
    EXPECT_EQ(frame.request.recorder()->text().substr(failed_->written), "");
  }
}

void Trial::check_going_on(const Entered& entered, bool may_rewrite) const {
  ASSERT_LE(entered_.size(), undisturbed_->entered_.size());
  const Entered& without = undisturbed_->entered_[entered_.size() - 1];
  EXPECT_EQ(entered.result, without.result);
  for (std::size_t i = 0; i < entered.overrides.size(); ++i) {
    EXPECT_TRUE(may_rewrite || !entered.overrides[i] || without.overrides[i]);
  }
}

void Trial::check_outcome(const Outcome& outcome) {
  written_ = outcome.text;
  if (!entered_.empty() && entered_.back().result != kOk) {
    ASSERT_TRUE(outcome.refusal);
    EXPECT_EQ(outcome.refusal->code, entered_.back().result);
  }
  if (failed_ && documented(*failed_).is_unseen) {
    EXPECT_EQ(written_, undisturbed_->written_);
  }
}

void Trial::map(const tool::CommandLine& line, Device device) {
  Session session(std::move(device));
  static constexpr auto kStandIns = stand_ins(std::make_index_sequence<64>());
  for (const EntryCallback& each : callbacks_of(session.entries)) {
    callbacks_.push_back(std::exchange(*each.callback, kStandIns.at(callbacks_.size())));
  }
  session.layer.fails = [this](const ServiceCall& call) { return fails(call); };
  current_ = this;
  const auto document = [&](const std::optional<std::string>& file) {
    return file ? std::optional(tool::read_source(*file, line.input)) : std::nullopt;
  };
  const auto edit = [&](const tool::EditCommand& command) {
    return EditRequest{document(command.document), command.deletes, command.operation};
  };
  Mapper& mapper = session.mapper;
  if (const auto* command = std::get_if<tool::EditCommand>(&line.command)) {
    check_outcome(mapper.edit(edit(*command), Format::kCalls));
  } else if (const auto* apply = std::get_if<tool::ApplyCommand>(&line.command)) {
    check_outcome(mapper.apply(edit(apply->edit), Format::kCalls).outcome);
  } else if (const auto* query = std::get_if<tool::QueryCommand>(&line.command)) {
    const QueryRequest request{document(query->document), query->paths, query->content};
    check_outcome(query->is_answered ? mapper.get(request, Format::kCalls)
                                     : mapper.query(request, Format::kCalls));
  } else if (const auto* report = std::get_if<tool::ReportCommand>(&line.command)) {
    check_outcome(mapper.report({*document(report->data), report->content}, Format::kCalls));
  }
}

// --- scenarios -----------------------------------------------------------------------------------

std::vector<std::filesystem::path> scenarios() {
  std::vector<std::filesystem::path> folders;
  for (const auto& entry : std::filesystem::directory_iterator(OCIFIP_SCENARIOS)) {
    if (std::filesystem::exists(entry.path() / "command")) {
      folders.push_back(entry.path());
    }
  }
  std::sort(folders.begin(), folders.end());
  return folders;
}

// The command line of the scenario of the current folder.
tool::CommandLine command_line() {
  std::string command;
  std::getline(std::ifstream("command"), command);
  wordexp_t words{};
  EXPECT_EQ(wordexp(("ocifip " + command).c_str(), &words, WRDE_NOCMD | WRDE_UNDEF), 0);
  tool::CommandLine line =
      tool::read_command_line(static_cast<int>(words.we_wordc), words.we_wordv);
  wordfree(&words);
  return line;
}

Device device_of(const tool::CommandLine& line) {
  return line.host.device ? read_device(models(), *line.host.device, read_file(*line.host.device))
                          : example_device(models());
}

int failure_count() {
  return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

class Faults : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(Faults, LeaveNothingBehind) {
  std::filesystem::current_path(GetParam());
  const tool::CommandLine line = command_line();
  const Device device = device_of(line);
  Trial undisturbed(0, nullptr);
  try {
    undisturbed.map(line, device);
  } catch (const InputError&) {
    return;  // the host itself turns the scenario down
  }
  for (const std::uint64_t nth : undisturbed.worth_failing()) {
    const int failures = failure_count();
    Trial trial(nth, &undisturbed);
    trial.map(line, device);
    ASSERT_TRUE(trial.failed());
    if (failure_count() != failures) {
      ADD_FAILURE() << "when call " << nth << " failed: " << trial.failed()->service << " "
                    << trial.failed()->texts << " at " << trial.failed()->walked;
    }
  }
  std::cout << undisturbed.worth_failing().size() << " calls failed\n";
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Faults, testing::ValuesIn(scenarios()),
                         [](const auto& scenario) {
                           std::string name = scenario.param.filename();
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace ocifip::faults
