// The lights and read-outs of the spectral alarms.
// SPDX-License-Identifier: MIT
#include "ui/panels/alarm_panel.h"

#include <QGridLayout>

#include "app/program_state.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

// As the texts of an axis's alarm are.
constexpr const char* kAlarmWarning = " Warning";
constexpr const char* kAlarmFault = " Fault";

enum Column { AxisName, AlarmColumn, BandColumn, PeakColumn, BinColumn, FirstIndicator };

// The colour alone would not tell everybody.
QString StateText(double colour) {
  if (colour == clrRed) return AlarmPanel::tr("fault");
  if (colour == clrYellow) return AlarmPanel::tr("warning");
  return AlarmPanel::tr("no alarm");
}

QLabel* Heading(const QString& text, Qt::Alignment side) {
  auto* label = new QLabel(text);
  label->setAlignment(side | Qt::AlignBottom);
  constexpr int kInset = 4;  // of the texts in the boxes below
  label->setContentsMargins(kInset, 0, kInset, 0);
  return label;
}

// Room for the widest text that the box will have.
QLineEdit* MakeBox(const QString& name, const QString& accessibleName, const QString& widest,
                   Qt::Alignment side) {
  constexpr int kMargins = 6;  // of the box, beside the text
  QLineEdit* box = MakeReadOut(name, accessibleName);
  ClearGround(*box);
  QFont bold = box->font();
  bold.setBold(true);
  box->setMinimumWidth(QFontMetrics(bold).horizontalAdvance(widest) + kMargins);
  box->setAlignment(side);
  return box;
}

void SetBold(QWidget& widget, bool isBold) {
  QFont font = widget.font();
  font.setBold(isBold);
  widget.setFont(font);
}

}  // namespace

AlarmPanel::AlarmPanel(Locale& locale) : AsOfBox(tr("Spectral alarms"), locale) {
  auto* grid = new QGridLayout(this);
  grid->addWidget(Heading(tr("Alarm"), Qt::AlignLeft), 0, AlarmColumn);
  grid->addWidget(Heading(tr("Band"), Qt::AlignRight), 0, BandColumn);
  grid->addWidget(Heading(tr("Peak, g"), Qt::AlignRight), 0, PeakColumn);
  grid->addWidget(Heading(tr("Peak bin"), Qt::AlignRight), 0, BinColumn);
  grid->addWidget(Heading(tr("State of bands 1 to 6"), Qt::AlignHCenter), 0, FirstIndicator + 1, 1,
                  kAlarmBands);
  for (const Axis axis : kAxes) {
    BuildRow(axis);
    BuildIndicators(axis);
  }
  for (int column = AlarmColumn; column <= BinColumn; ++column) grid->setColumnStretch(column, 1);
  constexpr int kGap = 12;
  grid->setColumnMinimumWidth(FirstIndicator, kGap);
  SetSpacing(RoomySpacing());
}

void AlarmPanel::SetSpacing(const Spacing& spacing) {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  SpaceGroup(*grid, spacing);
  grid->setVerticalSpacing(spacing.line);
  grid->setHorizontalSpacing(spacing.beside);
}

void AlarmPanel::BuildRow(Axis axis) {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  const int number = static_cast<int>(Index(axis)) + 1;
  const QString letter = QString(QChar(Letter(axis)));
  Row& row = rows_[Index(axis)];
  row.txtAlarm = MakeBox(ArrayName("txtAlarm", number), tr("Alarm of axis %1").arg(letter),
                         kAlarmWarning, Qt::AlignLeft);
  row.txtBand =
      MakeBox(ArrayName("txtBand", number), tr("Band of axis %1").arg(letter), "0", Qt::AlignRight);
  row.txtPK = MakeBox(ArrayName("txtPK", number), tr("Peak of axis %1 in g").arg(letter), " 00.000",
                      Qt::AlignRight);
  row.txtFreq = MakeBox(ArrayName("txtFreq", number), tr("Peak bin of axis %1").arg(letter), " 000",
                        Qt::AlignRight);
  grid->addWidget(new QLabel(letter), number, AxisName);
  grid->addWidget(row.txtAlarm, number, AlarmColumn);
  grid->addWidget(row.txtBand, number, BandColumn);
  grid->addWidget(row.txtPK, number, PeakColumn);
  grid->addWidget(row.txtFreq, number, BinColumn);
}

void AlarmPanel::BuildIndicators(Axis axis) {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  const int number = static_cast<int>(Index(axis)) + 1;
  const QString letter = QString(QChar(Letter(axis)));
  Row& row = rows_[Index(axis)];
  for (int band = 1; band <= kAlarmBands; ++band) {
    auto* indicator = new StateChip(ArrayName("lblBA", number * 10 + band), QString::number(band));
    indicator->setToolTip(
        tr("Axis %1, band %2: green no alarm, yellow warning, red fault").arg(letter).arg(band));
    indicator->setAccessibleDescription(tr("Axis %1, band %2: not read yet").arg(letter).arg(band));
    grid->addWidget(indicator, number, FirstIndicator + band);
    row.lblBA[static_cast<std::size_t>(band)] = indicator;
  }
}

void AlarmPanel::SetBand(Axis axis, const std::string& text) {
  rows_[Index(axis)].txtBand->setText(QString::fromStdString(text));
}

void AlarmPanel::SetAlarm(Axis axis, const std::string& text) {
  QLineEdit& box = *rows_[Index(axis)].txtAlarm;
  box.setText(QString::fromStdString(text));
  const bool isFault = text == kAlarmFault;
  const bool standsOut = isFault || text == kAlarmWarning;
  SetBold(box, standsOut);
  if (standsOut) {
    PaintGround(&box, ToColour(isFault ? clrRed : clrYellow));
  } else {
    ClearGround(box);
  }
}

void AlarmPanel::SetIndicator(Axis axis, int band, double colour) {
  StateChip* indicator = rows_[Index(axis)].lblBA.at(static_cast<std::size_t>(band));
  indicator->ShowState(ToColour(colour), colour != clrGreen);
  indicator->setAccessibleDescription(
      tr("Axis %1, band %2: %3").arg(QChar(Letter(axis))).arg(band).arg(StateText(colour)));
  Refreshed();
}

void AlarmPanel::Grey() {
  for (const Axis axis : kAxes) {
    QLineEdit& alarm = *rows_[Index(axis)].txtAlarm;
    if (alarm.font().bold()) PaintGrey(&alarm);
    for (int band = 1; band <= kAlarmBands; ++band) {
      StateChip* indicator = rows_[Index(axis)].lblBA.at(static_cast<std::size_t>(band));
      indicator->Grey();
      indicator->setAccessibleDescription(
          tr("%1, not known now").arg(indicator->accessibleDescription()));
    }
  }
}

void AlarmPanel::SetPeak(Axis axis, const std::string& text) {
  rows_[Index(axis)].txtPK->setText(QString::fromStdString(text));
}

void AlarmPanel::SetPeakBin(Axis axis, const std::string& text) {
  rows_[Index(axis)].txtFreq->setText(QString::fromStdString(text));
}

}  // namespace kestrel
