// What a read-out asks of the sensor, in its order.
// SPDX-License-Identifier: MIT
#include "acquisition/capture_readout.h"

#include <utility>

#include "acquisition/readings.h"
#include "acquisition/sensor_identity.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "numeric/number_format.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int16_t kLastRange = 3;
constexpr int kSeriesTries = 3;

// Hourglass and progress bar for as long as a read-out lasts, however it ends.
class BusyDisplay {
 public:
  BusyDisplay(ReadoutView& view, PlotView& plotView, bool& busy)
      : view_(view), plotView_(plotView), busy_(busy) {
    busy_ = true;
    view_.ShowHourglass(true);
    plotView_.ShowFrequency(true);
  }
  ~BusyDisplay() {
    view_.HideProgress();
    view_.ShowHourglass(false);
    plotView_.ShowFrequency(false);
    busy_ = false;
  }
  BusyDisplay(const BusyDisplay&) = delete;
  BusyDisplay& operator=(const BusyDisplay&) = delete;

 private:
  ReadoutView& view_;
  PlotView& plotView_;
  bool& busy_;
};

}  // namespace

void CaptureReadout::Expect(RecordKind kind) {
  expected_ = kind;
  ReadBuffersAs(kind);
  NameKind(kind);
}

bool CaptureReadout::ReadCaptureBuffer(const RecordOrigin& origin) {
  return Take(Read(origin));
}

bool CaptureReadout::ReadSeriesBuffer() {
  for (int tries = 0; tries < kSeriesTries; ++tries) {
    std::optional<Record> record = Read({});
    const auto count = ReadWord(core_.registers, row::REC_CNT);
    if (!record || !count) break;
    if (*count == record->conditions.recordCount) return Take(std::move(record));
  }
  return Take(std::nullopt);
}

bool CaptureReadout::Take(std::optional<Record> record) {
  if (!record) {
    const Record& earlier = core_.record.Get();
    Expect(earlier.kind);
    if (earlier.Taken()) ShowConditions(earlier.conditions);
    return false;
  }
  core_.record.HandOver(*std::move(record));
  if (view_.AutoPlotTicked()) {
    plot_.PlotRecord();
    core_.record.AddAlarms(alarms_.State());
  }
  if (view_.DataLogTicked()) log_.WriteDataFile();
  core_.seams.loop.YieldToPaint();
  return true;
}

// None when the sensor was lost.
std::optional<Record> CaptureReadout::Read(const RecordOrigin& origin) {
  const auto time = core_.seams.clock.UtcNow();
  std::optional<BusyDisplay> busy;
  std::optional<Record> record = ReadRecordBuffers(
      core_.registers, fast_, expected_,
      {.scale = [this](Record& read) { SetScale(read); },
       .counted =
           [&](std::int32_t count) {
             view_.SetRecCount(GeneralNumber(count));
             busy.emplace(view_, plotView_, busy_);
             ClearPlot();
           },
       .supply = [this](float volts) { view_.SetSupply(OneToFourDecimals(double{volts})); },
       .temperature = [this](float celsius) { view_.SetTemp(OneToFourDecimals(double{celsius})); },
       .points = [this](int done, int total) { view_.ShowProgress(done, total); }});
  if (!record) return std::nullopt;
  record->time = time;
  record->origin = origin;
  record->origin.countBefore = count_;
  record->status = status_.Last();
  record->alarms = alarms_.State();
  record->alarms.statusKnown = false;
  record->sensor = PresentSensor(core_);
  count_ = record->conditions.recordCount;
  return record;
}

void CaptureReadout::ClearPlot() {
  plotView_.ClearPlot();
  plotView_.ClearCursor();
  core_.seams.loop.YieldToPaint();
}

// The scale is that of the range that is set; a code that is no range leaves the scale as it was.
void CaptureReadout::SetScale(Record& record) {
  gRecInfo->Decode(record.settings.recInfo);
  record.settings.recCtrl = gRecCtrl->Word();
  record.scaledRange = gRecCtrl->RangeFS();
  if (record.scaledRange >= 0 && record.scaledRange <= kLastRange) {
    record.lsbWeight = LsbWeightOf(record.scaledRange, record.kind);
    return;
  }
  core_.seams.messages.Show("error decoding RangeFS sub ReadCaptureBuffer");
  record.lsbWeight = core_.record.Get().lsbWeight * (record.kind == RecordKind::Time ? 2 : 1);
}

void CaptureReadout::ShowConditions(const Conditions& conditions) {
  view_.SetSupply(OneToFourDecimals(static_cast<double>(conditions.supplyV)));
  view_.SetTemp(OneToFourDecimals(static_cast<double>(conditions.temperatureC)));
}

}  // namespace kestrel
