#include "mapping/edit_input.h"

#include <optional>
#include <utility>

#include "io/document_nodes.h"
#include "io/read_document.h"
#include "mapping/envelope_checks.h"
#include "mapping/interface_nodes.h"

namespace ocifip {
namespace {

// Has the nodes of a document replaced that say nothing else, each subinterface as a whole: what
// only leads to them is not.
void replace_subinterfaces(std::vector<DocumentNode>& nodes) {
  for (DocumentNode& node : nodes) {
    if (is_key(node) || node.operation) continue;
    if (leads_to_subinterfaces(node)) {
      replace_subinterfaces(node.children);
    } else {
      node.operation = Operation::kReplace;
    }
  }
}

// Marks the nodes that are created: their own operation, or that of what is around them, is one.
void mark_created(std::vector<DocumentNode>& nodes, bool creates) {
  for (DocumentNode& node : nodes) {
    if (!node.operation) node.is_created = creates;
    mark_created(node.children, node.is_created);
  }
}

// The operation of the nodes that bodies are of, where it is not that of all the edit. A replace or
// create by default is theirs, and not one of the nodes around them; what a document says by
// default is the document's alone.
std::optional<BodyOperation> body_operation(const EditRequest& request, const Document& document) {
  if (request.operation == DefaultOperation::kReplace) return BodyOperation{Operation::kReplace};
  if (request.operation == DefaultOperation::kCreate) return BodyOperation{Operation::kWrite, true};
  const bool is_apart = !request.operation && document.operation == Operation::kNone;
  return is_apart ? std::optional(BodyOperation{Operation::kWrite}) : std::nullopt;
}

class EditReader {
 public:
  EditReader(const Models& models, const EditRequest& request, InputRules rules, Views views)
      : models_(models), request_(request), views_(views), checks_(models, rules) {}

  EditInput read() {
    for (const std::string& path : request_.deletes) {
      Document deletion = read_path(models_, path, Operation::kDelete);
      Document native = check(deletion);
      add(std::move(deletion), std::move(native));
    }
    Document document;
    Document native;
    if (request_.document) read_given(document, native);
    read_bodies(body_operation(request_, document));
    if (request_.document) {
      edit_.openconfig.name = document.name;
      edit_.openconfig.operation = document.operation;
      add(std::move(document), std::move(native));
    }
    edit_.operation = default_operation(request_, edit_.openconfig);
    edit_.notes = checks_.notes();
    return std::move(edit_);
  }

 private:
  // Returns the native nodes, which it takes out.
  Document check(Document& document) {
    Document native;
    if (views_ == Views::kBoth) {
      native = take_native(document, NativeNodes::kConfiguration);
      check_native_edit(models_, native);
    }
    checks_.check_edit(document);
    return native;
  }

  void add(Document openconfig, Document native) {
    merge_edit(edit_.openconfig, std::move(openconfig));
    if (edit_.native.name.empty()) edit_.native.name = native.name;
    merge_edit(edit_.native, std::move(native));
  }

  // What a document says by default is said of its own nodes alone.
  void read_given(Document& document, Document& native) {
    document = read_checked(models_, *request_.document, [&](Document& given) {
      check_is_edit(given);
      native = check(given);
    });
    const DefaultOperation operation = default_operation(request_, document);
    if (operation == DefaultOperation::kReplace) replace_subinterfaces(document.roots);
    settle_native_operations(models_, operation, native);
    const bool creates = request_.operation == DefaultOperation::kCreate;
    mark_created(document.roots, creates);
    mark_created(native.roots, creates);
  }

  void read_bodies(std::optional<BodyOperation> operation) {
    for (const PathBody& body : request_.bodies) {
      Document document = read_body(models_, body, operation);
      Document native = check(document);
      mark_created(document.roots, false);
      mark_created(native.roots, false);
      edit_.openconfig.name = document.name;
      add(std::move(document), std::move(native));
    }
  }

  const Models& models_;
  const EditRequest& request_;
  Views views_;
  InputChecks checks_;
  EditInput edit_;
};

}  // namespace

EditInput read_edit(const Models& models, const EditRequest& request, InputRules rules,
                    Views views) {
  return EditReader(models, request, rules, views).read();
}

}  // namespace ocifip
