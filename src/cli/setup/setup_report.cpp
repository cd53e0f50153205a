// Differences, restorings and lists of set-ups, reported.
// SPDX-License-Identifier: MIT
#include "cli/setup/setup_report.h"

#include "record/utc_time.h"
#include "setup/setup_file.h"

namespace kestrel {
namespace {

Json DifferencesJson(const std::vector<setup::Difference>& all) {
  Json list = Json::array();
  for (const setup::Difference& one : all) {
    list.push_back({{"place", one.place}, {"saved", one.saved}, {"now", one.now}});
  }
  return list;
}

}  // namespace

void WriteDifferences(const Output& output, const std::string& name,
                      const std::vector<setup::Difference>& all) {
  if (output.json) {
    output.Write({{"name", name}, {"equal", all.empty()}, {"differences", DifferencesJson(all)}});
    return;
  }
  if (all.empty()) {
    output.out << "Equal: the sensor holds all registers and bands of \"" << name << "\".\n";
    return;
  }
  for (const setup::Difference& one : all) {
    output.out << one.place << ": saved " << one.saved << ", now " << one.now << '\n';
  }
}

void WriteRestored(const Output& output, const setup::RestoreReport& report) {
  if (!output.json) {
    output.out << report.Text() << '\n';
    return;
  }
  output.Write({{"whole", report.IsWhole()},
                {"equal", report.equal},
                {"written", report.written},
                {"not_held", DifferencesJson(report.notHeld)},
                {"not_read_back", report.unsure},
                {"not_restored", report.open},
                {"in_flash", report.isInFlash},
                {"message", report.Text()}});
}

void WriteSetups(const Output& output, const std::vector<setup::SetupStore::Entry>& entries) {
  Json all = Json::array();
  for (const auto& [name, setup, trouble] : entries) {
    const std::string when = setup ? UtcText(setup->when) : "";
    if (!output.json) {
      output.out << name << "  " << (setup ? when : trouble) << '\n';
    } else if (setup) {
      all.push_back({{"name", name},
                     {"saved", when},
                     {"program", setup->program},
                     {"interface", setup->sensor.interface},
                     {"simulated", setup->sensor.simulated}});
    } else {
      all.push_back({{"name", name}, {"trouble", trouble}});
    }
  }
  if (output.json) output.Write(all);
}

void WriteSetup(const Output& output, const setup::Setup& setup) {
  if (output.json) {
    output.Write(Json::parse(SetupFileText(setup)));
    return;
  }
  output.out << setup.name << ", saved " << UtcText(setup.when) << '\n';
  for (std::size_t index = 0; index < setup::kRegisters; ++index) {
    output.out << setup::kRegisterNames.at(index) << ": " << WordText(setup, index) << '\n';
  }
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      output.out << setup::BandName(option, band);
      for (std::size_t field = 0; field < kBandFields.size(); ++field) {
        output.out << (field == 0 ? ": " : ", ") << kBandFieldNames.at(field) << ' '
                   << BandText(setup, option, band, field);
      }
      output.out << '\n';
    }
  }
}

}  // namespace kestrel
