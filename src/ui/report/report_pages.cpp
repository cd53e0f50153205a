// Titles, sections and plots put one below the other.
// SPDX-License-Identifier: MIT
#include "ui/report/report_pages.h"

#include <algorithm>
#include <cmath>

#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr double kTitlePoints = 17;
constexpr double kLinePoints = 10;
constexpr double kHeadingPoints = 11.5;
constexpr double kTextPoints = 9.5;
constexpr double kSmallPoints = 8;
constexpr double kAboveHeading = 5 * kUnitsPerMm;
constexpr double kAboveText = 1.2 * kUnitsPerMm;
constexpr double kAbovePart = 2.5 * kUnitsPerMm;
constexpr double kPaneHeight = 118;  // unscaled pixels
constexpr double kPlotFrame = 70;    // axis, titles, legend
constexpr double kOnePane = 260;
constexpr double kFineness = 4;  // pixels for each unscaled one

using Blocks = std::vector<Block>;

void Append(Blocks& blocks, Blocks more, double above) {
  if (more.empty()) return;
  more.front().above = above;
  std::ranges::move(more, std::back_inserter(blocks));
}

Blocks Bold(const std::string& text, double points, const PageText& page) {
  Blocks blocks = RowOf({{.text = page.fonts.Shown(text),
                          .font = page.fonts.Sized(points, QFont::DemiBold),
                          .colour = Look::Light().text,
                          .width = page.width}},
                        page.height);
  for (Block& block : blocks) block.staysWithNext = true;
  return blocks;
}

Blocks PlotBlocks(const report::Plot& plot, const PageText& page) {
  Blocks blocks;
  if (!plot.caption.empty()) {
    Append(blocks, Bold(plot.caption, kTextPoints - 0.5, page), kAboveText);
  }
  const double width = std::floor(page.width / kUnitsPerPixel);
  auto picture = std::make_shared<const PlotPicture>(PictureOf(plot, page.fonts, width, false));
  const double height = picture->size.height() * kUnitsPerPixel;
  blocks.push_back(
      {.above = kAboveText, .height = height, .paint = [picture](QPainter& painter, QPointF place) {
         painter.save();
         painter.translate(place);
         painter.scale(kUnitsPerPixel, kUnitsPerPixel);
         PaintPicture(painter, *picture, kFineness);
         painter.restore();
       }});
  return blocks;
}

Blocks SectionBlocks(const report::Section& section, const PageText& page) {
  const Look look = Look::Light();
  Blocks blocks;
  if (!section.heading.empty()) Append(blocks, Bold(section.heading, kHeadingPoints, page), 0);
  for (const std::string& text : section.paragraphs) {
    Append(blocks, ParagraphBlocks(text, kTextPoints, look.text, page), kAboveText);
  }
  Append(blocks, FactBlocks(section.facts, page), kAboveText);
  for (const report::Plot& plot : section.plots) {
    Append(blocks, PlotBlocks(plot, page), kAboveText);
  }
  for (const report::Table& table : section.tables) {
    Append(blocks, TableBlocks(table, page), kAbovePart);
  }
  for (const std::string& text : section.remarks) {
    Append(blocks, ParagraphBlocks(text, kSmallPoints, look.muted, page), kAboveText);
  }
  if (!blocks.empty()) blocks.back().staysWithNext = false;
  return blocks;
}

}  // namespace

Blocks BlocksOf(const report::Report& report, const PageText& page) {
  const Look look = Look::Light();
  Blocks blocks = Bold(report.title, kTitlePoints, page);
  Append(blocks, ParagraphBlocks(report.line, kLinePoints, look.muted, page), 0);
  const double width = page.width;
  blocks.push_back({.above = kAbovePart,
                    .height = kUnitsPerPoint,
                    .paint = [width, look](QPainter& painter, QPointF place) {
                      painter.fillRect(QRectF(place, QSizeF(width, kUnitsPerPoint)), look.text);
                    }});
  bool isFirst = true;
  for (const report::Section& section : report.sections) {
    Append(blocks, SectionBlocks(section, page), isFirst ? kAbovePart : kAboveHeading);
    isFirst = false;
  }
  return blocks;
}

PlotPicture PictureOf(const report::Plot& plot, PageFonts& fonts, double width, bool withSource) {
  PlotScene scene = plot.scene;
  if (!withSource) {
    scene.head.clear();
    scene.line.clear();
    scene.source.clear();
  }
  for (PlotMark& mark : scene.marks) mark.name = fonts.Shown(mark.name).toStdString();
  const auto panes = static_cast<double>(scene.panes.size());
  const double height = (scene.panes.size() > 1 ? panes * kPaneHeight : kOnePane) + kPlotFrame;
  PlotRanges ranges = FittingRanges(scene);
  return {.scene = std::move(scene),
          .ranges = std::move(ranges),
          .cursor = {},
          .font = fonts.OfPlots(),
          .size = QSize(static_cast<int>(width), static_cast<int>(height))};
}

}  // namespace kestrel
