// The report of several records against the first of them.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "display/scene.h"
#include "numeric/runtime_error.h"
#include "record/record_line.h"
#include "record/record_notices.h"
#include "report/comparison_tables.h"
#include "report/parts.h"
#include "report/record_facts.h"
#include "report/texts.h"

namespace kestrel::report {
namespace {

using Records = std::span<const archive::KeptRecord>;

constexpr std::size_t kPeaksOfARecord = 12;

std::string NumberOf(const archive::KeptRecord& kept) {
  return kept.id > 0 ? std::to_string(kept.id) : "";
}

Section WhatSection(Records records) {
  Section section{.heading = "What is compared"};
  Table table{.columns = {{.head = "Record"},
                          {.head = "Number", .isNumber = true},
                          {.head = "Taken"},
                          {.head = "Machine and point"},
                          {.head = "Settings"}}};
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Record& record = records[i].record;
    table.rows.push_back({LetterOf(i), NumberOf(records[i]), MomentText(record.time),
                          PlaceText(records[i].remarks), RecordLine(record, {})});
    for (const std::string& notice : NoticesOf(record)) {
      section.paragraphs.push_back("Attention, " + LetterOf(i) + ": " + notice);
    }
  }
  section.tables.push_back(WithoutEmptyColumns(std::move(table)));
  return section;
}

Section NoteSection(Records records) {
  Section section{.heading = "Notes"};
  for (std::size_t i = 0; i < records.size(); ++i) {
    std::string before = LetterOf(i) + ": ";
    for (const std::string& line : ParagraphsOf(records[i].remarks.note)) {
      section.paragraphs.push_back(before + line);
      before.clear();
    }
  }
  return section;
}

// The same axes of all records in one pane each.
PlotScene Overlaid(const std::vector<study::Study>& studies, study::View view) {
  PlotScene scene;
  for (std::size_t i = 0; i < studies.size(); ++i) {
    PlotScene one = PaperScene(studies[i], view);
    if (scene.panes.empty()) {
      scene.across = one.across;
      scene.marks = one.marks;
      for (const PlotPane& pane : one.panes) {
        scene.panes.push_back({.title = pane.title, .unit = pane.unit, .up = pane.up});
      }
    }
    scene.across.whole.low = std::min(scene.across.whole.low, one.across.whole.low);
    scene.across.whole.high = std::max(scene.across.whole.high, one.across.whole.high);
    for (std::size_t pane = 0; pane < std::min(scene.panes.size(), one.panes.size()); ++pane) {
      for (SceneTrace& trace : one.panes[pane].traces) {
        trace.name = LetterOf(i) + " " + trace.letter;
        trace.letter = LetterOf(i);
        trace.dash = static_cast<int>(i);
        trace.figure.clear();
        scene.panes[pane].traces.push_back(std::move(trace));
      }
    }
  }
  scene.head = "Comparison";
  return scene;
}

void AddPlot(Section& section, PlotScene scene, const char* name, const char* caption) {
  const bool isDrawn =
      std::ranges::any_of(scene.panes, [](const PlotPane& pane) { return !pane.traces.empty(); });
  if (isDrawn) section.plots.push_back({name, caption, std::move(scene)});
}

// What cannot be compared, and why.
std::vector<std::string> LimitsOf(const Compared& compared) {
  std::vector<std::string> limits;
  for (std::size_t i = 1; i < compared.size(); ++i) {
    const auto why = WhyNotAgainstFirst(compared, i);
    if (!why) continue;
    limits.push_back(LetterOf(i) + " is shown beside A, but without a difference to it: " + *why +
                     ". Compare records of the same kind, sample-rate option and window.");
  }
  return limits;
}

Section PlotSection(const std::vector<study::Study>& studies, const Compared& compared) {
  Section section{.heading = "Spectra", .paragraphs = LimitsOf(compared)};
  for (std::size_t i = 0; i < studies.size(); ++i) {
    const auto why = studies[i].Refused();
    if (why) section.paragraphs.push_back(LetterOf(i) + ": " + analysis::AsLine(*why));
  }
  const bool allTimes = std::ranges::all_of(compared, [](const study::Measured& measured) {
    return measured.record->kind == RecordKind::Time;
  });
  if (allTimes) AddPlot(section, Overlaid(studies, study::View::Time), "time", "Time records");
  AddPlot(section, Overlaid(studies, study::View::Spectrum), "spectrum",
          allTimes ? "Spectra of the time records, worked out by the program" : "");
  return section;
}

Section AlarmsOf(Records records) {
  Section section{.heading = "Alarm state"};
  Table table{.columns = {{.head = "Record"}, {.head = "X"}, {.head = "Y"}, {.head = "Z"}}};
  for (std::size_t i = 0; i < records.size(); ++i) {
    std::vector<std::string> row{LetterOf(i)};
    for (const Axis axis : kAxes) row.push_back(AlarmText(records[i].record, axis));
    table.rows.push_back(std::move(row));
  }
  section.tables.push_back(std::move(table));
  return section;
}

Section PeakSection(const Compared& compared, const study::StudyChoice& choice) {
  Section section{.heading = "Peaks"};
  for (const Axis axis : study::ShownAxes(choice)) {
    section.tables.push_back(PeakDifferences(compared, choice, axis, kPeaksOfARecord));
  }
  section.remarks.push_back(
      "The " + std::to_string(kPeaksOfARecord) +
      " largest peaks of each record; – where none stands out of the noise or is "
      "among them. Peaks within one bin of each other are taken for the same.");
  return section;
}

// Of one place alone: captures of two machines tell nothing together.
Section SeverityOf(Records records, const ReportChoice& choice) {
  const std::string place = PlaceText(records.front().remarks);
  const bool isOnePlace = std::ranges::all_of(
      records, [&](const auto& kept) { return PlaceText(kept.remarks) == place; });
  if (!isOnePlace) {
    return {
        .heading = "Vibration severity",
        .paragraphs = {"No zone: the records are of different places. An estimate needs captures "
                       "at options 3, 2 and 1 of one machine and point."}};
  }
  std::vector<archive::KeptRecord> byTime(records.begin(), records.end());
  std::ranges::stable_sort(byTime, {}, [](const auto& kept) { return kept.record.time; });
  return SeveritySection(StudyOf(byTime, choice));
}

void Check(Records records) {
  if (records.size() < 2 || records.size() > kMostCompared) {
    throw RuntimeError("A comparison takes 2 to " + std::to_string(kMostCompared) +
                       " records, which can be told apart on paper; there are " +
                       std::to_string(records.size()) + ". Choose fewer.");
  }
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (records[i].record.Taken() && !IsEmpty(records[i].record)) continue;
    throw RuntimeError("Record " + LetterOf(i) +
                       " of the comparison holds no measurement. Leave it out.");
  }
}

}  // namespace

Report ComparisonOf(Records records, const ReportChoice& choice) {
  Check(records);
  std::vector<study::Study> studies;
  Compared compared;
  for (const archive::KeptRecord& kept : records) {
    studies.push_back(StudyOf({&kept, 1}, choice));
    compared.push_back(*studies.back().Shown());
  }
  const auto last =
      std::ranges::max(records, {}, [](const auto& kept) { return kept.record.time; });
  const study::StudyChoice& chosen = studies.front().Choice();
  Report report{.title = choice.title.empty() ? "Comparison of records" : OneLine(choice.title),
                .line = std::to_string(records.size()) + " records, the latest of " +
                        MomentText(last.record.time),
                .time = last.record.time};
  report.foot = report.title + ", " + report.line;
  report.sections.push_back(WhatSection(records));
  if (Section notes = NoteSection(records); !notes.paragraphs.empty()) {
    report.sections.push_back(std::move(notes));
  }
  report.sections.push_back(PlotSection(studies, compared));
  report.sections.push_back({.heading = "Levels", .tables = {LevelDifferences(compared, chosen)}});
  report.sections.push_back(PeakSection(compared, chosen));
  report.sections.push_back(SeverityOf(records, choice));
  report.sections.push_back(AlarmsOf(records));
  return report;
}

}  // namespace kestrel::report
