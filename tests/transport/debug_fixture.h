// The adapter debug window's boxes without a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "transport/adapter_debug.h"
#include "transport/adapter_loop.h"
#include "usb_fixture.h"

namespace kestrel {

// The boxes of the debug window.
class FakeDebugView : public AdapterDebugView, public AdapterLoopView {
 public:
  [[nodiscard]] FrameTexts Frames() override { return frames; }
  void PointAtFrame(int number) override { pointedAt = number; }
  void ShowAnswers(const std::vector<std::string>& shown) override { answers = shown; }
  void ShowBits(const std::string& text) override { bits = text; }
  void ShowDelay(const std::string& text) override { delay = text; }
  void ShowSetup(const std::string& text) override { setup = text; }
  void ShowCounts(std::int64_t ofTransfers, std::int64_t ofErrors) override {
    transfers = ofTransfers;
    errors = ofErrors;
  }

  [[nodiscard]] std::string LoopCaption() override { return caption; }
  void SetLoopCaption(const std::string& text) override { caption = text; }
  [[nodiscard]] std::string LoopWaitText() override { return wait; }
  void TickAfter(std::chrono::milliseconds time) override { tick = time; }
  void StopTicks() override { tick.reset(); }

  FrameTexts frames;
  int pointedAt = 0;
  std::vector<std::string> answers;
  std::string bits;
  std::string delay;
  std::string setup;
  std::int64_t transfers = 0;
  std::int64_t errors = 0;
  std::string caption = "Loop";
  std::string wait = "10";
  std::optional<std::chrono::milliseconds> tick;  // the timer, while it runs
};

// The debug window's logic over a scripted board that is the selected one.
class DebugTest : public UsbTest {
 protected:
  void SetUp() override {
    SelectABoard();
    boards_.answersZeros = true;
  }

  void Type(const std::vector<std::string>& frames) {
    view_.frames.fill("");
    std::copy(frames.begin(), frames.end(), view_.frames.begin());
  }

  FakeClock clock_;
  MemoryFiles files_;
  FixedLocale locale_;
  FakeDebugView view_;
  AdapterDebug debug_{usb_, clock_, messages_, view_};
};

}  // namespace kestrel
