// A report as a value: headings, facts, plots and tables, without a toolkit.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "chart/plot_scene.h"

namespace kestrel::report {

// All texts are UTF-8.
struct Fact {
  std::string name{};
  std::string value{};
  bool operator==(const Fact&) const = default;
};

struct Column {
  std::string head{};
  std::string unit{};     // below the head; may be empty
  bool isNumber = false;  // stands at the right
  bool operator==(const Column&) const = default;
};

// A row that is shorter than the columns ends in empty cells.
struct Table {
  std::string caption{};  // may be empty
  std::vector<Column> columns{};
  std::vector<std::vector<std::string>> rows{};
  std::string instead{};  // said where there are no rows; nothing is shown where it is empty too
  bool operator==(const Table&) const = default;
};

struct Plot {
  std::string name{};  // of its own file: "spectrum"; letters, digits and "-"
  std::string caption{};
  PlotScene scene{};
};

// Shown in the order of its members; what is empty takes no room.
struct Section {
  std::string heading{};
  std::vector<std::string> paragraphs{};
  std::vector<Fact> facts{};
  std::vector<Plot> plots{};
  std::vector<Table> tables{};
  std::vector<std::string> remarks{};  // small, at the end
};

struct Report {
  std::string title{};
  std::string line{};  // below it: where and when
  std::string foot{};  // at the foot of each page
  // The date that its file carries; nothing in a report comes of the clock.
  std::chrono::system_clock::time_point time{};
  std::vector<Section> sections{};
};

}  // namespace kestrel::report
