// Taking quoted and plain cells out of a clipboard's text, and putting them in.
// SPDX-License-Identifier: MIT
#include "alarms/band_clipboard.h"

#include <algorithm>

namespace kestrel {
namespace {

// Takes a cell that begins with a quote; false when its closing quote is missing, as in 5".
bool TakeQuoted(std::string_view& text, std::string& cell) {
  std::string content;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] != '"') {
      content += text[at];
    } else if (at + 1 < text.size() && text[at + 1] == '"') {
      content += '"';
      ++at;
    } else {
      cell = std::move(content);
      text.remove_prefix(at + 1);
      return true;
    }
  }
  return false;
}

std::string TakeCell(std::string_view& text) {
  std::string cell;
  if (text.starts_with('"') && TakeQuoted(text, cell)) return cell;
  const std::size_t end = std::min(text.find_first_of("\t\r\n"), text.size());
  cell = text.substr(0, end);
  text.remove_prefix(end);
  return cell;
}

void SkipRowEnd(std::string_view& text) {
  text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
}

}  // namespace

TextBlock ParseTextBlock(std::string_view text) {
  TextBlock rows;
  while (!text.empty()) {
    std::vector<std::string> row{TakeCell(text)};
    while (!text.empty() && text.front() != '\r' && text.front() != '\n') {
      if (text.front() == '\t') text.remove_prefix(1);
      row.push_back(TakeCell(text));
    }
    rows.push_back(std::move(row));
    if (!text.empty()) SkipRowEnd(text);
  }
  return rows;
}

std::string BlockText(const BandTable& table, const CellBlock& block, int option,
                      const BandScale& scale, char decimalMark) {
  std::string text;
  for (int band = block.first.band; band <= block.last.band; ++band) {
    if (band > block.first.band) text += '\n';
    for (int column = block.first.column; column <= block.last.column; ++column) {
      if (column > block.first.column) text += '\t';
      if (!IsBin(column) && !scale.Known()) continue;
      std::string cell = CellText(column, table(FieldOf(column), band, option), scale);
      std::replace(cell.begin(), cell.end(), '.', decimalMark);
      text += cell;
    }
  }
  return text;
}

}  // namespace kestrel
