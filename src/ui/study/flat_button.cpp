// How the analyser's buttons and segments are painted.
// SPDX-License-Identifier: MIT
#include "ui/study/flat_button.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "ui/chart/icons.h"
#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr int kIcon = 16;
constexpr int kGap = 6;
constexpr int kInside = 10;
constexpr double kCorner = 4;

// Rounded at the ends of a row of segments only.
QPainterPath Outline(const QRectF& place, FlatButton::Place kind) {
  using Place = FlatButton::Place;
  const bool left = kind == Place::Alone || kind == Place::First;
  const bool right = kind == Place::Alone || kind == Place::Last;
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  path.addRoundedRect(place, kCorner, kCorner);
  const double half = place.width() / 2;
  if (!left) path.addRect(QRectF(place.topLeft(), QSizeF(half, place.height())));
  if (!right) path.addRect(place.adjusted(half, 0, 0, 0));
  return path.simplified();
}

}  // namespace

FlatButton::FlatButton(const QString& name, const QString& text, const QString& icon,
                       QWidget* parent)
    : QToolButton(parent), icon_(icon) {
  setObjectName(name);
  setText(text);
  if (!text.isEmpty()) setAccessibleName(text);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
}

void FlatButton::SetPlace(Place place) {
  place_ = place;
  update();
}

// A button without a menu that would open at once offers assistive technology no press.
void FlatButton::SetMenu(QMenu* menu) {
  setPopupMode(InstantPopup);
  setMenu(menu);
}

void FlatButton::SetMain(bool isMain) {
  if (isMain == isMain_) return;
  isMain_ = isMain;
  updateGeometry();
  update();
}

void FlatButton::SetSwatch(int ink) {
  swatch_ = ink;
  updateGeometry();
}

void FlatButton::SetCaption(const QString& text, const QString& icon) {
  if (text == this->text() && icon == icon_) return;
  icon_ = icon;
  setText(text);
  setAccessibleName(text);
  updateGeometry();
  update();
}

void FlatButton::SetWordShown(bool isShown) {
  if (isShown == isWordShown_) return;
  isWordShown_ = isShown;
  updateGeometry();
  update();
}

QSize FlatButton::sizeHint() const {
  return {WidthWith(ShowsWord()), std::max(28, fontMetrics().height() + 11)};
}

int FlatButton::WordWidth() const {
  return WidthWith(!text().isEmpty()) - WidthWith(false);
}

int FlatButton::WidthWith(bool hasWord) const {
  const bool hasIcon = !icon_.isEmpty() || swatch_ >= 0;
  double width = 2 * kInside - (hasWord ? 0 : 4);
  if (hasIcon) width += kIcon;
  // A button keeps its width when it is checked and its word half-bold.
  const QFont& widest = isMain_ || isCheckable() ? LookFonts(font()).bold : font();
  if (hasWord) width += QFontMetricsF(widest).horizontalAdvance(text()) + (hasIcon ? kGap : 0);
  if (menu() != nullptr) width += kIcon + 2;
  return static_cast<int>(std::ceil(width));
}

void FlatButton::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF place = QRectF(rect()).adjusted(
      0.5, 0.5, place_ == Place::Alone || place_ == Place::Last ? -0.5 : 0.5, -0.5);
  const bool isBare = !ShowsWord() && place_ == Place::Alone && menu() == nullptr && !isCheckable();
  QColor ground = isMain_ ? look.accent : isBare ? Qt::transparent : look.button;
  QColor ink = isMain_ ? look.onAccent : look.text;
  if (isChecked()) ground = look.accentSoft;
  if (isChecked()) ink = look.accent;
  if (isEnabled() && !isMain_ && !isChecked() && underMouse()) ground = look.pointedAt;
  if (isDown()) ground = isMain_ ? look.accent.darker(112) : look.accentSoft;
  if (!isEnabled()) ink = look.disabled;
  if (!isEnabled()) ground = isBare ? Qt::transparent : look.window;
  painter.setPen(isBare || isMain_ ? QPen(Qt::NoPen)
                                   : QPen(isEnabled() ? look.edge : look.hairline, 1));
  painter.setBrush(ground);
  painter.drawPath(Outline(place, place_));
  if (isChecked()) {
    painter.fillRect(QRectF(place.left() + 2, place.bottom() - 2, place.width() - 4, 2),
                     look.accent);
  }
  double left = kInside - (ShowsWord() ? 0 : 2);
  const double middle = height() / 2.0;
  if (swatch_ >= 0) {
    painter.fillRect(QRectF(left + 3, middle - 5, 10, 10),
                     look.inks[static_cast<std::size_t>(swatch_)]);
    left += kIcon + kGap;
  } else if (!icon_.isEmpty()) {
    PaintIcon(painter, QRectF(left, middle - kIcon / 2.0, kIcon, kIcon), icon_, ink);
    left += kIcon + kGap;
  }
  painter.setPen(ink);
  if (ShowsWord()) {
    painter.setFont(isMain_ || isChecked() ? LookFonts(font()).bold : font());
    const double right = menu() != nullptr ? kIcon + 2 + kInside : 4;
    painter.drawText(QRectF(left, 0, width() - left - right, height()),
                     Qt::AlignVCenter | Qt::AlignLeft, text());
  }
  if (menu() != nullptr) {
    PaintIcon(painter, QRectF(width() - kInside - kIcon + 2, middle - kIcon / 2.0, kIcon, kIcon),
              QStringLiteral("down"), ink);
  }
  if (hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(isMain_ ? look.onAccent : look.accent, 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(3, 3, -3, -3), 2, 2);
  }
}

FlatButton* MakeFlatButton(const QString& name, const QString& text, const QString& icon,
                           const QString& tip) {
  auto* button = new FlatButton(name, text, icon);
  button->setToolTip(tip);
  if (text.isEmpty()) button->setAccessibleName(tip.section(" (", 0, 0));
  return button;
}

FlatButton* MakeFlatToggle(const QString& name, const QString& text, const QString& icon,
                           const QString& tip) {
  FlatButton* button = MakeFlatButton(name, text, icon, tip);
  button->setCheckable(true);
  return button;
}

Segments::Segments(const QString& name, const QString& accessibleName,
                   const std::vector<Item>& items) {
  setObjectName(name);
  setAccessibleName(accessibleName);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  const auto last = static_cast<int>(items.size()) - 1;
  for (int i = 0; i <= last; ++i) {
    const Item& item = items[static_cast<std::size_t>(i)];
    auto* button = new FlatButton(item.name, item.text, item.icon, this);
    button->setCheckable(true);
    button->setToolTip(item.tip);
    button->setAccessibleName(item.text.isEmpty() ? item.tip : accessibleName + ": " + item.text);
    if (item.swatch >= 0) button->SetSwatch(item.swatch);
    button->SetPlace(i == 0      ? FlatButton::Place::First
                     : i == last ? FlatButton::Place::Last
                                 : FlatButton::Place::Middle);
    group_.addButton(button, i);
    row->addWidget(button);
  }
  connect(&group_, &QButtonGroup::idClicked, this, [this](int index) { emit Chosen(index); });
}

void Segments::Choose(int index) {
  if (auto* button = group_.button(index)) button->setChecked(true);
}

FlatButton& Segments::Button(int index) const {
  return *static_cast<FlatButton*>(group_.button(index));
}

}  // namespace kestrel
