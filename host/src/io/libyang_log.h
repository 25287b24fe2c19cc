// libyang's messages: kept in its context instead of printed, and read from there.
#ifndef OCIFIP_HOST_IO_LIBYANG_LOG_H_
#define OCIFIP_HOST_IO_LIBYANG_LOG_H_

#include <libyang/libyang.h>

#include <cstdint>

namespace ocifip {

// Messages are kept instead of printed while one of these lives. The options of all threads are
// changed: libyang takes a thread's own back whenever it uses them itself.
class QuietLog {
 public:
  QuietLog() : former_(ly_log_options(LY_LOSTORE)) {}
  ~QuietLog() { ly_log_options(former_); }
  QuietLog(const QuietLog&) = delete;
  QuietLog& operator=(const QuietLog&) = delete;

 private:
  std::uint32_t former_;
};

// The first error that was kept, or null. It is the cause; those that follow tell what failed
// because of it.
inline const ly_err_item* first_error(const ly_ctx* context) {
  const auto* item = ly_err_first(context);
  while (item != nullptr && (item->level != LY_LLERR || item->msg == nullptr)) item = item->next;
  return item;
}

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_LIBYANG_LOG_H_
