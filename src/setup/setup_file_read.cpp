// A set-up read from JSON, strictly, with faults that name line or field, and value.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "exchange/texts.h"
#include "record/utc_time.h"
#include "setup/band_keys.h"
#include "setup/setup_file.h"

namespace kestrel::setup {
namespace {

using Json = nlohmann::ordered_json;
using exchange::Fault;
using exchange::Shown;

constexpr int kDeepest = 8;
constexpr std::size_t kLongestText = 200;  // bytes
constexpr int kLargestWord = 0xFFFF;

struct Refusal {
  std::string what;
};

std::string Show(const Json& value) {
  return Shown(value.is_string() ? value.get<std::string>()
                                 : value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

// Sees to it while the text is taken apart that no key stands twice in one object.
class KeyCheck {
 public:
  bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
    if (depth > kDeepest) throw Refusal{"its values are nested too deeply for a set-up"};
    if (event == Json::parse_event_t::object_start) keys_.emplace_back();
    if (event == Json::parse_event_t::object_end) keys_.pop_back();
    if (event != Json::parse_event_t::key) return true;
    const auto key = parsed.get<std::string>();
    if (!keys_.back().insert(key).second) throw Refusal{"the key " + Shown(key) + " stands twice"};
    return true;
  }

 private:
  std::vector<std::set<std::string>> keys_;
};

// What stands in an object: the keys that it must have, and no others but these.
void CheckKeys(const std::string& where, const Json& object,
               std::initializer_list<std::string> needed,
               std::initializer_list<std::string> other) {
  if (!object.is_object()) throw Refusal{where + ": " + Show(object) + " stands in place of {...}"};
  for (const std::string& key : needed) {
    if (!object.contains(key)) throw Refusal{where + ": \"" + key + "\" is missing"};
  }
  for (const auto& [key, value] : object.items()) {
    if (std::ranges::count(needed, key) + std::ranges::count(other, key) == 0) {
      throw Refusal{where + ": " + Shown(key) + " is not known"};
    }
  }
}

std::int64_t Whole(const std::string& where, const Json& value, std::int64_t least,
                   std::int64_t most) {
  const bool fits = value.is_number_integer() &&
                    (!value.is_number_unsigned() ||
                     value.get<std::uint64_t>() <= static_cast<std::uint64_t>(most)) &&
                    value.get<std::int64_t>() >= least && value.get<std::int64_t>() <= most;
  if (fits) return value.get<std::int64_t>();
  throw Refusal{where + ": " + Show(value) + " is not a whole number from " +
                std::to_string(least) + " to " + std::to_string(most)};
}

std::uint16_t WordOf(const std::string& where, const Json& value, int most = kLargestWord) {
  return static_cast<std::uint16_t>(Whole(where, value, 0, most));
}

std::string TextOf(const std::string& where, const Json& value) {
  if (!value.is_string()) throw Refusal{where + ": " + Show(value) + " is not text"};
  const auto text = value.get<std::string>();
  if (text.size() > kLongestText) throw Refusal{where + ": " + Shown(text) + " is too long"};
  return text;
}

void CheckFormat(const Json& file) {
  if (!file.is_object() || !file.contains("format") || file["format"] != kSetupFormat) {
    throw Refusal{"this is not a set-up of a sensor: its \"format\" is not \"" +
                  std::string(kSetupFormat) + "\""};
  }
  const Json version = file.value("format_version", Json());
  if (!version.is_number_integer() || version < 1) {
    throw Refusal{"format_version: " + Show(version) + " is not a version"};
  }
  if (version > kSetupVersion) {
    throw Refusal{"format_version: " + Show(version) +
                  " is newer than this program, which reads version " +
                  std::to_string(kSetupVersion) + "; a newer program reads it"};
  }
}

void TakeSensor(Setup& setup, const Json& sensor) {
  CheckKeys("sensor", sensor, {"PROD_ID", "REV", "interface", "adapter", "simulated"}, {});
  setup.product = WordOf("sensor, PROD_ID", sensor["PROD_ID"]);
  setup.sensor.product = setup.product;
  setup.revision = WordOf("sensor, REV", sensor["REV"]);
  setup.sensor.interface = TextOf("sensor, interface", sensor["interface"]);
  setup.sensor.adapter = TextOf("sensor, adapter", sensor["adapter"]);
  if (!sensor["simulated"].is_boolean()) {
    throw Refusal{"sensor, simulated: " + Show(sensor["simulated"]) + " is neither true nor false"};
  }
  setup.sensor.simulated = sensor["simulated"].get<bool>();
}

const Json& ListOf(const Json& file, const char* key, std::size_t count) {
  const Json& list = file[key];
  if (!list.is_array()) throw Refusal{std::string(key) + ": " + Show(list) + " is not a list"};
  if (list.size() != count) {
    throw Refusal{std::string(key) + ": there are " + std::to_string(list.size()) +
                  " of them, not " + std::to_string(count)};
  }
  return list;
}

void TakeRegisters(Setup& setup, const Json& file) {
  std::array<bool, kRegisters> seen{};
  for (const Json& entry : ListOf(file, "registers", kRegisters)) {
    CheckKeys("registers", entry, {"name", "value"}, {"means"});
    const std::string name = TextOf("registers, name", entry["name"]);
    const auto found = std::ranges::find(kRegisterNames, name);
    if (found == kRegisterNames.end()) {
      throw Refusal{"registers: " + Shown(name) + " is not a register of a set-up"};
    }
    const auto index = static_cast<std::size_t>(found - kRegisterNames.begin());
    if (seen.at(index)) throw Refusal{"registers: " + name + " stands twice"};
    seen.at(index) = true;
    setup.registers.at(index) = WordOf("register " + name, entry["value"], LargestOf(index));
  }
}

void TakeBand(Setup& setup, const Json& entry,
              std::set<std::pair<std::int64_t, std::int64_t>>& seen) {
  CheckKeys("bands", entry,
            {"option", "band", kBandKeys[0], kBandKeys[1], kBandKeys[2], kBandKeys[3], kBandKeys[4],
             kBandKeys[5], kBandKeys[6], kBandKeys[7]},
            {"means"});
  const auto option = Whole("bands, option", entry["option"], 0, kSampleRateOptions - 1);
  const auto band = Whole("bands, band", entry["band"], 1, kAlarmBands);
  const std::string name = BandName(static_cast<int>(option), static_cast<int>(band));
  if (!seen.emplace(option, band).second) throw Refusal{"bands: " + name + " stands twice"};
  BandWords& words = setup.Band(static_cast<int>(option), static_cast<int>(band));
  for (std::size_t field = 0; field < words.size(); ++field) {
    const char* key = kBandKeys.at(field);
    words.at(field) = WordOf(name + ", " + key, entry[key]);
  }
}

Setup SetupOf(const Json& file) {
  CheckFormat(file);
  CheckKeys(
      "the file", file,
      {"format", "format_version", "name", "saved", "program", "sensor", "registers", "bands"},
      {"units"});
  Setup setup;
  setup.name = TextOf("name", file["name"]);
  setup.program = TextOf("program", file["program"]);
  const std::string saved = TextOf("saved", file["saved"]);
  const auto when = UtcFrom(saved);
  if (!when) throw Refusal{"saved: " + Shown(saved) + " is not a time like 2024-03-14T08:26:53Z"};
  setup.when = *when;
  TakeSensor(setup, file["sensor"]);
  TakeRegisters(setup, file);
  std::set<std::pair<std::int64_t, std::int64_t>> seen;
  for (const Json& entry : ListOf(file, "bands", std::size_t{kSampleRateOptions} * kAlarmBands)) {
    TakeBand(setup, entry, seen);
  }
  return setup;
}

// Where the text is no JSON.
Fault NoJson(const std::string& file, std::string_view bytes, std::size_t at) {
  const std::size_t place = std::min(at == 0 ? 0 : at - 1, bytes.size());
  const auto lines = std::ranges::count(bytes.substr(0, place), '\n');
  const std::string_view rest = bytes.substr(place);
  const bool ended = rest.find_first_not_of(" \t\r\n") == std::string_view::npos;
  return {.file = file,
          .line = static_cast<std::size_t>(lines) + 1,
          .what = ended ? "the file ends in the middle of the set-up"
                        : "the text is not valid JSON from " + Shown(rest) + " on"};
}

}  // namespace

exchange::Exchanged<Setup> ReadSetupFile(const std::string& file, std::string_view bytes) {
  const auto fault = [&](const std::string& what) { return Fault{.file = file, .what = what}; };
  if (bytes.size() > kLargestSetupFile) {
    return fault("it is too large for a set-up: more than " + std::to_string(kLargestSetupFile) +
                 " bytes");
  }
  if (!exchange::IsUtf8(bytes)) {
    return fault("it is not UTF-8 text; a set-up is saved in this encoding");
  }
  try {
    KeyCheck check;
    const Json json =
        Json::parse(bytes, [&check](int depth, Json::parse_event_t event, const Json& parsed) {
          return check(depth, event, parsed);
        });
    return SetupOf(json);
  } catch (const Refusal& refusal) {
    return fault(refusal.what);
  } catch (const Json::parse_error& error) {
    return NoJson(file, bytes, error.byte);
  } catch (const Json::exception& error) {  // numbers beyond all bounds
    return fault(std::string("it cannot be read: ") + error.what());
  }
}

}  // namespace kestrel::setup
