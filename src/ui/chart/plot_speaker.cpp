// Answering assistive programs that ask for the plot's name and value.
// SPDX-License-Identifier: MIT
#include "ui/chart/plot_speaker.h"

#include <QVariant>

#include "ui/chart/analyser_plot.h"

namespace kestrel {
namespace {

QAccessibleInterface* SpeakerFor(const QString& /*className*/, QObject* object) {
  auto* plot = qobject_cast<AnalyserPlot*>(object);
  return plot == nullptr ? nullptr : new PlotSpeaker(plot);
}

}  // namespace

PlotSpeaker::PlotSpeaker(AnalyserPlot* plot) : QAccessibleWidget(plot, QAccessible::Chart) {}

void PlotSpeaker::Present() {
  QAccessible::installFactory(&SpeakerFor);
}

void PlotSpeaker::CursorMoved(AnalyserPlot* plot) {
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent moved(plot, PlotSpeaker(plot).currentValue());
  QAccessible::updateAccessibility(&moved);
  QAccessibleEvent described(plot, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&described);
}

AnalyserPlot* PlotSpeaker::Plot() const {
  return static_cast<AnalyserPlot*>(widget());
}

QString PlotSpeaker::text(QAccessible::Text kind) const {
  if (kind == QAccessible::Value || kind == QAccessible::Description) {
    return QString::fromStdString(Plot()->Cursor().spoken);
  }
  return QAccessibleWidget::text(kind);
}

void* PlotSpeaker::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QVariant PlotSpeaker::currentValue() const {
  const auto& members = Plot()->Cursor().members;
  return members.empty() ? QVariant() : QVariant(members.front().x);
}

void PlotSpeaker::setCurrentValue(const QVariant& value) {
  bool isNumber = false;
  const double x = value.toDouble(&isNumber);
  if (isNumber) emit Plot()->CursorPlaced(x, 0);
}

QVariant PlotSpeaker::minimumValue() const {
  return Plot()->Scene().across.whole.low;
}

QVariant PlotSpeaker::maximumValue() const {
  return Plot()->Scene().across.whole.high;
}

}  // namespace kestrel
