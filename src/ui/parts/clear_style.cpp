// Controls painted flat, with edges, focus and selection that can be seen.
// SPDX-License-Identifier: MIT
#include "ui/parts/clear_style.h"

#include <QApplication>
#include <QGroupBox>
#include <QIconEngine>
#include <QPainter>
#include <QPushButton>
#include <QStyleOption>
#include <algorithm>
#include <initializer_list>
#include <memory>

#include "ui/parts/contrast.h"

namespace kestrel {
namespace {

constexpr const char* kToolkitStyle = "fusion";
constexpr double kButtonCorner = 4;
constexpr double kFieldCorner = 3;
constexpr double kTickCorner = 2;
constexpr double kRing = 2;  // width of the ring of what has the focus

// From `from` towards `to`, as far as it takes to stand out from every ground.
QColor Outstanding(const QColor& from, const QColor& to, std::initializer_list<QColor> grounds) {
  for (double part = 0; part < 1; part += 0.05) {
    const QColor colour = Mix(from, to, part);
    if (std::ranges::all_of(grounds, [&colour](const QColor& ground) {
          return Contrast(colour, ground) >= kEdgeContrast + 0.2;
        })) {
      return colour;
    }
  }
  return to;
}

bool Has(const QStyleOption& option, QStyle::StateFlag flag) {
  return option.state.testFlag(flag);
}

// What a control is painted with, as it stands.
struct ControlColours {
  explicit ControlColours(const QStyleOption& option) {
    const QPalette& palette = option.palette;
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const bool isDark = Luminance(window) < Luminance(text);
    const bool isEnabled = Has(option, QStyle::State_Enabled);
    field = isEnabled ? palette.color(QPalette::Base) : window;
    button = !isEnabled ? window : isDark ? Mix(window, text, 0.09) : field;
    edge = isEnabled ? Outstanding(Mix(window, text, 0.35), text, {window, button})
                     : Mix(window, text, 0.2);
    focus = Outstanding(palette.color(QPalette::Active, QPalette::Highlight), text,
                        {window, button, field});
    ink = palette.color(QPalette::ButtonText);
    if (Has(option, QStyle::State_Sunken) || Has(option, QStyle::State_On)) {
      button = Mix(button, text, 0.16);
    } else if (isEnabled && Has(option, QStyle::State_MouseOver)) {
      button = Mix(button, text, 0.06);
    }
  }

  QColor edge, button, field, focus, ink;
};

// A control's outline with its ground; the pen stands on whole pixels.
void PaintOutline(QPainter& painter, const QRect& place, const QColor& ground, const QColor& edge,
                  double corner) {
  painter.setPen(QPen(edge, 1));
  painter.setBrush(ground);
  painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
}

// Inside the edge, so that it shows whatever stands beside the control.
void PaintRing(QPainter& painter, const QRect& place, const QColor& colour) {
  painter.setPen(QPen(colour, kRing));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(place).adjusted(3, 3, -3, -3), 2, 2);
}

void PaintButton(QPainter& painter, const QStyleOption& option) {
  const ControlColours colours(option);
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool isDefault =
      button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
  const bool isEnabled = Has(option, QStyle::State_Enabled);
  PaintOutline(painter, option.rect, colours.button,
               isDefault && isEnabled ? colours.focus : colours.edge, kButtonCorner);
  if (Has(option, QStyle::State_HasFocus)) PaintRing(painter, option.rect, colours.focus);
}

void PaintField(QPainter& painter, const QStyleOption& option) {
  const ControlColours colours(option);
  const bool hasFocus = Has(option, QStyle::State_HasFocus);
  PaintOutline(painter, option.rect, Qt::transparent, hasFocus ? colours.focus : colours.edge,
               kFieldCorner);
  if (!hasFocus) return;
  painter.drawRoundedRect(QRectF(option.rect).adjusted(1.5, 1.5, -1.5, -1.5), kFieldCorner - 1,
                          kFieldCorner - 1);
}

// A tick, or a bar where only some of what the box stands for is chosen.
void PaintTickBox(QPainter& painter, const QStyleOption& option) {
  const ControlColours colours(option);
  PaintOutline(painter, option.rect, colours.field, colours.edge, kTickCorner);
  const QRectF place(option.rect);
  painter.translate(place.topLeft());
  painter.scale(place.width() / 16, place.height() / 16);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colours.ink, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  if (Has(option, QStyle::State_On)) {
    painter.drawPolyline(QPolygonF({{3.5, 8.5}, {6.5, 11.5}, {12.5, 4.5}}));
  } else if (Has(option, QStyle::State_NoChange)) {
    painter.drawLine(QPointF(4, 8), QPointF(12, 8));
  }
}

void PaintOptionButton(QPainter& painter, const QStyleOption& option) {
  const ControlColours colours(option);
  const QRectF place = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(QPen(colours.edge, 1));
  painter.setBrush(colours.field);
  painter.drawEllipse(place);
  if (!Has(option, QStyle::State_On)) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours.ink);
  const double inside = place.width() * 0.27;
  painter.drawEllipse(place.adjusted(inside, inside, -inside, -inside));
}

// How an element is painted; nullptr where the toolkit's style does it.
using Painting = void (*)(QPainter&, const QStyleOption&);
Painting PaintingOf(QStyle::PrimitiveElement element) {
  switch (element) {
    case QStyle::PE_PanelButtonCommand:
      return PaintButton;
    case QStyle::PE_FrameLineEdit:
      return PaintField;
    case QStyle::PE_IndicatorCheckBox:
      return PaintTickBox;
    case QStyle::PE_IndicatorRadioButton:
      return PaintOptionButton;
    default:
      return nullptr;
  }
}

// A list that opens: a button with an arrow, or a field with one.
void PaintList(QPainter& painter, const QStyleOptionComboBox& option, const QRect& arrow) {
  const ControlColours colours(option);
  if (option.frame) {
    PaintOutline(painter, option.rect, option.editable ? colours.field : colours.button,
                 colours.edge, kButtonCorner);
  }
  if (Has(option, QStyle::State_HasFocus)) PaintRing(painter, option.rect, colours.focus);
  const QPointF middle = QRectF(arrow).center();
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colours.ink, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF(
      {middle + QPointF(-3.5, -1.5), middle + QPointF(0, 2), middle + QPointF(3.5, -1.5)}));
}

// Between save and restore, with smooth edges.
template <typename Work>
void Paint(QPainter& painter, Work work) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  work();
  painter.restore();
}

// A picture of the toolkit's own style, read when it is first painted.
class LaterIcon : public QIconEngine {
 public:
  LaterIcon(const QStyle& style, QStyle::StandardPixmap picture)
      : style_(style), picture_(picture) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    Read().paint(painter, rect, Qt::AlignCenter, mode, state);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return Read().pixmap(size, 1.0, mode, state);  // asked for in the screen's own pixels
  }
  [[nodiscard]] QIconEngine* clone() const override { return new LaterIcon(style_, picture_); }

 private:
  const QIcon& Read() {
    if (icon_.isNull()) icon_ = style_.standardIcon(picture_);
    return icon_;
  }

  const QStyle& style_;  // the application's, as long as it runs
  QStyle::StandardPixmap picture_;
  QIcon icon_;
};

}  // namespace

ClearStyle::ClearStyle() : QProxyStyle(kToolkitStyle) {}

void ClearStyle::Use() {
  if (dynamic_cast<ClearStyle*>(QApplication::style()) != nullptr) return;
  if (QApplication::style()->name() != kToolkitStyle) return;
  auto style = std::make_unique<ClearStyle>();
  QApplication::setStyle(style.release());  // the application's from here on
}

void ClearStyle::polish(QPalette& palette) {
  QProxyStyle::polish(palette);
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    const QColor text = palette.color(group, QPalette::HighlightedText);
    QColor ground = palette.color(group, QPalette::Highlight);
    const QColor away = Luminance(text) > Luminance(ground) ? Qt::black : Qt::white;
    for (int i = 0; i < 20 && Contrast(text, ground) < kTextContrast; ++i) {
      ground = Mix(ground, away, 0.05);
    }
    palette.setColor(group, QPalette::Highlight, ground);
    palette.setColor(
        group, QPalette::PlaceholderText,
        Mix(palette.color(group, QPalette::Text), palette.color(group, QPalette::Base), 0.2));
  }
}

void ClearStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  if (element == PE_FrameGroupBox) {
    DrawGroup(*option, painter, widget);
  } else if (const Painting painting = PaintingOf(element)) {
    Paint(*painter, [&] { painting(*painter, *option); });
  } else if (element != PE_FrameFocusRect || qobject_cast<const QPushButton*>(widget) == nullptr) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);  // a button has its own ring
  }
}

// As the style draws it, without its picture: that one is stretched over the whole group.
void ClearStyle::DrawGroup(const QStyleOption& option, QPainter* painter,
                           const QWidget* widget) const {
  constexpr int kAboveFrame = 3;  // as the style leaves
  constexpr QColor kGround(0, 0, 0, 3);
  constexpr QColor kFrame(0x75, 0x75, 0x75, 0x32);
  const auto* box = qobject_cast<const QGroupBox*>(widget);
  const bool hasTitle = box == nullptr || box->isCheckable() || !box->title().isEmpty();
  const int title =
      hasTitle ? std::max(pixelMetric(PM_IndicatorHeight), option.fontMetrics.height()) : 0;
  const QRect frame = option.rect.adjusted(1, title + kAboveFrame + 1, 0, 0);
  painter->save();
  painter->fillRect(frame.adjusted(1, 1, -1, -1), kGround);
  painter->setPen(kFrame);
  painter->setBrush(Qt::NoBrush);
  painter->setRenderHint(QPainter::Antialiasing);
  painter->drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
  painter->restore();
}

// The button that a menu bar shows where it has no room for its menus.
QIcon ClearStyle::standardIcon(StandardPixmap picture, const QStyleOption* option,
                               const QWidget* widget) const {
  if (picture != SP_ToolBarHorizontalExtensionButton) {
    return QProxyStyle::standardIcon(picture, option, widget);
  }
  return QIcon(new LaterIcon(*baseStyle(), picture));
}

void ClearStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control != CC_ComboBox || box == nullptr) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  const QRect arrow = subControlRect(control, option, SC_ComboBoxArrow, widget);
  Paint(*painter, [&] { PaintList(*painter, *box, arrow); });
}

}  // namespace kestrel
