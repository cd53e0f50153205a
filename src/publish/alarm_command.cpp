// Letters become runs of the command; its output and its end are logged.
// SPDX-License-Identifier: MIT
#include "publish/alarm_command.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "publish/no_signals.h"
#include "publish/program_run.h"

namespace kestrel::publish {
namespace {

// In case the disk did not give a letter when it was told.
constexpr int kLookAgain = 5000;  // ms
constexpr std::size_t kLongestLine = 400;
constexpr std::size_t kMostLines = 20;

// "KESTREL_ALARM_ID" and so on; the password is nobody's but the program's.
std::map<std::string, std::string> VariablesOf(const std::string& payload) {
  std::map<std::string, std::string> variables{{kPasswordVariable, ""}};
  const auto json = nlohmann::json::parse(payload, nullptr, false);
  if (!json.is_object()) return variables;
  for (const auto& [key, value] : json.items()) {
    std::string name = "KESTREL_ALARM_" + key;
    std::ranges::transform(name, name.begin(), [](unsigned char letter) {
      return static_cast<char>(std::toupper(letter));
    });
    if (value.is_null()) {
      variables[name] = "";
    } else {
      variables[name] = value.is_string() ? value.get<std::string>() : value.dump();
    }
  }
  return variables;
}

void LogOutput(const ProgramEnd& end, const Log& log) {
  std::size_t lines = 0;
  for (std::size_t at = 0; at < end.output.size() && lines < kMostLines; ++lines) {
    const std::size_t next = std::min(end.output.find('\n', at), end.output.size());
    log("command: " + CleanText(std::string_view(end.output).substr(at, next - at), kLongestLine));
    at = next + 1;
  }
  if (end.isCut || lines == kMostLines) log("command: (more was written)");
}

}  // namespace

AlarmCommand::AlarmCommand(CommandSettings settings, std::shared_ptr<LetterQueue> letters, Log log)
    : settings_(std::move(settings)),
      letters_(std::move(letters)),
      log_(std::move(log)),
      thread_(ThreadWithoutSignals([this] { Work(); })) {}

AlarmCommand::~AlarmCommand() {
  stop_.Set();
  thread_.join();
}

void AlarmCommand::Wake() {
  wake_.Set();
}

std::string AlarmCommand::Trouble() const {
  const std::lock_guard lock(mutex_);
  return trouble_;
}

void AlarmCommand::Work() {
  while (true) {
    const std::optional<Letter> letter = letters_->Next(Receiver::Command);
    const After after = letter ? RunFor(*letter) : After::Wait;
    if (after == After::End) return;
    if (after == After::Next) continue;
    std::array<pollfd, 2> waits{{{wake_.Number(), POLLIN, 0}, {stop_.Number(), POLLIN, 0}}};
    poll(waits.data(), waits.size(), kLookAgain);
    if (waits[1].revents != 0) return;
    wake_.Reset();
  }
}

AlarmCommand::After AlarmCommand::RunFor(const Letter& letter) {
  const ProgramEnd end = RunProgram({.words = settings_.words,
                                     .input = letter.payload + "\n",
                                     .variables = VariablesOf(letter.payload),
                                     .limit = settings_.limit},
                                    stop_.Number());
  LogOutput(end, log_);
  if (end.kind == ProgramEnd::Kind::Stopped) return After::End;
  const bool isGood = end.kind == ProgramEnd::Kind::Exited && end.number == 0;
  Become(isGood ? "" : "The command " + CleanText(settings_.words.at(0)) + " " + TextOf(end) + ".",
         MayStartLater(end));
  if (MayStartLater(end)) return After::Wait;
  letters_->Arrived(Receiver::Command, letter);
  return After::Next;
}

// Every run that went wrong is logged, every try of the same one is not.
void AlarmCommand::Become(const std::string& trouble, bool isTry) {
  const std::lock_guard lock(mutex_);
  if (!trouble.empty() && !(isTry && trouble == trouble_)) log_(trouble);
  trouble_ = trouble;
}

}  // namespace kestrel::publish
