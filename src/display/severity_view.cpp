// Picking the captures that severity is estimated from.
// SPDX-License-Identifier: MIT
#include "display/severity_view.h"

#include <algorithm>
#include <array>

#include "analysis/quantity.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

using Newest = std::array<RecordPointer, analysis::kOptions>;

Newest NewestOfOptions(const Study& study) {
  Newest newest{};
  for (const ShelfEntry& entry : study.Records().Entries()) {
    const Record& record = *entry.record;
    const int option = record.settings.option;
    if (record.kind != RecordKind::Spectrum || option < 0 || option >= analysis::kOptions) continue;
    RecordPointer& kept = newest[static_cast<std::size_t>(option)];
    if (!kept) kept = entry.record;
  }
  return newest;
}

RecordPointer NewestOfAll(const Newest& newest) {
  RecordPointer last;
  for (const RecordPointer& record : newest) {
    if (record && (!last || record->time > last->time)) last = record;
  }
  return last;
}

// Leaves out what does not belong with the newest, and says so.
void LeaveOut(Newest& newest, const Record& last, const Study& study, SeverityView& view) {
  for (RecordPointer& record : newest) {
    if (!record) continue;
    const bool isOther = record->settings.window != last.settings.window;
    const bool isOld = last.time - record->time > kSeverityApart;
    if (!isOther && !isOld) continue;
    const analysis::Window window = analysis::WindowOfCode(record->settings.window);
    view.note += "Option " + std::to_string(record->settings.option) + " of " +
                 study.TimeText(record->time) +
                 (isOther ? " is left out, other window: " + std::string(window.name) + ". "
                          : " is left out, more than an hour older. ");
    record.reset();
  }
}

analysis::Told<analysis::SeverityEstimate> EstimateOf(const Newest& newest, Axis axis,
                                                      const StudyChoice& choice) {
  std::vector<analysis::Spectrum> captures;
  for (const RecordPointer& record : newest) {
    if (!record) continue;
    auto spectrum =
        analysis::SpectrumOf(*record, axis, {.meaning = choice.meaning, .ownRange = true});
    if (!spectrum) return spectrum.Why();
    captures.push_back(*spectrum);
  }
  const auto joined = analysis::Join(std::move(captures));
  if (!joined) return joined.Why();
  return analysis::EstimateSeverity(*joined, choice.zones);
}

std::string SpreadText(const Newest& newest, const Record& last) {
  auto first = last.time;
  for (const RecordPointer& record : newest) {
    if (record) first = std::min(first, record->time);
  }
  const auto minutes = std::chrono::ceil<std::chrono::minutes>(last.time - first).count();
  return minutes <= 1 ? "within a minute" : "within " + std::to_string(minutes) + " minutes";
}

std::string UncertainText(const SeverityView& view) {
  std::string axes;
  int count = 0;
  for (const Axis axis : kAxes) {
    if (!view.axes[Index(axis)]->uncertain) continue;
    axes += (count++ > 0 ? ", " : "") + std::string(1, Letter(axis));
  }
  if (count == 0) return "";
  return axes + (count == 1 ? " is uncertain: its captures disagree."
                            : " are uncertain: their captures disagree.");
}

void Describe(SeverityView& view, const Newest& newest, const Record& last) {
  if (!view.IsTold()) {
    const analysis::Refusal& why = view.axes.front().Why();
    view.heading = why.title;
    view.note = why.reason + " " + why.cure + ". " + view.note;
    return;
  }
  view.heading = "Estimate, 10 to 1,000 Hz";
  std::string used;
  for (const OptionCover& cover : view.options) {
    if (cover.record) used += (used.empty() ? "" : ", ") + std::to_string(cover.option);
  }
  view.note = "From captures at options " + used + ", taken " + SpreadText(newest, last) +
              ". An estimate, not a certificate. " + view.note;
  view.note += UncertainText(view);
}

}  // namespace

bool SeverityView::IsTold() const {
  return !axes.empty() && std::ranges::all_of(axes, [](const auto& told) { return bool(told); });
}

SeverityView SeverityOf(const Study& study) {
  SeverityView view;
  Newest newest = NewestOfOptions(study);
  const RecordPointer last = NewestOfAll(newest);
  if (last) LeaveOut(newest, *last, study, view);
  const auto window = last ? analysis::WindowOfCode(last->settings.window)
                           : analysis::WindowOf(analysis::WindowKind::Hanning);
  const auto offers = analysis::OffersOf(window, true, -1);
  std::vector<analysis::Segment> segments;
  for (int option = analysis::kOptions - 1; option >= 0; --option) {
    const auto& offer = offers[static_cast<std::size_t>(option)];
    const RecordPointer& record = newest[static_cast<std::size_t>(option)];
    view.options.push_back({option, offer.fromHz, offer.toHz, record});
    if (!record) continue;
    segments.push_back({.option = option,
                        .binWidthHz = offer.binWidthHz,
                        .holdsFromHz = offer.fromHz,
                        .holdsToHz = offer.toHz});
  }
  view.missing = analysis::MissingForSeverity(segments, window);
  if (!last) {
    view.missing = {3, 2, 1};
    view.heading = "No zone: there is no spectrum";
    view.note = "An estimate needs captures at options 3, 2 and 1.";
    return view;
  }
  for (const Axis axis : kAxes) view.axes.push_back(EstimateOf(newest, axis, study.Choice()));
  Describe(view, newest, *last);
  while (view.note.ends_with(' ')) view.note.pop_back();
  return view;
}

}  // namespace kestrel::study
