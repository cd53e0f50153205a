// The test's process as an ordinary user, so that permissions count.
// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <stdexcept>

namespace kestrel {

// For its lifetime the process acts as an ordinary user, so that file permissions count for a test
// that the administrator runs.
class OtherUser {
 public:
  OtherUser() {
    constexpr uid_t kNobody = 65534;
    if (was_ == 0 && seteuid(kNobody) != 0) throw std::runtime_error("seteuid");
  }
  ~OtherUser() {
    if (was_ == 0 && seteuid(0) != 0) _exit(1);
  }
  OtherUser(const OtherUser&) = delete;
  OtherUser& operator=(const OtherUser&) = delete;

 private:
  uid_t was_ = geteuid();
};

}  // namespace kestrel
