#include "datastores.h"

#include <utility>

#include "rpc_error.h"

namespace ocifip::agent {
namespace {

constexpr std::array kDatastores = {Datastore::kRunning, Datastore::kCandidate};

std::size_t index_of(Datastore datastore) { return static_cast<std::size_t>(datastore); }

std::string session_info(SessionId session) {
  return "<session-id>" + std::to_string(session) + "</session-id>";
}

std::string locked_by(Datastore datastore, SessionId holder) {
  return std::string("the ") + name_of(datastore) + " configuration is locked by session " +
         std::to_string(holder);
}

[[noreturn]] void deny_lock(SessionId holder, const std::string& message) {
  RpcError error = {tags::kLockDenied, message};
  error.info = session_info(holder);
  throw OperationError(std::move(error));
}

[[noreturn]] void fail_value(const std::string& message) {
  throw OperationError(RpcError{tags::kInvalidValue, message});
}

}  // namespace

const char* name_of(Datastore datastore) {
  return datastore == Datastore::kRunning ? "running" : "candidate";
}

Datastores::Datastores(Host& host, bool saves, DatastoreEvents events)
    : host_(host), saves_(saves), events_(std::move(events)) {}

Configuration Datastores::content(Datastore datastore) const {
  return datastore == Datastore::kCandidate && candidate_ ? *candidate_ : host_.running();
}

const std::optional<Lock>& Datastores::lock_of(Datastore datastore) const {
  return locks_[index_of(datastore)];
}

void Datastores::check_unlocked(Datastore datastore, SessionId by) const {
  const auto& lock = lock_of(datastore);
  if (lock && lock->holder != by) {
    throw OperationError(RpcError{tags::kInUse, locked_by(datastore, lock->holder)});
  }
}

void Datastores::check_free(Datastore datastore, SessionId by) const {
  check_unlocked(datastore, by);
  if (datastore == Datastore::kRunning && waiting_ && waiting_->by != by) {
    throw OperationError(
        RpcError{tags::kInUse,
                 "a commit of session " + std::to_string(waiting_->by) + " waits to be confirmed"});
  }
}

// What waits to be confirmed is not saved before it is settled.
void Datastores::become(const Configuration& content, SessionId by, bool is_settled) {
  const Configuration before = host_.running();
  for (const std::string& remark : host_.commit(content, saves_ && is_settled)) {
    events_.remarked(remark);
  }
  if (candidate_ == content) candidate_.reset();
  if (events_.changed && !(before == content)) events_.changed(by, before, content);
}

void Datastores::replace(Datastore datastore, const Configuration& content, SessionId by) {
  check_free(datastore, by);
  if (datastore == Datastore::kRunning) {
    become(content, by, !waiting_);
  } else {
    candidate_ = content == host_.running() ? std::nullopt : std::optional(content);
  }
}

void Datastores::lock(Datastore datastore, SessionId by) {
  const auto& lock = lock_of(datastore);
  if (lock) deny_lock(lock->holder, locked_by(datastore, lock->holder));
  if (datastore == Datastore::kCandidate && candidate_) {
    deny_lock(0, "the candidate configuration has changes that are not committed");
  }
  if (datastore == Datastore::kRunning && waiting_ && waiting_->by != by) {
    deny_lock(waiting_->by, "a commit waits to be confirmed");
  }
  locks_[index_of(datastore)] = Lock{by, std::chrono::system_clock::now()};
}

void Datastores::unlock(Datastore datastore, SessionId by) {
  const auto& lock = lock_of(datastore);
  if (!lock || lock->holder != by) {
    throw OperationError(RpcError{tags::kFailed, std::string("this session has no lock of the ") +
                                                     name_of(datastore) + " configuration"});
  }
  locks_[index_of(datastore)].reset();
  // Changes that the lock was for do not become another session's.
  if (datastore == Datastore::kCandidate) candidate_.reset();
}

// Whether this commit may settle the one that waits.
void Datastores::check_confirmation(SessionId by,
                                    const std::optional<std::string>& persist_id) const {
  if (!waiting_) {
    if (persist_id) fail_value("no commit waits to be confirmed");
    return;
  }
  if (waiting_->persist) {
    if (persist_id != waiting_->persist) {
      fail_value("\"persist-id\" is not that of the commit that waits to be confirmed");
    }
  } else if (waiting_->by != by || persist_id) {
    fail_value("the commit that waits to be confirmed is that of session " +
               std::to_string(waiting_->by) + " alone");
  }
}

void Datastores::commit(SessionId by, const CommitTerms& terms) {
  for (const Datastore each : kDatastores) check_unlocked(each, by);
  check_confirmation(by, terms.persist_id);
  const bool was_waiting = waiting_.has_value();
  const Configuration former = waiting_ ? waiting_->former : host_.running();
  become(content(Datastore::kCandidate), by, !terms.is_confirmed);
  candidate_.reset();
  if (terms.is_confirmed) {
    const auto& persist = terms.persist ? terms.persist : terms.persist_id;
    waiting_ = {former, by, persist, Clock::now() + terms.timeout};
    events_.confirming(by, was_waiting ? ConfirmedCommit::kExtend : ConfirmedCommit::kStart,
                       terms.timeout);
  } else if (was_waiting) {
    waiting_.reset();
    events_.confirming(by, ConfirmedCommit::kComplete, {});
  }
}

// The file has the former configuration: nothing was saved since. Nothing can fail.
void Datastores::take_back(SessionId by, ConfirmedCommit why) {
  become(waiting_->former, by, false);
  waiting_.reset();
  events_.confirming(by, why, {});
}

void Datastores::cancel(SessionId by, const std::optional<std::string>& persist_id) {
  if (!waiting_) {
    throw OperationError(RpcError{tags::kFailed, "no commit waits to be confirmed"});
  }
  check_unlocked(Datastore::kRunning, by);
  check_confirmation(by, persist_id);
  take_back(by, ConfirmedCommit::kCancel);
}

void Datastores::discard(SessionId by) {
  check_free(Datastore::kCandidate, by);
  candidate_.reset();
}

void Datastores::end(SessionId session) {
  for (const Datastore each : kDatastores) {
    const auto& lock = lock_of(each);
    if (lock && lock->holder == session) unlock(each, session);
  }
  if (waiting_ && waiting_->by == session && !waiting_->persist) {
    take_back(session, ConfirmedCommit::kCancel);
  }
}

std::optional<Clock::time_point> Datastores::deadline() const {
  return waiting_ ? std::optional(waiting_->deadline) : std::nullopt;
}

void Datastores::expire() {
  if (waiting_ && waiting_->deadline <= Clock::now()) take_back(0, ConfirmedCommit::kTimeout);
}

}  // namespace ocifip::agent
