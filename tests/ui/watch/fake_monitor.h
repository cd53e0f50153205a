// A monitor's process that the test plays.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "monitor/account.h"
#include "ui/watch/monitor_process.h"
#include "ui/watch/notifier.h"

namespace kestrel {

// Outlives the processes that it makes.
class FakeMonitor {
 public:
  [[nodiscard]] MakeMonitorProcess Make() {
    return [this]() -> std::unique_ptr<MonitorProcess> {
      if (isMissing) return nullptr;
      return std::make_unique<Process>(*this);
    };
  }
  void Tell(const monitor::Account& account) {
    hears.line(QByteArray::fromStdString(LineOf(account)));
  }
  void Say(const std::string& text, bool isTrouble) {
    hears.line(QByteArray::fromStdString(LineOf(monitor::Said{text, isTrouble})));
  }
  void End(const MonitorEnd& end = {}) {
    const auto ended = hears.ended;
    ended(end);
  }

  bool isMissing = false;
  int begun = 0;
  int askedToEnd = 0;
  int left = 0;
  QStringList arguments;
  MonitorProcess::Hears hears;

 private:
  class Process : public MonitorProcess {
   public:
    explicit Process(FakeMonitor& world) : world_(world) {}
    void Begin(const QStringList& arguments, Hears hears) override {
      ++world_.begun;
      world_.arguments = arguments;
      world_.hears = std::move(hears);
    }
    void AskToEnd() override { ++world_.askedToEnd; }
    void Leave() override { ++world_.left; }

   private:
    FakeMonitor& world_;
  };
};

class RecordingNotifier : public Notifier {
 public:
  void Tell(const QString& title, const QString& text) override {
    told.push_back(title + "|" + text);
  }
  std::vector<QString> told;
};

inline archive::JournalEntry Lasting(const std::string& kind, const std::string& text,
                                     std::chrono::system_clock::time_point began = {}) {
  return {.uid = archive::NewUid(), .kind = kind, .began = began, .text = text};
}

}  // namespace kestrel
