// Answering assistive programs that ask for the plot's name and value.
// SPDX-License-Identifier: MIT
#include "ui/chart/plot_speaker.h"

#include <QVariant>

#include "ui/chart/analyser_plot.h"

namespace kestrel {
namespace {

constexpr qsizetype kSpokenPeaks = 3;

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
  const std::string& cursor = Plot()->Cursor().spoken;
  if (kind == QAccessible::Value) return QString::fromStdString(cursor);
  if (kind == QAccessible::Description) {
    return cursor.empty() ? Content() : QString::fromStdString(cursor);
  }
  return QAccessibleWidget::text(kind);
}

QString PlotSpeaker::Content() const {
  const PlotScene& scene = Plot()->Scene();
  if (!scene.hint.empty()) return QString::fromStdString(scene.hint);
  QStringList peaks;
  for (const PlotPane& pane : scene.panes) {
    for (const PlotPeak& peak : pane.peaks) {
      if (peaks.size() < kSpokenPeaks) {
        peaks << QString::fromStdString(peak.title + " " + peak.detail);
      }
    }
  }
  const QString cure = AnalyserPlot::tr("No cursor; C puts one there.");
  return peaks.isEmpty() ? cure
                         : AnalyserPlot::tr("Largest peaks: %1. %2").arg(peaks.join("; "), cure);
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
