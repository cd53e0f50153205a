// How the analyser is opened, and how records, bands and progress reach it.
// SPDX-License-Identifier: MIT
#include "ui/main/analyser_part.h"

#include <QTimer>
#include <algorithm>
#include <map>
#include <utility>

#include "ui/parts/interface_text.h"
#include "ui/parts/widgets.h"
#include "ui/repeat/repeat_text.h"

namespace kestrel {
namespace {

constexpr std::size_t kMostWaiting = study::kShelfRecords;
constexpr unsigned kAllOptions = 0b1111;

study::SensorBands BandsOf(const BandTable& table, int option) {
  study::SensorBands bands{};
  for (const Axis axis : kAxes) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      bands[Index(axis)][static_cast<std::size_t>(band - 1)] = {
          .lowBin = table(kFLowField, band, option),
          .highBin = table(kFHighField, band, option),
          .warning = table(Alarm1Field(axis), band, option),
          .fault = table(Alarm2Field(axis), band, option)};
    }
  }
  return bands;
}

}  // namespace

AnalyserPart::AnalyserPart(const Parts& parts)
    : cmdAnalyser(MakeButton("cmdAnalyser", tr("Analyser"),
                             tr("Look at this record with zoom, peaks, levels and cursors (F9)"))),
      parts_(parts),
      recordListener_(parts.core.record.OnChange([this] { TakeRecord(); })) {
  connect(cmdAnalyser, &QPushButton::clicked, this, [this] { Open(); });
  connect(parts_.menu.mnuAnalyser, &QAction::triggered, this, [this] { Open(); });
  // Told whenever the alarm editor's table may be another one.
  connect(&parts_.windows, &SecondaryWindows::BandRangeNoted, this, [this] {
    if (window_) GiveBands();
  });
  connect(&parts_.repeats, &RepeatRunner::Changed, this, [this] { ShowProgress(); });
  connect(&parts_.capture, &CapturePanel::CaptureStateChanged, this, [this] { ShowProgress(); });
  ConnectWide();
}

// The records of one run are one wide spectrum; captures that are made again belong to the one
// before.
void AnalyserPart::ConnectWide() {
  connect(&parts_.wide, &WideRunner::Began, this, [this](unsigned options) {
    const bool isAgain = options != kAllOptions && wideSet_.has_value();
    if (!isAgain) wideSet_ = archive::NewUid();
    parts_.keeper.MarkAs(archive::WideMark{.set = *wideSet_, .wanted = options});
    if (window_) window_->Wide().Model().Begin(options, isAgain);
  });
  connect(&parts_.wide, &WideRunner::RecordTaken, this, [this](const Record& record) {
    if (window_) window_->Wide().Model().Take(record);
  });
  connect(&parts_.wide, &WideRunner::Changed, this, [this] { ShowProgress(); });
  connect(&parts_.wide, &WideRunner::Ended, this, [this] {
    parts_.keeper.MarkAs(std::nullopt);
    ShowProgress();
    if (!window_) return;
    window_->Wide().Model().End();
    window_->Wide().SetTrouble(WideTrouble(*parts_.wide.Progress()));
  });
}

void AnalyserPart::CaptureWide(unsigned options) {
  const QString trouble = parts_.wide.Start(options);
  if (window_) window_->Wide().SetTrouble(trouble);
}

AnalyserPart::~AnalyserPart() {
  delete window_;
}

void AnalyserPart::Open() {
  if (!window_) {
    window_ = new frmAnalyser(Host());
    for (const Waiting& each : std::exchange(waiting_, {})) {
      each.record ? window_->Model().Take(each.record) : window_->Model().AddGap(each.gap);
    }
    Refresh();
  }
  window_->ShowInFront();
}

void AnalyserPart::OpenMonitor() {
  Open();
  window_->ChooseView(study::View::Monitor);
}

void AnalyserPart::Close() {
  if (window_) window_->close();
}

// From the event loop: a capture lasts, and whoever asked for it returns at once.
void AnalyserPart::Later(std::function<void()> deed) {
  QTimer::singleShot(0, this, std::move(deed));
}

AnalyserHost AnalyserPart::Host() {
  const auto isCapturing = [this] { return parts_.capture.StartCaption() == kStopCaption; };
  const auto press = [this] { parts_.capture.cmdStart->click(); };
  return {
      .files = parts_.core.seams.files,
      .capture =
          [this, isCapturing, press] {
            if (!isCapturing()) Later(press);
          },
      .stop =
          [this, isCapturing, press] {
            parts_.repeats.Stop();
            parts_.wide.Stop();
            if (isCapturing()) Later(press);
          },
      .captureAtOption =
          [this, isCapturing, press](int option) {
            if (isCapturing()) return;
            Later([this, press, option] {
              if (parts_.cures.ChooseOption(option)) press();
            });
          },
      .cure = [this](Cure cure) { Later([this, cure] { parts_.cures.CarryOut(cure); }); },
      .openRepeat = parts_.openRepeat,
      .toggleRepeat =
          [this] {
            const auto progress = parts_.repeats.Progress();
            if (parts_.repeats.Running()) {
              parts_.repeats.Stop();
            } else if (!progress || !parts_.repeats.Start(progress->settings).isEmpty()) {
              parts_.openRepeat();
            }
          },
      .keeper = &parts_.keeper,
      .openBands = [this] { Later([this] { parts_.windows.OpenAlarmSpectrum(); }); },
      .propose =
          [this](const BandProposal& proposal, bool isWritten,
                 std::function<void(const std::string&)> told) {
            Later([this,
                   taking = frmAlarmSpectrum::TakingOver{proposal, isWritten, std::move(told)}] {
              parts_.windows.TakeOverBands(taking);
            });
          },
      .captureWide = [this](unsigned options) { Later([this, options] { CaptureWide(options); }); },
      .wideSeconds = [this] { return parts_.wide.ExpectedSeconds(); },
      .monitor = parts_.watch.Host()};
}

void AnalyserPart::TakeRecord() {
  const Record& record = parts_.core.record.Get();
  if (!record.Taken() || (last_ && *last_ == record)) return;
  const auto before = last_ && study::IsSameCapture(*last_, record) ? last_ : nullptr;
  last_ = std::make_shared<const Record>(record);
  if (window_) {
    GiveBands();
    window_->Model().Take(last_);
    return;
  }
  const auto kept = std::find_if(waiting_.rbegin(), waiting_.rend(), [&](const Waiting& each) {
    return before && each.record == before;
  });
  if (kept != waiting_.rend()) {
    kept->record = last_;
  } else {
    Wait({.record = last_, .gap = {}});
  }
}

void AnalyserPart::NoteGap(const std::string& reason) {
  window_ ? window_->Model().AddGap(reason) : Wait({.record = nullptr, .gap = reason});
}

void AnalyserPart::Wait(Waiting what) {
  waiting_.push_back(std::move(what));
  if (waiting_.size() > kMostWaiting) waiting_.pop_front();
}

void AnalyserPart::Refresh() {
  if (!window_) return;
  GiveBands();
  const bool isLent = parts_.watch.HasLent();
  const InterfaceText text = isLent ? parts_.watch.Interface() : DescribeInterface();
  window_->SetSensor(QString::fromStdString(text.line),
                     QString::fromStdString(text.line + "\n" + text.detail).trimmed());
  window_->Area().SetSensorLost(!isLent && !parts_.core.registers.Reachable());
  ShowProgress();
}

void AnalyserPart::GiveBands() {
  if (hasBands_ && bands_ == AlarmBandTable) return;
  bands_ = AlarmBandTable;
  hasBands_ = true;
  std::map<int, study::SensorBands> bands;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    bands[option] = BandsOf(bands_, option);
  }
  window_->Model().SetSensorBands(bands);
  window_->Workbench().Model().SetTable(bands_);
}

void AnalyserPart::ShowProgress() {
  const auto progress = parts_.repeats.Progress();
  if (progress && progress->gaps.size() > gaps_) NoteGap(progress->gaps.back().reason);
  if (progress) gaps_ = progress->gaps.size();
  if (!window_) return;
  const bool isRepeating = parts_.repeats.Running();
  const bool isWide = parts_.wide.Running();
  window_->SetRunning(isRepeating || isWide || parts_.capture.StartCaption() == kStopCaption);
  if (isWide) {
    const WideProgress wide = *parts_.wide.Progress();
    return window_->SetProgress(WideLine(wide), wide.share);
  }
  if (!progress || !isRepeating) {
    window_->SetProgress({}, 0);
    return;
  }
  const auto times = progress->settings.times;
  window_->SetProgress(RepeatLine(*progress),
                       times ? static_cast<double>(progress->done) / *times : -1);
}

}  // namespace kestrel
