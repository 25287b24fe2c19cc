/*
 * Client of the interface manager.
 *
 * It knows interfaces by the internal form of their native names, which has "_" for every "/":
 * "Gi0_0_1" for Gi0/0/1, "Eth1.20" for Eth1.20. Every lookup here takes that form, and finds
 * nothing by another; im_internal_namestring makes it.
 */
#ifndef IM_INTERFACE_MANAGER_H
#define IM_INTERFACE_MANAGER_H

#include <stddef.h>
#include <stdint.h>

#include "node/node.h"
#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct imc_conn_ctx imc_conn_ctx; /* a bound connection */
typedef uint64_t imc_connid;              /* its identifier, used by every query; 0 is none */
typedef uint32_t imc_handle;              /* handle of an interface */

/* Bind mode of a mapping plug-in's connection. */
#define IMC_BIND_MODE_CLIENT 2u

/* Result of a lookup of an interface that does not exist. */
#define IMC_INTERFACE_UNKNOWN ((cerrno)0x409a0600)

/*
 * The addresses of an interface, an attribute a family, and the length to give in a request:
 * numbers of the platform's own. The data are for iparm_al_c_tlv2addr (im/address_manager.h). An
 * interface without addresses of the family has the attribute, too: the primary address is zeros
 * then, of prefix length 0.
 */
#define IMC_ATTR_IPV4_ADDRESS 0x1a000cu
#define IMC_ATTR_IPV4_ADDRESS_LENGTH 75u
#define IMC_ATTR_IPV6_ADDRESS 0x1a000du
#define IMC_ATTR_IPV6_ADDRESS_LENGTH 127u

/* Binds to the interface manager in a mode (IMC_BIND_MODE_CLIENT) and stores the connection. */
cerrno imc_control_server_bind(imc_conn_ctx **connection, uint32_t mode);

/* Releases a connection. */
cerrno imc_control_server_unbind(imc_conn_ctx *connection);

/* The identifier of a bound connection. */
imc_connid imc_conn_ctx_to_connid(const imc_conn_ctx *connection);

/*
 * Looks interfaces up by name.
 *
 *   connection  the connection's identifier
 *   count       number of names
 *   names       count native names in internal form
 *   handles     count handles, written where found
 *   flags       0
 *   statuses    count results, one a name
 *
 * Returns 0 when the lookup ran; each name's own outcome is its status.
 */
cerrno imc_interface_find(imc_connid connection, uint32_t count, const char *const *names,
                          imc_handle *handles, uint32_t flags, cerrno *statuses);

/* Looks one interface up by its native name in internal form. Returns 0, IMC_INTERFACE_UNKNOWN or
 * another failure. */
cerrno imc_s_interface_find(imc_connid connection, const char *name, imc_handle *handle);

/* One attribute of one interface, asked for by imc_attr_query. */
typedef struct imc_attr_request {
  imc_handle interface_handle;
  uint32_t attribute;
  uint32_t length; /* greatest length of the attribute that the caller takes */
} imc_attr_request;

/* The answer: one block, freed by the caller with free. */
typedef struct imc_attr_response {
  cerrno status;   /* outcome of this attribute */
  uint32_t length; /* bytes of data */
  uint8_t *data;   /* the encoded attribute, inside the same block */
} imc_attr_response;

/*
 * Queries attributes of interfaces, which are named by their handles.
 *
 *   connection      the connection's identifier
 *   count           number of requests
 *   requests        count requests
 *   response_count  number of responses wanted: 1
 *   response        where to store the response: always set on success, untouched on failure
 */
cerrno imc_attr_query(imc_connid connection, uint32_t count, const imc_attr_request *requests,
                      uint32_t response_count, imc_attr_response **response);

/*
 * Stores the node that an interface is on: the local node for one without a location of its own,
 * and NODEID_NONE when there is no local node either.
 *
 *   connection  the connection's identifier
 *   name        native name in internal form
 *   node        where to store the node; untouched on failure
 *
 * Returns 0, IMC_INTERFACE_UNKNOWN or another failure. That an interface is on no node is none.
 */
cerrno imc_ifname_to_location(imc_connid connection, const char *name, nodeid_t *node);

/*
 * Writes the internal form of a native name into a buffer.
 *
 *   name      native name; one in internal form stays as it is
 *   internal  buffer of size bytes
 *
 * Returns 0, or one of enum yfw_text_error (yfw/text.h) when the name does not fit.
 */
cerrno im_internal_namestring(const char *name, char *internal, size_t size);

#ifdef __cplusplus
}
#endif

#endif
