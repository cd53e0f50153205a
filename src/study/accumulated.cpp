// How captures are averaged and held, and when that begins anew.
// SPDX-License-Identifier: MIT
#include "study/accumulated.h"

namespace kestrel::study {

void Accumulated::Restart(const std::string& why) {
  using analysis::Averaging;
  axes_.clear();
  for (std::size_t i = 0; i < kAxes.size(); ++i) {
    axes_.push_back({.linear = {Averaging::Linear, averageOf_},
                     .exponential = {Averaging::Exponential, averageOf_}});
  }
  restarted_ = why;
}

void Accumulated::AverageOf(int captures) {
  if (captures == averageOf_) return;
  averageOf_ = captures;
  Restart();
}

std::optional<std::string> Accumulated::WhyNot(const Measured& capture) const {
  for (const Axis axis : kAxes) {
    const auto& held = axes_[Index(axis)].maximum.Value();
    if (!held || !capture.Of(axis)) continue;
    if (auto why = analysis::WhyNotWith(*held, capture.Of(axis)->spectrum)) return why;
  }
  return std::nullopt;
}

void Accumulated::Add(const Measured& capture) {
  if (const auto why = WhyNot(capture)) Restart(*why);
  for (const Axis axis : kAxes) {
    if (!capture.Of(axis)) continue;
    const analysis::Spectrum& spectrum = capture.Of(axis)->spectrum;
    OfAxis& held = axes_[Index(axis)];
    held.linear.Add(spectrum);
    held.exponential.Add(spectrum);
    held.maximum.Add(spectrum);
    held.minimum.Add(spectrum);
  }
}

const analysis::Spectrum* Accumulated::Of(Extra extra, Axis axis) const {
  const OfAxis& held = axes_[Index(axis)];
  const auto pointer = [](const std::optional<analysis::Spectrum>& value) {
    return value ? &*value : nullptr;
  };
  switch (extra) {
    case Extra::LinearAverage:
      return pointer(held.linear.Value());
    case Extra::ExponentialAverage:
      return pointer(held.exponential.Value());
    case Extra::MaximumHold:
      return pointer(held.maximum.Value());
    case Extra::MinimumHold:
      return pointer(held.minimum.Value());
    case Extra::Frozen:
    case Extra::Reference:
      break;
  }
  return nullptr;
}

}  // namespace kestrel::study
