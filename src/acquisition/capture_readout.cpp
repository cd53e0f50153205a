// What a read-out asks of the sensor, in its order.
// SPDX-License-Identifier: MIT
#include "acquisition/capture_readout.h"

#include <array>
#include <utility>

#include "acquisition/sensor_identity.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr int kPointsPerProgressStep = 64;
constexpr std::int16_t kLastRange = 3;

std::int16_t BufferRow(Axis axis) {
  return std::array{row::X_BUF, row::Y_BUF, row::Z_BUF}[Index(axis)];
}

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
  for (const Axis axis : kAxes) RegSigned[BufferRow(axis)] = kind == RecordKind::Time;
  NameKind(kind);
}

bool CaptureReadout::ReadCaptureBuffer(const RecordOrigin& origin) {
  std::optional<Record> record = Read(origin);
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
  Record record;
  record.kind = expected_;
  record.time = core_.seams.clock.UtcNow();
  record.origin = origin;
  record.origin.countBefore = count_;
  const auto count = core_.registers.Read(row::REC_CNT);
  if (!count) return std::nullopt;
  record.conditions.recordCount = count->value;
  view_.SetRecCount(GeneralNumber(count->value));
  const BusyDisplay busy(view_, plotView_, busy_);
  plotView_.ClearPlot();
  plotView_.ClearCursor();
  core_.seams.loop.YieldToPaint();
  if (!ReadConditions(record) || !ReadPoints(record)) return std::nullopt;
  record.status = status_.Last();
  record.alarms = alarms_.State();
  record.alarms.statusKnown = false;
  record.sensor = PresentSensor();
  count_ = record.conditions.recordCount;
  return record;
}

// Supply, temperature and how the record was taken.
bool CaptureReadout::ReadConditions(Record& record) {
  const auto supply = core_.registers.Read(row::SUPPLY_OUT);
  if (!supply) return false;
  record.conditions.supplyV = supply->scaled;
  view_.SetSupply(OneToFourDecimals(static_cast<double>(supply->scaled)));
  const auto temperature = core_.registers.Read(row::TEMP_OUT);
  if (!temperature) return false;
  record.conditions.temperatureC = temperature->scaled;
  view_.SetTemp(OneToFourDecimals(static_cast<double>(temperature->scaled)));
  gRecInfo->ReadRec_Info();
  if (!core_.registers.LastOutcome()) return false;
  record.settings = SettingsFromWords(ToLong(gRecInfo->DecimalReadWord()), gRecCtrl->Word());
  SetScale(record);
  return true;
}

// The scale is that of the range that is set; a code that is no range leaves the scale as it was.
void CaptureReadout::SetScale(Record& record) {
  record.scaledRange = gRecCtrl->RangeFS();
  if (record.scaledRange >= 0 && record.scaledRange <= kLastRange) {
    record.lsbWeight = LsbWeightOf(record.scaledRange, record.kind);
    return;
  }
  core_.seams.messages.Show("error decoding RangeFS sub ReadCaptureBuffer");
  record.lsbWeight = core_.record.Get().lsbWeight * (record.kind == RecordKind::Time ? 2 : 1);
}

bool CaptureReadout::ReadPoints(Record& record) {
  for (const Axis axis : kAxes) {
    if (!ReadAxis(axis, record)) return false;
  }
  return true;
}

bool CaptureReadout::ReadAxis(Axis axis, Record& record) {
  const int points = record.Width() + 1;
  const std::int16_t buffer = BufferRow(axis);
  AxisRecord& words = record.Of(axis);
  for (int i = 0; i < points; ++i) {
    if (!core_.registers.Write(row::BUF_PNTR, i)) return false;
    const auto word = core_.registers.Read(buffer);
    if (!word) return false;
    words.data(i) = word->value * record.lsbWeight;
    words.raw(i) = word->value;
    if (i % kPointsPerProgressStep == 0) {
      view_.ShowProgress(static_cast<int>(Index(axis)) * points + i, 3 * points);
    }
  }
  return true;
}

void CaptureReadout::ShowConditions(const Conditions& conditions) {
  view_.SetSupply(OneToFourDecimals(static_cast<double>(conditions.supplyV)));
  view_.SetTemp(OneToFourDecimals(static_cast<double>(conditions.temperatureC)));
}

}  // namespace kestrel
