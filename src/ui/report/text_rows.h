// Texts in columns as blocks: paragraphs, facts, and tables whose heads are repeated.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <vector>

#include "report/report.h"
#include "ui/report/page_flow.h"
#include "ui/report/page_fonts.h"

namespace kestrel {

// A text in a column, `left` from the edge of the blocks, broken into lines of `width`.
struct Cell {
  QString text;
  QFont font;
  QColor colour;
  double left = 0;
  double width = 0;
  bool atRight = false;
};

// A block for each line of the highest cell; they stay together as long as they are no more than a
// third of `page`.
[[nodiscard]] std::vector<Block> RowOf(const std::vector<Cell>& cells, double page);

// What is printed and how wide and high the pages are.
struct PageText {
  PageFonts& fonts;
  double width = 0;
  double height = 0;
};

[[nodiscard]] std::vector<Block> ParagraphBlocks(const std::string& text, double points,
                                                 const QColor& colour, const PageText& page);
[[nodiscard]] std::vector<Block> FactBlocks(const std::vector<report::Fact>& facts,
                                            const PageText& page);
[[nodiscard]] std::vector<Block> TableBlocks(const report::Table& table, const PageText& page);

}  // namespace kestrel
