// Captures one after the other, and their files.
// SPDX-License-Identifier: MIT
#include "cli/capture_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <chrono>
#include <cmath>

#include "cli/record_report.h"
#include "cli/word_choice.h"
#include "logging/data_log.h"
#include "logging/data_log_settings.h"
#include "numeric/number_parse.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

const WordCodes<std::int16_t> kModes{{"manual", 0}, {"timer", 1}, {"time", 2}};

constexpr std::int16_t kTimeMode = 2;
constexpr double kLongestInterval = 86400;
constexpr double kMostCaptures = 1e9;

// Why a text cannot be the interval; empty when it can. A range check of the argument parser would
// let "nan" pass.
std::string IntervalProblem(const std::string& text) {
  const auto seconds = WholeTextNumber(text);
  if (seconds && *seconds >= 0 && *seconds <= kLongestInterval) return {};
  return "\"" + text + "\" is not a number of seconds from 0 to 86400";
}

// Why a text cannot be a number of captures; empty when it can.
std::string CountProblem(const std::string& text) {
  const auto count = WholeTextNumber(text);
  if (count && *count >= 1 && *count <= kMostCaptures && *count == std::floor(*count)) return {};
  return "\"" + text + "\" is not a number of captures; it is a whole number from 1";
}

// The sensor's bands, where levels are asked for: before anything is captured, which a transfer
// that is interrupted would lose.
Result<std::optional<BandTable>> BandsFor(Session& session, const NumberChoice& numbers) {
  if (!numbers.Levels()) return std::optional<BandTable>{};
  const auto bands = session.station.Bands().Read();
  if (!bands) return bands.Why();
  return std::optional{*bands};
}

std::optional<NumberReport> NumbersFor(const Record& record, const NumberChoice& numbers,
                                       const std::optional<BandTable>& bands) {
  if (!numbers.Any()) return std::nullopt;
  return NumbersOf(record, numbers, bands);
}

}  // namespace

void CaptureCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("capture", "Take captures and report or save them");
  AddChoice(*word_, "--mode", setup_.mode, kModes, "Record mode");
  AddChoice(*word_, "--range", setup_.range, kRangeWords, "Signal range in g");
  AddChoice(*word_, "--window", setup_.window, kWindowWords, "FFT window");
  word_->add_option("--averages", setup_.averages, "FFT averages, 1 to 255")
      ->check(CLI::Range(1, 255));
  word_->add_option("--option", setup_.option, "Sample-rate option, 0 to 3")
      ->check(CLI::Range(0, 3));
  word_->add_option("--count", count_, "Number of captures; 1 if not given")->check(CountProblem);
  word_
      ->add_option("--interval", interval_,
                   "Seconds from the start of one capture to that of the next, 0 to 86400")
      ->check(IntervalProblem);
  word_->add_option("--out", folder_, "Write a data file of each capture into this folder")
      ->type_name("FOLDER");
  word_->add_option("--name", name_, "Base name of the data files")->needs("--out");
  word_
      ->add_flag("--old-data", oldData_,
                 "Write a data file even of a capture that brought no new data")
      ->needs("--out");
  word_->add_flag("--data", withData_, "Report every point in the text as well");
  AddFast(*word_, fast_);
  numbers_.AddTo(*word_);
  remarks_.AddTo(*word_);
}

ExitCode CaptureCommand::Run(Session& session, const Output& output) {
  const auto setup = session.station.Records().Configure(setup_);
  if (!setup) return session.Fail(setup.Why());
  session.station.Records().Fast().Choose(fast_);
  if (!PrepareFiles(session)) return ExitCode::Failure;
  if (setup->mode != kTimeMode) {
    const auto bands = BandsFor(session, numbers_);
    if (!bands) return session.Fail(bands.Why());
    bands_ = *bands;
  }
  Clock& clock = session.station.Road().seams.clock;
  for (int number = 1;; ++number) {
    const auto start = clock.Monotonic();
    const ExitCode end = Capture(session, output, number);
    if (end != ExitCode::Success || number == count_) return end;
    const auto next = start + std::chrono::nanoseconds{std::llround(interval_ * 1e9)};
    if (!session.station.Pause(next - clock.Monotonic())) return ExitCode::Interrupted;
  }
}

// Numbers go on after the highest file of this name, so that no earlier capture is replaced.
bool CaptureCommand::PrepareFiles(Session& session) const {
  if (folder_.empty()) return true;
  const std::filesystem::path folder = AbsolutePathOf(folder_).lexically_normal();
  if (!session.station.UseFolder(folder)) {
    session.Say("--out: the folder " + folder.string() + " cannot be written.");
    return false;
  }
  NameDataLog(name_);
  const std::string start = (name_.empty() ? std::string(kDefaultLogName) : name_) + "_";
  for (const std::string& file : session.station.FilesHere().List(folder)) {
    if (!file.starts_with(start)) continue;
    const int number = std::atoi(file.c_str() + start.size());
    if (number < 1 || number >= 32767) continue;
    NumberDataLog(std::max(DataLogIndex, static_cast<std::int16_t>(number + 1)));
  }
  return true;
}

ExitCode CaptureCommand::Capture(Session& session, const Output& output, int number) {
  Recorder& records = session.station.Records();
  auto captured = records.Capture();
  if (!captured) return session.Fail(captured.Why());
  session.EndProgress();
  session.SayNotes();
  RecordReport report{.record = captured->record,
                      .number = number,
                      .withData = withData_,
                      .stopped = captured->interrupted,
                      .file = {},
                      .numbers = NumbersFor(captured->record, numbers_, bands_)};
  const bool isNew = report.record.IsNew();
  session.Keep(report.record, remarks_.Remarks());
  const bool writes = !folder_.empty() && (isNew || oldData_);
  if (writes) {
    const auto file = records.WriteDataFile();
    if (!file) return session.Fail(file.Why());
    report.file = *file;
  }
  WriteRecord(output, report);
  if (isNew) return report.stopped ? ExitCode::Interrupted : ExitCode::Success;
  session.Say("Capture " + std::to_string(number) +
              " was stopped before data were ready: these are the data of the record before." +
              (folder_.empty() || writes ? "" : " No file was written; --old-data writes one."));
  return ExitCode::NotNew;
}

void RecordCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("record", "Read a stored record from the sensor's flash");
  word_->add_option("number", record_, "Record number, 0 to 15")
      ->required()
      ->check(CLI::Range(0, 15));
  word_->add_flag("--time", time_, "Read it as a time record, not as a spectrum");
  word_->add_flag("--data", withData_, "Report every point in the text as well");
  AddFast(*word_, fast_);
  numbers_.AddTo(*word_);
  remarks_.AddTo(*word_);
}

ExitCode RecordCommand::Run(Session& session, const Output& output) {
  std::optional<BandTable> table;
  if (!time_) {
    const auto bands = BandsFor(session, numbers_);
    if (!bands) return session.Fail(bands.Why());
    table = *bands;
  }
  session.station.Records().Fast().Choose(fast_);
  const auto record = session.station.Records().ReadStored(
      record_, time_ ? RecordKind::Time : RecordKind::Spectrum);
  if (!record) return session.Fail(record.Why());
  session.EndProgress();
  session.Keep(*record, remarks_.Remarks());
  WriteRecord(output, {.record = *record,
                       .withData = withData_,
                       .file = {},
                       .numbers = NumbersFor(*record, numbers_, table)});
  return ExitCode::Success;
}

}  // namespace kestrel
