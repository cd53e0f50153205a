// Reading a number as the user's locale writes it.
// SPDX-License-Identifier: MIT
#include "ui/study/number_field.h"

#include <QEvent>
#include <QLocale>
#include <QVBoxLayout>
#include <cmath>
#include <utility>

#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr int kDigits = 9;
constexpr int kShownOfText = 24;

}  // namespace

std::optional<double> NumberIn(const QLocale& locale, const QString& text) {
  bool isNumber = false;
  QString trimmed = text.trimmed();
  trimmed.replace(QChar(0x2212), QLatin1Char('-'));
  const double number = locale.toDouble(trimmed, &isNumber);
  if (!isNumber || !std::isfinite(number)) return std::nullopt;
  return number;
}

void SetInk(QLabel& label, const QColor& ink) {
  QPalette palette = label.palette();
  for (const auto role : {QPalette::WindowText, QPalette::Text}) palette.setColor(role, ink);
  label.setPalette(palette);
}

NumberField::NumberField(const QString& name, const QString& accessibleName, Rule rule,
                         QWidget* parent)
    : QWidget(parent), rule_(std::move(rule)), edit_(new QLineEdit), message_(new QLabel) {
  setObjectName(name + QStringLiteral("Field"));
  edit_->setObjectName(name);
  edit_->setAccessibleName(accessibleName);
  edit_->setAccessibleDescription(rule_.range);
  edit_->setToolTip(rule_.range);
  edit_->setAlignment(Qt::AlignRight);
  message_->setObjectName(name + QStringLiteral("Message"));
  message_->setWordWrap(true);
  message_->hide();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(edit_);
  column->addWidget(message_);
  setFocusProxy(edit_);
  connect(edit_, &QLineEdit::editingFinished, this, [this] {
    if (edit_->text() != Written()) Take();
  });
}

QString NumberField::Written() const {
  return number_ ? locale().toString(*number_, 'g', kDigits) : QString();
}

void NumberField::SetNumber(std::optional<double> number) {
  if (number == number_ && edit_->hasFocus()) return;
  number_ = number;
  edit_->setText(Written());
  Say({});
}

void NumberField::Say(const QString& message) {
  SetInk(*message_, Look::Of(palette()).fault);
  message_->setText(message);
  message_->setVisible(!message.isEmpty());
  edit_->setAccessibleDescription(message.isEmpty() ? rule_.range : message);
}

bool NumberField::Take() {
  const QString text = edit_->text();
  if (text == Written() && number_) return true;
  if (text.trimmed().isEmpty() && rule_.mayBeEmpty) {
    SetNumber(std::nullopt);
    Say({});
    emit Cleared();
    return true;
  }
  const auto number = NumberIn(locale(), text);
  if (number && rule_.holds(*number)) {
    number_ = number;
    edit_->setText(Written());
    Say({});
    emit Entered(*number);
    return true;
  }
  const QString typed = text.trimmed().isEmpty()     ? QStringLiteral("Nothing")
                        : text.size() > kShownOfText ? text.left(kShownOfText) + QStringLiteral("…")
                                                     : text.trimmed();
  edit_->setText(Written());
  Say(typed + QStringLiteral(" is not a valid ") + rule_.what + QStringLiteral(": ") + rule_.range);
  return false;
}

void NumberField::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LocaleChange) edit_->setText(Written());
  if (event->type() == QEvent::PaletteChange) Say(message_->text());
  QWidget::changeEvent(event);
}

}  // namespace kestrel
