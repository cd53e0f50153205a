// A report as plain text, its tables in columns, and as comma-separated values.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <numeric>

#include "baseline/evidence.h"

namespace kestrel::baseline {
namespace {

using report::Column;
using report::Section;
using report::Table;
using Row = std::vector<std::string>;

// Characters, not bytes.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string HeadOf(const Column& column) {
  return column.unit.empty() ? column.head : column.head + ", " + column.unit;
}

Row HeadsOf(const Table& table) {
  Row heads;
  for (const Column& column : table.columns) heads.push_back(HeadOf(column));
  return heads;
}

std::string Line(const Row& row, const Table& table, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const std::string cell = i < row.size() ? row[i] : "";
    const std::string blanks(widths[i] - WidthOf(cell), ' ');
    line += (i == 0 ? "" : "  ") + (table.columns[i].isNumber ? blanks + cell : cell + blanks);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

std::string TableText(const Table& table) {
  if (table.rows.empty()) return table.instead.empty() ? "" : table.instead + "\n\n";
  std::vector<std::size_t> widths;
  for (const std::string& head : HeadsOf(table)) widths.push_back(WidthOf(head));
  for (const Row& row : table.rows) {
    for (std::size_t i = 0; i < std::min(row.size(), widths.size()); ++i) {
      widths[i] = std::max(widths[i], WidthOf(row[i]));
    }
  }
  std::string text = table.caption.empty() ? "" : table.caption + "\n";
  text += Line(HeadsOf(table), table, widths);
  for (const Row& row : table.rows) text += Line(row, table, widths);
  return text + "\n";
}

std::string SectionText(const Section& section) {
  std::string text = section.heading + "\n" + std::string(WidthOf(section.heading), '-') + "\n";
  for (const std::string& paragraph : section.paragraphs) text += paragraph + "\n";
  for (const report::Fact& fact : section.facts) text += fact.name + ": " + fact.value + "\n";
  if (!section.paragraphs.empty() || !section.facts.empty()) text += "\n";
  for (const Table& table : section.tables) text += TableText(table);
  for (const std::string& remark : section.remarks) text += remark + "\n";
  return text + (section.remarks.empty() ? "" : "\n");
}

std::string CsvLine(const Row& row) {
  std::string line;
  for (const std::string& cell : row) {
    if (&cell != &row.front()) line += ',';
    if (cell.find_first_of(",\"\r\n") == std::string::npos) {
      line += cell;
      continue;
    }
    line += '"';
    for (const char letter : cell) line += letter == '"' ? "\"\"" : std::string(1, letter);
    line += '"';
  }
  return line + "\r\n";
}

}  // namespace

std::string EvidenceText(const report::Report& evidence) {
  std::string text = evidence.title + "\n" + evidence.line + "\n\n";
  for (const Section& section : evidence.sections) text += SectionText(section);
  return text + evidence.foot + (evidence.foot.empty() ? "" : "\n");
}

std::string EvidenceCsv(const report::Report& evidence) {
  std::string text = CsvLine({evidence.title}) + CsvLine({evidence.line});
  for (const Section& section : evidence.sections) {
    text += "\r\n" + CsvLine({section.heading});
    for (const std::string& paragraph : section.paragraphs) text += CsvLine({paragraph});
    for (const report::Fact& fact : section.facts) text += CsvLine({fact.name, fact.value});
    for (const Table& table : section.tables) {
      if (table.rows.empty()) continue;
      if (!table.caption.empty()) text += CsvLine({table.caption});
      text += CsvLine(HeadsOf(table));
      for (const Row& row : table.rows) text += CsvLine(row);
    }
    for (const std::string& remark : section.remarks) text += CsvLine({remark});
  }
  return evidence.foot.empty() ? text : text + "\r\n" + CsvLine({evidence.foot});
}

}  // namespace kestrel::baseline
