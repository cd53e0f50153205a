// A set-up written as JSON, a line a register and a line a band.
// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "exchange/texts.h"
#include "record/utc_time.h"
#include "setup/band_keys.h"
#include "setup/setup_file.h"

namespace kestrel::setup {
namespace {

using Json = nlohmann::ordered_json;

Json SensorJson(const Setup& setup) {
  return {{"PROD_ID", setup.product},
          {"REV", setup.revision},
          {"interface", exchange::CleanUtf8(setup.sensor.interface)},
          {"adapter", exchange::CleanUtf8(setup.sensor.adapter)},
          {"simulated", setup.sensor.simulated}};
}

Json RegisterJson(const Setup& setup, std::size_t index) {
  return {{"name", kRegisterNames.at(index)},
          {"value", setup.registers.at(index)},
          {"means", WordText(setup, index)}};
}

Json BandJson(const Setup& setup, int option, int band) {
  Json json{{"option", option}, {"band", band}};
  std::string means;
  for (std::size_t field = 0; field < kBandKeys.size(); ++field) {
    json[kBandKeys.at(field)] = setup.Band(option, band).at(field);
    const std::string value = BandText(setup, option, band, field);
    const std::size_t unit = value.find('(') + 1;
    means += (means.empty() ? "" : ", ") + std::string(kBandFieldNames.at(field)) + " " +
             value.substr(unit, value.size() - unit - 1);
  }
  json["means"] = means;
  return json;
}

std::string Lines(const std::vector<Json>& items) {
  std::string text = "[";
  for (const Json& item : items) {
    text += (text.size() > 1 ? ",\n    " : "\n    ") + item.dump();
  }
  return text + "\n  ]";
}

std::string Line(const char* key, const Json& value) {
  return std::string("  \"") + key + "\": " + value.dump() + ",\n";
}

}  // namespace

std::string SetupFileText(const Setup& setup) {
  std::vector<Json> registers;
  for (std::size_t index = 0; index < kRegisters; ++index) {
    registers.push_back(RegisterJson(setup, index));
  }
  std::vector<Json> bands;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) bands.push_back(BandJson(setup, option, band));
  }
  return "{\n" + Line("format", kSetupFormat) + Line("format_version", kSetupVersion) +
         Line("name", exchange::CleanUtf8(setup.name)) + Line("saved", UtcText(setup.when)) +
         Line("program", exchange::CleanUtf8(setup.program)) + Line("sensor", SensorJson(setup)) +
         Line(
             "units",
             "Values are words of registers, f_low and f_high are FFT bins, alarms are magnitude "
             "codes of the range in REC_CTRL; what they mean stands beside them and is not read.") +
         "  \"registers\": " + Lines(registers) + ",\n  \"bands\": " + Lines(bands) + "\n}\n";
}

}  // namespace kestrel::setup
