// Repeated captures in the real windows over the simulated sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <span>
#include <vector>

#include "support/sensor_frames.h"
#include "ui/main/frm1.h"
#include "ui/repeat/frmRepeat.h"
#include "ui/window_bench.h"

namespace kestrel {

// The main window with short captures and the form in front. Waits are hurried.
class RepeatBench : public WindowBench {
 protected:
  void SetUp() override {
    loop_.Hurry();
    usb_.OnBlock([this](std::span<const std::uint8_t> block) { Note(block); });
    Start();
    ChooseShortCaptures();
    Trigger("mnuRepeat");
    QApplication::processEvents();
  }

  void Type(const char* box, const char* text) {
    auto& line = Find<QLineEdit>(box);
    line.setFocus();
    line.selectAll();
    QTest::keyClicks(&line, text);
  }
  void BeginAtOnce(const char* times) {
    Find<QRadioButton>("optAtOnce").click();
    Type("txtTimes", times);
    Press("cmdRepeatStart");
  }
  void BeginEvery(const char* seconds) {
    Type("txtSeconds", seconds);
    Find<QRadioButton>("optUntilStopped").click();
    Press("cmdRepeatStart");
  }

  RepeatRunner& Runner() { return Window().Repeats(); }
  RepeatProgress Progress() { return *Runner().Progress(); }
  QString State() { return Text("lblRepeatState"); }
  QString Gaps() { return Find<QPlainTextEdit>("txtGaps").toPlainText(); }
  // Whether it ends by itself.
  bool Ends() {
    return QTest::qWaitFor([this] { return !Runner().Running(); }, 20'000);
  }
  bool Reaches(int done) {
    return QTest::qWaitFor([this, done] { return Progress().done >= done; }, 20'000);
  }
  bool Pauses() {
    return QTest::qWaitFor([this] { return Progress().state == RepeatState::Paused; }, 20'000);
  }
  // Does something as soon as a capture is waited for.
  void AtCapture(std::function<void()> deed) {
    atCapture_ = std::move(deed);
    QObject::connect(&poll_, &QTimer::timeout, &Window(), [this] {
      if (!atCapture_ || Find<QPushButton>("cmdStart").text() != "Stop") return;
      poll_.stop();
      std::exchange(atCapture_, {})();
    });
    poll_.start(0);
  }

  std::vector<std::chrono::nanoseconds> starts;  // of captures, by command

 private:
  void Note(std::span<const std::uint8_t> block) {
    if (block[0] != 13 && block[0] != 14) return;
    for (std::size_t i = 3; i + 1 < block.size(); i += 2) {
      if (block[i] * 256 + block[i + 1] == kCaptureFrame) starts.push_back(clock_.Monotonic());
    }
  }

  QTimer poll_;
  std::function<void()> atCapture_;
};

}  // namespace kestrel
