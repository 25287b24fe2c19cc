/*
 * The services that this framework does not provide. All symbols of the plug-in are bound when it
 * is loaded, so each needs a definition: one that reports a failure, which the plug-in handles, or
 * one that ends the process where there is no result to fail with. No header of the contract is
 * included: one form serves for all.
 */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

static uint32_t fail(const char *service) {
  fprintf(stderr, "%s is not provided\n", service);
  return 95;
}

#define FAILS(service) \
  uint32_t service(void) { return fail(#service); }
#define ENDS(service) \
  void service(void) { exit((int)fail(#service)); }

/* clang-format off */
FAILS(_sysdb_bind) FAILS(_sysdb_unbind) FAILS(bag_decode) FAILS(bag_fetch_string) FAILS(bag_register)
FAILS(bag_register_end) FAILS(event_manager_create) FAILS(hex_string2ip_addr)
FAILS(im_internal_namestring) FAILS(imc_attr_query) FAILS(imc_control_server_bind)
FAILS(imc_control_server_unbind) FAILS(imc_ifname_to_location) FAILS(imc_interface_find)
FAILS(imc_s_interface_find) FAILS(iparm_al_c_init) FAILS(iparm_al_c_tlv2addr)
FAILS(nodeid_to_str_external) FAILS(platform_get_my_nodeid) FAILS(strcmp_s) FAILS(sysdb_datalist)
FAILS(sysdb_datalist_next) FAILS(sysdb_item_get) FAILS(yfw_map_add_leaf_from_xpath)
FAILS(yfw_map_copy_trim_path_list_ctx) FAILS(yfw_map_get_node_info) FAILS(yfw_map_search_list)
FAILS(yfw_map_search_or_add_list) FAILS(yfw_map_stitch_list_to_list)
FAILS(yfw_map_tree_xpath_operations) FAILS(yfw_remove_from_output_list_ctx) FAILS(yfw_strncat_s)
ENDS(_lstrace) ENDS(_ombos_dt_log_filter_adv) ENDS(bag_free_indirections) ENDS(bag_register_abort)
ENDS(bag_register_start) ENDS(cerr_strerror) ENDS(imc_conn_ctx_to_connid) ENDS(inet_ntoa_r)
ENDS(ip_addr_string) ENDS(iparm_al_c_free) ENDS(ipv4_compare_prefix) ENDS(ipv4_mask2prefixlen)
ENDS(itoa) ENDS(ombrix_inet_ntop) ENDS(ret_nc_yfw_trace_index_incr) ENDS(rsi_c_vrf_id_dflt)
ENDS(strupr) ENDS(sysdb_datalist_free) ENDS(yfw_map_free_trim_path_list_ctx)
ENDS(yfw_oc_error_path)
