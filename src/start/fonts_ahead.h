// The system's list of fonts, read while the program does other things.
// SPDX-License-Identifier: MIT
#pragma once

#include <thread>

namespace kestrel {

// Reads the system's list of fonts in a thread of its own, as the first thing that a program with
// windows does: the toolkit then finds it read. Does nothing where the system keeps none for all
// programs of one process.
class FontsAhead {
 public:
  FontsAhead();
  ~FontsAhead() { Wait(); }
  FontsAhead(const FontsAhead&) = delete;
  FontsAhead& operator=(const FontsAhead&) = delete;

  // Returns when it is read. Call it before anything is written: whoever comes earlier reads the
  // list once more.
  void Wait();

 private:
  std::thread thread_;
};

}  // namespace kestrel
