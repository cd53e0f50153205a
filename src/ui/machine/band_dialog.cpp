// How a band of the user's is asked for and checked.
// SPDX-License-Identifier: MIT
#include "ui/machine/band_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <cmath>

namespace kestrel {
namespace {

constexpr double kMostHz = 60000;

NumberField* Frequency(const char* name, const QString& called, double hz) {
  auto* field = new NumberField(name, called,
                                {BandDialog::tr("frequency"), BandDialog::tr("0 to 60,000 Hz"),
                                 [](double value) { return value >= 0 && value <= kMostHz; }});
  field->SetNumber(hz);
  return field;
}

}  // namespace

BandDialog::BandDialog(const PlotRange& proposed, QWidget* parent)
    : QDialog(parent),
      called_(new QLineEdit(tr("Band"))),
      from_(Frequency("txtBandFrom", tr("From, Hz"), std::round(std::max(0.0, proposed.low)))),
      to_(Frequency("txtBandTo", tr("To, Hz"), std::round(proposed.high))),
      lblWhyNot_(new QLabel) {
  setObjectName("bandDialog");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Band"));
  called_->setObjectName("txtBandName");
  called_->setAccessibleName(tr("Name of the band"));
  called_->setToolTip(tr("As it stands in the table of levels"));
  lblWhyNot_->setObjectName("lblBandWhyNot");
  lblWhyNot_->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setText(tr("Add"));
  buttons->button(QDialogButtonBox::Ok)->setToolTip(tr("Puts the band into the table of levels"));
  auto* form = new QFormLayout(this);
  form->addRow(tr("Name"), called_);
  form->addRow(tr("From, Hz"), from_);
  form->addRow(tr("To, Hz"), to_);
  form->addRow(lblWhyNot_);
  form->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &BandDialog::Add);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
}

void BandDialog::Add() {
  if (!from_->Take() || !to_->Take() || !from_->Number() || !to_->Number()) return;
  if (*from_->Number() >= *to_->Number()) {
    lblWhyNot_->setText(tr("A band ends above where it begins. Type a larger number for To."));
    return;
  }
  const QString name = called_->text().trimmed();
  emit Told({.name = (name.isEmpty() ? tr("Band") : name).toStdString(),
             .fromHz = *from_->Number(),
             .toHz = *to_->Number()});
  close();
}

}  // namespace kestrel
