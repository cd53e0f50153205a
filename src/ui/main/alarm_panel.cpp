// The lights and read-outs of the spectral alarms.
// SPDX-License-Identifier: MIT
#include "ui/main/alarm_panel.h"

#include <QGridLayout>

#include "app/program_state.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

enum Column { AxisName, AlarmColumn, BandColumn, PeakColumn, BinColumn, FirstIndicator };

// The colour alone would not tell everybody.
QString StateText(double colour) {
  if (colour == clrRed) return AlarmPanel::tr("fault");
  if (colour == clrYellow) return AlarmPanel::tr("warning");
  return AlarmPanel::tr("no alarm");
}

QLabel* Heading(const QString& text) {
  auto* label = new QLabel(text);
  label->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
  return label;
}

}  // namespace

AlarmPanel::AlarmPanel(Locale& locale) : AsOfBox(tr("Spectral alarms"), locale) {
  auto* grid = new QGridLayout(this);
  grid->setVerticalSpacing(3);
  grid->addWidget(Heading(tr("Alarm")), 0, AlarmColumn);
  grid->addWidget(Heading(tr("Band")), 0, BandColumn);
  grid->addWidget(Heading(tr("Peak, g")), 0, PeakColumn);
  grid->addWidget(Heading(tr("Peak bin")), 0, BinColumn);
  grid->addWidget(Heading(tr("State of bands 1 to 6")), 0, FirstIndicator + 1, 1, kAlarmBands);
  for (const Axis axis : kAxes) BuildRow(axis);
  for (int column = AlarmColumn; column <= BinColumn; ++column) grid->setColumnStretch(column, 3);
  for (int band = 1; band <= kAlarmBands; ++band) {
    grid->setColumnStretch(FirstIndicator + band, 1);
  }
}

void AlarmPanel::BuildRow(Axis axis) {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  const int number = static_cast<int>(Index(axis)) + 1;
  const QString letter = QString(QChar(Letter(axis)));
  Row& row = rows_[Index(axis)];
  row.txtAlarm = MakeReadOut(ArrayName("txtAlarm", number), tr("Alarm of axis %1").arg(letter));
  row.txtBand = MakeReadOut(ArrayName("txtBand", number), tr("Band of axis %1").arg(letter));
  row.txtPK = MakeReadOut(ArrayName("txtPK", number), tr("Peak of axis %1 in g").arg(letter));
  row.txtFreq = MakeReadOut(ArrayName("txtFreq", number), tr("Peak bin of axis %1").arg(letter));
  grid->addWidget(new QLabel(letter), number, AxisName);
  grid->addWidget(row.txtAlarm, number, AlarmColumn);
  grid->addWidget(row.txtBand, number, BandColumn);
  grid->addWidget(row.txtPK, number, PeakColumn);
  grid->addWidget(row.txtFreq, number, BinColumn);
  for (int band = 1; band <= kAlarmBands; ++band) {
    QLabel* indicator = MakeLabel(ArrayName("lblBA", number * 10 + band), QString::number(band));
    indicator->setAlignment(Qt::AlignCenter);
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
  rows_[Index(axis)].txtAlarm->setText(QString::fromStdString(text));
}

void AlarmPanel::SetIndicator(Axis axis, int band, double colour) {
  QLabel* indicator = rows_[Index(axis)].lblBA.at(static_cast<std::size_t>(band));
  PaintGround(indicator, ToColour(colour));
  indicator->setAccessibleDescription(
      tr("Axis %1, band %2: %3").arg(QChar(Letter(axis))).arg(band).arg(StateText(colour)));
  Refreshed();
}

void AlarmPanel::Grey() {
  for (const Axis axis : kAxes) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      QLabel* indicator = rows_[Index(axis)].lblBA.at(static_cast<std::size_t>(band));
      PaintGrey(indicator);
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
