#include "ymap_request.h"

#include <cstdlib>

#include "text/bounded_text.h"
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

const char* upper_case_value(const Node& node) {
  return node.value != nullptr ? strupr(writable_value(node)) : nullptr;
}

cerrno add_path(const Call& call, const char* module_namespace, const PathWrite& write) {
  const cerrno result = yfw_map_datatree_add_path_flagged(
      call.ctx, write.base != nullptr ? write.base : call.out, write.path, module_namespace,
      write.value, write.source, write.created, write.create ? 1 : 0, write.flags);
  call.wrote = call.wrote || result == YMAP_OK;
  return result;
}

cerrno add_all(const Call& call, const char* module_namespace,
               std::initializer_list<PathWrite> writes) {
  for (const PathWrite& write : writes) {
    if (const cerrno result = add_path(call, module_namespace, write); result != YMAP_OK) {
      return result;
    }
  }
  return YMAP_OK;
}

bool is_same_word(const char* value, const char* word, std::size_t longest) {
  int comparison = 1;
  return value != nullptr && strcmp_s(value, longest, word, &comparison) == 0 && comparison == 0;
}

const char* translate(const Words& words, const char* value) {
  for (const Word& word : words.words) {
    if (is_same_word(value, word.from, words.longest)) {
      return word.to;
    }
  }
  return nullptr;
}

std::uint32_t number_of(const char* text) {
  return text == nullptr ? 0 : static_cast<std::uint32_t>(std::strtol(text, nullptr, 10));
}

cerrno edit_leaf(const Call& call, const char* module_namespace, const char* path,
                 const EditOptions& options) {
  PathWrite write{.path = path, .value = call.in->value, .flags = options.flags};
  if (is_edit(call.ctx)) {
    write.source = call.in;
    if (is_delete(*call.in)) {
      write.value = nullptr;
    } else if (options.needs_value && write.value == nullptr) {
      return YMAP_OK;
    } else if (!options.bounds.allow(number_of(write.value))) {
      return refuse_value(call.ctx, options.bounds.refusal);
    } else if (options.words != nullptr) {
      write.value = translate(*options.words, write.value);
      if (write.value == nullptr) {
        return YMAP_OK;
      }
    } else if (options.instead != nullptr) {
      write.value = options.instead;
    }
  }
  return add_path(call, module_namespace, write);
}

namespace {

// Replaces a text that the request state owns.
void replace_text(char*& owned, const char* text, const char* allocation_name) {
  if (owned != nullptr) {
    ombos_named_free(owned);
  }
  owned = yfw_strdup(text, allocation_name);
}

void record_refused_tag(yfw_map_ctx* ctx, const char* tag, const char* allocation_name) {
  if (ctx->request_state != nullptr) {
    replace_text(ctx->request_state->unsupported_tag, tag, allocation_name);
  }
}

}  // namespace

cerrno refuse_tag(yfw_map_ctx* ctx, const char* tag, cerrno result) {
  record_refused_tag(ctx, tag, kAllocationName);
  yfw_oc_error_path(ctx);
  return result;
}

cerrno refuse_value(yfw_map_ctx* ctx, const char* sentence) {
  if (ctx->request_state != nullptr) {
    replace_text(ctx->request_state->error_message, sentence, kAllocationName);
  }
  return YMAP_ERR_VALUE_RANGE;
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
