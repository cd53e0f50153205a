// How a wide spectrum's captures are begun, ended, and undone.
// SPDX-License-Identifier: MIT
#include "ui/repeat/wide_runner.h"

#include <QApplication>
#include <utility>

#include "acquisition/capture_steps.h"
#include "device/rec_ctrl.h"
#include "ui/repeat/quiet_deed.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using Do = WideStep::Do;

constexpr milliseconds kSoon{100};
constexpr milliseconds kSeekEvery{500};
constexpr milliseconds kDisplayEvery{250};
constexpr nanoseconds kReadOut = std::chrono::seconds(1);  // of one capture, about
constexpr std::int16_t kManualSpectrum = 0;

QString FirstOf(const std::vector<std::string>& told, const QString& otherwise) {
  return told.empty() ? otherwise : QString::fromStdString(told.front());
}

}  // namespace

WideRunner::WideRunner(Core& core, HandlerEdge& edge, SettingsExchange& settings, Deeds deeds)
    : core_(core),
      edge_(edge),
      settings_(settings),
      deeds_(std::move(deeds)),
      return_(core),
      recordListener_(core.record.OnChange([this] {
        if (isCapturing_) taken_ = core_.record.Get();
      })) {
  next_.setSingleShot(true);
  connect(&next_, &QTimer::timeout, this, &WideRunner::Tick);
  connect(&display_, &QTimer::timeout, this, [this] {
    WatchCapture();
    emit Changed();
  });
}

int WideRunner::Averages() const {
  const auto lists = settings_.LastRead().lists;
  const auto averages = lists.find(Setting::FftAvgs);  // an index is its number
  return averages == lists.end() ? 1 : std::max(1, averages->second);
}

double WideRunner::ExpectedSeconds() const {
  if (settings_.LastRead().lists.empty()) return 0;
  nanoseconds all{0};
  for (int option = 0; option < kSampleRateOptions; ++option) {
    all += SamplesOf(option, Averages()) + kReadOut;
  }
  return std::chrono::duration<double>(all).count();
}

QString WideRunner::Start(unsigned options) {
  if (Running() || deeds_.isOtherAtWork()) {
    return tr("Captures are under way already. Stop them first.");
  }
  if (closed_ || !core_.registers.Reachable()) {
    return tr(
        "The sensor cannot be reached. Choose one in the Interface menu of the main window, or "
        "plug its adapter in.");
  }
  if (gRecCtrl->RecModeCode() != kManualSpectrum) {
    return tr(
        "A wide spectrum is made of spectra that are captured on request. Choose Manual at "
        "Mode in the main window.");
  }
  before_ = settings_.LastRead();
  wasLost_ = false;
  isTold_ = false;
  return_.NoteRoad();
  run_.emplace(core_.seams.clock, WideWish{.options = options,
                                           .present = gRecCtrl->SampleRate(),
                                           .averages = Averages(),
                                           .readOut = kReadOut});
  emit Began(options);
  next_.start(0);
  display_.start(kDisplayEvery);
  emit Changed();
  return {};
}

void WideRunner::Stop() {
  if (!Running()) return;
  const bool isSeeking = run_->Next().what == Do::SeekSensor;
  run_->UserStopped();
  if (isSeeking) {
    run_->PutBackFailed(
        tr("The sensor did not come back, so its settings could not be put back. See to them when "
           "it is there.")
            .toStdString());
  }
  Plan();
  emit Changed();
}

std::optional<WideProgress> WideRunner::Progress() {
  if (!run_) return std::nullopt;
  return run_->Progress();
}

void WideRunner::UserStoppedCapture() {
  if (timedOut_ || !Running()) return;
  stoppedByUser_ = true;
  Stop();
}

void WideRunner::Close() {
  closed_ = true;
  next_.stop();
  display_.stop();
}

void WideRunner::Tick() {
  if (closed_) return;
  if (Running() && QApplication::activeModalWidget() == nullptr && edge_.Resting()) Step();
  if (closed_) return;
  Plan();
  emit Changed();
}

// While something else is at work, what is due has to wait.
void WideRunner::Plan() {
  if (!Running()) return Finish();
  const bool isSeeking = run_->Next().what == Do::SeekSensor;
  next_.start(isSeeking ? kSeekEvery : edge_.Resting() ? milliseconds{0} : kSoon);
}

void WideRunner::Finish() {
  next_.stop();
  display_.stop();
  if (std::exchange(isTold_, true)) return;
  emit Ended();
}

void WideRunner::Step() {
  const WideStep step = run_->Next();
  if (step.what != Do::SeekSensor && !core_.registers.Reachable()) return Lose({});
  switch (step.what) {
    case Do::Set:
      return Set(step.option);
    case Do::Capture:
      return Capture(step.option);
    case Do::PutBack:
      return PutBack();
    case Do::SeekSensor:
      return SeekSensor();
    case Do::Nothing:
    case Do::End:
      return;
  }
}

std::vector<std::string> WideRunner::Quietly(const std::function<void()>& deed) {
  return kestrel::Quietly(core_.messages, edge_, deed);
}

void WideRunner::Lose(const std::vector<std::string>& told) {
  wasLost_ = true;
  run_->SensorLost(FirstOf(told, tr("The sensor was lost.")).toStdString());
  edge_.Run("WideLost", [] {});
}

void WideRunner::Set(int option) {
  run_->Began();
  bool isSet = false;
  const auto told = Quietly([&] { isSet = deeds_.chooseOption(option); });
  if (!core_.registers.Reachable()) return Lose(told);
  if (isSet) return run_->SetDone();
  run_->Failed(FirstOf(told, tr("The sensor did not take sample-rate option %1.").arg(option))
                   .toStdString());
}

void WideRunner::Capture(int option) {
  stoppedByUser_ = false;
  timedOut_ = false;
  taken_.reset();
  deadline_ = core_.seams.clock.Monotonic() + LongestCapture(option, Averages());
  run_->Began();
  emit Changed();
  isCapturing_ = true;
  const auto told = Quietly(deeds_.pressStart);
  isCapturing_ = false;
  deadline_.reset();
  if (closed_) return;
  if (std::exchange(timedOut_, false) && !stoppedByUser_) {
    return Lose({tr("A capture did not end; the sensor may have been reset.").toStdString()});
  }
  Conclude(option, told);
}

void WideRunner::Conclude(int option, const std::vector<std::string>& told) {
  if (!core_.registers.Reachable()) return Lose(told);
  if (stoppedByUser_) return run_->CaptureStopped();
  if (!told.empty()) return run_->Failed(told.front());
  if (!taken_ || !taken_->IsNew() || taken_->origin.stopped) {
    return run_->Failed(
        tr("The capture was not read out. Tick Auto-plot in the main window.").toStdString());
  }
  if (taken_->settings.option != option) {
    return run_->Failed(
        tr("The record says sample-rate option %1, though the sensor was set to %2.")
            .arg(taken_->settings.option)
            .arg(option)
            .toStdString());
  }
  run_->CaptureDone();
  emit RecordTaken(*taken_);
}

// A sensor that was reset in the middle of a capture never completes it.
void WideRunner::WatchCapture() {
  if (!deadline_ || core_.seams.clock.Monotonic() < *deadline_) return;
  timedOut_ = true;
  deeds_.pressStart();
}

void WideRunner::PutBack() {
  run_->Began();
  bool isBack = false;
  const auto told = Quietly([&] {
    edge_.Run("WidePutBack", [&] {
      if (wasLost_) {
        isBack = deeds_.giveSettingsBack(before_);
      } else {
        settings_.Restore(before_);
        isBack = settings_.LastRead() == before_;
      }
    });
  });
  if (!core_.registers.Reachable()) return Lose(told);
  if (isBack) return run_->PutBackDone();
  run_->PutBackFailed(tr("The sensor did not take its settings back: look at them in the main "
                         "window.")
                          .toStdString());
}

// Somebody may have chosen another sensor meanwhile; that one keeps its settings.
void WideRunner::SeekSensor() {
  run_->Began();
  bool isBack = false;
  static_cast<void>(Quietly([&] { edge_.Run("WideSeek", [&] { isBack = return_.Look(); }); }));
  if (closed_ || !Running()) return;
  if (!isBack || !core_.registers.Reachable()) return run_->StillLost();
  if (return_.SameRoad()) return run_->SensorBack();
  run_->PutBackFailed(
      tr("Another sensor was chosen; the settings of the first one could not be put back.")
          .toStdString());
}

}  // namespace kestrel
