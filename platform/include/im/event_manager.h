/* The event manager that the address manager's client runs on. */
#ifndef IM_EVENT_MANAGER_H
#define IM_EVENT_MANAGER_H

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct event_manager event_manager;

/* Makes an event manager, which lives as long as the process. */
cerrno event_manager_create(event_manager **manager);

#ifdef __cplusplus
}
#endif

#endif
