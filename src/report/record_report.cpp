// The report of one record.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>

#include "analysis/levels.h"
#include "display/tables.h"
#include "record/record_notices.h"
#include "report/parts.h"
#include "report/record_facts.h"
#include "report/texts.h"

namespace kestrel::report {
namespace {

bool IsTime(const archive::KeptRecord& kept) {
  return kept.record.kind == RecordKind::Time;
}

Section PlaceSection(const archive::KeptRecord& kept) {
  Section section{.heading = "What was measured",
                  .paragraphs = NoticesOf(kept.record),
                  .facts = PlaceFacts(kept)};
  for (std::string& notice : section.paragraphs) notice = "Attention: " + notice;
  return section;
}

Section NoteSection(const archive::Remarks& remarks) {
  return {.heading = "Note", .paragraphs = ParagraphsOf(remarks.note)};
}

// The plots that can be drawn; why not where none can.
Section PlotSection(const archive::KeptRecord& kept, const study::Study& study) {
  Section section{.heading = IsTime(kept) ? "Time record and spectrum" : "Spectrum"};
  const auto add = [&](study::View view, const char* name, const char* caption) {
    PlotScene scene = PaperScene(study, view);
    const bool isDrawn =
        std::ranges::any_of(scene.panes, [](const PlotPane& pane) { return !pane.traces.empty(); });
    if (!scene.note.empty()) section.paragraphs.push_back(scene.note);
    if (isDrawn)
      section.plots.push_back({name, caption, std::move(scene)});
    else if (!scene.hint.empty())
      section.paragraphs.push_back(scene.hint);
  };
  if (IsTime(kept)) add(study::View::Time, "time", "");
  const auto why = study.Refused();
  if (why)
    section.paragraphs.push_back(analysis::AsLine(*why));
  else
    add(study::View::Spectrum, "spectrum",
        IsTime(kept) ? "Spectrum of the time record, worked out by the program" : "");
  return section;
}

Section PeakSection(const study::Study& study, std::size_t most) {
  const study::PeakTable peaks = study::PeaksOf(study);
  Section section{.heading = "Peaks"};
  Table table{.columns = {{.head = "Axis"},
                          {.head = "Frequency", .unit = peaks.frequencyHead, .isNumber = true},
                          {.head = "±", .unit = peaks.frequencyHead, .isNumber = true},
                          {.head = "Amplitude", .unit = peaks.valueHead, .isNumber = true},
                          {.head = "±", .unit = peaks.valueHead, .isNumber = true},
                          {.head = "Order", .unit = "×", .isNumber = true},
                          {.head = "Remark"}},
              .rows = peaks.AsText().rows};
  if (table.rows.empty()) {
    const bool isCount = peaks.summary.starts_with('0');
    section.paragraphs.push_back(isCount ? "No peak stands out of the noise."
                                         : peaks.summary + ".");
    return section;
  }
  if (table.rows.size() > most) {
    section.paragraphs.push_back("The " + std::to_string(most) + " largest of " +
                                 std::to_string(table.rows.size()) + " peaks.");
    table.rows.resize(most);
  }
  section.tables.push_back(WithoutEmptyColumns(std::move(table)));
  section.remarks.push_back("± holds for 95 % of lines; a value has as many digits as it leaves.");
  return section;
}

Table LevelsAsTable(const study::LevelTable& levels, std::string caption) {
  Table table{.caption = std::move(caption), .columns = {{.head = "Level"}}};
  for (const Axis axis : kAxes) {
    table.columns.push_back({.head = std::string(1, Letter(axis)), .isNumber = true});
  }
  table.columns.push_back({.head = ""});
  table.rows = levels.AsText().rows;
  if (table.rows.empty()) table.instead = levels.summary;
  return WithoutEmptyColumns(std::move(table));
}

Section LevelSection(const archive::KeptRecord& kept, const study::Study& study) {
  Section section{.heading = "Levels"};
  if (IsTime(kept)) {
    study::Study time = study;
    study::StudyChoice choice = time.Choice();
    choice.view = study::View::Time;
    time.Choose(choice);
    section.tables.push_back(LevelsAsTable(study::TimeLevelsOf(time), "Of the samples"));
  }
  const study::LevelTable levels = study::LevelsOf(study);
  section.tables.push_back(
      LevelsAsTable(levels, (IsTime(kept) ? "Of its spectrum, " : "") + levels.summary));
  const std::string averages = analysis::AveragesNotice(kept.record.settings.averages);
  if (!IsTime(kept) && !averages.empty()) section.remarks.push_back(averages);
  return section;
}

// The sensor's bands that somebody has read, against this record.
void AddBands(Section& section, study::Study study) {
  for (const Axis axis : kAxes) {
    study::StudyChoice choice = study.Choice();
    choice.focus = axis;
    study.Choose(choice);
    Table table{.caption = std::string("Alarm bands of axis ") + Letter(axis),
                .columns = {{.head = "Band"},
                            {.head = "Range", .unit = "Hz", .isNumber = true},
                            {.head = "Largest", .unit = "g peak", .isNumber = true},
                            {.head = "State"},
                            {.head = "Headroom", .unit = "dB", .isNumber = true}}};
    for (const study::BandRow& row : study::BandsOf(study)) {
      table.rows.push_back(
          {std::to_string(row.number), row.range, row.largest, row.state, row.headroom});
    }
    if (!table.rows.empty()) section.tables.push_back(std::move(table));
  }
}

std::string TitleOf(const archive::KeptRecord& kept, const ReportChoice& choice) {
  if (!choice.title.empty()) return OneLine(choice.title);
  const std::string place = PlaceText(kept.remarks);
  return place.empty() ? "Vibration record" : place;
}

}  // namespace

Report ReportOf(const archive::KeptRecord& kept, const ReportChoice& choice) {
  const Record& record = kept.record;
  Report report{.title = TitleOf(kept, choice), .line = KindText(record), .time = record.time};
  if (record.Taken()) report.line += ", taken " + MomentText(record.time);
  report.foot = report.title + ", " + report.line;
  const study::Study study = StudyOf({&kept, 1}, choice);
  report.sections.push_back(PlaceSection(kept));
  if (auto note = NoteSection(kept.remarks); !note.paragraphs.empty()) {
    report.sections.push_back(std::move(note));
  }
  if (record.Taken() && !IsEmpty(record)) {
    report.sections.push_back(PlotSection(kept, study));
    report.sections.push_back(PeakSection(study, choice.peaks));
    report.sections.push_back(LevelSection(kept, study));
    report.sections.push_back(SeveritySection(study));
  }
  Section alarms = AlarmSection(record);
  AddBands(alarms, study);
  report.sections.push_back(std::move(alarms));
  report.sections.push_back({.heading = "How it was measured", .facts = SettingFacts(kept)});
  return report;
}

Report ReportOn(std::span<const archive::KeptRecord> records, const ReportChoice& choice) {
  return records.size() == 1 ? ReportOf(records.front(), choice) : ComparisonOf(records, choice);
}

}  // namespace kestrel::report
