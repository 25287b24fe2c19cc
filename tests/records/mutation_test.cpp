// Damaged records and damaged schemas: whatever comes in, an answer comes out. The sanitizers
// watch.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "native_records.h"
#include "records/schema.h"
#include "records_testing.h"

namespace ocifip {
namespace {

constexpr int kRounds = 20000;

// Changes a text in one to four places: bytes are changed, dropped, doubled or swapped, or the end
// is cut off.
class Damage {
 public:
  std::string operator()(std::string text) {
    for (auto changes = below(4); changes < 4; ++changes) {
      if (text.empty()) break;
      const auto at = below(text.size());
      switch (below(6)) {
        case 0:
          text[at] = static_cast<char>(below(256));
          break;
        case 1:
          text[at] = static_cast<char>(text[at] ^ (1 << below(8)));
          break;
        case 2:
          text.erase(at, 1 + below(8));
          break;
        case 3:
          text.insert(at, text.substr(below(text.size()), below(16)));
          break;
        case 4:
          std::swap(text[at], text[below(text.size())]);
          break;
        default:
          text.resize(at);
      }
    }
    return text;
  }

 private:
  std::size_t below(std::size_t bound) { return engine_() % bound; }

  std::mt19937 engine_{1};  // the same damage in every run
};

constexpr const char* kSchema =
    "$1={inner}{small}C{wide}H{texts}a(s)"
    "$2={record}{ipv4}N{number}D{boolean}b{text}s{bounded}3s{colour}[colour]e{mac}6x%m"
    "{none}a(D){inners}a($1){present}p($1){absent}p($1){pair}2A($1){nested}$1{deep}a(a(C)){handle}"
    "PD%h";
constexpr const char* kFields = R"({"ipv4":"10.0.0.1","number":5,"boolean":true,"text":"hello",
    "bounded":"abc","colour":2,"mac":"00:01:02:03:04:05","inners":[{"small":1,"texts":["a","b"]},
    {"wide":9}],"present":{"texts":["x"]},"pair":[{"small":3}],"deep":[[1,2],[],[3]]})";

TEST(DamagedRecords, AreDecodedOrRefused) {
  const Schema schema(kSchema);
  const TestDescriptor descriptor(kSchema, schema.record().extent.size);
  const std::string record = encoded(kSchema, kFields);
  ASSERT_EQ(decode_and_free(record, descriptor), kOk) << record;
  Damage damage;
  int refused = 0;
  for (int round = 0; round < kRounds; ++round) {
    refused += decode_and_free(damage(record), descriptor) == kOk ? 0 : 1;
  }
  // Most damage shows; a changed number does not.
  EXPECT_GT(refused, kRounds / 2);
  EXPECT_LT(refused, kRounds);
}

TEST(DamagedSchemas, AreReadOrRefused) {
  Damage damage;
  int refused = 0;
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = damage(kSchema);
    try {
      // What is still a schema describes something that can be encoded and decoded.
      const Schema schema(text);
      const TestDescriptor descriptor(text.c_str(), schema.record().extent.size);
      decode_and_free(encoded(text.c_str(), "{}"), descriptor);
    } catch (const RecordError&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, kRounds / 4);
  EXPECT_LT(refused, kRounds);
}

}  // namespace
}  // namespace ocifip
