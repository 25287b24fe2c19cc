// Keeping libyang quiet.
#ifndef OCIFIP_HOST_IO_QUIET_LIBYANG_H_
#define OCIFIP_HOST_IO_QUIET_LIBYANG_H_

#include <libyang/libyang.h>

#include <cstdint>

namespace ocifip {

// libyang's messages are kept in its context instead of printed while one of these lives.
class QuietLibyang {
 public:
  QuietLibyang() { ly_temp_log_options(&options_); }
  ~QuietLibyang() { ly_temp_log_options(nullptr); }
  QuietLibyang(const QuietLibyang&) = delete;
  QuietLibyang& operator=(const QuietLibyang&) = delete;

 private:
  std::uint32_t options_ = LY_LOSTORE;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_QUIET_LIBYANG_H_
