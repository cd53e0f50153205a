// The options of "baseline": which records are good and bad, the rule and how it is replayed.
// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "baseline/replay.h"
#include "baseline/rule.h"
#include "baseline/sets.h"

namespace kestrel {

// --good-from, --good-until, --good-tag, --good-text, --good-id and --good-every; likewise "bad".
class SetOptions {
 public:
  explicit SetOptions(baseline::Verdict verdict) : verdict_(verdict) {}
  void AddTo(CLI::App& app);  // `this` outlives `app`
  [[nodiscard]] bool Any() const;
  // Of those that `filter` chooses.
  [[nodiscard]] baseline::Part Part(archive::Filter filter) const;

 private:
  baseline::Verdict verdict_;
  std::string from_;
  std::string until_;
  std::string tag_;
  std::string text_;
  std::string every_;
  std::vector<std::int64_t> ids_;
};

class BaselineOptions {
 public:
  void AddTo(CLI::App& app);  // `this` outlives `app`

  // Throws RuntimeError where no good records are asked for.
  [[nodiscard]] std::vector<baseline::Part> Parts() const;
  [[nodiscard]] baseline::Wanted Wanted() const;
  [[nodiscard]] baseline::Rule Rule() const;
  [[nodiscard]] baseline::Judgement Judgement() const { return judgement_; }
  [[nodiscard]] baseline::LevelKind Kind() const;

 private:
  void AddRecords(CLI::App& app);
  void AddRule(CLI::App& app);

  SetOptions good_{baseline::Verdict::Good};
  SetOptions bad_{baseline::Verdict::Bad};
  archive::Filter filter_;
  baseline::Wanted wanted_;
  std::optional<int> rangeG_;
  std::optional<int> window_;
  baseline::Rule rule_;
  std::optional<int> percentile_;
  baseline::Judgement judgement_;
  std::optional<baseline::LevelKind> kind_;
};

}  // namespace kestrel
