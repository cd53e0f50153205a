// The process that monitors, as the window starts, hears and ends it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace kestrel {

struct MonitorEnd {
  bool hasBegun = true;  // false: there is no such program, or it cannot be run
  bool isCrash = false;
  int code = 0;        // of its exit
  QString fault = {};  // why it did not begin, in the system's words
};

// Everything comes in the thread of whoever made it, from the event loop.
class MonitorProcess {
 public:
  struct Hears {
    std::function<void(const QByteArray& line)> line;    // of its output
    std::function<void(const QString& line)> complaint;  // of its error stream
    std::function<void(const MonitorEnd& end)> ended;    // last, and in any case
  };

  virtual ~MonitorProcess() = default;
  MonitorProcess(const MonitorProcess&) = delete;
  MonitorProcess& operator=(const MonitorProcess&) = delete;

  // Once.
  virtual void Begin(const QStringList& arguments, Hears hears) = 0;
  // It ends when what is under way is done or given up.
  virtual void AskToEnd() = 0;
  // Asks it to end and hears no more of it; it outlives this object.
  virtual void Leave() = 0;

 protected:
  MonitorProcess() = default;
};

using MakeMonitorProcess = std::function<std::unique_ptr<MonitorProcess>()>;

}  // namespace kestrel
