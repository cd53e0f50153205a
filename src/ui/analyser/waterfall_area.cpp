// How records reach the waterfall, and how its parts follow each other.
// SPDX-License-Identifier: MIT
#include "ui/analyser/waterfall_area.h"

#include <QGridLayout>
#include <QShowEvent>
#include <QVBoxLayout>

#include "display/cursors.h"
#include "display/scene.h"
#include "record/utc_time.h"

namespace kestrel {

WaterfallArea::WaterfallArea(StudyModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      plot_(new AnalyserPlot),
      map_(new WaterfallView),
      column_(new ColumnView(*map_)),
      plotFrame_(new QWidget),
      figures_(new QLabel),
      note_(new QLabel),
      follow_(new QToolButton) {
  setObjectName(QStringLiteral("waterfallArea"));
  setAccessibleName(QStringLiteral("Waterfall"));
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  plot_->setObjectName(QStringLiteral("waterfallSpectrum"));
  figures_->setObjectName(QStringLiteral("waterfallFigures"));
  figures_->setAccessibleName(QStringLiteral("Values at the cursor"));
  figures_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  note_->setObjectName(QStringLiteral("waterfallNote"));
  note_->setWordWrap(true);
  follow_->setObjectName(QStringLiteral("waterfallFollow"));
  follow_->setText(QStringLiteral("Follow the newest"));
  follow_->setToolTip(QStringLiteral("Shows each new spectrum as it comes"));
  LayOut();
  Connect();
  Refresh();
}

void WaterfallArea::LayOut() {
  auto* inside = new QVBoxLayout(plotFrame_);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addWidget(plot_);
  auto* beside = new QVBoxLayout;
  beside->setContentsMargins(12, 32, 12, 0);
  beside->addWidget(figures_);
  beside->addWidget(follow_, 0, Qt::AlignLeft);
  beside->addStretch();
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(0);
  note_->setContentsMargins(12, 4, 12, 4);
  grid->addWidget(note_, 0, 0, 1, 2);
  grid->addWidget(plotFrame_, 1, 0);
  grid->addLayout(beside, 1, 1);
  grid->addWidget(map_, 2, 0);
  grid->addWidget(column_, 2, 1);
  grid->setRowStretch(1, 2);
  grid->setRowStretch(2, 3);
  grid->setColumnStretch(0, 1);
  grid->setColumnMinimumWidth(1, column_->sizeHint().width());
}

void WaterfallArea::Connect() {
  plot_->SetReader([this](double x, int pane) {
    return row_ ? study::ReadOutAt(*row_, x, pane) : PlotReadOut();
  });
  connect(&model_, &StudyModel::Changed, this, &WaterfallArea::Refresh);
  connect(&model_, &StudyModel::CursorMoved, this, &WaterfallArea::ShowCursor);
  connect(plot_, &AnalyserPlot::ViewChanged, this, &WaterfallArea::Align);
  connect(plot_, &AnalyserPlot::CommandAsked, this, &WaterfallArea::CommandAsked);
  connect(plot_, &AnalyserPlot::MenuAsked, this, &WaterfallArea::MenuAsked);
  connect(map_, &WaterfallView::MenuAsked, this,
          [this](QPoint place, double x) { emit MenuAsked(place, x, 0); });
  connect(plot_, &AnalyserPlot::CursorPlaced, this, [this](double x) {
    if (row_) model_.MoveCursor(study::Placed(*row_, x));
  });
  connect(plot_, &AnalyserPlot::MemberDragged, this, [this](int member, double x) {
    if (row_) model_.MoveCursor(study::Dragged(*row_, member, x));
  });
  connect(plot_, &AnalyserPlot::SnapAsked, this, [this](double x) {
    if (row_) model_.MoveCursor(study::SnappedTo(*row_, x));
  });
  connect(plot_, &AnalyserPlot::StepAsked, this, [this](double bins) {
    if (row_) model_.MoveCursor(study::Stepped(*row_, bins));
  });
  connect(map_, &WaterfallView::ColumnChosen, this, [this](double x) {
    if (row_) model_.MoveCursor(study::Placed(*row_, x));
  });
  connect(map_, &WaterfallView::RowChosen, this, [this](int /*row*/, double time) {
    const analysis::Waterfall& rows = model_.Get().Rows();
    for (std::size_t row = 0; row < rows.Rows(); ++row) {
      if (SecondsOf(rows.TimeOf(row)) == time) Choose(rows.TimeOf(row));
    }
  });
  connect(map_, &WaterfallView::StepAsked, this, &WaterfallArea::Step);
  connect(map_, &WaterfallView::SpanTurned, this, [this] {
    isSpanUsers_ = true;
    column_->update();
  });
  connect(follow_, &QToolButton::clicked, this, [this] { Choose(std::nullopt); });
}

void WaterfallArea::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Refresh();
}

void WaterfallArea::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Align();
}

void WaterfallArea::Choose(std::optional<study::TimePoint> time) {
  chosen_ = time;
  Refresh();
  emit RowChosen();
}

std::optional<std::size_t> WaterfallArea::LookedAt() const {
  const analysis::Waterfall& rows = model_.Get().Rows();
  if (rows.Rows() == 0) return std::nullopt;
  std::optional<std::size_t> row;
  if (chosen_) row = study::RowAt(rows, *chosen_);
  if (!row && shown_ && model_.Get().IsHeld()) row = study::RowAt(rows, *shown_);
  return row ? row : rows.Rows() - 1;
}

void WaterfallArea::Refresh() {
  if (!isVisible()) return;
  const study::Study& study = model_.Get();
  if (study.Selected() != selected_) {
    selected_ = study.Selected();
    const study::Measured* shown = study.Shown();
    const bool isRow =
        !study.IsLive() && shown != nullptr && shown->record->kind == RecordKind::Spectrum;
    chosen_ = isRow ? std::optional(shown->record->time) : std::nullopt;
  }
  const auto row = LookedAt();
  if (!row) {
    plot_->SetScene({.hint = "No spectrum yet. Capture one (F5)."});
    ShowNote();
    ShowColumn();
    DescribeMap();
    return;
  }
  if (chosen_ && study.Rows().TimeOf(*row) != *chosen_) chosen_.reset();
  ShowRow(*row);
  const bool isSame = study.RowsVersion() == onMap_.version &&
                      study.Rows().OptionOf(*row) == onMap_.option &&
                      study::MapsAlike(study.Choice(), onMap_.choice);
  if (!isSame) Begin();
  if (isFrozen_ != study.IsHeld()) {
    isFrozen_ = study.IsHeld();
    map_->SetFrozen(isFrozen_);
  }
  AddRows();
  ShowNote();
  ShowCursor();
  Align();
}

}  // namespace kestrel
