// Faults of the operating system's network, process and wake-up calls, one at a time.
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>

namespace kestrel::publish {

// While one exists, such calls of this process are counted by their names, whether the program or a
// library makes them, and the n-th of one name, the first being 1, has a fault. Threads of the
// test's own are left out: see TestsOwn.
class NetworkFaults {
 public:
  enum class Kind {
    Fails,        // with the error number
    EndsEarly,    // a read finds the end; other calls fail
    TakesOneByte  // reads and writes do one byte; other calls are served
  };
  NetworkFaults() = default;
  NetworkFaults(std::string name, int number, int error, Kind kind = Kind::Fails)
      : name_(std::move(name)), number_(number), error_(error), kind_(kind) {}
  ~NetworkFaults() { End(); }
  NetworkFaults(const NetworkFaults&) = delete;
  NetworkFaults& operator=(const NetworkFaults&) = delete;

  void Begin();
  void End();
  // How often each call was made.
  [[nodiscard]] std::map<std::string, int> Calls() const;
  // Whether the fault has come.
  [[nodiscard]] bool IsMet() const { return isMet_; }

  // For the calls themselves.
  struct Fate {
    bool isFault = false;
    Kind kind = Kind::Fails;
    int error = 0;
  };
  [[nodiscard]] static Fate Next(const char* name);

 private:
  const std::string name_{};
  const int number_ = 0;
  const int error_ = 0;
  const Kind kind_ = Kind::Fails;
  std::atomic<bool> isMet_ = false;
  std::map<std::string, int> calls_;
};

// The calls that a thread makes while one exists are the test's.
class TestsOwn {
 public:
  TestsOwn();
  ~TestsOwn();
  TestsOwn(const TestsOwn&) = delete;
  TestsOwn& operator=(const TestsOwn&) = delete;

 private:
  const bool before_;
};

}  // namespace kestrel::publish
