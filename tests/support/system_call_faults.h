// Faults of the operating system's file calls, one at a time.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace kestrel {

// What befalls a call of the operating system.
struct CallFault {
  enum class Kind {
    None,
    Fails,         // with the error number
    Interrupted,   // by a signal, once
    TakesHalf,     // a write takes half of what it was given; other calls are served
    TakesNothing,  // a write takes nothing and tells of no error; other calls are served
    KilledBefore,  // the process dies before it
    KilledAfter,   // the process dies after it
  };
  Kind kind = Kind::None;
  int error = 0;
};

// While one exists, the file system's calls out of the code under test are counted, and the n-th of
// them, the first being 1, has a fault. For programs linked with --wrap, see tests/CMakeLists.txt.
class SystemCallFaults {
 public:
  explicit SystemCallFaults(int number = 0, CallFault fault = {});
  ~SystemCallFaults();
  SystemCallFaults(const SystemCallFaults&) = delete;
  SystemCallFaults& operator=(const SystemCallFaults&) = delete;

  // Their names, in order.
  [[nodiscard]] const std::vector<std::string>& Calls() const { return calls_; }
  // Whether the fault has come; a call that cannot have it does not count.
  [[nodiscard]] bool Met() const { return met_; }

  // For the wrapped calls: what befalls the next one.
  CallFault::Kind Next(const char* name, bool writes);
  [[nodiscard]] int Error() const { return fault_.error; }

 private:
  int number_;
  CallFault fault_;
  std::vector<std::string> calls_;
  bool met_ = false;
};

}  // namespace kestrel
