// A level over time, read of the archive in the background and kept up with it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "trend/choice.h"
#include "trend/data.h"
#include "ui/library/library.h"

namespace kestrel {

class TrendSource : public QObject {
  Q_OBJECT

 public:
  explicit TrendSource(const archive::Place& place);
  ~TrendSource() override;
  TrendSource(const TrendSource&) = delete;
  TrendSource& operator=(const TrendSource&) = delete;

  // Reads everything; what is read now is given up. What was read before stays until then.
  void Ask(const archive::Filter& filter, const trend::Level& level);
  // What came since; everything where records are gone, or others than the newest have come.
  void Follow();
  void Cancel();
  void Choose(std::size_t series);

  [[nodiscard]] const trend::Data& Data() const { return data_; }
  // The level that the data are of.
  [[nodiscard]] const trend::Level& Level() const { return read_; }
  [[nodiscard]] bool IsRead() const { return isRead_; }
  [[nodiscard]] bool IsReading() const { return stop_ != nullptr; }
  [[nodiscard]] const QString& Trouble() const { return library_.Trouble(); }

 signals:
  void Changed();  // other data
  void Progressed(qint64 done, qint64 all);
  void ReadingChanged();
  void TroubleChanged();

 private:
  struct Answer {
    archive::Levels levels;
    archive::Levels temperature;
    std::int64_t found = 0;  // records that fit the filter
  };
  void Read(const archive::Filter& filter, bool isAll);
  void Take(Answer answer, bool isAll);
  void End();

  Library library_;
  archive::Filter filter_;
  trend::Level asked_;
  trend::Level read_;
  trend::Data data_;
  bool isRead_ = false;
  bool hasStart_ = false;
  bool isBehind_ = false;                    // more has come while everything is read
  std::shared_ptr<std::atomic<bool>> stop_;  // of what is read now; none while nothing is
};

}  // namespace kestrel
