// The captures, their keeping, and what is said when not all of them came.
// SPDX-License-Identifier: MIT
#include "cli/wide/wide_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <cmath>

#include "archive/wide_sets.h"
#include "cli/archive/archive_command.h"
#include "cli/archive/archive_report.h"
#include "cli/word_choice.h"
#include "numeric/number_parse.h"
#include "record/utc_time.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

using analysis::Amplitude;
using analysis::Quantity;
using analysis::QuantityChoice;

const WordCodes<QuantityChoice> kQuantities{
    {"density", {.quantity = Quantity::Density, .amplitude = Amplitude::Rms}},
    {"amplitude", {}},
    {"velocity", {.quantity = Quantity::Velocity, .amplitude = Amplitude::Rms}},
    {"displacement", {.quantity = Quantity::Displacement, .amplitude = Amplitude::PeakToPeak}}};

constexpr const char* kLast = "last";

std::string LimitProblem(const std::string& text) {
  const auto limit = WholeTextNumber(text);
  if (limit && *limit > 0 && *limit <= 100) return {};
  return "\"" + text + "\" is not a limit in dB from above 0 to 100";
}

unsigned MaskOf(const std::vector<int>& options) {
  unsigned mask = 0;
  for (const int option : options) mask |= 1U << option;
  return mask == 0 ? 0b1111 : mask;
}

// "1:05", minutes and seconds.
std::string ClockText(double seconds) {
  const auto whole = static_cast<int>(std::ceil(seconds));
  const std::string rest = std::to_string(whole % 60);
  return std::to_string(whole / 60) + ':' + (rest.size() < 2 ? "0" : "") + rest;
}

}  // namespace

void WideCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("wide", "One spectrum over all sample-rate options");
  AddChoice(*word_, "--range", setup_.range, kRangeWords, "Signal range in g");
  AddChoice(*word_, "--window", setup_.window, kWindowWords, "FFT window");
  word_->add_option("--averages", setup_.averages, "FFT averages, 1 to 255")
      ->check(CLI::Range(1, 255));
  word_->add_option("--options", options_, "Sample-rate options to capture at; all by default")
      ->check(CLI::Range(0, 3))
      ->delimiter(',');
  AddChoice(*word_, "--quantity", quantity_, kQuantities,
            "Quantity of the curve and of lines, in g²/Hz, g, mm/s or µm");
  word_
      ->add_option("--limit", limitDb_,
                   "Difference in dB, where options overlap, above which the machine is not "
                   "steady; 3 if not given")
      ->check(LimitProblem);
  word_->add_option("--lines", lines_, "Lines of each axis in the text, 0 to 1000; 10 if not given")
      ->check(CLI::Range(0, 1000));
  word_->add_flag("--data", withData_, "Report every point in the text as well");
  word_->add_option("--csv", csv_, "Write the curve as a table into this file as well")
      ->type_name("FILE");
  AddFast(*word_, fast_);
  auto* from = word_
                   ->add_option("--from", from_,
                                "Show a kept wide spectrum instead: its name in --list, or last")
                   ->check([](const std::string& text) { return WideProblem(text, kLast); })
                   ->type_name("NAME");
  word_->add_flag("--list", list_, "List the kept wide spectra, the latest first")->excludes(from);
  remarks_.AddTo(*word_);
}

ExitCode WideCommand::Run(Session& session, const Output& output) {
  if (list_) return List(session, output);
  return from_.empty() ? Capture(session, output) : Reread(session, output);
}

void WideCommand::ShowProgress(Session& session, const WideProgress& now) const {
  std::string text = now.state == WideState::Lost
                         ? "Waiting for the sensor, to put its settings back"
                         : "Putting the settings back";
  if (now.option) {
    text = "Option " + std::to_string(*now.option) + ", capture " +
           std::to_string(now.done.size() + 1) + " of " + std::to_string(now.order.size()) + ", " +
           ClockText(now.remaining.value_or(0)) + " left";
  }
  session.ShowProgress({text, static_cast<int>(100 * now.share), 100});
}

ExitCode WideCommand::Capture(Session& session, const Output& output) {
  const archive::WideMark mark{archive::NewUid(), MaskOf(options_)};
  WideReport report{.set = mark.set};
  session.station.Records().Fast().Choose(fast_);
  WideCapture capture(session.station, {.setup = setup_, .options = mark.wanted});
  capture.OnProgress([&](const WideProgress& now) { ShowProgress(session, now); });
  capture.OnRecord([&](const Record& record) {
    const auto uid = session.Keep(record, remarks_.Remarks(), mark);
    report.names.push_back({.option = record.settings.option, .uid = uid});
  });
  const WideCaptured captured = capture.Run();
  session.EndProgress();
  if (!captured.records.empty()) {
    report.wide = analysis::WideOf(captured.records, {.wanted = mark.wanted, .limitDb = limitDb_});
    report.stopped = captured.failure.has_value();
    Write(session, output, std::move(report));
  }
  return End(session, captured);
}

ExitCode WideCommand::End(Session& session, const WideCaptured& captured) const {
  ExitCode end = captured.failure ? session.Fail(*captured.failure) : ExitCode::Success;
  if (captured.end.notPutBack.empty()) return end;
  session.Say(captured.end.notPutBack);
  return end == ExitCode::Success ? ExitCode::Failure : end;
}

ExitCode WideCommand::Reread(Session& session, const Output& output) {
  archive::Archive archive = OpenArchive(session, database::Access::ReadOnly);
  archive::WideSet set = FoundWideSet(archive, from_);
  WideReport report{.set = set.uid, .deleted = set.deleted};
  std::vector<Record> records;
  for (archive::KeptRecord& kept : set.records) {
    report.names.push_back({kept.record.settings.option, kept.uid, kept.id});
    records.push_back(std::move(kept.record));
  }
  report.wide = analysis::WideOf(std::move(records), {.wanted = set.wanted, .limitDb = limitDb_});
  Write(session, output, std::move(report));
  return ExitCode::Success;
}

void WideCommand::Write(Session& session, const Output& output, WideReport report) const {
  if (quantity_) report.quantity = *quantity_;
  report.lines = lines_;
  report.withData = withData_;
  WriteWide(output, report);
  if (csv_.empty()) return;
  session.station.FilesHere().ReplaceWhole(AbsolutePathOf(csv_), WideCsv(report));
}

ExitCode WideCommand::List(const Session& session, const Output& output) {
  archive::Archive archive = OpenArchive(session, database::Access::ReadOnly);
  Json all = Json::array();
  if (!output.json) output.out << "name\ttime (UTC)\toptions\tmissing\tmachine\tpoint\n";
  for (const archive::Uid& uid : FindWideSets(archive, {})) {
    const auto set = GetWideSet(archive, uid);
    if (!set || set->records.empty()) continue;
    std::vector<int> options;
    std::vector<std::int64_t> ids;
    for (const archive::KeptRecord& kept : set->records) {
      options.push_back(kept.record.settings.option);
      ids.push_back(kept.id);
    }
    std::vector<int> missing = set->missing;
    missing.insert(missing.end(), set->deleted.begin(), set->deleted.end());
    const archive::KeptRecord& first = set->records.front();
    const std::string time = UtcText(first.record.time);
    if (output.json) {
      all.push_back({{"set", archive::TextOf(uid)},
                     {"time", time},
                     {"options", options},
                     {"ids", ids},
                     {"missing", missing},
                     {"machine", first.remarks.machine},
                     {"point", first.remarks.point}});
    } else {
      output.out << archive::TextOf(uid) << '\t' << time << '\t' << OptionsText(options) << '\t'
                 << (missing.empty() ? "-" : OptionsText(missing)) << '\t' << first.remarks.machine
                 << '\t' << first.remarks.point << '\n';
    }
  }
  if (output.json) output.Write(all);
  return ExitCode::Success;
}

}  // namespace kestrel
