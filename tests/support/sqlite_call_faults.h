// Faults of the system calls that a database in a file makes, one at a time.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kestrel {

// While one exists, the calls by which files are opened, written, forced to the disk, cut and
// removed are counted, and from the n-th of them on, the first being 1, `count` of them fail with
// an error number.
class SqliteCallFaults {
 public:
  SqliteCallFaults(int number, int error, int count = 1);
  ~SqliteCallFaults();
  SqliteCallFaults(const SqliteCallFaults&) = delete;
  SqliteCallFaults& operator=(const SqliteCallFaults&) = delete;

  [[nodiscard]] bool Met() const;
  // The name of the call that failed first.
  [[nodiscard]] std::string Name() const;
};

}  // namespace kestrel
