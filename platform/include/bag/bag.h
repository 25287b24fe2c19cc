/* Codec of the native operational records: registration of their descriptors, and decoding. */
#ifndef BAG_BAG_H
#define BAG_BAG_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Describes one record type; constant, and owned by the library that exports it. */
typedef struct bag_descriptor {
  uint64_t format;        /* descriptor format: 1 */
  const char *name;       /* the record's name */
  uint32_t major_version; /* version of the record's family */
  uint32_t minor_version;
  const char *library;        /* file name of the family's native descriptor library */
  const uint64_t *layout;     /* number of indirections, and bytes of the decoded structure */
  const char *named_schema;   /* the schema with field names */
  const char *compact_schema; /* the same schema without them */
} bag_descriptor;

/*
 * Opens a registration batch; the six arguments are those that the codec's loader handed to the
 * registration function, passed on unchanged. The low 32 bits of the result are 0 on success.
 */
uint64_t bag_register_start(uint64_t loader_1, uint64_t loader_2, uint64_t loader_3,
                            uint64_t loader_4, uint64_t loader_5, uint64_t loader_6);

/* Adds a descriptor to the open batch. Returns 0, or the failure. */
uint32_t bag_register(const bag_descriptor *descriptor);

/* Commits the batch. Returns 0, or the failure. */
uint32_t bag_register_end(void);

/* Drops the batch. */
void bag_register_abort(void);

/*
 * Decodes a record.
 *
 *   buffer      the encoded record
 *   length      its bytes
 *   structure   where to write the decoded structure, of the descriptor's size; zeros on failure
 *   descriptor  the record's descriptor
 *
 * Returns 0, or the failure. After success the caller calls bag_free_indirections; after a failure
 * it may.
 */
uint32_t bag_decode(const void *buffer, uint32_t length, void *structure,
                    const bag_descriptor *descriptor);

/* Frees what decoding allocated besides the structure itself. */
void bag_free_indirections(void *structure, const bag_descriptor *descriptor);

/*
 * Fetches the texts that the codec keeps for types, which are found by their keys. The type
 * fetchers that a library exports, one a type, pass their caller's argument on to this.
 *
 *   destination  what the caller handed to the type fetcher
 *   keys         keys of types
 *   count        number of keys; type fetchers ask for 1
 *
 * Returns 0, or the failure; the type fetchers return it unchanged.
 */
uint32_t bag_fetch_string(uint64_t destination, const uint32_t *keys, uint32_t count);

#ifdef __cplusplus
}
#endif

#endif
