// How the alarm editor takes over another window's bands, and writes them on request.
// SPDX-License-Identifier: MIT
#include <utility>

#include "alarms/band_range.h"
#include "ui/bands/frmAlarmSpectrum.h"

namespace kestrel {
namespace {

constexpr const char* kNoSensor =
    "Not written: no sensor can be reached. The bands stand in this table; Write all puts them "
    "into "
    "the sensor once it is there.";

// A code means another level at another range: written, it would alarm at the wrong one.
std::string WhyOtherRange(std::int32_t range) {
  const std::int32_t now = CurrentRange();
  if (now == range || now == kRangeNotKnown || range == kRangeNotKnown) return "";
  return "Not written: the thresholds are given for the range " + RangeName(range) +
         ", the sensor is set to " + RangeName(now) +
         ". Set the sensor to that range first, or have the g values kept here and press Write "
         "all.";
}

}  // namespace

void frmAlarmSpectrum::TakeOver(TakingOver taking) {
  if (taking_) taking_->told("Not taken over: a later proposal came first.");
  taking_ = std::move(taking);
  TakeWaiting();
}

// At the opening the table is read from the sensor; what was put into it before would be replaced.
void frmAlarmSpectrum::TakeWaiting() {
  const bool isOpening = !isVisible() || loadWhenPainted_ || afterPainting_.isActive();
  if (!taking_ || isOpening || transfer_.Running()) return;
  const TakingOver taking = *std::exchange(taking_, {});
  panel_->grid->Commit();
  const EditOutcome outcome = edits_.Take(taking.proposal);
  DisplaySpectrum(static_cast<std::int16_t>(taking.proposal.option));
  Finish(outcome);
  if (taking.isWritten) {
    const std::string written = WriteAndCompare(taking.proposal.range);
    DisplaySpectrum(static_cast<std::int16_t>(taking.proposal.option));
    SetMessage(written);
  }
  taking.told(panel_->lblmsg->text().toStdString());
}

std::string frmAlarmSpectrum::WriteAndCompare(std::int32_t range) {
  std::string reason = core_.registers.Reachable() ? WhyNotWritten() : kNoSensor;
  if (reason.empty()) reason = WhyOtherRange(range);
  if (!reason.empty()) return reason;
  const BandTable meant = AlarmBandTable;
  const bool isWritten = Transfer("cmdWriteAll_Click", "writing to the sensor",
                                  [this] { transfer_.cmdWriteAll_Click(); });
  if (!isWritten) return panel_->lblmsg->text().toStdString();
  if (!ReadAll("cmdReadAll_Click")) {
    return "Written, but not read back: " + panel_->lblmsg->text().toStdString();
  }
  const std::vector<BandPlace> others = ChangedPlaces(meant, AlarmBandTable);
  if (others.empty()) return "All bands were written and read back: the sensor holds them.";
  return "Written, but the sensor holds " + std::to_string(others.size()) +
         (others.size() == 1 ? " other value" : " other values") + ", first " +
         PlaceText(others.front()) + ": " +
         std::to_string(ValueAt(AlarmBandTable, others.front())) + " in place of " +
         std::to_string(ValueAt(meant, others.front())) + ". Undo brings back what was meant.";
}

}  // namespace kestrel
