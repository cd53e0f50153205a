// The sets of a baseline: records known to be good, known to be bad, and those left out, and why.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "archive/archive.h"
#include "baseline/settings.h"

namespace kestrel::baseline {

using Moment = std::chrono::system_clock::time_point;

enum class Verdict { Good, Bad };

// Records chosen together, as the user chose them.
struct Part {
  Verdict verdict = Verdict::Good;
  std::string name{};  // as the user calls them: "outer race"; may be empty
  archive::Filter filter{};
  std::vector<std::int64_t> ids{};  // where some are named: of what the filter finds only these
  std::chrono::seconds every{0};    // one record in so much time; 0: every one
  bool operator==(const Part&) const = default;
};

// A record of a set. Records of one run follow one another at the same place: a machine, a point
// and a sensor, within one part. Judgements over several records never reach over runs.
struct Member {
  std::int64_t id = 0;
  Moment time{};
  int run = 0;
  bool operator==(const Member&) const = default;
};

// What became of a part. `found` of its records can be compared, `taken` of them are in the set;
// first and last are of those taken.
struct PartTaken {
  Verdict verdict = Verdict::Good;
  std::string name{};
  std::size_t taken = 0;
  std::size_t found = 0;
  std::chrono::seconds every{0};
  Moment first{};
  Moment last{};
  std::vector<std::string> places{};  // "Pump 3, drive end": of its machines and points
  bool operator==(const PartTaken&) const = default;
};

// Records that cannot be compared, for one reason.
struct LeftOut {
  std::string title{};   // "Range 0 to 20 g"
  std::string reason{};  // "cannot be compared with 0 to 70 g"
  std::vector<std::int64_t> ids{};
  bool operator==(const LeftOut&) const = default;
};

struct Sets {
  Settings settings{};         // shared by all members; meaningless where there are none
  std::vector<Member> good{};  // by run, then time
  std::vector<Member> bad{};
  std::vector<PartTaken> parts{};  // in the order of what was chosen
  std::vector<LeftOut> leftOut{};  // the most frequent first
  [[nodiscard]] std::size_t LeftOutCount() const;
  bool operator==(const Sets&) const = default;
};

// Goes through rows without points. Spectra alone have bands. Throws DatabaseError.
[[nodiscard]] Sets SetsOf(archive::Archive& archive, std::span<const Part> parts,
                          const Wanted& wanted = {});

// "12 to 24 October 2026", "12 October 2026, 08:00 to 14:30", UTC.
[[nodiscard]] std::string SpanText(Moment first, Moment last);
// "one every 2 h of 1,728", "all 132".
[[nodiscard]] std::string ThinningText(const PartTaken& part);

}  // namespace kestrel::baseline
