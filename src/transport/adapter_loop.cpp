// The adapter's endless transfer loop, tick by tick.
// SPDX-License-Identifier: MIT
#include "transport/adapter_loop.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "app/program_state.h"
#include "numeric/number_parse.h"
#include "transport/typed_word.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;

constexpr double kShortestWait = 1;
constexpr double kLongestWait = 60000;
// However long the wait, the loop notices within this time that it shall end.
constexpr milliseconds kLongestTick{100};

std::optional<milliseconds> ReadWait(const std::string& text) {
  const auto ms = WholeTextNumber(text);
  if (!ms || *ms < kShortestWait || *ms > kLongestWait || *ms != std::floor(*ms)) return {};
  return milliseconds{static_cast<std::int64_t>(*ms)};
}

}  // namespace

void AdapterLoop::cmdLoop_Click() {
  if (Running()) {
    Stop();
  } else {
    Start();
  }
}

void AdapterLoop::Start() {
  if (!debug_.AdapterSelected()) return;
  const std::string text = view_.LoopWaitText();
  const auto wait = ReadWait(text);
  if (!wait) {
    messages_.Show("Loop: " + Quoted(text) +
                   " is not a wait between transfers. Enter 1 to 60000 ms.\nNothing was sent.");
    return;
  }
  wait_ = *wait;
  view_.SetLoopCaption(kStopLoopCaption);
  UsbAdapter::LetLoopRun();
  if (!debug_.cmdWriteSpi_Click()) {
    Stop();
    return;
  }
  due_ = clock_.Monotonic() + wait_;
  TickWhenDue();
}

void AdapterLoop::Stop() {
  UsbAdapter::EndLoop();
  view_.StopTicks();
  view_.SetLoopCaption(kLoopCaption);
}

void AdapterLoop::Tick(bool mayTransfer) {
  if (!Running()) return;
  if (!UsbPresent) UsbAdapter::EndLoop();
  const bool due = mayTransfer && clock_.Monotonic() >= due_;
  if (StopSpiLoop || (due && !debug_.Repeat())) {
    Stop();
    return;
  }
  // A wait that the user is just typing counts once it makes sense.
  wait_ = ReadWait(view_.LoopWaitText()).value_or(wait_);
  if (due) due_ = clock_.Monotonic() + wait_;
  TickWhenDue();
}

void AdapterLoop::TickWhenDue() {
  const auto left = std::chrono::ceil<milliseconds>(due_ - clock_.Monotonic());
  view_.TickAfter(std::clamp(left, milliseconds{1}, kLongestTick));
}

}  // namespace kestrel
