// The line under the plot: which record is shown, and what about it is not as it seems.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

#include "record/record.h"
#include "record/record_notices.h"
#include "ui/parts/line_label.h"
#include "ui/parts/record_notice_strip.h"

namespace kestrel {

// One line of the record's own settings, all that is known of it in the tool tip, and under it the
// gravest of its notices with the cure.
class RecordCaption : public QWidget {
  Q_OBJECT

 public:
  RecordCaption();

  void Show(const Record& record, const RecordPresent& present);

 signals:
  void CureWanted(Cure cure);

 private:
  LineLabel* lblRecordLine_;
  RecordNoticeStrip* notices_;
};

// A record's time as the user reads clocks: "18:34:16", the date before it when not of today.
[[nodiscard]] QString LocalTimeOf(const Record& record);

}  // namespace kestrel
