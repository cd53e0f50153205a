// A field for a number in the user's own writing; what is none is said in one line below it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QWidget>
#include <functional>
#include <optional>

namespace kestrel {

// Wrong input keeps the number as it was. Decimal mark, groups and digits are those of the widget's
// locale.
class NumberField : public QWidget {
  Q_OBJECT

 public:
  // What a number has to be.
  struct Rule {
    QString what;   // "-3 is no <speed>"
    QString range;  // "above 0 to 10,000,000 rpm"
    std::function<bool(double)> holds;
    bool mayBeEmpty = false;
  };

  NumberField(const QString& name, const QString& accessibleName, Rule rule,
              QWidget* parent = nullptr);

  // Shows it and clears the message; tells nobody.
  void SetNumber(std::optional<double> number);
  [[nodiscard]] std::optional<double> Number() const { return number_; }
  [[nodiscard]] QLineEdit& Edit() { return *edit_; }
  [[nodiscard]] QString Message() const { return message_->text(); }
  void Say(const QString& message);
  // Reads what is written; false where that is no number.
  bool Take();

 signals:
  void Entered(double number);
  void Cleared();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  [[nodiscard]] QString Written() const;

  Rule rule_;
  QLineEdit* edit_;
  QLabel* message_;
  std::optional<double> number_;
};

// The finite number that a text stands for in a locale; nothing for any other text.
[[nodiscard]] std::optional<double> NumberIn(const QLocale& locale, const QString& text);

// Text in a colour of its own, whatever ground it stands on.
void SetInk(QLabel& label, const QColor& ink);

}  // namespace kestrel
