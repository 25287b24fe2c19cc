#include "device/address_codec.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "device/device_directory.h"
#include "guarded.h"
#include "im/address_manager.h"
#include "inet/inet.h"
#include "result_codes.h"

namespace ocifip {
namespace {

using Bytes = std::span<const std::uint8_t>;

// Types of elements. The family comes first; addresses are a prefix length and the address's bytes.
enum ElementType : std::uint8_t {
  kFamily = 1,  // one byte
  kPrimary = 2,
  kSecondary = 3,
  kRemainder = 4,  // handle of the interface, and number of the first secondary left with it
};

constexpr std::size_t kHeadSize = 2;
constexpr std::size_t kFamilySize = kHeadSize + 1;
constexpr std::size_t kRemainderSize = kHeadSize + 8;

std::size_t address_size(std::uint32_t family) { return family == OMBRIX_AF_INET ? 4 : 16; }

void append_number(std::vector<std::uint8_t>& bytes, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<std::uint8_t>(number >> shift));
  }
}

std::uint32_t read_number(Bytes bytes) {
  std::uint32_t number = 0;
  for (const std::uint8_t byte : bytes.first(4)) {
    number = number << 8 | byte;
  }
  return number;
}

void append_address(std::vector<std::uint8_t>& bytes, ElementType type,
                    const DeviceAddress& address, std::uint32_t family) {
  const std::size_t size = address_size(family);
  bytes.push_back(type);
  bytes.push_back(static_cast<std::uint8_t>(1 + size));
  bytes.push_back(static_cast<std::uint8_t>(address.prefix_length));
  bytes.insert(bytes.end(), address.bytes.data(), address.bytes.data() + size);
}

// A decoded list with the storage that its pointers lead to.
struct OwnedList : iparm_list {
  iparm_record record{};
  std::vector<iparm_secondary> secondary_storage;

  OwnedList() : iparm_list{} {}
  void settle() {
    record.secondaries = secondary_storage.data();
    record.secondary_count = static_cast<std::uint32_t>(secondary_storage.size());
    records = &record;
    count = 1;
  }
};

class Decoder {
 public:
  Decoder(std::uint32_t family, OwnedList& list) : family_(family), list_(list) {}

  // False when the bytes are no attribute of the family.
  bool decode(Bytes bytes) {
    while (bytes.size() >= kHeadSize && bytes.size() - kHeadSize >= bytes[1]) {
      if (!take(bytes[0], bytes.subspan(kHeadSize, bytes[1]))) {
        return false;
      }
      bytes = bytes.subspan(kHeadSize + bytes[1]);
    }
    return bytes.empty() && family_known_;
  }

 private:
  bool take(std::uint8_t type, Bytes value) {
    switch (type) {
      case kFamily:
        family_known_ = value.size() == 1 && value[0] == family_;
        return family_known_;
      case kPrimary:
        return take_address(value, list_.record.primary, list_.record.prefix_length);
      case kSecondary: {
        iparm_secondary& secondary = list_.secondary_storage.emplace_back();
        return take_address(value, secondary.address, secondary.prefix_length);
      }
      case kRemainder:
        return value.size() == 8 && take_remainder(read_number(value), read_number(value.last(4)));
      default:
        return false;
    }
  }

  bool take_address(Bytes value, std::uint8_t* address, std::uint32_t& prefix_length) const {
    if (value.size() != 1 + address_size(family_)) {
      return false;
    }
    prefix_length = value[0];
    std::copy(value.begin() + 1, value.end(), address);
    return true;
  }

  bool take_remainder(std::uint32_t handle, std::size_t first) {
    const DeviceDirectory* directory = DeviceDirectory::active();
    const InterfaceRecord* record = directory == nullptr ? nullptr : directory->interface(handle);
    if (record == nullptr) {
      return false;
    }
    const auto& secondaries =
        family_ == OMBRIX_AF_INET ? record->ipv4.secondaries : record->ipv6.secondaries;
    for (std::size_t i = first; i < secondaries.size(); ++i) {
      iparm_secondary& secondary = list_.secondary_storage.emplace_back();
      secondary.prefix_length = secondaries[i].prefix_length;
      std::copy(secondaries[i].bytes.begin(), secondaries[i].bytes.end(), secondary.address);
    }
    return true;
  }

  std::uint32_t family_;
  OwnedList& list_;
  bool family_known_ = false;
};

}  // namespace

std::vector<std::uint8_t> encode_addresses(const DeviceAddresses& addresses, std::uint32_t family,
                                           std::uint32_t handle, std::size_t room) {
  std::vector<std::uint8_t> bytes = {kFamily, 1, static_cast<std::uint8_t>(family)};
  append_address(bytes, kPrimary, addresses.primary.value_or(DeviceAddress()), family);
  const std::size_t element = kHeadSize + 1 + address_size(family);
  const std::size_t left = room - bytes.size();
  std::size_t fitting = addresses.secondaries.size();
  if (fitting * element > left) {
    fitting = (left - kRemainderSize) / element;
  }
  for (std::size_t i = 0; i < fitting; ++i) {
    append_address(bytes, kSecondary, addresses.secondaries[i], family);
  }
  if (fitting < addresses.secondaries.size()) {
    bytes.insert(bytes.end(), {kRemainder, 8});
    append_number(bytes, handle);
    append_number(bytes, static_cast<std::uint32_t>(fitting));
  }
  return bytes;
}

bool is_room_for_addresses(std::size_t room) {
  const std::size_t primary = kHeadSize + 1 + IPARM_ADDRESS_SIZE;
  return room >= kFamilySize + primary + kRemainderSize;
}

}  // namespace ocifip

using ocifip::kInvalidArgument;
using ocifip::kOk;
using ocifip::kUndecodable;

extern "C" {

cerrno iparm_al_c_init(event_manager* manager) {
  return manager == nullptr ? kInvalidArgument : kOk;
}

cerrno iparm_al_c_tlv2addr(const uint8_t* data, uint32_t length, uint32_t family,
                           iparm_list** list) {
  if (data == nullptr || list == nullptr) {
    return kInvalidArgument;
  }
  return ocifip::guarded([&] {
    auto decoded = std::make_unique<ocifip::OwnedList>();
    if (!ocifip::Decoder(family, *decoded).decode({data, length})) {
      return kUndecodable;
    }
    decoded->settle();
    *list = decoded.release();
    return kOk;
  });
}

void iparm_al_c_free(iparm_list* list) { delete static_cast<ocifip::OwnedList*>(list); }

}  // extern "C"
