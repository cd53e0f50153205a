// The operating system behind the seams, whichever it is.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/system_name.h"
#include "platform/hardware_switch.h"
#include "seams/clock.h"
#include "seams/files.h"
#include "seams/locale.h"

namespace kestrel {

struct SystemOptions {
  // The parallel port's base address, asked when the port is opened.
  std::function<std::int16_t()> portAddress;
  // Told true when a request to a device begins to take noticeably long, and false at its end.
  std::function<void(bool)> waiting = {};
  // What others are told of who uses a device: "kestrel-cli, bench Hall 3". None: the program's
  // name.
  std::function<std::string()> user = {};
  // Told a line of a device that another program uses, with who that is.
  std::function<void(const std::string& line)> inUse = {};
};

// The operating system behind the seams. Make it on the thread that waits.
class System {
 public:
  explicit System(const SystemOptions& options);
  ~System();
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  [[nodiscard]] Clock& SystemClock();
  [[nodiscard]] Files& SystemFiles();
  [[nodiscard]] Locale& SystemLocale();
  [[nodiscard]] Hardware Devices();

  // Takes this device for the parallel port, whatever its address, where the system has names for
  // ports ("/dev/parport1"). Call it before the port is opened; "" goes back to the address.
  void UsePortDevice(const std::string& device);

  // Takes a name that one program of this machine can have at a time, until this one ends. Returns
  // who has it; empty where it is this program now.
  [[nodiscard]] std::string Claim(const std::string& name);

  // Lets go of boards and ports, so that another program can have them. They are taken again when
  // they are used.
  void LetGo();

  // Calls `ended` from a thread of its own when the standard input has been closed; what comes
  // before is not looked at. From then on an output stream that nobody reads is no reason to end.
  static void WatchInput(std::function<void()> ended);

  // For programs that run for days: memory that is free is given back to the machine, whatever was
  // taken at once before.
  static void KeepMemorySmall();

  // For iniSystem2.
  [[nodiscard]] static SystemVersion Version();

  // What the program was called with, in UTF-8, without its own name.
  [[nodiscard]] static std::vector<std::string> Arguments(int argc, char** argv);

  // The name of this computer among others; empty where it has none.
  [[nodiscard]] static std::string ComputerName();
  // A variable of the environment, in UTF-8; empty where it is not set.
  [[nodiscard]] static std::string Environment(const char* name);

  // Time since an arbitrary moment that goes on while the machine sleeps.
  [[nodiscard]] static std::chrono::nanoseconds SinceBoot();

  // Whether somebody watches what goes to the error stream.
  [[nodiscard]] static bool ErrorIsTerminal();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kestrel
