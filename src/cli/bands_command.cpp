// Alarm bands as a table or as JSON, and their way to files and back.
// SPDX-License-Identifier: MIT
#include "cli/bands_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <array>
#include <filesystem>
#include <iomanip>

#include "alarms/alarm_file.h"
#include "numeric/number_format.h"
#include "record/frequency.h"
#include "seams/path_text.h"

namespace kestrel {
namespace {

constexpr std::array<const char*, kBandFields.size()> kNames{
    "f_low", "f_high", "alarm1_x", "alarm1_y", "alarm1_z", "alarm2_x", "alarm2_y", "alarm2_z"};
constexpr std::size_t kBins = 2;  // the fields before the thresholds

Json BandJson(const BandTable& table, int band, int option, double gPerCode) {
  Json json{{"option", option}, {"band", band}};
  for (std::size_t i = 0; i < kBandFields.size(); ++i) {
    const std::int32_t value = table(kBandFields[i], band, option);
    json[kNames[i]] = value;
    if (i < kBins) {
      json[std::string(kNames[i]) + "_hz"] = value * BinWidth(option);
    } else {
      json[std::string(kNames[i]) + "_g"] = value * gPerCode;
    }
  }
  return json;
}

void PrintBand(std::ostream& out, const BandTable& table, int band, int option, double gPerCode) {
  out << option << "     " << band;
  for (std::size_t i = 0; i < kBandFields.size(); ++i) {
    const std::int32_t value = table(kBandFields[i], band, option);
    out << std::setw(i < kBins ? 7 : 10)
        << (i < kBins ? std::to_string(value) : FixedNumber(value * gPerCode, 5));
  }
  out << '\n';
}

void WriteBands(const Output& output, const BandTable& table, double gPerCode) {
  Json all = Json::array();
  if (!output.json) {
    output.out << "Option Band F-low F-high  Alarm 1 X, Y, Z in g           Alarm 2 X, Y, Z in g\n";
  }
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      if (output.json) {
        all.push_back(BandJson(table, band, option, gPerCode));
      } else {
        PrintBand(output.out, table, band, option, gPerCode);
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
  if (read_->parsed()) return Read(session, output);
  if (write_->parsed()) return Write(session, output);
  if (save_->parsed()) return Save(session, output);
  if (load_->parsed()) return Load(session, output);
  return Report(session, output, session.station.Bands().Clear());
}

// How a transfer ended, in its own words.
ExitCode BandsCommand::Report(Session& session, const Output& output,
                              const Result<std::string>& end) {
  session.EndProgress();
  if (!end) return session.Fail(end.Why());
  if (output.json) {
    output.Write({{"message", *end}});
  } else {
    output.out << *end << '\n';
  }
  return ExitCode::Success;
}

ExitCode BandsCommand::Read(Session& session, const Output& output) {
  const auto table = session.station.Bands().Read();
  session.EndProgress();
  if (!table) return session.Fail(table.Why());
  WriteBands(output, *table, session.station.Records().GPerCode());
  return ExitCode::Success;
}

// Numbers are codes of the range in use, so the table goes through unchanged.
ExitCode BandsCommand::Write(Session& session, const Output& output) const {
  const auto table = ReadBandFile(session.station.FilesHere(), AbsolutePathOf(file_));
  if (!table) return session.Fail(table.Why());
  return Report(session, output, session.station.Bands().Write(*table));
}

ExitCode BandsCommand::Load(Session& session, const Output& output) const {
  const auto table = ReadBandFile(session.station.FilesHere(), AbsolutePathOf(file_));
  if (!table) return session.Fail(table.Why());
  WriteBands(output, *table, session.station.Records().GPerCode());
  return ExitCode::Success;
}

ExitCode BandsCommand::Save(Session& session, const Output& output) const {
  const std::filesystem::path file = AbsolutePathOf(file_);
  if (!IsAlarmFileName(file.filename().string())) {
    session.Say("bands save: the name must be AlarmSpectrum_<name>.csv, not \"" +
                file.filename().string() + "\".");
    return ExitCode::Usage;
  }
  const auto table = session.station.Bands().Read();
  session.EndProgress();
  if (!table) return session.Fail(table.Why());
  session.station.FilesHere().ReplaceWhole(file, AlarmFileText(*table));
  if (output.json) {
    output.Write({{"file", file.string()}});
  } else {
    output.out << file.string() << '\n';
  }
  return ExitCode::Success;
}

}  // namespace kestrel
