// The codec: what records are decoded into, and what values they are encoded from.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>

#include "cases.h"
#include "native_records.h"
#include "records/registry.h"
#include "records_testing.h"

namespace ocifip {
namespace {

// --- every type ----------------------------------------------------------------------------------

const cases::Case kEvery = cases::read(OCIFIP_CASES "every-type.txt").at(0);
const std::string kEverySchema = kEvery["schema"];

struct Inner {
  std::uint8_t small;
  std::uint64_t wide;
};

template <typename Item>
struct Array {
  std::uint32_t count;
  const Item* items;
};

struct Every {
  std::uint32_t ipv4;
  std::uint32_t number;
  std::int32_t integer;
  std::uint64_t wide;
  std::uint8_t small;
  std::uint32_t boolean;
  const char* text;
  const char* bounded;
  std::uint32_t enumeration;
  std::uint8_t mac[6];
  char chars[4];
  std::uint8_t ipv6[16];
  std::uint8_t raw[3];
  Array<std::uint16_t[1]> none;
  Array<Inner> inners;
  Array<const char*> texts;
  const Inner* present;
  const Inner* absent;
  Inner pair[2];
  Inner nested;
  alignas(8) std::uint32_t handle;
  Array<Array<std::uint8_t>> nested_arrays;
};

std::string show(const Inner* inner) {
  return inner == nullptr ? "-"
                          : std::to_string(inner->small) + ':' + std::to_string(inner->wide) + ' ';
}

std::string hexadecimal(const void* bytes, std::size_t size) {
  std::ostringstream text;
  text << std::hex;
  for (std::size_t i = 0; i < size; ++i) {
    const auto byte = static_cast<const std::uint8_t*>(bytes)[i];
    text << (byte < 16 ? "0" : "") << static_cast<unsigned>(byte);
  }
  return text.str();
}

std::string show(const Every& every) {
  std::ostringstream text;
  text << hexadecimal(&every.ipv4, 4) << ' ' << every.number << ' ' << every.integer << ' '
       << every.wide << ' ' << unsigned{every.small} << ' ' << every.boolean << ' ' << every.text
       << ' ' << every.bounded << ' ' << every.enumeration << '\n'
       << hexadecimal(every.mac, 6) << ' ' << every.chars << ' ' << hexadecimal(every.ipv6, 16)
       << ' ' << hexadecimal(every.raw, 3) << '\n'
       << every.none.count << (every.none.items == nullptr ? " null\n" : " items\n");
  for (std::uint32_t i = 0; i < every.inners.count; ++i) text << show(&every.inners.items[i]);
  for (std::uint32_t i = 0; i < every.texts.count; ++i) text << '"' << every.texts.items[i] << '"';
  text << '\n'
       << show(every.present) << show(every.absent) << '\n'
       << show(&every.pair[0]) << show(&every.pair[1]) << show(&every.nested) << every.handle;
  for (std::uint32_t i = 0; i < every.nested_arrays.count; ++i) {
    const auto& array = every.nested_arrays.items[i];
    text << ' ' << hexadecimal(array.items, array.count);
  }
  return text.str();
}

TEST(Codec, DecodesEveryType) {
  const TestDescriptor descriptor(kEverySchema.c_str(), sizeof(Every));
  const ExactBytes bytes(test_record(kEvery["digits"]));
  Every every;
  std::memset(static_cast<void*>(&every), 0xee, sizeof every);
  ASSERT_EQ(bag_decode(bytes.data(), bytes.length(), &every, &descriptor), kOk);
  EXPECT_EQ(show(every), kEvery["shown"]);
  bag_free_indirections(&every, &descriptor);
  bag_free_indirections(&every, &descriptor);  // there is nothing left to free
}

TEST(Codec, DecodesByTheCompactSchemaWhenThereIsNoOther) {
  TestDescriptor descriptor("", sizeof(Inner));
  descriptor.compact_schema = "$1=CH";
  const ExactBytes bytes(test_record("05 00000000000000ff"));
  Inner inner{};
  ASSERT_EQ(bag_decode(bytes.data(), bytes.length(), &inner, &descriptor), kOk);
  EXPECT_EQ(show(&inner), "5:255 ");
}

TEST(Codec, EncodesEveryType) {
  const auto digits = [](const std::string& bytes) {
    return hexadecimal(bytes.data(), bytes.size());
  };
  EXPECT_EQ(digits(encoded(kEverySchema.c_str(), kEvery["fields"])),
            digits(test_record(kEvery["digits"])));
}

TEST(Codec, WhatIsNotGivenIsZero) {
  const TestDescriptor descriptor(kEverySchema.c_str(), sizeof(Every));
  const ExactBytes bytes(encoded(kEverySchema.c_str(), "{}"));
  Every every;
  ASSERT_EQ(bag_decode(bytes.data(), bytes.length(), &every, &descriptor), kOk);
  EXPECT_EQ(show(every),
            "00000000 0 0 0 0 0   0\n000000000000  00000000000000000000000000000000 000000\n"
            "0 null\n\n--\n0:0 0:0 0:0 0");
  bag_free_indirections(&every, &descriptor);
}

// --- damaged records -----------------------------------------------------------------------------

TEST(Codec, RefusesARecordThatIsCutOff) {
  const TestDescriptor descriptor(kEverySchema.c_str(), sizeof(Every));
  const std::string whole = test_record(kEvery["digits"]);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(decode_and_free(whole.substr(0, length), descriptor), kRecordMalformed) << length;
  }
  EXPECT_EQ(decode_and_free(whole + '\0', descriptor), kRecordMalformed);
}

TEST(Codec, RefusesDamagedRecords) {
  for (const auto& each : cases::read(OCIFIP_CASES "damaged.txt")) {
    SCOPED_TRACE(each.where);
    const std::string schema = each["schema"];
    const std::size_t size = std::stoul(each["bytes"]);
    const TestDescriptor descriptor(schema.c_str(), size);
    std::vector<std::uint64_t> structure(size / 8 + 1, ~std::uint64_t{0});
    const ExactBytes bytes(test_record(each["digits"]));
    EXPECT_EQ(
        cerr_strerror(bag_decode(bytes.data(), bytes.length(), structure.data(), &descriptor)),
        each["result"]);
    // What the caller frees after a failure is a structure of zeros.
    EXPECT_EQ(hexadecimal(structure.data(), size), std::string(2 * size, '0'));
  }
}

TEST(Codec, RefusesOtherRecords) {
  TestDescriptor descriptor("$1=C", 1);
  const std::string record = test_record("01");
  EXPECT_EQ(decode_and_free(record, descriptor), kOk);
  descriptor.name = "tesu";
  EXPECT_EQ(decode_and_free(record, descriptor), kRecordMismatch);
  descriptor.name = "test";
  descriptor.major_version = 2;
  EXPECT_EQ(decode_and_free(record, descriptor), kRecordMismatch);
  descriptor.major_version = 1;
  descriptor.minor_version = 1;
  EXPECT_EQ(decode_and_free(record, descriptor), kRecordMismatch);
  descriptor.minor_version = 2;
  EXPECT_EQ(decode_and_free("bag\x02" + record.substr(4), descriptor), kRecordMalformed);
}

TEST(Codec, RefusesMissingArguments) {
  const TestDescriptor descriptor("$1=C", 1);
  char structure = 'x';
  EXPECT_EQ(bag_decode(nullptr, 1, &structure, &descriptor), kInvalidArgument);
  EXPECT_EQ(bag_decode("", 1, nullptr, &descriptor), kInvalidArgument);
  EXPECT_EQ(bag_decode("", 1, &structure, nullptr), kInvalidArgument);
  EXPECT_EQ(bag_decode(nullptr, 0, &structure, &descriptor), kRecordMalformed);
  bag_free_indirections(nullptr, &descriptor);
  bag_free_indirections(&structure, nullptr);
}

// --- values --------------------------------------------------------------------------------------

TEST(Values, AreEncodedOrTurnedDown) {
  for (const auto& each : cases::read(OCIFIP_CASES "values.txt")) {
    const std::string schema = "$1={in}{a}D$2={test}{v}" + each["type"];
    const std::string record = encoded(schema.c_str(), R"({"v":)" + each["json"] + '}');
    const std::string head = test_record("");
    EXPECT_EQ(record.starts_with(head)
                  ? hexadecimal(record.data() + head.size(), record.size() - head.size())
                  : record,
              each["expected"])
        << each.where;
  }
}

TEST(Encoding, SaysThatARecordHasNoSchema) {
  const auto message = [](const RegisteredRecord& record, const char* fields) {
    try {
      return encode_record(record, nlohmann::ordered_json::parse(fields), "here", test_handles);
    } catch (const InputError& error) {
      return std::string(error.what());
    }
  };
  EXPECT_EQ(message({"test", 1, 2, {}}, "{}"),
            "here: the schema of the record \"test\" is empty: this build has none");
  EXPECT_EQ(message({"test", 1, 2, Schema("$1=C")}, "{\"a\":1}"),
            "here: the schema of the record \"test\" names no fields");
  EXPECT_EQ(message({"test", 1, 2, Schema("$1=C")}, "{}"), test_record("00"));
}

// --- the platform's records ----------------------------------------------------------------------

TEST(Records, AnInterfacesDetailIsReadThroughItsStructure) {
  const RegisteredRecord record{"ipv4_if_detail", 4, 2, Schema(ipv4_if_detail_bag.named_schema)};
  const auto fields = nlohmann::ordered_json::parse(R"({
    "PrimaryAddress": "10.0.0.1", "VRFName": "default", "PrefixLength": 24, "mLACPActive": true,
    "MulticastGroups": [{"GroupAddress": "224.0.0.5"}], "OperFlags": 1311768467463790320,
    "SecondaryAddress": [{"Address": "10.0.1.1", "PrefixLength": 25, "RouteTag": 9}],
    "MultiACL": {"outbound": [{"Name": "first"}, {"Name": "second"}]},
    "HelperAddress": {"AddressArray": ["10.9.9.9"]}, "RPF": {"Mode": 3},
    "BGP_PA": {"Output": {"Destination": true}}, "GWAddressRcvd": true})");
  const ExactBytes bytes(encode_record(record, fields, "here", test_handles));
  ipv4_if_detail detail;
  ASSERT_EQ(bag_decode(bytes.data(), bytes.length(), &detail, &ipv4_if_detail_bag), kOk);
  std::ostringstream shown;
  const auto address = [](const std::uint32_t& word) { return hexadecimal(&word, 4); };
  shown << address(detail.PrimaryAddress) << ' ' << detail.VRFName << ' ' << detail.PrefixLength
        << ' ' << detail.mLACPActive << ' ' << detail.MulticastGroups.count << ' '
        << address(detail.MulticastGroups.items[0].GroupAddress) << ' ' << std::hex
        << detail.OperFlags << std::dec << '\n'
        << detail.SecondaryAddress.count << ' ' << address(detail.SecondaryAddress.items[0].Address)
        << ' ' << detail.SecondaryAddress.items[0].PrefixLength << ' '
        << detail.SecondaryAddress.items[0].RouteTag << " \"" << detail.MultiACL.inbound[4].Name
        << "\" " << detail.MultiACL.outbound[1].Name << ' '
        << address(detail.HelperAddress->AddressArray.items[0]) << ' ' << detail.RPF.Mode << ' '
        << detail.BGP_PA.Input.Destination << detail.BGP_PA.Output.Destination << ' '
        << detail.GWAddressRcvd << detail.MTU;
  EXPECT_EQ(shown.str(),
            "0a000001 default 24 1 1 e0000005 123456789abcdef0\n"
            "1 0a000101 25 9 \"\" second 0a090909 3 01 10");
  bag_free_indirections(&detail, &ipv4_if_detail_bag);
  EXPECT_EQ(detail.HelperAddress, nullptr);
}

// --- the registry --------------------------------------------------------------------------------

TEST(Registry, TakesBatches) {
  auto& registry = RecordRegistry::instance();
  const TestDescriptor descriptor("$1=C", 1);
  EXPECT_EQ(bag_register(&descriptor), kRecordBatch);
  EXPECT_EQ(bag_register_end(), kRecordBatch);
  EXPECT_EQ(bag_register(nullptr), kInvalidArgument);

  EXPECT_EQ(bag_register_start(0, 0, 0, 0, 0, 0), kOk);
  EXPECT_EQ(bag_register_start(0, 0, 0, 0, 0, 0), kRecordBatch);
  EXPECT_EQ(bag_register(&descriptor), kOk);
  bag_register_abort();
  EXPECT_EQ(registry.find("test"), nullptr);

  EXPECT_EQ(bag_register_start(0, 0, 0, 0, 0, 0), kOk);
  EXPECT_EQ(bag_register(&descriptor), kOk);
  EXPECT_EQ(registry.find("test"), nullptr);
  EXPECT_EQ(bag_register_end(), kOk);
  ASSERT_NE(registry.find("test"), nullptr);
  EXPECT_EQ(registry.find("test")->minor_version, 2u);
}

TEST(Registry, RefusesDescriptorsThatCannotBeUsed) {
  ASSERT_EQ(bag_register_start(0, 0, 0, 0, 0, 0), kOk);
  TestDescriptor descriptor("$1=Q", 1);
  EXPECT_EQ(bag_register(&descriptor), kRecordSchemaMalformed);
  descriptor.named_schema = "$1=D";
  EXPECT_EQ(bag_register(&descriptor), kRecordSchemaLayout);
  descriptor.named_schema = nullptr;
  EXPECT_EQ(bag_register(&descriptor), kOk);
  descriptor.format = 2;
  EXPECT_EQ(bag_register(&descriptor), kInvalidArgument);
  bag_register_abort();
}

}  // namespace
}  // namespace ocifip
