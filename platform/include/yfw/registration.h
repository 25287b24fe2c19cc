/*
 * The record by which a mapping plug-in announces what it maps: one native top-level container and
 * the OpenConfig tree that it is paired with. The framework owns the record and hands it to the
 * plug-in's registration functions to be filled.
 */
#ifndef YFW_REGISTRATION_H
#define YFW_REGISTRATION_H

#include "yfw/context.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Size in bytes of a text field of the record, terminator included. */
#define YFW_MAP_REG_TEXT_SIZE 81

typedef struct yfw_map_reg_record {
  char tree_name[YFW_MAP_REG_TEXT_SIZE];            /* label of the mapping */
  char native_namespace[YFW_MAP_REG_TEXT_SIZE];     /* namespace of the native module */
  char openconfig_namespace[YFW_MAP_REG_TEXT_SIZE]; /* namespace of the OpenConfig module */
  char native_tag[YFW_MAP_REG_TEXT_SIZE];           /* the native top-level container */
  char openconfig_tag[YFW_MAP_REG_TEXT_SIZE];       /* the OpenConfig top-level container */
  yfw_map_leaf_callback to_native;                  /* entered with an OpenConfig request tree */
  void (*framework_slots[2])(void);    /* the framework's; a plug-in leaves them alone */
  yfw_map_leaf_callback to_openconfig; /* entered with native data */
  void *last;                          /* a plug-in sets it to null */
} yfw_map_reg_record;

#ifdef __cplusplus
}
#endif

#endif
