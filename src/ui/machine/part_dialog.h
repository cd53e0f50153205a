// Asks for the name and the number of a part of the machine: a gear's teeth, a frequency.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QLineEdit>

#include "ui/study/number_field.h"

namespace kestrel {

// Stays beside the analyser without stopping it, and is gone when it closes.
class PartDialog : public QDialog {
  Q_OBJECT

 public:
  struct Question {
    QString name;  // of the object
    QString title;
    QString called;  // the name it proposes
    QString number;  // what the number is
    NumberField::Rule rule;
  };

  explicit PartDialog(Question question, QWidget* parent = nullptr);

 signals:
  void Told(const QString& name, double number);

 private:
  void Add();

  QLineEdit* called_;
  NumberField* number_;
};

}  // namespace kestrel
