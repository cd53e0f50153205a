// Asks for two numbers that belong together: a band's ends, a frequency and its width, thresholds.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QLabel>
#include <functional>
#include <optional>

#include "ui/study/number_field.h"

namespace kestrel {

// Stays beside the window without stopping it, and is gone when it closes.
class PairDialog : public QDialog {
 public:
  using Number = std::optional<double>;
  struct Field {
    QString name;  // of the object
    QString label;
    Number proposed;
    NumberField::Rule rule;
  };
  struct Question {
    QString name;  // of the object
    QString title;
    QString why;  // one line above the fields; may be empty
    Field first;
    Field second;
    // Why two numbers do not go together; empty where they do.
    std::function<QString(Number, Number)> whyNot = [](Number, Number) { return QString(); };
    std::function<void(Number, Number)> told;
  };

  explicit PairDialog(Question question, QWidget* parent = nullptr);

 private:
  void Tell();

  Question question_;
  NumberField* first_;
  NumberField* second_;
  QLabel* lblWhyNot_;
};

}  // namespace kestrel
