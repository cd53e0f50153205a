// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/capture_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>
#include <algorithm>
#include <chrono>
#include <cmath>

#include "cli/record_report.h"
#include "device/rec_ctrl.h"
#include "logging/data_log.h"
#include "logging/data_log_settings.h"
#include "numeric/number_parse.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

// In the order in which help names them.
using Codes = std::vector<std::pair<std::string, int>>;

const Codes kModes{{"manual", 0}, {"timer", 1}, {"time", 2}};
const Codes kRanges{{"1", 0}, {"5", 1}, {"20", 2}, {"70", 3}};
const Codes kWindows{{"rectangular", 0}, {"hanning", 1}, {"flattop", 2}};

constexpr double kLongestInterval = 86400;

// Why a text cannot be the interval; empty when it can. A range check of the argument parser would
// let "nan" pass.
std::string IntervalProblem(const std::string& text) {
  const auto seconds = WholeTextNumber(text);
  if (seconds && *seconds >= 0 && *seconds <= kLongestInterval) return {};
  return "\"" + text + "\" is no number of seconds from 0 to 86400";
}

// An option whose argument is one of a few words.
void AddChoice(CLI::App& app, const char* name, std::optional<int>& code, const Codes& codes,
               const char* description) {
  std::string words;
  for (const auto& [word, value] : codes) words += (words.empty() ? "" : ", ") + word;
  app.add_option_function<std::string>(
         name,
         [&code, &codes](const std::string& word) {
           code = std::ranges::find(codes, word, &Codes::value_type::first)->second;
         },
         std::string(description) + ": " + words)
      ->check(CLI::IsMember(codes))
      ->type_name("WORD");
}

}  // namespace

void CaptureCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("capture", "Take captures and report or save them");
  AddChoice(*word_, "--mode", mode_, kModes, "Record mode");
  AddChoice(*word_, "--range", range_, kRanges, "Signal range in g");
  AddChoice(*word_, "--window", window_, kWindows, "FFT window");
  word_->add_option("--averages", averages_, "FFT averages, 1 to 255")->check(CLI::Range(1, 255));
  word_->add_option("--option", option_, "Sample-rate option, 0 to 3")->check(CLI::Range(0, 3));
  word_->add_option("--count", count_, "Number of captures")->check(CLI::PositiveNumber);
  word_
      ->add_option("--interval", interval_,
                   "Seconds from the start of a capture to the next, 0 to 86400")
      ->check(IntervalProblem);
  word_->add_option("--out", folder_, "Write a data file of each capture into this folder")
      ->type_name("FOLDER");
  word_->add_option("--name", name_, "Base name of the data files")->needs("--out");
  word_->add_flag("--data", withData_, "Report every point as well");
}

ExitCode CaptureCommand::Run(Session& session, const Output& output) {
  if (!Configure(session)) return ExitCode::NoSensor;
  if (!PrepareFiles(session)) return ExitCode::Failure;
  Clock& clock = session.core.seams.clock;
  for (int number = 1;; ++number) {
    const auto start = clock.Monotonic();
    const ExitCode end = Capture(session, output, number);
    if (end != ExitCode::Success || number == count_) return end;
    const auto next = start + std::chrono::nanoseconds{std::llround(interval_ * 1e9)};
    session.loop.Pause(next - clock.Monotonic());
    if (session.loop.WasInterrupted()) return ExitCode::Interrupted;
  }
}

// Writes what was asked for, and takes over how the sensor records.
bool CaptureCommand::Configure(Session& session) const {
  const auto code = [](int value) { return static_cast<std::int16_t>(value); };
  if (mode_) gRecCtrl->RecModeCode(code(*mode_));
  if (range_) gRecCtrl->RangeFS(code(*range_));
  if (option_) gRecCtrl->SampleRate(code(*option_));
  if (window_) gRecCtrl->Windowing(code(*window_));
  if (mode_ || range_ || option_ || window_) gRecCtrl->WriteRecCtrl();
  gRecCtrl->ReadRecCtrl();
  RegisterAccess& registers = session.core.registers;
  if (averages_) registers.WriteReg(row::FFT_AVG, *averages_);
  registers.ReadReg(row::FFT_AVG);
  session.window.averages = RegValue;
  NoteAverages(RegValue);
  session.window.recMode = gRecCtrl->RecModeCode();
  return RegisterAccess::Usable();
}

// Numbers go on after the highest file of this name, so that no earlier capture is replaced.
bool CaptureCommand::PrepareFiles(Session& session) const {
  session.window.dataLog = !folder_.empty();
  if (folder_.empty()) return true;
  const std::filesystem::path folder = std::filesystem::absolute(folder_).lexically_normal();
  if (!session.files.CanWriteIn(folder)) {
    session.messages.Show("--out: the folder " + folder.string() + " cannot be written.");
    return false;
  }
  session.files.SetFolder(folder);
  DataLogName = name_;
  const std::string start = (name_.empty() ? std::string(kDefaultLogName) : name_) + "_";
  for (const std::string& file : session.files.List(folder)) {
    if (!file.starts_with(start)) continue;
    const int number = std::atoi(file.c_str() + start.size());
    if (number < 1 || number >= 32767) continue;
    DataLogIndex = std::max(DataLogIndex, static_cast<std::int16_t>(number + 1));
  }
  return true;
}

ExitCode CaptureCommand::Capture(Session& session, const Output& output, int number) {
  const std::filesystem::path before = session.log.LastFile();
  const int messages = session.messages.Count();
  session.loop.OnInterrupt([&session] {
    if (session.window.StartCaption() == kStopCaption) session.cycle.cmdStart_Click();
  });
  session.cycle.cmdStart_Click();
  session.loop.OnInterrupt(nullptr);
  session.EndProgress();
  if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
  if (session.messages.Count() > messages) return ExitCode::Failure;
  RecordReport report{.number = number,
                      .withData = withData_,
                      .stopped = session.loop.WasInterrupted(),
                      .file = session.log.LastFile()};
  if (report.file == before) report.file.clear();
  WriteRecord(output, session.window, report);
  return report.stopped ? ExitCode::Interrupted : ExitCode::Success;
}

void RecordCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("record", "Read a stored record from the sensor's flash");
  word_->add_option("number", record_, "Record number, 0 to 15")
      ->required()
      ->check(CLI::Range(0, 15));
  word_->add_flag("--time", time_, "It is a time record, not a spectrum");
  word_->add_flag("--data", withData_, "Report every point as well");
}

ExitCode RecordCommand::Run(Session& session, const Output& output) {
  session.cycle.SetRecordType(time_ ? 2 : 0);
  session.cycle.cmdGetRecord_Click(record_);
  session.status.ReadStatus("cmdGetRecord");
  session.EndProgress();
  if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
  RecordReport report;
  report.withData = withData_;
  WriteRecord(output, session.window, report);
  return ExitCode::Success;
}

}  // namespace kestrel
