// What is read and operated stands out, in light and in dark themes.
// SPDX-License-Identifier: MIT
// What is read and what is operated stands out from its ground, in light and in dark themes: judged
// by what is painted.

#include "ui/parts/contrast.h"

#include <QMouseEvent>
#include <QStyleOptionButton>
#include <algorithm>
#include <map>

#include "plot/spectrum_plot.h"
#include "support/dark_palette.h"
#include "ui/parts/clear_style.h"
#include "ui/parts/widgets.h"
#include "ui/rendering.h"
#include "ui/window_walk.h"

namespace kestrel {
namespace {

constexpr qreal kRatio = 3;  // strokes of letters reach their full colour

// A part of a picture, in unscaled pixels.
QImage Part(const QImage& picture, const QRect& place) {
  const QRectF pixels(QPointF(place.topLeft()) * kRatio, QSizeF(place.size()) * kRatio);
  return picture.copy(pixels.toRect());
}

QColor MostFrequent(const QImage& picture) {
  std::map<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y)];
  }
  const auto most = std::max_element(counts.begin(), counts.end(),
                                     [](auto& a, auto& b) { return a.second < b.second; });
  return most == counts.end() ? QColor() : QColor(most->first);
}

// Of the pixel that stands out most.
double Highest(const QImage& picture, const QColor& ground) {
  double highest = 1;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      highest = std::max(highest, Contrast(picture.pixelColor(x, y), ground));
    }
  }
  return highest;
}

class ContrastOf : public WindowWalk, public ::testing::WithParamInterface<bool> {
 protected:
  ContrastOf() : usual_(QApplication::palette()) {
    ClearStyle::Use();
    if (!GetParam()) return;
    QPalette dark = DarkPalette();
    QApplication::style()->polish(dark);  // as the desktop's palette is
    QApplication::setPalette(dark);
  }
  ~ContrastOf() override {
    windows_.reset();
    QApplication::setPalette(usual_);
  }

  // Where a control writes, without its edge; none for a control without text.
  static QRect TextPlace(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
      return label->text().trimmed().isEmpty() ? QRect() : label->contentsRect();
    }
    if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) {
      return line->displayText().trimmed().isEmpty() ? QRect()
                                                     : line->rect().adjusted(4, 4, -4, -4);
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
      return combo->isEditable() ? QRect() : combo->rect().adjusted(5, 5, -24, -5);
    }
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    if (button == nullptr || button->text().isEmpty()) return {};
    if (qobject_cast<const QPushButton*>(button) != nullptr)
      return button->rect().adjusted(5, 5, -5, -5);
    return button->rect().adjusted(Indicator(*button).right() + 3, 0, 0, 0);
  }

  static QRect Indicator(const QAbstractButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    const bool isCheckBox = qobject_cast<const QCheckBox*>(&button) != nullptr;
    return button.style()->subElementRect(
        isCheckBox ? QStyle::SE_CheckBoxIndicator : QStyle::SE_RadioButtonIndicator, &option,
        &button);
  }

  // The edge of a control, a line along it half-way down on the left.
  static QRect EdgePlace(const QWidget& widget) {
    if (widget.inherits("QCheckBox") || widget.inherits("QRadioButton")) {
      return Indicator(*qobject_cast<const QAbstractButton*>(&widget));
    }
    const auto* line = qobject_cast<const QLineEdit*>(&widget);
    const bool hasEdge = (line != nullptr && line->hasFrame()) ||
                         qobject_cast<const QComboBox*>(&widget) != nullptr ||
                         qobject_cast<const QPushButton*>(&widget) != nullptr;
    return hasEdge ? QRect(0, widget.height() / 2, 3, 1) : QRect();
  }

  static void Check(const QWidget& window, const QWidget& widget, const QImage& picture) {
    const auto seen = [&](const QRect& place) {
      return Part(picture, QRect(widget.mapTo(&window, place.topLeft()), place.size()));
    };
    const QRect text = TextPlace(widget);
    if (!text.isEmpty()) {
      const QImage part = seen(text);
      EXPECT_GE(Highest(part, MostFrequent(part)), kTextContrast) << Told(widget);
    }
    const QRect edge = EdgePlace(widget);
    if (!edge.isEmpty()) {
      const QColor ground = widget.parentWidget()->palette().color(QPalette::Window);
      EXPECT_GE(Highest(seen(edge), ground), kEdgeContrast) << Told(widget) << ": edge";
    }
  }

 private:
  QPalette usual_;
};

// A disabled control need not stand out.
TEST_P(ContrastOf, EveryTextAndEveryEdgeStandsOut) {
  int checked = 0;
  EachWindow([&checked](QWidget& window) {
    SCOPED_TRACE(window.objectName().toStdString());
    const QImage picture = RenderOf(window, kRatio);
    for (const QWidget* widget : Shown(window)) {
      const bool isWhole = widget->visibleRegion().boundingRect() == widget->rect();
      if (!widget->isEnabled() || !isWhole) continue;
      Check(window, *widget, picture);
      ++checked;
    }
  });
  EXPECT_GT(checked, 100);
}

TEST_P(ContrastOf, SelectedTextStandsOut) {
  Start();
  const QPalette colours = QApplication::palette();
  EXPECT_GE(Contrast(colours.color(QPalette::HighlightedText), colours.color(QPalette::Highlight)),
            kTextContrast);
}

// The colour of the Y trace is fixed and falls short on white: its height is also read out, told
// and listed, and its swatch and box name it.
TEST_P(ContrastOf, CurvesAndCursorStandOutFromThePaper) {
  Start();
  const QColor paper = Find<PictureBox>("pic1").Paper();
  for (const Axis axis : {Axis::X, Axis::Z}) {
    EXPECT_GE(Contrast(ToColour(TraceColour(axis)), paper), kEdgeContrast);
  }
  auto& plot = Find<PictureBox>("pic1");
  const QPoint at = plot.ToPixels({100.5, 0.53}).toPoint();
  QMouseEvent move(QEvent::MouseMove, at, plot.mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
  QApplication::sendEvent(&plot, &move);
  const QImage crossed = RenderOf(plot, kRatio);
  EXPECT_GE(Highest(Part(crossed, {at - QPoint(1, 20), QSize(3, 1)}), paper), kEdgeContrast);
}

// The traces' colours are fixed, and blue falls short on every dark ground, even on black; green,
// which falls short on white, is the only one that would gain.
TEST_P(ContrastOf, TheCanvasIsLightInBothThemesSinceTheZTraceIsLostOnADarkOne) {
  Start();
  EXPECT_LT(Contrast(ToColour(TraceColour(Axis::Z)), Qt::black), kEdgeContrast);
  EXPECT_GT(Luminance(Find<PictureBox>("pic1").Paper()), 0.7);
}

INSTANTIATE_TEST_SUITE_P(Themes, ContrastOf, ::testing::Bool(),
                         [](const auto& theme) { return theme.param ? "Dark" : "Light"; });

}  // namespace
}  // namespace kestrel
