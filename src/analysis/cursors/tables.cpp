// The cursors' tables as texts.
// SPDX-License-Identifier: MIT
#include "analysis/cursors.h"
#include "numeric/number_texts.h"

namespace kestrel::analysis {
namespace {

std::string Joined(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) line += (&cell == &cells.front() ? "" : "\t") + cell;
  return line + "\n";
}

std::vector<std::string> RowOf(const std::string& name, const Member& member) {
  const Line line = member.found ? member.found->line : Line{};
  const double bound = member.found ? line.hzBound : 0;
  std::vector<std::string> row{name, WithBound(member.expectedHz, bound).value};
  if (!member.found) {
    row.insert(row.end(), {"not found", "", "", "below " + SignificantText(member.belowG), ""});
    return row;
  }
  const BoundedText found = WithBound(line.hz, bound);
  row.push_back(found.value + (line.unresolved ? ", unresolved" : ""));
  row.push_back(found.bound);
  row.push_back(NumberText(line.hz - member.expectedHz, DigitsOfBound(bound).decimals));
  row.push_back(SignificantText(line.peakG));
  row.push_back(member.relativeDb ? NumberText(*member.relativeDb, 1) : "");
  return row;
}

TextTable TableOf(const std::string& first, const std::string& relative) {
  return {.heads = {first, "Expected, Hz", "Found, Hz", "\u00B1", "Off by, Hz", "g peak", relative},
          .rows = {}};
}

std::string Signed(int number) {
  if (number == 0) return "centre";
  return (number > 0 ? "+" : "") + NumberText(number, 0);
}

}  // namespace

std::string TextTable::WithTabs() const {
  std::string text = Joined(heads);
  for (const std::vector<std::string>& row : rows) text += Joined(row);
  return text;
}

TextTable TableOf(const HarmonicReading& reading) {
  TextTable table = TableOf("n", "re 1\u00D7, dB");
  for (const Member& member : reading.members) {
    table.rows.push_back(RowOf(std::to_string(member.number) + "\u00D7", member));
  }
  return table;
}

TextTable TableOf(const SidebandReading& reading) {
  TextTable table = TableOf("m", "re centre, dB");
  for (const Member& member : reading.members) {
    table.rows.push_back(RowOf(Signed(member.number), member));
  }
  return table;
}

}  // namespace kestrel::analysis
