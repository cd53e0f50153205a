// Records to thresholds, and these to a file or the sensor.
// SPDX-License-Identifier: MIT
#include "cli/archive/baseline_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <cmath>

#include "alarms/alarm_file.h"
#include "baseline/evidence.h"
#include "cli/archive/archive_command.h"
#include "cli/archive/baseline_report.h"
#include "numeric/number_texts.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

using baseline::Workbench;

constexpr const char* kGroup = "Bands and files";

// Whether a code of the sensor means so many g now.
bool SameRange(Session& session, double gPerCode) {
  return std::fabs(session.station.Records().GPerCode() - gPerCode) <= 1e-9 * gPerCode;
}

// What became of the records that were chosen, where none is left.
std::string NoneLeft(const baseline::Sets& sets) {
  std::string text = "No record is left that is known to be good.";
  for (const baseline::LeftOut& group : sets.leftOut) {
    text += " " + std::to_string(group.ids.size()) + ": " + group.title + ", " + group.reason + ".";
  }
  return text;
}

baseline::EvidenceOrigin OriginOf(Session& session) {
  return {.program = "Kestrel " KESTREL_VERSION,
          .archive = session.ArchivePlace().text,
          .time = session.station.Road().seams.clock.UtcNow()};
}

}  // namespace

void BaselineCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("baseline", "Propose alarm thresholds and try them on kept records");
  options_.AddTo(*word_);
  const auto add = [&](const char* name, std::string& file, const char* text) {
    return word_->add_option(name, file, text)->group(kGroup)->type_name("FILE");
  };
  auto* bands =
      add("--bands", bandsFile_, "Use the bands of this alarm file, AlarmSpectrum_<name>.csv");
  word_->add_flag("--sensor-bands", ofSensor_, "Use the bands that the sensor holds")
      ->group(kGroup)
      ->excludes(bands);
  word_->add_flag("--present", present_, "Replay the present thresholds, propose none")
      ->group(kGroup);
  add("--save", saveFile_, "Save the bands with the proposed thresholds, AlarmSpectrum_<name>.csv");
  add("--evidence", evidenceFile_, "Save sets, rule, thresholds and replay as .csv or .txt");
  word_->add_flag("--write", write_, "Write the bands into the sensor")->group(kGroup);
}

std::string BaselineCommand::Misuse() const {
  const std::string name = TextOf(PathOf(saveFile_).filename());
  if (!saveFile_.empty() && !IsAlarmFileName(name)) {
    return "baseline: the name must be AlarmSpectrum_<name>.csv, not \"" + name + "\".";
  }
  if (!evidenceFile_.empty() && !evidenceFile_.ends_with(".csv") &&
      !evidenceFile_.ends_with(".txt")) {
    return "baseline: evidence is .csv or .txt, not \"" + evidenceFile_ + "\".";
  }
  if (options_.Kind() == baseline::LevelKind::BandRms && (write_ || !saveFile_.empty())) {
    return "baseline: the sensor compares the largest magnitude of a band. A threshold of its RMS "
           "can be replayed, but neither saved nor written.";
  }
  return {};
}

// The bands that are worked on, those of the other options with them.
Result<BandTable> BaselineCommand::Table(Session& session) const {
  if (!bandsFile_.empty()) {
    return ReadBandFile(session.station.FilesHere(), AbsolutePathOf(bandsFile_));
  }
  if (!NeedsSensor()) return BandTable{};
  auto table = session.station.Bands().Read();
  session.EndProgress();
  return table;
}

Workbench BaselineCommand::Bench(Session& session, baseline::Loaded loaded,
                                 const BandTable& table) const {
  const baseline::Settings settings = loaded.sets.settings;
  baseline::Bands bands = baseline::BandsOf(table, settings.option);
  if (std::ranges::none_of(bands, &baseline::Band::IsUsed)) {
    bands = baseline::UsualBands(settings.window);
    session.Say("No bands of option " + std::to_string(settings.option) +
                " are known: six that adjoin are taken.");
  } else if (NeedsSensor() && bandsFile_.empty() &&
             !SameRange(session, baseline::StepG(settings))) {
    session.Say(
        "The sensor is set to another range than that of the records: its present "
        "thresholds are shown as codes of " +
        baseline::RangeText(settings.range) + ", which they are not.");
  }
  Workbench bench(std::move(loaded.sets),
                  std::make_shared<baseline::Spectra>(std::move(loaded.spectra)), bands,
                  options_.Kind(), options_.Rule(), options_.Judgement());
  if (present_) bench.UsePresent();
  return bench;
}

ExitCode BaselineCommand::Run(Session& session, const Output& output) {
  if (const std::string misuse = Misuse(); !misuse.empty()) {
    session.Say(misuse);
    return ExitCode::Usage;
  }
  const std::vector<baseline::Part> parts = options_.Parts();
  const auto table = Table(session);
  if (!table) return session.Fail(table.Why());
  archive::Archive archive = OpenArchive(session, database::Access::ReadOnly);
  baseline::Loaded loaded =
      Load(archive, SetsOf(archive, parts, options_.Wanted()), [&](auto done, auto all) {
        session.ShowProgress({"Records", static_cast<int>(done), static_cast<int>(all)});
        return !session.Interrupted();
      });
  session.EndProgress();
  if (!loaded.whole) return ExitCode::Interrupted;
  if (loaded.sets.good.empty()) throw RuntimeError(NoneLeft(loaded.sets));
  const std::string shortage = ShortageText(options_.Rule(), loaded.sets.good.size());
  if (!present_ && !shortage.empty()) throw RuntimeError(shortage);
  const Workbench bench = Bench(session, std::move(loaded), *table);
  if (!output.json) output.out << baseline::EvidenceText(EvidenceOf(bench, OriginOf(session)));
  const BandTable result = WithBands(*table, bench.TheSets().settings.option, bench.Result());
  Json done = BaselineJson(bench);
  WriteFiles(session, bench, result, done);
  const ExitCode end = write_ ? WriteToSensor(session, bench, result, done) : ExitCode::Success;
  if (output.json) {
    output.Write(done);
  } else {
    for (const char* file : {"saved", "evidence", "message"}) {
      if (done.contains(file)) output.out << done[file].get<std::string>() << '\n';
    }
  }
  return end;
}

void BaselineCommand::WriteFiles(Session& session, const Workbench& bench, const BandTable& result,
                                 Json& done) const {
  Files& files = session.station.FilesHere();
  if (!saveFile_.empty()) {
    const auto file = AbsolutePathOf(saveFile_);
    files.ReplaceWhole(file, AlarmFileText(result));
    done["saved"] = file.string();
  }
  if (evidenceFile_.empty()) return;
  const report::Report evidence = EvidenceOf(bench, OriginOf(session));
  const auto file = AbsolutePathOf(evidenceFile_);
  files.ReplaceWhole(file, evidenceFile_.ends_with(".csv") ? baseline::EvidenceCsv(evidence)
                                                           : baseline::EvidenceText(evidence));
  done["evidence"] = file.string();
}

// Thresholds are codes of the records' range, which the sensor has to be set to.
ExitCode BaselineCommand::WriteToSensor(Session& session, const Workbench& bench,
                                        const BandTable& result, Json& done) {
  if (!SameRange(session, bench.StepInG())) {
    session.Say("The thresholds are codes of the range " +
                baseline::RangeText(bench.TheSets().settings.range) +
                ", and the sensor is set to another: there a code is " +
                analysis::SignificantText(session.station.Records().GPerCode()) + " g, not " +
                analysis::SignificantText(bench.StepInG()) +
                " g. Set that range first; nothing was written.");
    return ExitCode::Failure;
  }
  const auto end = session.station.Bands().Write(result);
  session.EndProgress();
  if (!end) return session.Fail(end.Why());
  done["message"] = *end;
  return ExitCode::Success;
}

}  // namespace kestrel
