// Monitoring from the window: started, followed and ended, with the sensor lent meanwhile.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "archive/place.h"
#include "monitor/account.h"
#include "monitor/plan/plan.h"
#include "seams/clock.h"
#include "ui/watch/monitor_process.h"

namespace kestrel {

// There is one in the program; it outlives the window that shows it.
class MonitorRunner : public QObject {
  Q_OBJECT

 public:
  struct Deeds {
    // A process that is not begun yet; none where there is no program for it.
    MakeMonitorProcess make;
    // Gives the sensor away where the plan needs the same road. Returns why not; empty where it did
    // or need not.
    std::function<QString(const monitor::Plan&)> lend = [](const monitor::Plan&) {
      return QString();
    };
    // The monitor has ended.
    std::function<void()> takeBack = [] {};
  };

  struct Wish {
    monitor::Plan plan{};
    QString file{};            // of the plan, as it is on the disk
    archive::Place archive{};  // for a plan that names none
  };

  enum class Phase { Idle, Running, Ending };

  MonitorRunner(Clock& clock, Deeds deeds);
  // A process that runs still is left, and ends in order.
  ~MonitorRunner() override;
  MonitorRunner(const MonitorRunner&) = delete;
  MonitorRunner& operator=(const MonitorRunner&) = delete;

  // Returns why not, with the cure; empty where it begins.
  QString Start(const Wish& wish);
  void Stop();

  [[nodiscard]] Phase Now() const { return phase_; }
  [[nodiscard]] bool Running() const { return phase_ != Phase::Idle; }
  // What runs, or ran last; none before.
  [[nodiscard]] const std::optional<Wish>& What() const { return wish_; }
  // Where its records are, and its journal.
  [[nodiscard]] archive::Place Place() const;
  // As last told; none before it has told anything.
  [[nodiscard]] const std::optional<monitor::Account>& Account() const { return account_; }
  // To the next capture, s, counted down since that was told; not below 0.
  [[nodiscard]] std::optional<double> NextIn() const;
  // Why it ended though nobody asked it to, with its last words; empty otherwise.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }

 signals:
  void Changed();  // anything of the above, but for the time that passes
  void Ended(bool byItself);

 private:
  void Hear(const QByteArray& line);
  void NoteWords(const QString& words);
  void End(const MonitorEnd& end);
  [[nodiscard]] QString WhyEnded(const MonitorEnd& end) const;

  Clock& clock_;
  Deeds deeds_;
  std::unique_ptr<MonitorProcess> process_;
  Phase phase_ = Phase::Idle;
  std::optional<Wish> wish_;
  std::optional<monitor::Account> account_;
  std::chrono::nanoseconds toldAt_{0};
  QStringList words_;  // the last that it complained of
  QString trouble_;
};

}  // namespace kestrel
