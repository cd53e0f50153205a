// The lines for product, supply, temperature and record count.
// SPDX-License-Identifier: MIT
#include "ui/panels/conditions_panel.h"

#include <QEvent>
#include <QFormLayout>

#include "ui/parts/notice_strip.h"
#include "ui/parts/widgets.h"

namespace kestrel {

ConditionsPanel::ConditionsPanel(Locale& locale)
    : AsOfBox(tr("Sensor"), locale),
      lblProduct(MakeLabel("lblProduct", "")),
      LbLSupply(MakeLabel("LbLSupply", "")),
      LbLTemp(MakeLabel("LbLTemp", "")),
      lblRecCount(MakeLabel("lblRecCount", "")),
      lblSimulated_(MakeLabel("lblSimulated", tr("Simulated sensor"))) {
  lblSimulated_->setAlignment(Qt::AlignCenter);
  lblSimulated_->setToolTip(
      tr("What is read comes from the program's own simulation, not from a sensor"));
  lblSimulated_->hide();
  PaintNotice(*lblSimulated_);
  auto* form = new QFormLayout(this);
  form->addRow(lblSimulated_);
  form->addRow(tr("Product"), lblProduct);
  form->addRow(tr("Supply, V"), LbLSupply);
  form->addRow(tr("Temperature, %1C").arg(QChar(0xB0)), LbLTemp);
  form->addRow(tr("Records taken"), lblRecCount);
  for (QLabel* value : {lblProduct, LbLSupply, LbLTemp, lblRecCount}) {
    value->setAlignment(Qt::AlignRight);
  }
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  SetSpacing(RoomySpacing());
}

void ConditionsPanel::SetSpacing(const Spacing& spacing) {
  auto* form = qobject_cast<QFormLayout*>(layout());
  SpaceGroup(*form, spacing);
  form->setVerticalSpacing(spacing.line);
  form->setHorizontalSpacing(spacing.beside);
}

void ConditionsPanel::ShowSimulated(bool isSimulated) {
  lblSimulated_->setVisible(isSimulated);
}

void ConditionsPanel::SetStartValues() {
  LbLSupply->setText("noData");
  LbLTemp->setText("noData");
}

void ConditionsPanel::changeEvent(QEvent* event) {
  AsOfBox::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) PaintNotice(*lblSimulated_);
}

}  // namespace kestrel
