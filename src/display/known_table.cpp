// Known frequencies as rows of texts.
// SPDX-License-Identifier: MIT
#include "display/known_table.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

const analysis::Spectrum* SpectrumAtHand(const Study& study) {
  for (const Axis axis : {study.Choice().focus, Axis::X, Axis::Y, Axis::Z}) {
    if (const MeasuredSpectrum* measured = study.SpectrumOf(axis)) return &measured->spectrum;
  }
  return nullptr;
}

// "1×", "8.33×", "0.420×".
std::string OrderText(double order) {
  const bool isWhole = std::floor(order) == order && order < 1000;
  return (isWhole ? analysis::NumberText(order, 0) : analysis::SignificantText(order)) + "×";
}

KnownRow RowOf(const analysis::KnownFrequency& known, const StudyChoice& choice,
               const analysis::Spectrum* spectrum) {
  KnownRow row{.known = known,
               .isOn = !choice.knownOff.contains(known.name),
               .name = known.name,
               .frequency = analysis::NumberText(known.hz, 1)};
  if (known.order) row.order = OrderText(*known.order);
  if (spectrum == nullptr) return row;
  row.lines = std::to_string(analysis::MarkersOf({known}, *spectrum).size());
  if (const auto refusal = analysis::WhyNotSeen(known, *spectrum)) {
    row.isSeen = false;
    row.why = analysis::AsLine(*refusal);
  }
  return row;
}

std::string Listed(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " and " : ", ";
    text += names[i];
  }
  return text;
}

// Those that lie on the same side and have the same cure in one sentence.
std::string NoteOf(const std::vector<KnownRow>& rows, const analysis::Spectrum& spectrum) {
  std::map<std::pair<bool, std::string>, std::vector<std::string>> groups;
  std::map<bool, double> limits;
  for (const KnownRow& row : rows) {
    const auto refusal = analysis::WhyNotSeen(row.known, spectrum);
    if (!refusal) continue;
    const bool isLow = refusal->needs < refusal->has;
    limits[isLow] = refusal->has;
    groups[{isLow, refusal->cure}].push_back(row.name);
  }
  std::string note;
  for (const auto& [group, names] : groups) {
    const auto& [isLow, cure] = group;
    const double limit = limits[isLow];
    note += (note.empty() ? "" : " ") + Listed(names) + (names.size() == 1 ? " lies " : " lie ") +
            (isLow ? "below " : "above ") +
            analysis::HertzText(isLow ? analysis::RoundedUp(limit) : analysis::RoundedDown(limit)) +
            ": this record does not reach there. " + cure + ".";
  }
  return note;
}

template <typename Part>
void Replace(std::vector<Part>& parts, Part part) {
  const auto same = std::ranges::find(parts, part.name, &Part::name);
  if (same == parts.end()) {
    parts.push_back(std::move(part));
  } else {
    *same = std::move(part);
  }
}

}  // namespace

std::vector<analysis::KnownFrequency> KnownOf(const StudyChoice& choice) {
  auto known = analysis::FrequenciesOf(choice.machine);
  std::erase_if(known, [&](const auto& each) { return choice.knownOff.contains(each.name); });
  return known;
}

KnownTable KnownTableOf(const Study& study) {
  KnownTable table;
  const analysis::Spectrum* spectrum = SpectrumAtHand(study);
  for (const auto& known : analysis::FrequenciesOf(study.Choice().machine)) {
    table.rows.push_back(RowOf(known, study.Choice(), spectrum));
  }
  if (spectrum != nullptr) table.note = NoteOf(table.rows, *spectrum);
  const analysis::Machine& machine = study.Choice().machine;
  const bool waitsForSpeed = !machine.rpm && !(machine.meshes.empty() && machine.bearings.empty());
  if (waitsForSpeed) table.note = "Gears and bearings wait for the shaft's speed. " + table.note;
  return table;
}

void ChangeMachine(StudyChoice& choice, analysis::Machine machine) {
  const bool isFirst = analysis::FrequenciesOf(choice.machine).empty();
  choice.machine = std::move(machine);
  if (isFirst && !analysis::FrequenciesOf(choice.machine).empty()) choice.showKnown = true;
}

analysis::Machine With(analysis::Machine machine, analysis::GearMesh mesh) {
  Replace(machine.meshes, std::move(mesh));
  return machine;
}

analysis::Machine With(analysis::Machine machine, analysis::Bearing bearing) {
  Replace(machine.bearings, std::move(bearing));
  return machine;
}

analysis::Machine With(analysis::Machine machine, analysis::FreeFrequency free) {
  Replace(machine.free, std::move(free));
  return machine;
}

analysis::Machine Without(analysis::Machine machine, const analysis::KnownFrequency& known) {
  const auto drop = [&](auto& parts) {
    std::erase_if(parts, [&](const auto& part) { return part.name == known.name; });
  };
  switch (known.kind) {
    case analysis::KnownKind::Shaft:
      machine.rpm.reset();
      break;
    case analysis::KnownKind::Line:
      machine.lineHz.reset();
      break;
    case analysis::KnownKind::GearMesh:
      drop(machine.meshes);
      break;
    case analysis::KnownKind::Free:
      drop(machine.free);
      break;
    case analysis::KnownKind::OuterRace:
    case analysis::KnownKind::InnerRace:
    case analysis::KnownKind::ElementSpin:
    case analysis::KnownKind::Cage:
      // "Outer race, front"
      std::erase_if(machine.bearings, [&](const analysis::Bearing& bearing) {
        const std::size_t comma = known.name.find(", ");
        return bearing.name == (comma == std::string::npos ? "" : known.name.substr(comma + 2));
      });
      break;
  }
  return machine;
}

analysis::Told<double> ShaftHzOf(const Study& study) {
  const StudyChoice& choice = study.Choice();
  const MeasuredSpectrum* measured = study.SpectrumOf(choice.focus);
  const bool hasCursor = choice.cursor != CursorKind::None && choice.view != View::Time;
  if (hasCursor && choice.inSpectrum.at && *choice.inSpectrum.at > 0) return *choice.inSpectrum.at;
  if (measured != nullptr && !measured->peaks.empty()) return measured->peaks.front().line.hz;
  return analysis::Refusal{.title = "No peak to take the speed from",
                           .reason = "There is no cursor and no peak.",
                           .cure = "Capture a spectrum, or place the cursor on the shaft's line"};
}

}  // namespace kestrel::study
