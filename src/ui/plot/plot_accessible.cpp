// The plot's name, text and value for assistive programs.
// SPDX-License-Identifier: MIT
#include "ui/plot/plot_accessible.h"

#include <QVariant>

namespace kestrel {
namespace {

constexpr const char* kTeller = "pictureTeller";

QAccessibleInterface* Present(const QString& /*className*/, QObject* object) {
  auto* box = qobject_cast<PictureBox*>(object);
  if (box == nullptr) return nullptr;
  auto* teller = static_cast<PictureTeller*>(box->property(kTeller).value<void*>());
  return teller == nullptr ? nullptr : new PlotAccessible(box, *teller);
}

}  // namespace

PlotAccessible::PlotAccessible(PictureBox* box, PictureTeller& teller)
    : QAccessibleWidget(box, QAccessible::Chart), teller_(teller) {}

void PlotAccessible::Attach(PictureBox* box, PictureTeller& teller) {
  box->setProperty(kTeller, QVariant::fromValue(static_cast<void*>(&teller)));
  QAccessible::installFactory(&Present);  // once, however often it is asked for
}

void PlotAccessible::CursorMoved(PictureBox* box, int index) {
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent moved(box, index);
  QAccessible::updateAccessibility(&moved);
  QAccessibleEvent named(box, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&named);
}

void PlotAccessible::PictureChanged(PictureBox* box) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent described(box, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&described);
}

QString PlotAccessible::text(QAccessible::Text kind) const {
  switch (kind) {
    case QAccessible::Name:
      return teller_.CursorInWords();
    case QAccessible::Description:
      return teller_.PictureInWords();
    default:
      return QAccessibleWidget::text(kind);
  }
}

void* PlotAccessible::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QVariant PlotAccessible::currentValue() const {
  return teller_.CursorIndex();
}
void PlotAccessible::setCurrentValue(const QVariant& value) {
  teller_.PlaceCursor(value.toInt());
}
QVariant PlotAccessible::minimumValue() const {
  return 0;
}
QVariant PlotAccessible::maximumValue() const {
  return teller_.LastIndex();
}
QVariant PlotAccessible::minimumStepSize() const {
  return 1;
}

}  // namespace kestrel
