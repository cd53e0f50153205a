// The lines for product, supply, temperature and record count.
// SPDX-License-Identifier: MIT
#include "ui/main/conditions_panel.h"

#include <QFormLayout>

#include "ui/parts/widgets.h"

namespace kestrel {

ConditionsPanel::ConditionsPanel(Locale& locale)
    : AsOfBox(tr("Sensor"), locale),
      lblProduct(MakeLabel("lblProduct", "")),
      LbLSupply(MakeLabel("LbLSupply", "")),
      LbLTemp(MakeLabel("LbLTemp", "")),
      lblRecCount(MakeLabel("lblRecCount", "")) {
  auto* form = new QFormLayout(this);
  form->setVerticalSpacing(3);
  form->addRow(tr("Product"), lblProduct);
  form->addRow(tr("Supply, V"), LbLSupply);
  form->addRow(tr("Temperature, %1C").arg(QChar(0xB0)), LbLTemp);
  form->addRow(tr("Records taken"), lblRecCount);
  for (QLabel* value : {lblProduct, LbLSupply, LbLTemp, lblRecCount}) {
    value->setAlignment(Qt::AlignRight);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  }
}

void ConditionsPanel::SetStartValues() {
  LbLSupply->setText("noData");
  LbLTemp->setText("noData");
}

}  // namespace kestrel
