// Edges, focus and selection drawn so that they can be seen.
// SPDX-License-Identifier: MIT
#include "ui/parts/clear_style.h"

#include <QApplication>
#include <QGroupBox>
#include <QIconEngine>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>
#include <memory>

#include "ui/parts/contrast.h"

namespace kestrel {
namespace {

constexpr const char* kToolkitStyle = "fusion";
constexpr double kDarkening = 1.4;  // of the window's colour, that the style paints its edges in

// The edge that the style gives what has the focus, and a default button.
QColor FocusEdge(const QColor& highlight) {
  constexpr int kDarkerPerCent = 125;
  constexpr int kMostValue = 160;
  QColor edge = highlight.darker(kDarkerPerCent);
  if (edge.value() > kMostValue) edge.setHsv(edge.hue(), edge.saturation(), kMostValue);
  return edge;
}

// The style takes the colour of its edges from the window's and, with the focus, from the
// highlight's: with this palette they come out in colours that stand out from the window.
QPalette EdgePalette(QPalette palette) {
  const QColor window = palette.color(QPalette::Window);
  const QColor text = palette.color(QPalette::WindowText);
  double part = 0.4;
  while (part < 1 && Contrast(Mix(window, text, part), window) < kEdgeContrast + 0.5) part += 0.05;
  QColor edge = Mix(window, text, part);
  edge.setHsvF(edge.hsvHueF(), edge.hsvSaturationF(),
               std::min(1.0F, edge.valueF() * static_cast<float>(kDarkening)));
  palette.setColor(QPalette::Window, edge);
  const QColor usual = palette.color(QPalette::Highlight);
  QColor highlight = usual;
  for (double share = 0; share < 1 && Contrast(FocusEdge(highlight), window) < kEdgeContrast + 0.2;
       share += 0.05) {
    highlight = Mix(usual, text, share);
  }
  palette.setColor(QPalette::Highlight, highlight);
  return palette;
}

bool HasEdge(QStyle::PrimitiveElement element) {
  switch (element) {
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorRadioButton:
    case QStyle::PE_FrameLineEdit:
    case QStyle::PE_PanelButtonCommand:
      return true;
    default:
      return false;
  }
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

bool IsUsable(const QStyleOption& option) {
  return option.state.testFlag(QStyle::State_Enabled);
}

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
  if (element == PE_PanelButtonCommand && option->state.testFlag(State_HasFocus)) {
    DrawButton(*option, painter, widget);
    return;
  }
  if (element == PE_FrameGroupBox) {
    DrawGroup(*option, painter, widget);
    return;
  }
  DrawEdged(element, option, painter, widget);
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

// Without a frame of its own the focus of a default button would not be seen.
void ClearStyle::DrawButton(const QStyleOption& option, QPainter* painter,
                            const QWidget* widget) const {
  DrawEdged(PE_PanelButtonCommand, &option, painter, widget);
  painter->save();
  painter->setPen(option.palette.color(QPalette::ButtonText));
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(option.rect.adjusted(3, 3, -4, -4));
  painter->restore();
}

void ClearStyle::DrawEdged(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                           const QWidget* widget) const {
  if (!HasEdge(element) || !IsUsable(*option)) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  const auto draw = [&](auto clear) {
    clear.palette = EdgePalette(clear.palette);
    QProxyStyle::drawPrimitive(element, &clear, painter, widget);
  };
  if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
    draw(*button);
  } else if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option)) {
    draw(*frame);
  } else {
    draw(*option);
  }
}

void ClearStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control != CC_ComboBox || box == nullptr || !IsUsable(*option)) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  QStyleOptionComboBox clear = *box;
  clear.palette = EdgePalette(clear.palette);
  QProxyStyle::drawComplexControl(control, &clear, painter, widget);
}

}  // namespace kestrel
