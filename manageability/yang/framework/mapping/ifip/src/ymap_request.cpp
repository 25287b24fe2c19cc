#include "ymap_request.h"

#include "yfw/text.h"

namespace ymap {

const Node* Children::find(const char* tag) const {
  for (const Node& child : *this) {
    if (yfw_map_do_these_match(child.tag, tag) != 0) {
      return &child;
    }
  }
  return nullptr;
}

cerrno add_path(const Call& call, const char* module_namespace, const PathWrite& write) {
  const cerrno result = yfw_map_datatree_add_path_flagged(
      call.ctx, write.base != nullptr ? write.base : call.out, write.path, module_namespace,
      write.value, write.source, write.created, write.create ? 1 : 0, write.flags);
  call.wrote = call.wrote || result == YMAP_OK;
  return result;
}

cerrno add_edit_leaf(const Call& call, const char* module_namespace, const char* path,
                     const char* value) {
  if (is_read(call.ctx)) {
    return add_path(call, module_namespace, {.path = path, .value = value});
  }
  if (is_delete(*call.in)) {
    return add_path(call, module_namespace, {.path = path, .source = call.in});
  }
  return add_path(call, module_namespace, {.path = path, .value = value, .source = call.in});
}

namespace {

// Replaces a text that the request state owns.
void replace_text(char*& owned, const char* text, const char* allocation_name) {
  if (owned != nullptr) {
    ombos_named_free(owned);
  }
  owned = yfw_strdup(text, allocation_name);
}

}  // namespace

void record_refused_tag(yfw_map_ctx* ctx, const char* tag, const char* allocation_name) {
  if (ctx->request_state != nullptr) {
    replace_text(ctx->request_state->unsupported_tag, tag, allocation_name);
  }
}

void record_error_message(yfw_map_ctx* ctx, const char* message) {
  if (ctx->request_state != nullptr) {
    replace_text(ctx->request_state->error_message, message, kAllocationName);
  }
}

cerrno refuse_leaf(const Call& call) {
  yfw_oc_error_path(call.ctx);
  // The tag names the allocation, too, as it always has.
  record_refused_tag(call.ctx, call.in->tag, call.in->tag);
  return YMAP_ERR_UNSUPPORTED;
}

NewListEntries::NewListEntries(yfw_map_ctx* ctx) : state_(ctx->request_state) {
  if (state_ != nullptr) {
    saved_ = state_->list_entry_reuse;
    state_->list_entry_reuse = 0;
  }
}

NewListEntries::~NewListEntries() {
  if (state_ != nullptr) {
    state_->list_entry_reuse = saved_;
  }
}

}  // namespace ymap
