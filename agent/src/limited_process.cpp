#include "limited_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include "rpc_error.h"

namespace ocifip::agent {
namespace {

constexpr int kPipeSize = 1 << 20;
constexpr std::size_t kPartSize = 65536;
constexpr std::size_t kMostAtOnce = std::size_t{4} << 20;

// Beside the standard ones.
constexpr int kOutput = 3;

[[noreturn]] void fail(const char* what) {
  throw OperationError(RpcError{tags::kResourceDenied, std::string("no process for this: ") + what +
                                                           ": " + std::strerror(errno)});
}

// Bytes of address space; 0 when the system does not tell.
std::size_t used_memory() {
  unsigned long pages = 0;
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr) return 0;
  const int count = std::fscanf(file, "%lu", &pages);
  std::fclose(file);
  return count == 1 ? pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) : 0;
}

void limit(int what, rlim_t most) {
  const rlimit limits = {most, most};
  ::setrlimit(static_cast<__rlimit_resource>(what), &limits);
}

void write_all(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(kOutput, text.data(), text.size());
    if (count < 0 && errno != EINTR) return;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
}

int status_at_end(pid_t process) {
  int status = -1;  // of one that was ended
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

// Handlers are its parent's, and so is what is to be done when a whole group is told to end.
void settle_signals() {
  for (int each = 1; each < NSIG; ++each) {
    const bool is_for_parent = each == SIGTERM || each == SIGINT || each == SIGHUP;
    ::signal(each, is_for_parent ? SIG_IGN : SIG_DFL);
  }
  sigset_t none;
  ::sigemptyset(&none);
  ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

// When memory is short, it is what the system should end.
void offer_for_memory() {
  const Descriptor file(::open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC));
  [[maybe_unused]] const auto written = ::write(file.number(), "1000", 4);
}

// In the new process, which ends here, without what a program does at its end.
[[noreturn]] void run(const std::function<std::string()>& work,
                      const LimitedProcess::Limits& limits, std::size_t used, int output) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  settle_signals();
  offer_for_memory();
  ::dup2(output, kOutput);
  ::close_range(kOutput + 1, ~0U, 0);
  ::setpriority(PRIO_PROCESS, 0, 10);
  limit(RLIMIT_CORE, 0);
  limit(RLIMIT_CPU, static_cast<rlim_t>(limits.processor_time.count()));
  if (used > 0) limit(RLIMIT_AS, used + limits.more_memory);
  try {
    write_all(work());
    ::_exit(0);
  } catch (...) {
    ::_exit(1);
  }
}

}  // namespace

std::atomic<int> LimitedProcess::count_ = 0;

LimitedProcess::LimitedProcess(const std::function<std::string()>& work, const Limits& limits)
    : deadline_(std::chrono::steady_clock::now() + 2 * limits.processor_time) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) fail("pipe");
  output_ = Descriptor(ends[0]);
  const Descriptor input(ends[1]);
  ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
  ::fcntl(ends[0], F_SETPIPE_SZ, kPipeSize);
  const std::size_t used = used_memory();
  sigset_t all;
  sigset_t former;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &former);
  process_ = ::fork();
  if (process_ == 0) run(work, limits, used, ends[1]);
  const int error = errno;
  ::pthread_sigmask(SIG_SETMASK, &former, nullptr);
  errno = error;
  if (process_ < 0) fail("fork");
  ++count_;
}

LimitedProcess::~LimitedProcess() {
  --count_;
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  status_at_end(process_);
}

bool LimitedProcess::goes_on(std::chrono::milliseconds patience) {
  if (has_ended_) return false;
  pollfd polled = {output_.number(), POLLIN, 0};
  ::poll(&polled, 1, static_cast<int>(patience.count()));
  std::array<char, kPartSize> part;  // NOLINT: it is filled before it is looked at
  for (std::size_t read = 0; read < kMostAtOnce; read += part.size()) {
    const ssize_t size = ::read(output_.number(), part.data(), part.size());
    if (size > 0) {
      result_.append(part.data(), static_cast<std::size_t>(size));
      continue;
    }
    has_ended_ = size == 0 || (errno != EAGAIN && errno != EINTR);
    break;
  }
  if (!has_ended_ && std::chrono::steady_clock::now() > deadline_) {
    ::kill(process_, SIGKILL);
    has_ended_ = true;
  }
  return !has_ended_;
}

std::optional<std::string> LimitedProcess::result() {
  const int status = status_at_end(std::exchange(process_, -1));
  const bool is_whole = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return is_whole ? std::optional(std::move(result_)) : std::nullopt;
}

}  // namespace ocifip::agent
