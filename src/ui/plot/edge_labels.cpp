// Where the labels of band edges find room.
// SPDX-License-Identifier: MIT
#include "ui/plot/edge_labels.h"

#include <QCoreApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/parts/widgets.h"
#include "ui/plot/free_place.h"

namespace kestrel {
namespace {

bool IsBlank(const QLabel* label) {
  return label->text().trimmed().isEmpty();
}

QString Describe(bool high, int band) {
  const char* text = high ? "Upper edge of alarm band %1" : "Lower edge of alarm band %1";
  return QCoreApplication::translate("PlotFrame", text).arg(band);
}

}  // namespace

EdgeLabels::EdgeLabels(PictureBox& picture) : picture_(picture) {
  for (int band = 1; band <= kBands; ++band) {
    Add(false, band);
    Add(true, band);
  }
  Colour();
}

void EdgeLabels::Add(bool high, int band) {
  QLabel* label = MakeLabel("", {});
  label->setObjectName(ArrayName(high ? "lblABHigh" : "lblABLow", band));
  label->setParent(picture_.parentWidget());
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  label->setAutoFillBackground(true);
  label->setContentsMargins(3, 0, 3, 0);
  label->setAccessibleDescription(Describe(high, band));
  label->hide();
  EdgeOf(high, band).label = label;
}

EdgeLabels::Edge& EdgeLabels::EdgeOf(bool high, int band) {
  return edges_.at(high ? 1 : 0).at(static_cast<std::size_t>(band - 1));
}

QLabel* EdgeLabels::At(bool high, int band) const {
  return edges_.at(high ? 1 : 0).at(static_cast<std::size_t>(band - 1)).label;
}

void EdgeLabels::SetText(bool high, int band, const QString& text) {
  At(high, band)->setText(text);
  Place();
}

void EdgeLabels::PlaceAt(bool high, int band, double x) {
  EdgeOf(high, band).x = x;
  Place();
}

// Lower edges in a first row and upper ones in a second: adjoining bands share an edge.
QRect EdgeLabels::FirstPlace(const Edge& edge, bool high) const {
  const QRect box = picture_.geometry().adjusted(1, 1, -1, -1);
  const QSize size = edge.label->sizeHint();
  const int wished =
      picture_.x() + static_cast<int>(std::lround(picture_.ToPixels({*edge.x, 0}).x()));
  const int x = std::max(box.left(), std::min(wished + 1, box.right() + 1 - size.width()));
  const int row = high ? size.height() + 2 : 0;
  return {QPoint(x, box.top() + 2 + row), size};
}

// A label goes to the first row from its own where it covers no other.
void EdgeLabels::Place() {
  const int bottom = picture_.geometry().adjusted(1, 1, -1, -1).bottom();
  std::vector<QRect> taken;
  for (const bool high : {false, true}) {
    for (const Edge& edge : edges_.at(high ? 1 : 0)) {
      const bool shown = edge.x.has_value() && !IsBlank(edge.label);
      edge.label->setVisible(shown);
      if (!shown) continue;
      QRect place = FirstPlace(edge, high);
      const int row = place.height() + 2;
      while (!IsFree(place, taken) && place.bottom() + row <= bottom) place.translate(0, row);
      taken.push_back(place);
      edge.label->setGeometry(place);
      edge.label->raise();
    }
  }
}

// Dark on the picture's light paper, whatever the theme.
void EdgeLabels::Colour() {
  QColor ground = picture_.Paper();
  ground.setAlphaF(0.85F);
  for (const auto& row : edges_) {
    for (const Edge& edge : row) {
      QPalette colours = picture_.parentWidget()->palette();
      colours.setColor(QPalette::Window, ground);
      colours.setColor(QPalette::WindowText, Qt::black);
      edge.label->setPalette(colours);
    }
  }
}

}  // namespace kestrel
