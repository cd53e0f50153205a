// How repeated captures are begun, fetched and taken up again.
// SPDX-License-Identifier: MIT
#include "ui/repeat/repeat_runner.h"

#include <QApplication>
#include <algorithm>
#include <utility>

#include "acquisition/capture_steps.h"
#include "acquisition/readings.h"
#include "device/rec_ctrl.h"
#include "regmap/register_table.h"
#include "ui/repeat/quiet_deed.h"

namespace kestrel {
namespace {

using std::chrono::ceil;
using std::chrono::milliseconds;
using Do = RepeatStep::Do;

// However late the next capture is, a change of the surroundings is noticed.
constexpr milliseconds kSoon{100};
constexpr milliseconds kDisplayEvery{250};
constexpr std::int16_t kTimerMode = 1;
constexpr int kMostAverages = 255;

}  // namespace

RepeatRunner::RepeatRunner(Core& core, HandlerEdge& edge, CaptureCycle& cycle,
                           SettingsExchange& settings, Deeds deeds)
    : core_(core),
      edge_(edge),
      cycle_(cycle),
      settings_(settings),
      deeds_(std::move(deeds)),
      return_(core),
      recordListener_(core.record.OnChange([this] { NoteRecord(); })) {
  next_.setSingleShot(true);
  next_.setTimerType(Qt::PreciseTimer);
  connect(&next_, &QTimer::timeout, this, &RepeatRunner::Tick);
  connect(&display_, &QTimer::timeout, this, [this] {
    WatchCapture();
    emit Changed();
  });
}

QString RepeatRunner::Unfit(RepeatMode mode) const {
  const bool timer = gRecCtrl->RecModeCode() == kTimerMode;
  if (mode == RepeatMode::FollowTimer && !timer) {
    return tr(
        "The sensor is not in timer mode. Choose Timer at Mode in the main window, and press "
        "Start there to begin its series.");
  }
  if (mode != RepeatMode::FollowTimer && timer) {
    return tr(
        "The sensor is in timer mode and captures by itself. Follow its timer, or choose "
        "another Mode in the main window.");
  }
  return {};
}

QString RepeatRunner::Start(const RepeatSettings& settings) {
  if (Running()) return tr("Captures are being repeated already. Stop that first.");
  if (closed_ || !core_.registers.Reachable()) {
    return tr(
        "The sensor cannot be reached. Choose one in the Interface menu of the main window, "
        "or plug its adapter in.");
  }
  const QString unfit = Unfit(settings.mode);
  if (!unfit.isEmpty()) return unfit;
  lost_ = false;
  return_.NoteRoad();
  repeat_.emplace(core_.seams.clock, settings);
  next_.start(0);
  display_.start(kDisplayEvery);
  emit Changed();
  return {};
}

void RepeatRunner::Stop() {
  if (!Running()) return;
  repeat_->UserStopped();
  Plan();
  emit Changed();
}

bool RepeatRunner::Running() const {
  return repeat_ && !repeat_->Ended();
}

std::optional<RepeatProgress> RepeatRunner::Progress() {
  if (!repeat_) return std::nullopt;
  return repeat_->Progress();
}

void RepeatRunner::UserStoppedCapture() {
  if (timedOut_) return;  // that was not the user
  stoppedByUser_ = true;
  Stop();
}

void RepeatRunner::Close() {
  closed_ = true;
  if (Running()) repeat_->UserStopped();
  next_.stop();
  display_.stop();
}

void RepeatRunner::Tick() {
  if (!Running() || closed_) return;
  if (QApplication::activeModalWidget() != nullptr) {
    repeat_->Hold(tr("A question or message is open.").toStdString());
  } else if (edge_.Resting()) {
    repeat_->Release();
    Step();
    if (closed_) return;
  }
  Plan();
  emit Changed();
}

// While something else is at work, what is due has to wait.
void RepeatRunner::Plan() {
  if (!Running()) {
    next_.stop();
    display_.stop();
    return;
  }
  const RepeatStep step = repeat_->Next();
  milliseconds wait = edge_.Resting() ? milliseconds{0} : kSoon;
  if (step.what == Do::Wait) {
    wait = ceil<milliseconds>(step.until - core_.seams.clock.Monotonic());
  }
  next_.start(std::clamp(wait, milliseconds{0}, kSoon));
}

void RepeatRunner::Step() {
  if (!core_.registers.Reachable()) NoteLoss({});
  const QString unfit = lost_ ? QString() : Unfit(repeat_->Settings().mode);
  if (!unfit.isEmpty()) return repeat_->CaptureFailed(unfit.toStdString());
  switch (repeat_->Next().what) {
    case Do::Capture:
      return Capture();
    case Do::Fetch:
      return Fetch();
    case Do::LookAtCount:
      return LookAtCount();
    case Do::SeekSensor:
      return SeekSensor();
    case Do::Wait:
    case Do::Nothing:
    case Do::End:
      return;
  }
}

std::vector<std::string> RepeatRunner::Quietly(const std::function<void()>& deed) {
  return kestrel::Quietly(core_.messages, edge_, deed);
}

void RepeatRunner::Capture() {
  stoppedByUser_ = false;
  timedOut_ = false;
  const auto lists = settings_.LastRead().lists;
  const auto averages = lists.find(Setting::FftAvgs);  // an index is its number
  deadline_ = core_.seams.clock.Monotonic() +
              LongestCapture(gRecCtrl->SampleRate(),
                             averages == lists.end() ? kMostAverages : averages->second);
  repeat_->CaptureBegan();
  emit Changed();
  const auto told = Quietly(deeds_.pressStart);
  deadline_.reset();
  const bool timedOut = std::exchange(timedOut_, false);
  if (timedOut && !stoppedByUser_ && !closed_) {
    NoteLoss({tr("a capture did not end; it may have been reset").toStdString()});
  } else {
    Conclude(told);
  }
}

void RepeatRunner::WatchCapture() {
  if (!deadline_ || core_.seams.clock.Monotonic() < *deadline_) return;
  timedOut_ = true;
  deeds_.pressStart();
}

void RepeatRunner::Fetch() {
  stoppedByUser_ = false;
  bool read = false;
  repeat_->CaptureBegan();
  const auto told =
      Quietly([&] { edge_.Run("RepeatFetch", [&] { read = cycle_.TakeSeriesRecord(); }); });
  if (!closed_ && !read && told.empty() && core_.registers.Reachable()) {
    repeat_->FetchMissed(
        tr("The sensor takes records faster than they can be read.").toStdString());
    return;
  }
  Conclude(told);
}

void RepeatRunner::Conclude(const std::vector<std::string>& told) {
  if (closed_) return;
  if (stoppedByUser_) {
    repeat_->CaptureStopped();
  } else if (!core_.registers.Reachable()) {
    NoteLoss(told);
  } else if (told.empty()) {
    repeat_->CaptureDone();
  } else {
    repeat_->CaptureFailed(told.front());
    for (const std::string& text : told) core_.seams.messages.Show(text);
  }
}

// A record of the series that was read counts, whoever wanted it.
void RepeatRunner::NoteRecord() {
  const Record& record = core_.record.Get();
  if (!Running() || !record.Taken() || !record.IsNew() || record.origin.stored) return;
  repeat_->CountFetched(record.conditions.recordCount);
}

void RepeatRunner::LookAtCount() {
  const auto told = Quietly([this] {
    const auto period = ReadWord(core_.registers, row::REC_PRD);
    const auto count = ReadWord(core_.registers, row::REC_CNT);
    if (!period || !count) return;
    if (const auto time = TimerPeriod(*period)) repeat_->SensorPeriod(*time);
    repeat_->CountSeen(*count);
  });
  if (!core_.registers.Reachable()) NoteLoss(told);
}

// The main window shows a loss after a handler.
void RepeatRunner::NoteLoss(const std::vector<std::string>& told) {
  if (lost_) return;
  lost_ = true;
  before_ = settings_.LastRead();
  const QString what = told.empty() ? QString() : QString::fromStdString(told.front());
  repeat_->SensorLost(
      (what.isEmpty() ? tr("the sensor was lost") : tr("the sensor was lost (%1)").arg(what))
          .toStdString());
  edge_.Run("RepeatLost", [] {});
}

// Somebody may have chosen another sensor meanwhile; that one keeps its settings.
void RepeatRunner::SeekSensor() {
  bool back = false;
  bool settingsHold = true;
  static_cast<void>(Quietly([&] {
    edge_.Run("RepeatSeek", [&] {
      back = return_.Look();
      if (back && return_.SameRoad()) settingsHold = deeds_.giveSettingsBack(before_);
    });
  }));
  if (closed_ || !Running()) return;
  if (!back || !core_.registers.Reachable()) return repeat_->SensorSought();
  lost_ = false;
  return_.NoteRoad();
  repeat_->SensorBack();
  if (!settingsHold) {
    repeat_->CaptureFailed(
        tr("The sensor came back with other settings than before, and did not take those.")
            .toStdString());
  }
}

}  // namespace kestrel
