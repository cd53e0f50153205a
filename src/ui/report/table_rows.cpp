// Tables as blocks: columns as wide as their texts, heads repeated on every page.
// SPDX-License-Identifier: MIT
#include <QFontMetricsF>
#include <algorithm>
#include <memory>
#include <numeric>

#include "ui/chart/look.h"
#include "ui/report/text_rows.h"

namespace kestrel {
namespace {

constexpr double kPoints = 8.5;
constexpr double kCaptionPoints = 9;
constexpr double kPadding = 1.8 * kUnitsPerMm;  // at each side of a column
constexpr double kRowGap = 0.5 * kUnitsPerMm;
constexpr double kCaptionGap = 1.2 * kUnitsPerMm;
constexpr double kRule = 0.35 * kUnitsPerPoint;
constexpr double kLeastWidth = 9 * kUnitsPerMm;

// A table with its texts as they are printed.
struct PrintedTable {
  std::vector<QString> heads;
  std::vector<QString> units;
  std::vector<bool> isNumber;
  std::vector<std::vector<QString>> rows;
  std::vector<double> widths;  // of texts, without padding
};

PrintedTable Printed(const report::Table& table, const PageText& page) {
  PrintedTable printed;
  for (const report::Column& column : table.columns) {
    printed.heads.push_back(page.fonts.Shown(column.head));
    printed.units.push_back(page.fonts.Shown(column.unit));
    printed.isNumber.push_back(column.isNumber);
  }
  for (const auto& row : table.rows) {
    printed.rows.emplace_back();
    for (std::size_t i = 0; i < std::min(row.size(), table.columns.size()); ++i) {
      printed.rows.back().push_back(page.fonts.Shown(row[i]));
    }
  }
  return printed;
}

// As wide as the texts; where there is no room for that, the widest give way.
std::vector<double> WidthsOf(const PrintedTable& table, const PageText& page) {
  const QFontMetricsF plain(page.fonts.Sized(kPoints));
  const QFontMetricsF bold(page.fonts.Sized(kPoints, QFont::DemiBold));
  std::vector<double> widths(table.heads.size());
  for (std::size_t i = 0; i < widths.size(); ++i) {
    widths[i] =
        std::max(bold.horizontalAdvance(table.heads[i]), plain.horizontalAdvance(table.units[i]));
    for (const auto& row : table.rows) {
      if (i < row.size()) widths[i] = std::max(widths[i], plain.horizontalAdvance(row[i]));
    }
    widths[i] += kUnitsPerPoint;
  }
  const double room = page.width - 2 * kPadding * static_cast<double>(widths.size());
  double most = widths.empty() ? 0 : std::ranges::max(widths);
  while (std::accumulate(widths.begin(), widths.end(), 0.0) > room && most > kLeastWidth) {
    most -= kUnitsPerMm;
    for (double& width : widths) width = std::min(width, std::max(most, kLeastWidth));
  }
  return widths;
}

double WholeWidth(const PrintedTable& table) {
  return std::accumulate(table.widths.begin(), table.widths.end(), 0.0) +
         2 * kPadding * static_cast<double>(table.widths.size());
}

std::vector<Cell> CellsOf(const PrintedTable& table, const std::vector<QString>& texts,
                          const QFont& font, const QColor& colour) {
  std::vector<Cell> cells;
  double left = kPadding;
  for (std::size_t i = 0; i < table.widths.size(); ++i) {
    const QString text = i < texts.size() ? texts[i] : QString();
    cells.push_back({text, font, colour, left, table.widths[i], table.isNumber[i]});
    left += table.widths[i] + 2 * kPadding;
  }
  return cells;
}

Block RuleOf(double width, const QColor& colour, double thickness) {
  return {.above = kRowGap, .height = thickness, .paint = [=](QPainter& painter, QPointF place) {
            painter.fillRect(QRectF(place, QSizeF(width, thickness)), colour);
          }};
}

// Names and units in one block, so that it can be repeated.
std::shared_ptr<const Block> HeadOf(const PrintedTable& table, const PageText& page) {
  const Look look = Look::Light();
  auto lines =
      RowOf(CellsOf(table, table.heads, page.fonts.Sized(kPoints, QFont::DemiBold), look.text),
            page.height);
  const bool hasUnits =
      std::ranges::any_of(table.units, [](const QString& unit) { return !unit.isEmpty(); });
  if (hasUnits) {
    auto units =
        RowOf(CellsOf(table, table.units, page.fonts.Sized(kPoints), look.muted), page.height);
    std::ranges::move(units, std::back_inserter(lines));
  }
  lines.push_back(RuleOf(WholeWidth(table), look.axis, 2 * kRule));
  double height = 0;
  for (const Block& line : lines) height += line.height;
  height += kRowGap;
  auto paint = [lines](QPainter& painter, QPointF place) {
    for (const Block& line : lines) {
      line.paint(painter, place);
      place.ry() += line.height;
    }
  };
  return std::make_shared<const Block>(
      Block{.height = height, .paint = std::move(paint), .staysWithNext = true});
}

}  // namespace

std::vector<Block> TableBlocks(const report::Table& table, const PageText& page) {
  const Look look = Look::Light();
  if (table.rows.empty()) {
    return table.instead.empty() ? std::vector<Block>()
                                 : ParagraphBlocks(table.instead, kCaptionPoints, look.text, page);
  }
  std::vector<Block> blocks;
  if (!table.caption.empty()) {
    blocks = RowOf({{.text = page.fonts.Shown(table.caption),
                     .font = page.fonts.Sized(kCaptionPoints, QFont::DemiBold),
                     .colour = look.text,
                     .width = page.width}},
                   page.height);
    for (Block& block : blocks) block.staysWithNext = true;
  }
  PrintedTable printed = Printed(table, page);
  printed.widths = WidthsOf(printed, page);
  const auto head = HeadOf(printed, page);
  blocks.push_back(*head);
  blocks.back().above = table.caption.empty() ? kRowGap : kCaptionGap;
  const QFont font = page.fonts.Sized(kPoints);
  for (const auto& row : printed.rows) {
    auto lines = RowOf(CellsOf(printed, row, font, look.text), page.height);
    lines.front().above = kRowGap;
    Block rule = RuleOf(WholeWidth(printed), look.hairline, kRule);
    lines.back().staysWithNext = true;
    lines.push_back(std::move(rule));
    for (Block& line : lines) line.head = head;
    std::ranges::move(lines, std::back_inserter(blocks));
  }
  return blocks;
}

}  // namespace kestrel
