// How a plan is started as a process, what it tells, and how it ends.
// SPDX-License-Identifier: MIT
#include "ui/watch/monitor_runner.h"

#include <algorithm>
#include <utility>

namespace kestrel {
namespace {

constexpr qsizetype kMostWords = 3;

}  // namespace

MonitorRunner::MonitorRunner(Clock& clock, Deeds deeds) : clock_(clock), deeds_(std::move(deeds)) {}

MonitorRunner::~MonitorRunner() {
  if (process_) process_->Leave();
}

archive::Place MonitorRunner::Place() const {
  if (!wish_) return {};
  return monitor::ArchiveOf(wish_->plan, wish_->archive);
}

QString MonitorRunner::Start(const Wish& wish) {
  if (Running()) return tr("A plan is monitored already. Stop it first.");
  if (monitor::ArchiveOf(wish.plan, wish.archive).text.empty()) {
    return tr(
        "There is no archive for the records: the plan names none, and the program was "
        "started without one. Write a line \"archive = ...\" with a file into the plan.");
  }
  auto process = deeds_.make ? deeds_.make() : nullptr;
  if (!process) {
    return tr(
        "The program kestrel-cli, which monitors, is neither beside this program nor where "
        "the system looks for programs. Install the whole package again.");
  }
  const QString trouble = deeds_.lend(wish.plan);
  if (!trouble.isEmpty()) return trouble;
  process_ = std::move(process);
  wish_ = wish;
  account_.reset();
  words_.clear();
  trouble_.clear();
  phase_ = Phase::Running;
  QStringList arguments{"--json"};
  if (wish.plan.archive.empty()) {
    arguments << "--archive" << QString::fromStdString(wish.archive.text);
  }
  arguments << "monitor" << wish.file << "--end-with-input";
  emit Changed();
  process_->Begin(arguments, {.line = [this](const QByteArray& line) { Hear(line); },
                              .complaint = [this](const QString& line) { NoteWords(line); },
                              .ended = [this](const MonitorEnd& end) { End(end); }});
  return {};
}

void MonitorRunner::Stop() {
  if (phase_ != Phase::Running) return;
  phase_ = Phase::Ending;
  process_->AskToEnd();
  emit Changed();
}

std::optional<double> MonitorRunner::NextIn() const {
  if (!account_ || !account_->nextIn || phase_ != Phase::Running) return std::nullopt;
  const std::chrono::duration<double> since = clock_.Monotonic() - toldAt_;
  return std::max(*account_->nextIn - since.count(), 0.0);
}

void MonitorRunner::Hear(const QByteArray& line) {
  monitor::Told told = monitor::ToldBy(line.toStdString());
  if (told.said && told.said->isTrouble) NoteWords(QString::fromStdString(told.said->text));
  if (!told.account) return;
  account_ = std::move(told.account);
  toldAt_ = clock_.Monotonic();
  emit Changed();
}

void MonitorRunner::NoteWords(const QString& words) {
  words_ << words;
  if (words_.size() > kMostWords) words_.removeFirst();
}

QString MonitorRunner::WhyEnded(const MonitorEnd& end) const {
  if (!end.hasBegun) {
    return tr("The program kestrel-cli, which monitors, cannot be run: %1.").arg(end.fault);
  }
  QString text = end.isCrash ? tr("The monitor broke off.") : tr("The monitor ended by itself.");
  if (!words_.isEmpty()) text += tr(" Its last words: %1").arg(words_.join(QStringLiteral(" ")));
  return text;
}

// What is told of the end may start another plan.
void MonitorRunner::End(const MonitorEnd& end) {
  const bool wasAsked = std::exchange(phase_, Phase::Idle) == Phase::Ending;
  const bool byItself = !end.hasBegun || end.isCrash || end.code != 0 || !wasAsked;
  if (byItself) trouble_ = WhyEnded(end);
  const auto ended = std::move(process_);  // it is the one that tells
  deeds_.takeBack();
  emit Changed();
  emit Ended(byItself);
}

}  // namespace kestrel
