// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "acquisition/capture_readout.h"

#include <array>

#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

// g per LSB of an FFT magnitude by range code; the weight of a time sample is twice that. The first
// differs from the record control model's gLsb on purpose.
constexpr std::array<double, 4> kLsbWeights{0.0000153, 0.0000763, 0.0003052, 0.0011921};

constexpr int kPointsPerProgressStep = 64;

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

bool CaptureReadout::ReadCaptureBuffer() {
  registers_.ReadReg(row::REC_CNT);
  if (!RegisterAccess::Usable()) return false;
  view_.SetRecCount(GeneralNumber(RegValue));
  {
    const BusyDisplay busy(view_, plotView_, busy_);
    plotView_.ClearPlot();
    loop_.YieldToPaint();
    if (!ReadConditions() || !ReadRecord()) return false;
  }
  if (view_.AutoPlotTicked()) plot_.PlotRecord();
  if (view_.DataLogTicked()) log_.WriteDataFile();
  loop_.YieldToPaint();
  return true;
}

// Supply, temperature and how the record was taken.
bool CaptureReadout::ReadConditions() {
  registers_.ReadReg(row::SUPPLY_OUT);
  if (!RegisterAccess::Usable()) return false;
  CaptSupply = RegScaled;
  view_.SetSupply(OneToFourDecimals(static_cast<double>(RegScaled)));
  registers_.ReadReg(row::TEMP_OUT);
  if (!RegisterAccess::Usable()) return false;
  CaptTemp = RegScaled;
  view_.SetTemp(OneToFourDecimals(static_cast<double>(RegScaled)));
  gRecInfo->ReadRec_Info();
  SetLsbWeight();
  return RegisterAccess::Usable();
}

void CaptureReadout::SetLsbWeight() {
  RangeSetting = gRecCtrl->RangeFS();
  const auto code = static_cast<std::size_t>(RangeSetting);
  if (RangeSetting >= 0 && code < kLsbWeights.size()) {
    LsbWeight = kLsbWeights[code];
  } else {
    messages_.Show("error decoding RangeFS sub ReadCaptureBuffer");
  }
  if (CaptureType == "TimeDomain") LsbWeight *= 2;
}

// The record at hand is replaced only once all three axes have arrived.
bool CaptureReadout::ReadRecord() {
  std::array<AxisRecord, 3> record{{{RawX, DataX}, {RawY, DataY}, {RawZ, DataZ}}};
  for (const Axis axis : kAxes) {
    if (!ReadAxis(axis, record[Index(axis)])) return false;
  }
  RawX = record[0].raw;
  DataX = record[0].data;
  RawY = record[1].raw;
  DataY = record[1].data;
  RawZ = record[2].raw;
  DataZ = record[2].data;
  Buff.sampleRateOption = gRecInfo->SampleRateOption().BFValue();
  return true;
}

bool CaptureReadout::ReadAxis(Axis axis, AxisRecord& record) {
  const int points = Buff.width + 1;
  const std::int16_t buffer = BufferRow(axis);
  for (int i = 0; i < points; ++i) {
    registers_.WriteReg(row::BUF_PNTR, i);
    registers_.ReadReg(buffer);
    if (!RegisterAccess::Usable()) return false;
    record.data(i) = RegValue * LsbWeight;
    record.raw(i) = RegValue;
    if (i % kPointsPerProgressStep == 0) {
      view_.ShowProgress(static_cast<int>(Index(axis)) * points + i, 3 * points);
    }
  }
  return true;
}

}  // namespace kestrel
