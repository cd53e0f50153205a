// What the user does in the wide view: keys, cursor, kept spectra, what is remembered.
// SPDX-License-Identifier: MIT
#include <QMenu>
#include <algorithm>
#include <cmath>

#include "display/scene.h"
#include "numeric/number_texts.h"
#include "ui/wide/wide_view.h"

namespace kestrel {

void WideView::ConnectPlot() {
  plot_->installEventFilter(this);
  connect(plot_, &AnalyserPlot::ViewChanged, this, &WideView::ShowSpan);
  connect(plot_, &AnalyserPlot::CursorPlaced, this, [this](double x) { PutCursor(x); });
  connect(plot_, &AnalyserPlot::MemberDragged, this, [this](int, double x) { PutCursor(x); });
  connect(plot_, &AnalyserPlot::SnapAsked, this, [this](double x) { SnapCursor(x); });
  connect(plot_, &AnalyserPlot::StepAsked, this, &WideView::StepCursor);
  connect(plot_, &AnalyserPlot::CommandAsked, this, &WideView::Carry);
  connect(plot_, &AnalyserPlot::MenuAsked, this, [this](QPoint place) { OpenMenu(place); });
}

void WideView::OpenMenu(QPoint place) {
  QMenu menu;
  menu.setObjectName("mnuWidePlot");
  menu.addAction(tr("Copy picture"), this, &WideView::CopyAsked);
  menu.addAction(tr("Export..."), this, &WideView::ExportAsked);
  menu.addAction(tr("Show all"), plot_, &AnalyserPlot::ShowAll);
  menu.exec(place);
}

void WideView::Change(const study::WideLook& look) {
  const bool isOther = look.quantity != look_.quantity || look.up != look_.up;
  look_ = look;
  Redraw();
  if (isOther) plot_->ShowAll();
}

void WideView::ToggleAxis(Axis axis, bool isFocus) {
  study_.Change([=](study::StudyChoice& choice) {
    if (isFocus) choice.focus = axis;
    choice.shown[Index(axis)] = isFocus || !choice.shown[Index(axis)];
  });
}

void WideView::Carry(PlotCommand command) {
  const auto axisAfter = [command](PlotCommand first) {
    return static_cast<Axis>(static_cast<int>(command) - static_cast<int>(first));
  };
  study::WideLook look = look_;
  switch (command) {
    case PlotCommand::ShowX:
    case PlotCommand::ShowY:
    case PlotCommand::ShowZ:
      return ToggleAxis(axisAfter(PlotCommand::ShowX), false);
    case PlotCommand::FocusX:
    case PlotCommand::FocusY:
    case PlotCommand::FocusZ:
      return ToggleAxis(axisAfter(PlotCommand::FocusX), true);
    case PlotCommand::Vertical:
      look.up = look.up == study::Scale::Linear ? study::Scale::Logarithmic : study::Scale::Linear;
      return Change(look);
    case PlotCommand::Bands:
      look.hasOptions = !look.hasOptions;
      return Change(look);
    case PlotCommand::Labels:
      look.hasLabels = !look.hasLabels;
      return Change(look);
    case PlotCommand::CursorNone:
      return PutCursor(std::nullopt);
    case PlotCommand::CursorSingle:
      return PutCursor(MiddleHz());
    case PlotCommand::FirstValid:
      return PutCursor(0);
    case PlotCommand::LastValid:
      return PutCursor(study::kMostHz);
    case PlotCommand::SnapToPeak:
      return SnapCursor(cursor_.value_or(MiddleHz()));
    case PlotCommand::SmallerPeak:
    case PlotCommand::LargerPeak:
      return NextLine(command == PlotCommand::SmallerPeak ? 1 : -1);
    case PlotCommand::Copy:
      emit CopyAsked();
      return;
    case PlotCommand::Export:
      emit ExportAsked();
      return;
    default:
      return;
  }
}

double WideView::MiddleHz() const {
  const PlotRange& across = plot_->Ranges().across;
  return std::sqrt(across.low * across.high);
}

// On the nearest joined point.
void WideView::PutCursor(std::optional<double> hz) {
  const std::vector<double> points = study::WideFrequencies(model_.Wide());
  if (!hz || points.empty()) {
    cursor_.reset();
    plot_->SetCursor({});
    return;
  }
  const auto after = std::ranges::lower_bound(points, *hz);
  auto nearest = after == points.end() ? points.end() - 1 : after;
  if (nearest != points.begin() && *hz - *(nearest - 1) < *nearest - *hz) --nearest;
  cursor_ = *nearest;
  SceneCursor cursor;
  cursor.readOut = study::WideReadOutAt(model_.Wide(), look_, study_.Choice(), *cursor_);
  cursor.members.push_back(
      {.x = *cursor_,
       .flag = analysis::SignificantText(*cursor_, 4) + " Hz",
       .y = study::WideValueAt(model_.Wide(), look_, study_.Choice().focus, *cursor_)});
  cursor.spoken = cursor.readOut.title;
  for (const PlotReadOut::Row& row : cursor.readOut.rows) {
    cursor.spoken += ", " + row.name + " " + row.value;
  }
  plot_->SetCursor(std::move(cursor));
}

void WideView::StepCursor(double points) {
  const std::vector<double> hz = study::WideFrequencies(model_.Wide());
  if (hz.empty()) return;
  if (!cursor_) return PutCursor(MiddleHz());
  const auto now = std::ranges::lower_bound(hz, *cursor_) - hz.begin();
  // A tenth of a step is the next point: between two there is none.
  const auto step = std::abs(points) < 1 ? (points > 0 ? 1 : -1) : std::lround(points);
  const auto last = static_cast<std::ptrdiff_t>(hz.size()) - 1;
  PutCursor(hz[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(now + step, 0, last))]);
}

void WideView::SnapCursor(double hz) {
  const auto nearest = std::ranges::min_element(lines_.rows, {}, [hz](const study::WideLine& line) {
    return std::abs(std::log(line.hz / std::max(hz, 1e-6)));
  });
  if (nearest != lines_.rows.end()) PutCursor(nearest->hz);
}

// By amplitude; the largest first.
void WideView::NextLine(int step) {
  std::vector<study::WideLine> lines = lines_.rows;
  if (lines.empty()) return;
  std::ranges::stable_sort(lines, std::greater{}, &study::WideLine::peakG);
  const double now = cursor_.value_or(0);
  const auto at = std::ranges::min_element(
      lines, {}, [now](const study::WideLine& line) { return std::abs(line.hz - now); });
  const auto last = static_cast<std::ptrdiff_t>(lines.size()) - 1;
  const auto next = cursor_ ? std::clamp<std::ptrdiff_t>(at - lines.begin() + step, 0, last) : 0;
  PutCursor(lines[static_cast<std::size_t>(next)].hz);
}

void WideView::OpenKept(int index) {
  if (index < 1 || index > static_cast<int>(model_.Rows().size())) return;
  model_.Open(model_.Rows()[static_cast<std::size_t>(index) - 1].uid);
}

void WideView::Keep(QSettings& kept) const {
  kept.setValue("wide/quantity", static_cast<int>(look_.quantity.quantity));
  kept.setValue("wide/logarithmic", look_.up == study::Scale::Logarithmic);
  kept.setValue("wide/options", look_.hasOptions);
  kept.setValue("wide/labels", look_.hasLabels);
}

// What cannot be one is as it is at the first start.
void WideView::Restore(const QSettings& kept) {
  study::WideLook look;
  const int quantity =
      kept.value("wide/quantity", static_cast<int>(look.quantity.quantity)).toInt();
  if (quantity >= 0 && quantity <= static_cast<int>(analysis::Quantity::Displacement)) {
    look.quantity.quantity = static_cast<analysis::Quantity>(quantity);
  }
  look.up = kept.value("wide/logarithmic", true).toBool() ? study::Scale::Logarithmic
                                                          : study::Scale::Linear;
  look.hasOptions = kept.value("wide/options", true).toBool();
  look.hasLabels = kept.value("wide/labels", true).toBool();
  bar_->Show(look, study_.Choice());
  look_ = bar_->Look();
}

}  // namespace kestrel
