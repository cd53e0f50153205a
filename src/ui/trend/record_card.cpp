// How the small picture is made, and the card laid out.
// SPDX-License-Identifier: MIT
#include "ui/trend/record_card.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>
#include <utility>

#include "display/scene.h"
#include "ui/chart/plot_layout.h"
#include "ui/chart/trace_painter.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

// A spectrum logarithmically, samples as they are; nothing that a small picture has no room for.
study::StudyChoice SmallChoice(const Record& record) {
  study::StudyChoice choice;
  const bool isTime = record.kind == RecordKind::Time;
  choice.view = isTime ? study::View::Time : study::View::Spectrum;
  choice.up = study::Scale::Logarithmic;
  choice.focus = Axis::Z;
  choice.showBands = false;
  choice.showLabels = false;
  return choice;
}

PlotScene SceneFor(const study::RecordPointer& record, const study::RecordPointer& other) {
  study::Study study([](auto) { return std::string(); }, SmallChoice(*record));
  std::vector<study::RecordId> ids{study.Bring(record)};
  if (other != nullptr && other != record) ids.push_back(study.Bring(other));
  study.Select(ids);
  PlotScene scene = study::SceneOf(study);
  scene.head.clear();
  scene.line.clear();
  scene.gaps.clear();
  return scene;
}

}  // namespace

RecordPicture::RecordPicture() {
  setObjectName("recordPicture");
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setToolTip(RecordCard::tr("Look at this record (Enter)"));
  setAccessibleName(RecordCard::tr("Record at the cursor"));
}

void RecordPicture::Show(study::RecordPointer record, study::RecordPointer other) {
  scene_ = record == nullptr ? PlotScene{} : SceneFor(record, other);
  setEnabled(record != nullptr);
  setAccessibleDescription(record == nullptr ? QString() : RecordCard::tr("Press to look at it"));
  update();
}

void RecordPicture::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  const double ratio = devicePixelRatioF();
  QImage image((QSizeF(size()) * ratio).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  image.fill(look.panel);
  if (!scene_.panes.empty()) {
    const PlotLayout layout = LaidOut(scene_, FittingRanges(scene_), fonts, size(), ratio);
    const PlotPage page{scene_, layout, look, fonts};
    QPainter below(&image);
    PaintGround(below, page);
    below.end();
    DrawTraces(image, page);
  }
  QPainter painter(this);
  painter.drawImage(QPointF(0, 0), image);
  if (!isEnabled() || (!hasFocus() && !underMouse())) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(hasFocus() ? look.accent : look.hairline, 2));
  painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 3, 3);
}

RecordCard::RecordCard()
    : cmdCompare(new FlatButton("cmdTrendCompare", tr("Compare"), "overlay")),
      cmdOpen(new FlatButton("cmdTrendOpen", tr("Open"))),
      lblMoment_(new LineLabel),
      picture_(new RecordPicture),
      lblLine_(new LineLabel) {
  setObjectName("recordCard");
  lblMoment_->setObjectName("lblTrendRecord");
  lblMoment_->setFont(LookFonts(font()).bold);
  lblLine_->setObjectName("lblTrendRecordLine");
  lblLine_->setWordWrap(false);
  cmdCompare->setCheckable(true);
  cmdCompare->setToolTip(
      tr("Keep this record beside the ones that are looked at next; pressed again, no more"));
  cmdOpen->SetMain(true);
  cmdOpen->setToolTip(tr("Look at this record (Enter)"));
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->addWidget(lblLine_, 1);
  buttons->addWidget(cmdCompare);
  buttons->addWidget(cmdOpen);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(12, 8, 12, 8);
  column->setSpacing(4);
  column->addWidget(lblMoment_);
  column->addWidget(picture_, 1);
  column->addLayout(buttons);
  connect(picture_, &QAbstractButton::clicked, this, &RecordCard::OpenAsked);
  connect(cmdOpen, &QToolButton::clicked, this, &RecordCard::OpenAsked);
  ShowNone({});
}

void RecordCard::ShowNone(const QString& hint) {
  lblMoment_->setText(hint.isEmpty() ? tr("Record at the cursor") : hint);
  lblMoment_->setToolTip(lblMoment_->text());
  lblLine_->clear();
  picture_->Show(nullptr, nullptr);
  cmdOpen->setEnabled(false);
  cmdCompare->setEnabled(false);
}

void RecordCard::Show(const QString& moment, study::RecordPointer record,
                      study::RecordPointer other, const QString& otherMoment) {
  const bool isCompared = other != nullptr && other != record;
  lblMoment_->setText(isCompared ? tr("%1 beside %2").arg(moment, otherMoment) : moment);
  lblMoment_->setToolTip(lblMoment_->text());
  lblLine_->setText(record->kind == RecordKind::Time
                        ? tr("Time record, option %1").arg(record->settings.option)
                        : tr("Option %1, %2 averages")
                              .arg(record->settings.option)
                              .arg(record->settings.averages));
  lblLine_->setToolTip(lblLine_->text());
  picture_->Show(std::move(record), std::move(other));
  cmdOpen->setEnabled(true);
  cmdCompare->setEnabled(true);
}

void RecordCard::SetMarked(bool isMarked) {
  cmdCompare->setChecked(isMarked);
}

}  // namespace kestrel
