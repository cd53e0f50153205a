// Names and counts that follow from records and plans alone.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include "archive/kept_record.h"
#include "monitor/findings.h"
#include "publish/messages.h"

namespace kestrel::monitor {

// Of a record that the sensor took by itself: the same for the same words, wherever they are read.
[[nodiscard]] archive::Uid UidOfWords(const Record& record);

// Captures that were due after one at `last` and before `now`.
[[nodiscard]] std::int64_t MissedBetween(std::chrono::system_clock::time_point last,
                                         std::chrono::system_clock::time_point now,
                                         std::chrono::seconds every);

// Whether some step of a plan judges an alarm.
[[nodiscard]] bool IsJudged(const Plan& plan, const AlarmKey& key);

[[nodiscard]] publish::RecordFacts FactsOf(const Record& record, const archive::Uid& uid);
[[nodiscard]] publish::Levels LevelsOf(const Record& record, const archive::Uid& uid,
                                       const publish::Names& names);
[[nodiscard]] publish::Spectrum SpectrumOf(const Record& record, const archive::Uid& uid,
                                           const publish::Names& names);

}  // namespace kestrel::monitor
