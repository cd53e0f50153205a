// Rows of cells broken into lines, and facts in two columns.
// SPDX-License-Identifier: MIT
#include "ui/report/text_rows.h"

#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <memory>

#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr double kFactPoints = 9;
constexpr double kNameWidth = 34 * kUnitsPerMm;
constexpr double kBetween = 6 * kUnitsPerMm;
constexpr double kFactGap = 0.6 * kUnitsPerMm;
constexpr std::size_t kInOneColumn = 5;  // facts

std::shared_ptr<QTextLayout> LaidOut(const Cell& cell) {
  auto layout = std::make_shared<QTextLayout>(cell.text, cell.font);
  QTextOption option(cell.atRight ? Qt::AlignRight : Qt::AlignLeft);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout->setTextOption(option);
  layout->beginLayout();
  for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
    line.setLineWidth(cell.width);
    line.setPosition({0, 0});
  }
  layout->endLayout();
  return layout;
}

struct LaidCell {
  std::shared_ptr<QTextLayout> layout;
  QColor colour;
  double left = 0;
};

void PaintLine(QPainter& painter, const LaidCell& cell, int index, QPointF place) {
  if (index >= cell.layout->lineCount()) return;
  painter.setPen(cell.colour);
  cell.layout->lineAt(index).draw(&painter, place + QPointF(cell.left, 0));
}

}  // namespace

std::vector<Block> RowOf(const std::vector<Cell>& cells, double page) {
  auto laid = std::make_shared<std::vector<LaidCell>>();
  int lines = 0;
  double height = 0;
  for (const Cell& cell : cells) {
    laid->push_back({LaidOut(cell), cell.colour, cell.left});
    lines = std::max(lines, laid->back().layout->lineCount());
    height = std::max(height, std::ceil(QFontMetricsF(cell.font).height()));
  }
  std::vector<Block> blocks;
  const bool staysTogether = lines * height <= page / 3;
  for (int line = 0; line < lines; ++line) {
    blocks.push_back({.height = height,
                      .paint =
                          [laid, line](QPainter& painter, QPointF place) {
                            for (const LaidCell& cell : *laid) {
                              PaintLine(painter, cell, line, place);
                            }
                          },
                      .staysWithNext = staysTogether && line + 1 < lines});
  }
  return blocks;
}

std::vector<Block> ParagraphBlocks(const std::string& text, double points, const QColor& colour,
                                   const PageText& page) {
  return RowOf({{.text = page.fonts.Shown(text),
                 .font = page.fonts.Sized(points),
                 .colour = colour,
                 .width = page.width}},
               page.height);
}

std::vector<Block> FactBlocks(const std::vector<report::Fact>& facts, const PageText& page) {
  const Look look = Look::Light();
  const std::size_t columns = facts.size() > kInOneColumn ? 2 : 1;
  const std::size_t rows = (facts.size() + columns - 1) / columns;
  const auto count = static_cast<double>(columns);
  const double width = (page.width - (count - 1) * kBetween) / count;
  const QFont font = page.fonts.Sized(kFactPoints);
  std::vector<Block> blocks;
  for (std::size_t row = 0; row < rows; ++row) {
    std::vector<Cell> cells;
    for (std::size_t column = 0; column < columns; ++column) {
      const std::size_t at = column * rows + row;
      if (at >= facts.size()) continue;
      const double left = static_cast<double>(column) * (width + kBetween);
      cells.push_back(
          {page.fonts.Shown(facts[at].name), font, look.muted, left, kNameWidth, false});
      cells.push_back({page.fonts.Shown(facts[at].value), font, look.text, left + kNameWidth,
                       width - kNameWidth, false});
    }
    auto lines = RowOf(cells, page.height);
    lines.front().above = kFactGap;
    std::ranges::move(lines, std::back_inserter(blocks));
  }
  return blocks;
}

}  // namespace kestrel
