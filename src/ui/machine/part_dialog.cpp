// A small form: name and number.
// SPDX-License-Identifier: MIT
#include "ui/machine/part_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestrel {

PartDialog::PartDialog(Question question, QWidget* parent)
    : QDialog(parent),
      called_(new QLineEdit(question.called)),
      number_(new NumberField(question.name + QStringLiteral("Number"), question.number,
                              question.rule)) {
  setObjectName(question.name);
  setWindowTitle(question.title);
  setAttribute(Qt::WA_DeleteOnClose);
  called_->setObjectName(question.name + QStringLiteral("Name"));
  called_->setAccessibleName(QStringLiteral("Name"));
  called_->setToolTip(QStringLiteral("As it stands in the tables and beside its marks"));
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Name"), called_);
  form->addRow(question.number, number_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
  auto* add = buttons->addButton(QStringLiteral("Add"), QDialogButtonBox::AcceptRole);
  add->setObjectName(question.name + QStringLiteral("Add"));
  add->setDefault(true);
  add->setToolTip(QStringLiteral("Puts it on the machine"));
  connect(buttons, &QDialogButtonBox::accepted, this, &PartDialog::Add);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* column = new QVBoxLayout(this);
  column->addLayout(form);
  column->addWidget(buttons);
  number_->setFocus();
}

void PartDialog::Add() {
  if (!number_->Take() || !number_->Number()) return;
  const QString called = called_->text().trimmed();
  emit Told(called.isEmpty() ? windowTitle() : called, *number_->Number());
  accept();
}

}  // namespace kestrel
