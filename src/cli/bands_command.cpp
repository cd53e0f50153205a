// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/bands_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <array>
#include <filesystem>
#include <iomanip>

#include "alarms/alarm_file.h"
#include "alarms/band_state.h"
#include "device/rec_ctrl.h"
#include "numeric/number_format.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

constexpr std::array<const char*, kBandFields.size()> kNames{
    "f_low", "f_high", "alarm1_x", "alarm1_y", "alarm1_z", "alarm2_x", "alarm2_y", "alarm2_z"};
constexpr std::size_t kBins = 2;  // the fields before the thresholds

Json BandJson(int band, int option) {
  Json json{{"option", option}, {"band", band}};
  for (std::size_t i = 0; i < kBandFields.size(); ++i) {
    const std::int32_t value = AlarmBandTable(kBandFields[i], band, option);
    json[kNames[i]] = value;
    if (i < kBins) {
      json[std::string(kNames[i]) + "_hz"] = value * BinWidth(option);
    } else {
      json[std::string(kNames[i]) + "_g"] = value * gRecCtrl->gLsb();
    }
  }
  return json;
}

void PrintBand(std::ostream& out, int band, int option) {
  out << option << "     " << band;
  for (std::size_t i = 0; i < kBandFields.size(); ++i) {
    const std::int32_t value = AlarmBandTable(kBandFields[i], band, option);
    out << std::setw(i < kBins ? 7 : 10)
        << (i < kBins ? std::to_string(value) : FixedNumber(value * gRecCtrl->gLsb(), 5));
  }
  out << '\n';
}

void WriteBands(const Output& output) {
  Json all = Json::array();
  if (!output.json) {
    output.out << "Option Band F-low F-high  Alarm 1 X, Y, Z in g           Alarm 2 X, Y, Z in g\n";
  }
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      if (output.json) {
        all.push_back(BandJson(band, option));
      } else {
        PrintBand(output.out, band, option);
      }
    }
  }
  if (output.json) output.Write(all);
}

}  // namespace

void BandsCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("bands", "Spectral alarm bands in the sensor and in files");
  word_->require_subcommand(1);
  read_ = word_->add_subcommand("read", "Read all bands from the sensor and report them");
  write_ = word_->add_subcommand("write", "Clear the sensor's bands and write those of a file");
  clear_ = word_->add_subcommand("clear", "Clear the sensor's bands");
  load_ = word_->add_subcommand("load", "Check an alarm file and report its bands");
  save_ = word_->add_subcommand("save", "Save the sensor's bands to a file");
  for (CLI::App* word : {write_, load_, save_}) {
    word->add_option("file", file_, "AlarmSpectrum_<name>.csv")
        ->required()
        ->check([](const std::string& file) { return file.empty() ? "A file has a name" : ""; });
  }
}

ExitCode BandsCommand::Run(Session& session, const Output& output) {
  BandTransfer transfer(session.core.registers, session.core.delay, session.loop, session.messages,
                        session.window);
  session.loop.OnInterrupt([&transfer] { transfer.Cancel(); });
  if (read_->parsed()) return Read(session, transfer, output);
  if (write_->parsed()) return Write(session, transfer, output);
  if (save_->parsed()) return Save(session, transfer, output);
  if (load_->parsed()) {
    if (!Load(session)) return ExitCode::Failure;
    WriteBands(output);
    return ExitCode::Success;
  }
  transfer.cmdClearAll_Click();
  return End(session, output);
}

// How a transfer ended, in its own words.
ExitCode BandsCommand::End(Session& session, const Output& output) {
  session.EndProgress();
  const bool whole = RegisterAccess::Usable() && !session.loop.WasInterrupted();
  if (!whole) {
    session.messages.Show(session.window.TransferMessage());
  } else if (output.json) {
    output.Write({{"message", session.window.TransferMessage()}});
  } else {
    output.out << session.window.TransferMessage() << '\n';
  }
  if (!RegisterAccess::Usable()) return ExitCode::NoSensor;
  return session.loop.WasInterrupted() ? ExitCode::Interrupted : ExitCode::Success;
}

ExitCode BandsCommand::Read(Session& session, BandTransfer& transfer, const Output& output) {
  transfer.ReadAllFlash();
  session.EndProgress();
  if (!RegisterAccess::Usable() || session.loop.WasInterrupted()) return End(session, output);
  WriteBands(output);
  return ExitCode::Success;
}

ExitCode BandsCommand::Write(Session& session, BandTransfer& transfer, const Output& output) const {
  if (!Load(session)) return ExitCode::Failure;
  const std::string misfit = MisfitText(AlarmBandTable);
  if (!misfit.empty()) {
    session.messages.Show("Writing alarm bands: " + misfit + ". Nothing was written.");
    return ExitCode::Failure;
  }
  transfer.cmdWriteAll_Click();
  return End(session, output);
}

// Numbers are codes of the range in use, so the table goes through unchanged.
bool BandsCommand::Load(Session& session) const {
  const std::filesystem::path file = std::filesystem::absolute(file_);
  const auto content = session.files.Read(file, kLargestAlarmFile + 1);
  if (!content) {
    session.messages.Show("The file " + file.string() + " cannot be read.");
    return false;
  }
  if (content->size() > kLargestAlarmFile) {
    session.messages.Show("The file " + file.string() + " is too large to be an alarm file.");
    return false;
  }
  try {
    BandTable table;
    ReadAlarmFileText(*content, table);
    AlarmBandTable = table;
    return true;
  } catch (const RuntimeError& error) {
    session.messages.Show(file.string() + ", " + error.what());
    return false;
  }
}

ExitCode BandsCommand::Save(Session& session, BandTransfer& transfer, const Output& output) const {
  const std::filesystem::path file = std::filesystem::absolute(file_);
  if (!IsAlarmFileName(file.filename().string())) {
    session.messages.Show("bands save: the name must be AlarmSpectrum_<name>.csv, not \"" +
                          file.filename().string() + "\".");
    return ExitCode::Usage;
  }
  transfer.ReadAllFlash();
  session.EndProgress();
  if (!RegisterAccess::Usable() || session.loop.WasInterrupted()) return End(session, output);
  session.files.ReplaceWhole(file, AlarmFileText(AlarmBandTable));
  if (output.json) {
    output.Write({{"file", file.string()}});
  } else {
    output.out << file.string() << '\n';
  }
  return ExitCode::Success;
}

}  // namespace kestrel
