// How controls are made, named and painted.
// SPDX-License-Identifier: MIT
#include "ui/parts/widgets.h"

#include <QFontMetricsF>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QtMath>
#include <algorithm>
#include <memory>
#include <utility>

#include "ui/parts/contrast.h"

namespace kestrel {
namespace {

void Describe(QWidget* widget, const QString& name, const QString& toolTip) {
  widget->setObjectName(name);
  widget->setToolTip(toolTip);
}

}  // namespace

QString ArrayName(const char* name, int index) {
  return QString("%1_%2").arg(name).arg(index);
}

QColor ToColour(double value) {
  const auto bits = static_cast<unsigned>(value);
  return {static_cast<int>(bits & 0xFFU), static_cast<int>(bits >> 8U & 0xFFU),
          static_cast<int>(bits >> 16U & 0xFFU)};
}

QPushButton* MakeButton(const char* name, const QString& caption, const QString& toolTip) {
  auto* button = new QPushButton(caption);
  Describe(button, name, toolTip);
  return button;
}

QCheckBox* MakeCheckBox(const QString& name, const QString& caption, const QString& toolTip) {
  auto* box = new QCheckBox(caption);
  Describe(box, name, toolTip);
  return box;
}

QComboBox* MakeComboBox(const char* name, const QString& accessibleName, const QString& toolTip,
                        std::optional<int> last) {
  QComboBox* box = last ? new NumberBox(*last) : new QComboBox;
  Describe(box, name, toolTip);
  box->setAccessibleName(accessibleName);
  box->setMaxVisibleItems(16);
  return box;
}

// A user's choice of another item tells both signals, the change first.
void OnChosen(QComboBox* list, QObject* context, std::function<void(int index)> chosen) {
  const auto told = std::make_shared<bool>(false);
  QObject::connect(list, &QComboBox::currentIndexChanged, context, [told, chosen](int index) {
    *told = true;
    chosen(index);
  });
  QObject::connect(list, &QComboBox::activated, context,
                   [told, chosen = std::move(chosen)](int index) {
                     if (!std::exchange(*told, false)) chosen(index);
                   });
}

QLabel* MakeLabel(const QString& name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QLabel* MakeCaption(const QString& text, QWidget* buddy) {
  auto* caption = new QLabel(text);
  caption->setBuddy(buddy);
  return caption;
}

void NameUnseen(const QString& text, QWidget* control) {
  QLabel* caption = MakeCaption(text, control);
  caption->setParent(control->parentWidget());
  caption->hide();
}

QLineEdit* MakeReadOut(const QString& name, const QString& accessibleName) {
  auto* box = new QLineEdit;
  box->setObjectName(name);
  box->setAccessibleName(accessibleName);
  box->setReadOnly(true);
  return box;
}

void ClearGround(QLineEdit& readOut) {
  QPalette palette;
  palette.setColor(QPalette::Base, Qt::transparent);
  readOut.setFrame(false);
  readOut.setFocusPolicy(Qt::NoFocus);
  readOut.setAutoFillBackground(false);
  readOut.setPalette(palette);
}

void PaintGround(QWidget* widget, const QColor& ground) {
  QPalette palette = widget->palette();
  const QColor text =
      Contrast(ground, Qt::black) > Contrast(ground, Qt::white) ? Qt::black : Qt::white;
  for (const auto role : {QPalette::Window, QPalette::Base}) palette.setColor(role, ground);
  for (const auto role : {QPalette::WindowText, QPalette::Text}) palette.setColor(role, text);
  widget->setAutoFillBackground(true);
  widget->setPalette(palette);
}

void KeepPlaceWhileHidden(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

QStringList Numbers(int last) {
  QStringList numbers;
  for (int i = 0; i <= last; ++i) numbers << QString::number(i);
  return numbers;
}

// As the toolkit works it out for one item.
QSize NumberBox::sizeHint() const {
  constexpr int kLeastHeight = 14;
  constexpr int kSpace = 2;
  const QString widest(QString::number(last_).size(), '0');
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const int height = std::max(qCeil(QFontMetricsF(fontMetrics()).height()), kLeastHeight) + kSpace;
  return style()->sizeFromContents(QStyle::CT_ComboBox, &option,
                                   {fontMetrics().boundingRect(widest).width(), height}, this);
}

}  // namespace kestrel
