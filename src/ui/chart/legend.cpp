// Painting the legend's entries with their swatches.
// SPDX-License-Identifier: MIT
#include "ui/chart/legend.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/chart/tabular_text.h"
#include "ui/chart/trace_painter.h"

namespace kestrel {
namespace {

constexpr double kSwatch = 18;
constexpr double kLongSwatch = 34;  // shows any pattern twice
constexpr double kGap = 6;
constexpr double kApart = 18;  // between two entries

struct Entry {
  std::string text;
  QColor colour;
  TraceStyle style = TraceStyle::Live;
  bool isFocus = false;
  std::span<const double> dash = {};
  double swatch = kSwatch;
};

bool IsSame(const Entry& a, const Entry& b) {
  return a.text == b.text && a.colour == b.colour && a.style == b.style &&
         a.dash.data() == b.dash.data();
}

std::vector<Entry> Entries(const PlotPage& page, const PlotPane& pane) {
  std::vector<Entry> entries;
  for (const SceneTrace& trace : pane.traces) {
    const std::string text = trace.figure.empty() ? trace.name : trace.name + ' ' + trace.figure;
    entries.push_back({text, page.look.Ink(trace.ink), trace.style, trace.isFocus, PatternOf(trace),
                       trace.letter.empty() ? kSwatch : kLongSwatch});
  }
  if (pane.crowd) entries.push_back({pane.crowd->name, page.look.Ink(pane.crowd->ink)});
  std::erase_if(entries, [](const Entry& entry) { return entry.text.empty(); });
  const auto end = std::unique(entries.begin(), entries.end(), IsSame);
  entries.erase(end, entries.end());
  return entries;
}

void PaintSwatch(QPainter& painter, const Entry& entry, double left, double y) {
  const double width = entry.isFocus ? 3 : entry.style == TraceStyle::Live ? 2 : 1.25;
  QPen pen(entry.colour, width, Qt::SolidLine, Qt::FlatCap);
  QList<qreal> dashes;
  for (const double length : entry.dash) dashes << length / width;
  if (!dashes.isEmpty()) pen.setDashPattern(dashes);
  painter.setPen(pen);
  painter.drawLine(QPointF(left, std::round(y)), QPointF(left + entry.swatch, std::round(y)));
}

// From the right; what has no room left is left out.
void PaintEntries(QPainter& painter, const PlotPage& page, const std::vector<Entry>& entries,
                  const QRectF& place) {
  double right = place.right();
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    const QFont& font = entry->isFocus ? page.fonts.bold : page.fonts.plain;
    const double width = TabularWidth(font, entry->text);
    const double left = right - width;
    if (left - kGap - entry->swatch < place.left()) return;
    painter.setPen(page.look.text);
    const QRectF text(left, place.top(), width, place.height());
    DrawTabular(painter, font, text, Qt::AlignLeft, entry->text);
    PaintSwatch(painter, *entry, left - kGap - entry->swatch, place.center().y());
    right = left - kGap - entry->swatch - kApart;
  }
}

}  // namespace

void PaintLegend(QPainter& painter, const PlotPage& page) {
  if (page.scene.panes.empty()) return;
  const QRectF& line = page.layout.titleLine;
  painter.setPen(page.look.muted);
  DrawTabular(painter, page.fonts.small, line, Qt::AlignLeft, page.scene.panes.front().title);
  // The first pane's beside the title, the others' in the gap above them.
  for (std::size_t i = 0; i < page.layout.panes.size(); ++i) {
    const QRectF& canvas = page.layout.panes[i].canvas;
    const double top = i == 0 ? line.top() : canvas.top() - kPaneGap + 1;
    const double title = TabularWidth(page.fonts.small, page.scene.panes[i].title) + kApart;
    const double left = i == 0 ? line.left() + title : canvas.left();
    const QRectF place(left, top, canvas.right() - left, i == 0 ? line.height() : kPaneGap - 2);
    if (i > 0 && page.scene.panes[i].title != page.scene.panes.front().title) {
      painter.setPen(page.look.muted);
      DrawTabular(painter, page.fonts.small, place.translated(line.left() - left, 0), Qt::AlignLeft,
                  page.scene.panes[i].title);
    }
    PaintEntries(painter, page, Entries(page, page.scene.panes[i]), place);
  }
}

}  // namespace kestrel
