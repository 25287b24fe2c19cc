// Makes the structure of a decoded record from the list of its fields.
//
// A list of fields has a row each, and is read by what it is called with: RECORD_MEMBER makes the
// members of the structure here, and the same rows make the record's schema.
//
//   FIELD(kind, name, arguments of the kind)
//
// The kinds:
//
//   IPV4              IPv4 address in network order
//   U8 U32 U64        unsigned number
//   I32               32-bit number, with or without a sign
//   HANDLE            interface handle; FILLED_HANDLE stands behind alignment filler
//   BOOL              0 or 1, in 32 bits
//   ENUM              enumeration; argument: its name
//   TEXT              text; BOUNDED_TEXT has at most so many characters
//   CHARS             NUL-padded characters; argument: their number
//   MAC IPV6          address of 6 or 16 bytes
//   STRUCT            structure; arguments: its type and its number in the schema
//   OPTIONAL          the same, or nothing
//   FIVE              five of them
//   ARRAY             any number of them
//   ARRAY_IPV4        any number of addresses; ARRAY_I32 of numbers
//
// In a structure a counted array is {count, items}, an optional member a pointer that may be null,
// a text a pointer to NUL-terminated characters, and a boolean 32 bits. What the pointers lead to
// comes from bag_decode and goes with bag_free_indirections.
#ifndef RECORDS_RECORD_MEMBERS_H_
#define RECORDS_RECORD_MEMBERS_H_

#include <cstdint>

#define RECORD_MEMBER(kind, ...) RECORD_MEMBER_##kind(__VA_ARGS__)
#define RECORD_MEMBER_IPV4(name) std::uint32_t name;
#define RECORD_MEMBER_U8(name) std::uint8_t name;
#define RECORD_MEMBER_U32(name) std::uint32_t name;
#define RECORD_MEMBER_U64(name) std::uint64_t name;
#define RECORD_MEMBER_I32(name) std::uint32_t name;
#define RECORD_MEMBER_HANDLE(name) std::uint32_t name;
#define RECORD_MEMBER_FILLED_HANDLE(name) alignas(8) std::uint32_t name;
#define RECORD_MEMBER_BOOL(name) std::uint32_t name;
#define RECORD_MEMBER_ENUM(name, enumeration) std::uint32_t name;
#define RECORD_MEMBER_TEXT(name) const char* name;
#define RECORD_MEMBER_BOUNDED_TEXT(name, bound) const char* name;
#define RECORD_MEMBER_CHARS(name, size) char name[size];
#define RECORD_MEMBER_MAC(name) std::uint8_t name[6];
#define RECORD_MEMBER_IPV6(name) std::uint8_t name[16];
#define RECORD_MEMBER_STRUCT(name, type, number) type name;
#define RECORD_MEMBER_OPTIONAL(name, type, number) const type* name;
#define RECORD_MEMBER_FIVE(name, type, number) type name[5];
#define RECORD_MEMBER_ARRAY(name, type, number) \
  struct {                                      \
    std::uint32_t count;                        \
    const type* items;                          \
  } name;
#define RECORD_MEMBER_ARRAY_IPV4(name) RECORD_MEMBER_ARRAY(name, std::uint32_t, )
#define RECORD_MEMBER_ARRAY_I32(name) RECORD_MEMBER_ARRAY(name, std::uint32_t, )

#endif  // RECORDS_RECORD_MEMBERS_H_
