// How two numbers are asked for and checked.
// SPDX-License-Identifier: MIT
#include "ui/trend/pair_dialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <utility>

namespace kestrel {
namespace {

NumberField* Made(const PairDialog::Field& field) {
  auto* made = new NumberField(field.name, field.label, field.rule);
  made->SetNumber(field.proposed);
  return made;
}

bool IsTaken(NumberField& field, bool mayBeEmpty) {
  return field.Take() && (mayBeEmpty || field.Number());
}

}  // namespace

PairDialog::PairDialog(Question question, QWidget* parent)
    : QDialog(parent),
      question_(std::move(question)),
      first_(Made(question_.first)),
      second_(Made(question_.second)),
      lblWhyNot_(new QLabel) {
  setObjectName(question_.name);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(question_.title);
  lblWhyNot_->setObjectName("lblPairWhyNot");
  lblWhyNot_->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setText(QCoreApplication::translate("PairDialog", "Show"));
  auto* form = new QFormLayout(this);
  if (!question_.why.isEmpty()) {
    auto* why = new QLabel(question_.why);
    why->setWordWrap(true);
    form->addRow(why);
  }
  form->addRow(question_.first.label, first_);
  form->addRow(question_.second.label, second_);
  form->addRow(lblWhyNot_);
  form->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { Tell(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
}

void PairDialog::Tell() {
  if (!IsTaken(*first_, question_.first.rule.mayBeEmpty) ||
      !IsTaken(*second_, question_.second.rule.mayBeEmpty)) {
    return;
  }
  const QString whyNot = question_.whyNot(first_->Number(), second_->Number());
  lblWhyNot_->setText(whyNot);
  if (!whyNot.isEmpty()) return;
  question_.told(first_->Number(), second_->Number());
  close();
}

}  // namespace kestrel
