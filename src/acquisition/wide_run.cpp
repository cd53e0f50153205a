// Order, next step, time remaining and end of a wide spectrum's captures.
// SPDX-License-Identifier: MIT
#include "acquisition/wide_run.h"

#include <algorithm>

#include "record/frequency.h"

namespace kestrel {
namespace {

constexpr int kOptions = 4;
// The sensor's work on a transform, beside its samples, until the first capture has told.
constexpr std::chrono::milliseconds kPerTransform{40};

double Seconds(std::chrono::nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

}  // namespace

std::vector<int> WideOrder(const WideWish& wish) {
  std::vector<int> order;
  for (int option = 0; option < kOptions; ++option) {
    if ((wish.options >> option & 1U) != 0) order.push_back(option);
  }
  const auto present = std::ranges::find(order, wish.present);
  if (wish.changesMore || present == order.end()) return order;
  std::rotate(order.begin(), present, present + 1);
  return order;
}

std::chrono::nanoseconds SamplesOf(int option, int averages) {
  const std::chrono::duration<double> samples{std::max(averages, 1) /
                                              BinWidth(std::clamp(option, 0, kOptions - 1))};
  return std::chrono::duration_cast<std::chrono::nanoseconds>(samples);
}

WideRun::WideRun(Clock& clock, const WideWish& wish)
    : clock_(clock),
      wish_(wish),
      order_(WideOrder(wish)),
      beside_(wish.readOut + std::max(wish.averages, 1) * kPerTransform) {
  if (!wish.changesMore) setTo_ = wish.present;
}

std::optional<int> WideRun::Pending() const {
  if (ending_ || done_ == order_.size()) return std::nullopt;
  return order_[done_];
}

WideStep WideRun::Next() const {
  using enum WideStep::Do;
  if (began_) return {Nothing};
  if (const auto option = Pending()) return {setTo_ == option ? Capture : Set, *option};
  if (!dirty_ || gaveUp_) return {End};
  return {lost_ ? SeekSensor : PutBack};
}

void WideRun::Began() {
  const WideStep step = Next();
  isCapture_ = step.what == WideStep::Do::Capture;
  if (step.what == WideStep::Do::Set) dirty_ = true;
  began_ = clock_.Monotonic();
}

void WideRun::SetDone() {
  began_.reset();
  setTo_ = Pending();
}

// What the latest took beside its samples is what the next one will.
void WideRun::CaptureDone() {
  const Time beside = Elapsed() - SamplesOf(order_[done_], wish_.averages);
  beside_ = std::max(beside, Time{0});
  began_.reset();
  ++done_;
}

void WideRun::CaptureStopped() {
  began_.reset();
  UserStopped();
}

void WideRun::PutBackDone() {
  began_.reset();
  dirty_ = false;
}

void WideRun::PutBackFailed(const std::string& why) {
  began_.reset();
  gaveUp_ = true;
  notPutBack_ = why;
}

void WideRun::Failed(const std::string& why) {
  began_.reset();
  ending_ = true;
  if (reason_.empty()) reason_ = why;
}

// A sensor that was without power has other settings than those it was given.
void WideRun::SensorLost(const std::string& why) {
  Failed(why);
  lost_ = true;
  dirty_ = true;
  setTo_.reset();
}

void WideRun::SensorBack() {
  began_.reset();
  lost_ = false;
}

void WideRun::UserStopped() {
  ending_ = true;
  if (reason_.empty()) reason_ = "stopped";
}

WideRun::Time WideRun::Expected(int option) const {
  return SamplesOf(option, wish_.averages) + beside_;
}

WideRun::Time WideRun::Elapsed() {
  return began_ ? clock_.Monotonic() - *began_ : Time{0};
}

WideState WideRun::StateNow() const {
  if (Pending() || (began_ && isCapture_)) return WideState::Capturing;
  if (!dirty_ || gaveUp_) return WideState::Ended;
  return lost_ ? WideState::Lost : WideState::PuttingBack;
}

WideProgress WideRun::Progress() {
  WideProgress progress{
      .order = order_,
      .done = {order_.begin(), order_.begin() + static_cast<std::ptrdiff_t>(done_)},
      .option = Pending(),
      .ending = ending_,
      .reason = reason_,
      .notPutBack = notPutBack_};
  Time all{0};
  Time passed{0};
  for (std::size_t i = 0; i < order_.size(); ++i) {
    const Time expected = Expected(order_[i]);
    all += expected;
    if (i < done_) passed += expected;
    if (i == done_ && isCapture_) passed += std::min(Elapsed(), expected);
  }
  progress.share = all > Time{0} ? Seconds(passed) / Seconds(all) : 1;
  if (progress.option) progress.remaining = Seconds(all - passed);
  progress.state = StateNow();
  return progress;
}

}  // namespace kestrel
