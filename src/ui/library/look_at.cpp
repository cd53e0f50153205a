// How records of the archive are overlaid, averaged, subtracted and stacked.
// SPDX-License-Identifier: MIT
#include "ui/library/look_at.h"

#include <QCoreApplication>
#include <algorithm>

namespace kestrel {
namespace {

void Subtract(StudyModel& model, const std::vector<study::RecordPointer>& records,
              const std::vector<study::RecordId>& ids) {
  const bool isFirstLater = records[0]->time > records[1]->time;
  model.Select({isFirstLater ? ids[1] : ids[0]});
  model.TakeReference();
  model.Select({isFirstLater ? ids[0] : ids[1]});
}

}  // namespace

WayRange RangeOf(Way way) {
  switch (way) {
    case Way::Overlay:
      return {2, 32};
    case Way::Average:
      return {2, 500};
    case Way::Difference:
      return {2, 2};
    case Way::Waterfall:
      return {2, 1000};
    default:
      return {1, 1};
  }
}

QString LookAt(StudyModel& model, Way way, const std::vector<study::RecordPointer>& records) {
  const auto count = static_cast<int>(records.size());
  if (count < RangeOf(way).least) return {};
  const std::vector<study::RecordId> ids = model.Bring(records);
  std::string leftOut;
  if (way == Way::Difference) {
    Subtract(model, records, ids);
  } else if (way == Way::Average || way == Way::Waterfall) {
    leftOut = model.Gather(ids);
  } else {
    model.Select(ids);
  }
  const bool isTime = records.front()->kind == RecordKind::Time;
  model.Change([&](study::StudyChoice& choice) {
    const bool isOver = way == Way::Open || way == Way::Overlay;
    choice.view = way == Way::Waterfall ? study::View::Waterfall
                  : isOver && isTime    ? study::View::Time
                                        : study::View::Spectrum;
    if (way != Way::Open) choice.difference = way == Way::Difference;
    if (way == Way::Average) choice.extras.insert(study::Extra::LinearAverage);
  });
  if (leftOut.empty()) return {};
  return QCoreApplication::translate("LookAt", "Some records are left out of the average: %1.")
      .arg(QString::fromStdString(leftOut));
}

}  // namespace kestrel
