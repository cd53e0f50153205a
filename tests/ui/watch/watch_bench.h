// The program as its entry point starts it, with a monitor that the test plays.
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/library_bench.h"
#include "ui/watch/fake_monitor.h"

namespace kestrel {

class WatchBench : public LibraryBench {
 protected:
  void StartWatching(const std::string& archive, PresentRoad road = {}) {
    windows_ = std::make_unique<QtStartWindows>(
        core_, SimulatorControl{[] {}, [] { return true; }, [](bool) {}},
        ArchiveChoice{.place = {archive},
                      .usual = {(folder_.path() / "usual" / "archive.db").string()},
                      .program = "0.1.0",
                      .bench = "bench 1"},
        WatchChoice{.make = fake_.Make(),
                    .notifier = &notifier_,
                    .letGo = [this] { ++letGo_; },
                    .road = std::move(road)});
    core_.simulated = true;
    Main(core_, *windows_, {.quickStart = true, .interfaceWithoutConfig = kNoInterface});
    ChooseShortCaptures();
  }
  void StartWatching() { StartWatching(database_.Name()); }
  MonitorView& OpenMonitor() {
    Trigger("mnuAnalyser");
    Analyser().ChooseView(study::View::Monitor);
    Settle();
    return Analyser().Monitor();
  }
  void NewPlan() {
    OpenMonitor();
    Click("cmdFirstPlan");
  }
  void BeginMonitoring() {
    NewPlan();
    Click("cmdCapture");
    ASSERT_EQ(fake_.begun, 1) << Notices();
  }
  MonitorRunner& Runner() { return Window().Watch().Runner(); }
  std::string Notices(const char* strip = "monitorNotices") {
    QString all;
    for (const auto* label : In<QWidget>(strip).findChildren<QLabel*>()) all += label->text();
    return all.toStdString();
  }
  std::string MainNotices() {
    QString all;
    for (const auto* label : Window().findChild<QWidget*>("noticeStrip")->findChildren<QLabel*>()) {
      if (label->isVisibleTo(&Window())) all += label->text();
    }
    return all.toStdString();
  }
  std::string Figure(const char* name) {
    return In<QLabel>((std::string("lblMonitor") + name).c_str()).text().toStdString();
  }
  bool NoBoxes() { return messages_.Texts().empty() && messages_.questions.empty(); }

  FakeMonitor fake_;
  RecordingNotifier notifier_;
  int letGo_ = 0;
};

}  // namespace kestrel
