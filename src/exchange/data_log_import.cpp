// Data-log files, also as spreadsheets save them: read line by line, or refused.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "exchange/readers.h"
#include "exchange/text_lines.h"
#include "exchange/texts.h"
#include "logging/data_log_text.h"
#include "numeric/number_parse.h"
#include "record/status_flags.h"

namespace kestrel::exchange {
namespace {

using Cells = std::vector<std::string>;

// The lines of a file as cells, and numbers out of them.
class Table {
 public:
  explicit Table(std::string_view bytes) : lines_(bytes) {}

  [[nodiscard]] std::size_t Line() const { return lines_.Number(); }
  [[nodiscard]] bool AtEnd() const { return lines_.AtEnd(); }
  [[nodiscard]] bool LastHadItsEnd() const { return lines_.LastHadItsEnd(); }
  std::string_view Next() { return lines_.Next(); }
  void SeparateBy(char separator) { separator_ = separator; }

  // The cells of the next line; empty ones at its end are left out, as are quotes around cells.
  Cells NextCells() {
    Cells cells{""};
    bool quoted = false;
    for (const char c : Next()) {
      if (c == '"') {
        quoted = !quoted;
      } else if (c == separator_ && !quoted) {
        cells.emplace_back();
      } else {
        cells.back() += c;
      }
    }
    for (std::string& cell : cells) cell = OneLine(cell);
    while (!cells.empty() && cells.back().empty()) cells.pop_back();
    return cells;
  }

  // A line of a name and a value; the value's text.
  std::string Valued(std::string_view name) {
    const Cells cells = NextCells();
    if (cells.empty() || cells.front() != name) {
      Stop("the line should begin with " + Shown(name) + " and begins with " +
           Shown(cells.empty() ? "" : cells.front()));
    }
    std::string value;
    for (std::size_t i = 1; i < cells.size(); ++i) value += (i == 1 ? "" : " ") + cells[i];
    return value;
  }

  // A finite number. Its decimal mark is that of all others.
  double Number(std::string text, const std::string& what) {
    const std::string shown = Shown(text);
    const std::size_t mark = text.find_first_of(".,");
    if (mark != std::string::npos) {
      const char here = text[mark];
      if (here == ',' && separator_ == ',') Stop(what + " is " + shown + ", which is not a number");
      if (mark_ != 0 && here != mark_) {
        Stop(what + " is " + shown + ", with another decimal mark than the numbers before it");
      }
      mark_ = here;
      text[mark] = '.';
    }
    const auto number = WholeTextNumber(text);
    if (!number || !std::isfinite(*number)) Stop(what + " is " + shown + ", which is not a number");
    return *number;
  }

  [[noreturn]] void Stop(const std::string& what) const { StopAtLine(Line(), what + "."); }

 private:
  TextLines lines_;
  char separator_ = ',';
  char mark_ = 0;  // none has been seen
};

// The separator is what follows "Date" in the second line.
char SeparatorOf(std::string_view bytes) {
  TextLines lines(bytes);
  lines.Next();
  const std::string line = OneLine(lines.AtEnd() ? "" : lines.Next());
  const std::string_view rest =
      std::string_view(line).substr(std::min<std::size_t>(line.starts_with("\"Date\"") ? 6
                                                          : line.starts_with("Date")   ? 4
                                                                                     : line.size(),
                                                          line.size()));
  if (rest.starts_with(',') || rest.starts_with(';')) return rest.front();
  return '\t';
}

void ReadEmptyLine(Table& table) {
  const Cells cells = table.NextCells();
  if (!cells.empty()) table.Stop("the line should be empty and holds " + Shown(cells.front()));
}

// The flags' names and texts, STATUS bit 14 first; nothing where STATUS was never read.
std::optional<std::int32_t> ReadFlags(Table& table) {
  Cells names = table.NextCells();
  for (std::size_t i = 0; i < kStatusFlags; ++i) {
    const std::string wanted = OneLine(kDataLogFlagNames[kStatusFlags - 1 - i]);
    if (i >= names.size() || names[i] != wanted) {
      table.Stop("the name of a flag should be " + Shown(wanted) + " and is " +
                 Shown(i < names.size() ? names[i] : ""));
    }
  }
  const Cells texts = table.NextCells();
  if (texts.empty()) return std::nullopt;
  if (texts.size() != kStatusFlags) {
    table.Stop("there should be " + std::to_string(kStatusFlags) + " flags, and there are " +
               std::to_string(texts.size()));
  }
  std::int32_t word = 0;
  for (std::size_t i = 0; i < kStatusFlags; ++i) {
    const std::size_t bit = kStatusFlags - 1 - i;
    if (texts[i] == kStatusFlagClear) continue;
    if (texts[i] != kStatusFlagTable[bit].whenSet) {
      table.Stop("flag " + Shown(names[i]) + " is " + Shown(texts[i]) +
                 ", which is not one of its states");
    }
    word |= 1 << bit;
  }
  return word;
}

RecordKind ReadHeading(Table& table) {
  const Cells titles = table.NextCells();
  for (const std::int16_t width : {kFftWidth, kTimeWidth}) {
    std::string line = DataLogHeading(width, ",");
    Cells wanted;
    while (!line.empty()) {
      wanted.push_back(line.substr(0, line.find(',')));
      line.erase(0, line.find(',') + 1);
    }
    if (titles == wanted) return width == kTimeWidth ? RecordKind::Time : RecordKind::Spectrum;
  }
  table.Stop("the titles of the columns are those of no record; the second is " +
             Shown(titles.size() > 1 ? titles[1] : ""));
}

void ReadHead(Table& table, ImportedRecord& record) {
  const std::string first = OneLine(AsUtf8(table.Next()));
  record.title = OneLine(first.substr(std::min(first.find_first_of(",;\t"), first.size() - 1) + 1));
  std::erase(record.title, '"');
  const std::string date = AsUtf8(table.Valued("Date"));
  record.timeText = OneLine(date + " " + AsUtf8(table.Valued("Time")));
  record.averages = table.Number(table.Valued("AVG_Cnt"), "the number of averages");
  record.supplyV =
      static_cast<float>(table.Number(table.Valued("Capt_Supply"), "the supply voltage"));
  record.temperatureC =
      static_cast<float>(table.Number(table.Valued("Capt_Temp 'C"), "the temperature"));
  ReadEmptyLine(table);
  table.Valued("Staus  Register");
  record.status = ReadFlags(table);
  ReadEmptyLine(table);
  record.kind = ReadHeading(table);
}

void ReadPoints(Table& table, ImportedRecord& record) {
  const std::size_t points = record.kind == RecordKind::Time ? kTimeWidth + 1 : kFftWidth + 1;
  for (std::size_t i = 0; i < points; ++i) {
    if (table.AtEnd()) {
      table.Stop("the file ends behind " + std::to_string(i) + " of " + std::to_string(points) +
                 " points");
    }
    const Cells cells = table.NextCells();
    if (cells.size() != kAxes.size() + 1) {
      table.Stop("a point is four numbers, and here are " + std::to_string(cells.size()));
    }
    if (cells.front() != std::to_string(i)) {
      table.Stop("the number of the point should be " + std::to_string(i) + " and is " +
                 Shown(cells.front()));
    }
    for (const Axis axis : kAxes) {
      const std::string name = std::string(1, Letter(axis)) + " of point " + std::to_string(i);
      record.traces[Index(axis)].values.push_back(table.Number(cells[Index(axis) + 1], name));
    }
  }
  // A number that is cut off is a number too.
  if (!table.LastHadItsEnd()) {
    table.Stop("the last line has no end: the file may have been cut off in its last number");
  }
}

void ReadTheRest(Table& table) {
  while (!table.AtEnd()) {
    const Cells cells = table.NextCells();
    if (!cells.empty()) table.Stop("there is more behind the last point: " + Shown(cells.front()));
  }
}

// Words have no fractions, so values with one are g. The other way round nothing follows.
bool AreWordsImpossible(const ImportedRecord& record) {
  return std::ranges::any_of(record.traces, [](const ImportedTrace& trace) {
    return std::ranges::any_of(trace.values, [](double v) { return v != std::floor(v); });
  });
}

}  // namespace

ImportedFile DataLogRead(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  Table table(bytes);
  table.SeparateBy(SeparatorOf(bytes));
  ImportedRecord record;
  for (const Axis axis : kAxes) {
    record.traces.push_back({.axis = axis, .label = std::string(1, Letter(axis))});
  }
  ReadHead(table, record);
  ReadPoints(table, record);
  ReadTheRest(table);
  record.quantity = "Acceleration";
  record.first = 0;
  if (AreWordsImpossible(record)) {
    record.unit = "g";
    record.gPerUnit = 1;
  }
  return {.records = {std::move(record)},
          .notices = {"A data-log file tells neither range nor sample rate; its date and time are "
                      "kept as text."}};
}

}  // namespace kestrel::exchange
