// The user's command, once for each begin and end of an alarm, one after the other.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "publish/event.h"
#include "publish/letter_queue.h"
#include "publish/publisher.h"
#include "publish/settings.h"

namespace kestrel::publish {

// The command reads the alarm's JSON, and finds its members in the environment: KESTREL_ALARM_ID,
// _EVENT, _WHAT, _GRADE, _AXIS, _OPTION, _NUMBER, _TIME, _RECORD, _LEVEL, _LIMIT, _UNIT, _BENCH,
// _SENSOR. Whatever it does, the alarm counts as told when it has ended; one that was at work when
// the program ended is run again, and one for which the system has no room is tried until it has.
// It runs in a thread of its own.
class AlarmCommand {
 public:
  AlarmCommand(CommandSettings settings, std::shared_ptr<LetterQueue> letters, Log log);
  ~AlarmCommand();
  AlarmCommand(const AlarmCommand&) = delete;
  AlarmCommand& operator=(const AlarmCommand&) = delete;

  // There is a new letter.
  void Wake();
  // Of the last one; empty when all is well.
  [[nodiscard]] std::string Trouble() const;

 private:
  enum class After { Next, Wait, End };

  void Work();
  After RunFor(const Letter& letter);
  void Become(const std::string& trouble, bool isTry);

  const CommandSettings settings_;
  const std::shared_ptr<LetterQueue> letters_;
  const Log log_;
  const Event wake_;
  const Event stop_;  // set from the end's beginning on
  mutable std::mutex mutex_;
  std::string trouble_;
  std::thread thread_;  // begins last
};

}  // namespace kestrel::publish
