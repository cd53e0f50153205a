// Studies for paper, and the severity estimate in words.
// SPDX-License-Identifier: MIT
#include "report/parts.h"

#include <algorithm>

#include "display/scene.h"
#include "display/severity_view.h"
#include "numeric/number_texts.h"
#include "report/texts.h"

namespace kestrel::report {
namespace {

// Of a record alone: nothing that the user has chosen beside it.
study::StudyChoice ChoiceFor(const archive::Remarks& remarks, const ReportChoice& choice) {
  study::StudyChoice own = choice.study;
  own.view = study::View::Spectrum;
  own.difference = false;
  own.extras.clear();
  own.cursor = study::CursorKind::None;
  if (!own.machine.rpm) own.machine.rpm = remarks.rpm;
  return own;
}

Table SeverityTable(const study::SeverityView& view) {
  Table table{.columns = {{.head = "Axis"},
                          {.head = "Velocity", .unit = "mm/s RMS", .isNumber = true},
                          {.head = "Zone"},
                          {.head = ""}}};
  for (const Axis axis : kAxes) {
    const auto& estimate = view.axes[Index(axis)];
    table.rows.push_back({std::string(1, Letter(axis)),
                          analysis::SignificantText(estimate->mmPerS, 2),
                          std::string(1, analysis::Letter(estimate->zone)),
                          estimate->uncertain ? "uncertain: captures disagree" : ""});
  }
  return WithoutEmptyColumns(std::move(table));
}

std::string LimitsText(const analysis::ZoneLimits& limits) {
  const auto text = [](double value) { return analysis::SignificantText(value, 2); };
  return "Zone limits, " + OneLine(limits.name) + ": A to " + text(limits.ab) + ", B to " +
         text(limits.bc) + ", C to " + text(limits.cd) + " mm/s RMS.";
}

}  // namespace

study::StudyChoice UsualChoice() {
  study::StudyChoice choice;
  choice.stacked = true;
  return choice;
}

study::Study StudyOf(std::span<const archive::KeptRecord> records, const ReportChoice& choice) {
  study::Study study(MomentText, ChoiceFor(records.back().remarks, choice));
  for (const auto& [option, bands] : choice.bands) study.SetSensorBands(option, bands);
  for (const archive::KeptRecord& kept : records) {
    study.Take(std::make_shared<const Record>(kept.record));
  }
  return study;
}

PlotScene PaperScene(const study::Study& study, study::View view) {
  study::Study shown = study;
  study::StudyChoice choice = shown.Choice();
  choice.view = view;
  shown.Choose(choice);
  PlotScene scene = study::SceneOf(shown);
  for (PlotPane& pane : scene.panes) {
    int dash = 0;
    for (SceneTrace& trace : pane.traces) {
      trace.isFilled = trace.isFocus = false;
      trace.letter = trace.name;
      trace.dash = dash++;
    }
  }
  return scene;
}

Section SeveritySection(const study::Study& study) {
  const study::SeverityView view = study::SeverityOf(study);
  Section section{.heading = "Vibration severity", .paragraphs = {view.heading + ". " + view.note}};
  if (!view.IsTold()) return section;
  section.tables.push_back(SeverityTable(view));
  section.remarks.push_back(LimitsText(study.Choice().zones));
  return section;
}

Table WithoutEmptyColumns(Table table) {
  for (std::size_t column = table.columns.size(); column-- > 0;) {
    const auto isEmpty = [column](const std::vector<std::string>& row) {
      return column >= row.size() || row[column].empty();
    };
    if (table.rows.empty() || !std::ranges::all_of(table.rows, isEmpty)) continue;
    const auto at = static_cast<std::ptrdiff_t>(column);
    table.columns.erase(table.columns.begin() + at);
    for (auto& row : table.rows) {
      if (column < row.size()) row.erase(row.begin() + at);
    }
  }
  return table;
}

}  // namespace kestrel::report
