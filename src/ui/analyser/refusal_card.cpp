// How a refusal is shown with its numbers, its table of options and its ways out.
// SPDX-License-Identifier: MIT
#include "ui/analyser/refusal_card.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPainter>
#include <QVBoxLayout>

#include "numeric/number_texts.h"
#include "ui/chart/look.h"

namespace kestrel {

RefusalCard::RefusalCard(QWidget* parent)
    : QFrame(parent),
      lblTitle_(new QLabel),
      lblReason_(new QLabel),
      table_(new TextTable("tblOptions")),
      cmdCure_(new FlatButton("cmdCaptureAtOption", {}, "rec")),
      cmdLowest_(new FlatButton("cmdLowest", {})),
      cmdBack_(new FlatButton("cmdShowAcceleration", tr("Show acceleration"))) {
  setObjectName("refusal");
  lblTitle_->setObjectName("lblRefusal");
  lblTitle_->setWordWrap(true);
  lblReason_->setObjectName("lblRefusalReason");
  lblReason_->setWordWrap(true);
  table_->setAccessibleName(tr("What the sample-rate options cover"));
  table_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  table_->setFocusPolicy(Qt::TabFocus);
  cmdCure_->SetMain(true);
  cmdCure_->setToolTip(tr("Sets the sample-rate option, then takes one capture"));
  cmdLowest_->setToolTip(tr("From the lowest frequency that this record covers"));
  cmdBack_->setToolTip(tr("What the sensor measured, as it is"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(24, 20, 24, 20);
  column->setSpacing(12);
  column->addWidget(lblTitle_);
  column->addWidget(lblReason_);
  column->addWidget(table_);
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  for (QWidget* button : {cmdCure_, cmdLowest_, cmdBack_}) row->addWidget(button);
  row->addStretch();
  column->addLayout(row);
  connect(cmdCure_, &QToolButton::clicked, this, [this] {
    if (refusal_ && refusal_->cureOption) emit OptionWanted(*refusal_->cureOption);
  });
  connect(cmdLowest_, &QToolButton::clicked, this, [this] { emit LowestWanted(lowestHz_); });
  connect(cmdBack_, &QToolButton::clicked, this, &RefusalCard::BackWanted);
  hide();
}

void RefusalCard::Show(const std::optional<analysis::Refusal>& refusal,
                       std::optional<double> lowestHz) {
  if (!refusal) {
    refusal_.reset();
    hide();
    return;
  }
  const bool isSame = refusal_ == refusal && isVisible();
  refusal_ = refusal;
  lowestHz_ = lowestHz.value_or(0);
  lblTitle_->setFont(LookFonts(font()).heading);
  lblTitle_->setText(Text(refusal->title));
  const bool hasCure = refusal->cureOption.has_value();
  lblReason_->setText(Text(refusal->reason + (hasCure ? "" : "\n" + refusal->cure)));
  cmdCure_->setVisible(hasCure);
  cmdCure_->SetCaption(tr("Capture at option %1").arg(refusal->cureOption.value_or(0)), "rec");
  cmdLowest_->setVisible(lowestHz.has_value());
  cmdLowest_->SetCaption(
      tr("Start from %1").arg(Text(analysis::HertzText(analysis::RoundedUp(lowestHz_)))), {});
  FillOptions();
  adjustSize();
  show();
  if (!isSame) raise();
}

void RefusalCard::FillOptions() {
  table_->setVisible(!refusal_->options.empty());
  table_->SetColumns({{tr("Option"), Qt::AlignLeft},
                      {tr("Length")},
                      {tr("From")},
                      {tr("up to")},
                      {.head = QString(), .alignment = Qt::AlignLeft, .spoken = tr("Would do")}});
  std::vector<std::vector<TextCell>> rows;
  for (const analysis::OptionOffer& offer : refusal_->options) {
    const QString option =
        QString::number(offer.option) + (offer.current ? tr(", this record") : QString());
    rows.push_back({{option},
                    {Text(analysis::SecondsText(offer.lengthS))},
                    {Text(analysis::HertzText(analysis::RoundedUp(offer.fromHz)))},
                    {Text(analysis::HertzText(analysis::RoundedDown(offer.toHz)))},
                    {offer.wouldDo ? QStringLiteral("\u2713 ") + tr("would do") : QString()}});
  }
  table_->Model().SetRows(std::move(rows));
  table_->clearSelection();
  for (int row = 0; row < table_->Model().rowCount(); ++row) {
    if (refusal_->options[static_cast<std::size_t>(row)].wouldDo) table_->selectRow(row);
  }
  table_->setFixedHeight(
      table_->horizontalHeader()->sizeHint().height() +
      table_->Model().rowCount() * table_->verticalHeader()->defaultSectionSize() + 2);
}

void RefusalCard::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(look.axis);
  painter.setBrush(look.panel);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

}  // namespace kestrel
