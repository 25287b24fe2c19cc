/*
 * Stack of request nodes, by which OpenConfig list walkers, the sibling plug-in's too, remember the
 * entries that they are in.
 */
#ifndef YFW_STACK_H
#define YFW_STACK_H

#include <stdint.h>

#include "yfw/cerrno.h"
#include "yfw/datatree.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct yfw_itree_stack yfw_itree_stack; /* the framework's own */

/*
 * Pushes a node.
 *
 *   stack     the stack
 *   node      the node to remember
 *   second    a second node kept beside it, or null
 *   reserved  0
 *
 * Returns 0, or the failure when the stack cannot grow. The nodes stay the caller's.
 */
cerrno yfw_map_util_itree_stack_push(yfw_itree_stack *stack, const nidl_yfw_datatree *node,
                                     const nidl_yfw_datatree *second, uint32_t reserved);

/* Pops the top node. Returns 0, or a failure when the stack is empty. */
cerrno yfw_map_util_itree_stack_pop(yfw_itree_stack *stack);

/* Stores the top node in *top without popping it. Returns 0, or a failure when it is empty. */
cerrno yfw_map_util_itree_stack_peak(yfw_itree_stack *stack, const nidl_yfw_datatree **top);

/* Number of nodes on the stack. */
uint32_t yfw_map_util_itree_stack_size(const yfw_itree_stack *stack);

#ifdef __cplusplus
}
#endif

#endif
