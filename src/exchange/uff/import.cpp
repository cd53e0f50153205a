// Universal files: datasets 58 become traces, and three of X, Y and Z one record.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <set>

#include "exchange/readers.h"
#include "exchange/texts.h"
#include "exchange/uff/dataset.h"
#include "exchange/uff/own.h"

namespace kestrel::exchange {
namespace {

constexpr double kStandardGravity = 9.80665;  // m/s^2 in 1 g

// Function types, 0 first.
constexpr std::array<const char*, 13> kFunctionTypes{"",
                                                     "time response",
                                                     "auto spectrum",
                                                     "cross spectrum",
                                                     "frequency response function",
                                                     "transmissibility",
                                                     "coherence",
                                                     "auto correlation",
                                                     "cross correlation",
                                                     "power spectral density",
                                                     "energy spectral density",
                                                     "probability density function",
                                                     "spectrum"};

RecordKind KindOf(const UffCursor& cursor, const UffFunction& function) {
  const std::int64_t type = function.abscissa.type;
  if (type == kUffTime) return RecordKind::Time;
  if (type == kUffFrequency) return RecordKind::Spectrum;
  const bool isOpen = type == kUffUnknown || type == kUffAnything;
  if (isOpen && function.type == kUffTimeResponse) return RecordKind::Time;
  if (isOpen && function.type == kUffSpectrum) return RecordKind::Spectrum;
  StopAtLine(cursor.Number(), "the dataset's abscissa is of type " + std::to_string(type) +
                                  ", and only time (17) and frequency (18) can be imported.");
}

std::optional<double> GPerUnit(const UffAxis& ordinate) {
  if (ordinate.type != kUffAcceleration) return std::nullopt;
  std::string unit = ordinate.unit;
  std::ranges::transform(unit, unit.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  });
  static constexpr std::array<const char*, 5> kMetres{"m/s^2", "m/s2", "m/s**2", "m/s\u00B2",
                                                      "m/sec^2"};
  if (unit == "g") return 1;
  if (std::ranges::find(kMetres, unit) != kMetres.end()) return 1 / kStandardGravity;
  return std::nullopt;
}

ImportedTrace TraceOf(const UffFunction& function) {
  ImportedTrace trace{.label = function.id[0], .values = function.values};
  const std::int64_t direction = std::abs(function.direction);
  if (direction >= 1 && direction <= 3)
    trace.axis = kAxes.at(static_cast<std::size_t>(direction - 1));
  trace.reversed = trace.axis && function.direction < 0;
  return trace;
}

ImportedRecord RecordOfFunction(const UffFunction& function, RecordKind kind) {
  ImportedRecord record;
  record.kind = kind;
  record.traces.push_back(TraceOf(function));
  record.first = function.first;
  record.step = function.step;
  const auto type = static_cast<std::size_t>(function.type);
  record.amplitudes = function.type == kUffGeneral || function.type == kUffTimeResponse ||
                      function.type == kUffSpectrum;
  record.quantity = function.ordinate.label;
  if (!record.amplitudes) {
    const std::string name = function.type > 0 && type < kFunctionTypes.size()
                                 ? kFunctionTypes[type]
                                 : "function of type " + std::to_string(function.type);
    record.quantity += (record.quantity.empty() ? "" : ", ") + name;
  }
  record.unit = function.ordinate.unit;
  if (record.amplitudes) record.gPerUnit = GPerUnit(function.ordinate);
  record.title = function.id[0];
  if (function.id[1] != "NONE") record.note = function.id[1];
  TakeOwnLines(record, function);
  return record;
}

// Whether a function is the next axis of what was measured with another.
bool Belongs(const UffFunction& one, const UffFunction& next) {
  return one.type == next.type && one.node == next.node && one.entity == next.entity &&
         one.first == next.first && one.step == next.step && one.abscissa == next.abscissa &&
         one.ordinate == next.ordinate && one.values.size() == next.values.size() &&
         std::ranges::equal(one.id.begin() + 1, one.id.end(), next.id.begin() + 1, next.id.end()) &&
         std::abs(next.direction) == std::abs(one.direction) + 1;
}

// Stops where this program's records 1 to n are not all there, which a cut between two datasets or
// two records leaves.
class OwnRecords {
 public:
  void Take(const UffFunction& function, bool hasThreeAxes) {
    const auto part = OwnPartOf(function);
    if (!part || part->number == 1) End();
    if (!part) return;
    if (!hasThreeAxes) {
      Missing("record " + std::to_string(part->number) + " does not have its three axes");
    }
    if (part->number != last_ + 1 || (last_ > 0 && part->count != count_)) {
      Missing("record " + std::to_string(part->number) + " of " + std::to_string(part->count) +
              " follows record " + std::to_string(last_));
    }
    last_ = part->number;
    count_ = part->count;
  }
  void End() {
    if (last_ != count_) {
      Missing("it ends behind record " + std::to_string(last_) + " of " + std::to_string(count_));
    }
    last_ = 0;
    count_ = 0;
  }

 private:
  [[noreturn]] static void Missing(const std::string& what) {
    throw ReadStop({.what = what + ": datasets are missing; the file may have been cut off."});
  }

  std::int64_t last_ = 0;
  std::int64_t count_ = 0;
};

// Three functions of X, Y and Z, one after the other, are one record; any other is one of its own.
std::vector<ImportedRecord> Joined(const std::vector<UffFunction>& functions,
                                   const std::vector<RecordKind>& kinds) {
  std::vector<ImportedRecord> records;
  OwnRecords own;
  for (std::size_t i = 0; i < functions.size();) {
    records.push_back(RecordOfFunction(functions[i], kinds[i]));
    const bool three = i + 2 < functions.size() && std::abs(functions[i].direction) == 1 &&
                       Belongs(functions[i], functions[i + 1]) &&
                       Belongs(functions[i + 1], functions[i + 2]);
    own.Take(functions[i], three);
    if (three) {
      records.back().traces.push_back(TraceOf(functions[i + 1]));
      records.back().traces.push_back(TraceOf(functions[i + 2]));
    }
    i += three ? 3 : 1;
  }
  own.End();
  return records;
}

}  // namespace

ImportedFile UffRead(std::string_view bytes) {
  UffCursor cursor(bytes);
  std::vector<UffFunction> functions;
  std::vector<RecordKind> kinds;
  std::set<std::int64_t> others;
  while (!cursor.AtEnd()) {
    if (bytes.substr(bytes.size() - cursor.Left()).find_first_not_of(" \t\r\n\x1A") ==
        std::string_view::npos) {
      break;
    }
    cursor.TakeMark("the beginning of a dataset");
    const std::string_view kind = cursor.Line();
    const std::int64_t number = UffColumns(cursor, kind).Whole(6, "the number of the dataset");
    if (number == 58) {
      functions.push_back(ReadUffFunction(cursor, kind));
      kinds.push_back(KindOf(cursor, functions.back()));
    } else {
      others.insert(number);
      while (!cursor.AtMark()) static_cast<void>(cursor.Line());
    }
    cursor.TakeMark("the end of a dataset");
  }
  if (functions.empty())
    StopAtLine(1, "the file holds no dataset 58, so there is nothing to import.");
  ImportedFile file{.records = Joined(functions, kinds)};
  for (const std::int64_t number : others) {
    file.notices.push_back("Datasets " + std::to_string(number) +
                           " were left out: only datasets 58 hold measured values.");
  }
  return file;
}

}  // namespace kestrel::exchange
