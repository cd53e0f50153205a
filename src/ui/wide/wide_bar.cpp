// How the wide view's controls are laid out, shown and read.
// SPDX-License-Identifier: MIT
#include "ui/wide/wide_bar.h"

#include <QHBoxLayout>

#include "ui/parts/widgets.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

using analysis::Amplitude;
using analysis::Quantity;
using analysis::QuantityChoice;

const std::array<QuantityChoice, 4> kQuantities{
    {{.quantity = Quantity::Density},
     {.quantity = Quantity::Acceleration},
     {.quantity = Quantity::Velocity, .amplitude = Amplitude::Rms},
     {.quantity = Quantity::Displacement, .amplitude = Amplitude::PeakToPeak}}};

}  // namespace

WideBar::WideBar()
    : cbxKept(MakeComboBox("cbxWideKept", tr("Kept wide spectra"),
                           tr("Wide spectra of the archive, the latest first"))),
      cmdOptions(MakeFlatToggle("cmdWideOptions", tr("Options"), "bands",
                                tr("Where each sample-rate option is used (B)"))),
      cmdLabels(MakeFlatToggle("cmdWideLabels", tr("Labels"), "label",
                               tr("Names of the largest lines (L)"))),
      cmdBack(MakeFlatButton("cmdWideBack", {}, "back", tr("The view before (Alt+Left)"))),
      cmdForward(MakeFlatButton("cmdWideForward", {}, "fwd", tr("The view after (Alt+Right)"))),
      cmdShowAll(MakeFlatButton("cmdWideShowAll", {}, "fit", tr("Show all (A)"))),
      cmdCopy(MakeFlatButton("cmdWideCopy", {}, "copy", tr("Copy the picture (Ctrl+C)"))),
      cmdExport(MakeFlatButton("cmdWideExport", tr("Export"), "export",
                               tr("The joined spectrum as a table (CSV) or a picture (Ctrl+E)"))),
      cbxQuantity_(MakeComboBox("cbxWideQuantity", tr("Quantity"),
                                tr("What is drawn: a density compares noise, an amplitude lines"))),
      segVertical_(new Segments("segWideVertical", tr("Vertical axis"),
                                {{"optWideLin", tr("Lin"), {}, tr("Linear (G)")},
                                 {"optWideLog", tr("Log"), {}, tr("Logarithmic (G)")}})) {
  setObjectName("wideBar");
  for (const QuantityChoice& choice : kQuantities) cbxQuantity_->addItem(Text(TitleOf(choice)));
  for (const Axis axis : kAxes) {
    const QString letter(QLatin1Char(Letter(axis)));
    FlatButton* button =
        MakeFlatToggle("cmdWide" + letter, letter, "",
                       tr("Show or hide %1; Shift+%1 makes it the main one").arg(letter));
    button->SetSwatch(static_cast<int>(Index(axis)));
    button->SetPlace(axis == Axis::X   ? FlatButton::Place::First
                     : axis == Axis::Z ? FlatButton::Place::Last
                                       : FlatButton::Place::Middle);
    axes[Index(axis)] = button;
  }
  LayOut();
  connect(cbxQuantity_, &QComboBox::activated, this, &WideBar::LookChosen);
  connect(segVertical_, &Segments::Chosen, this, &WideBar::LookChosen);
  connect(cmdOptions, &QToolButton::clicked, this, &WideBar::LookChosen);
  connect(cmdLabels, &QToolButton::clicked, this, &WideBar::LookChosen);
}

void WideBar::LayOut() {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(8, 8, 8, 8);
  row->setSpacing(8);
  row->addWidget(cbxQuantity_);
  row->addWidget(segVertical_);
  auto* together = new QHBoxLayout;
  together->setSpacing(0);
  for (FlatButton* button : axes) together->addWidget(button);
  row->addLayout(together);
  for (QWidget* control : std::initializer_list<QWidget*>{cmdLabels, cmdOptions, cbxKept}) {
    row->addWidget(control);
  }
  cbxKept->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  row->addStretch(1);
  for (QWidget* control : {cmdBack, cmdForward, cmdShowAll, cmdCopy, cmdExport}) {
    row->addWidget(control);
  }
}

void WideBar::Show(const study::WideLook& look, const study::StudyChoice& choice) {
  for (std::size_t i = 0; i < kQuantities.size(); ++i) {
    if (kQuantities[i].quantity != look.quantity.quantity) continue;
    cbxQuantity_->setCurrentIndex(static_cast<int>(i));
  }
  segVertical_->Choose(look.up == study::Scale::Logarithmic ? 1 : 0);
  cmdOptions->setChecked(look.hasOptions);
  cmdLabels->setChecked(look.hasLabels);
  for (const Axis axis : kAxes) axes[Index(axis)]->setChecked(choice.Shows(axis));
}

study::WideLook WideBar::Look() const {
  return {.quantity = kQuantities[static_cast<std::size_t>(cbxQuantity_->currentIndex())],
          .up = segVertical_->Index() == 1 ? study::Scale::Logarithmic : study::Scale::Linear,
          .hasOptions = cmdOptions->isChecked(),
          .hasLabels = cmdLabels->isChecked()};
}

}  // namespace kestrel
