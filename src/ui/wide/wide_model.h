// The wide spectrum of one window: captured now or kept earlier, and the list of those kept.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "analysis/wide_spectrum.h"
#include "archive/place.h"
#include "archive/worker.h"
#include "display/wide_view.h"

namespace kestrel {

// One that is kept, as its list shows it.
struct WideRow {
  archive::Uid uid{};
  std::chrono::system_clock::time_point taken;  // the first of its records
  unsigned options = 0;                         // there, a bit each
  int averages = 0;
  std::string machine;
};

// The archive is read by a thread with a connection of its own.
class WideModel : public QObject {
  Q_OBJECT

 public:
  // Without a place only what is captured now can be shown.
  explicit WideModel(archive::Place place, QObject* parent = nullptr);
  ~WideModel() override;
  WideModel(const WideModel&) = delete;
  WideModel& operator=(const WideModel&) = delete;

  [[nodiscard]] const analysis::WideSpectrum& Wide() const { return wide_; }
  [[nodiscard]] const std::vector<WideRow>& Rows() const { return rows_; }
  // The row that is shown; none of what was captured now.
  [[nodiscard]] std::optional<std::size_t> Shown() const;
  // What stands in the way of the archive, with the cure; empty while all is well.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }
  [[nodiscard]] bool HasArchive() const { return worker_ != nullptr; }

  // Captures begin: of these options, a bit each. With `keepsOthers` those of other options stay.
  void Begin(unsigned wanted, bool keepsOthers = false);
  // One capture of them is complete.
  void Take(const Record& record);
  // They have ended; what is kept of them is in the list a moment later.
  void End() { Read(); }

  // The list anew.
  void Read();
  void Open(const archive::Uid& uid);

 signals:
  void Changed();  // the spectrum that is shown
  void RowsChanged();
  void TroubleChanged();

 private:
  void Show(std::vector<Record> records, unsigned wanted);
  void Do(archive::Worker::Rank rank, std::function<void(archive::Archive&)> work);
  void Tell(std::function<void()> deed);
  void SetTrouble(const QString& trouble);

  archive::Place place_;
  analysis::WideSpectrum wide_;
  unsigned wanted_ = 0b1111;
  std::optional<archive::Uid> shown_;
  std::optional<archive::Uid> asked_;
  std::vector<WideRow> rows_;
  QString trouble_;
  std::unique_ptr<archive::Worker> worker_;  // its thread ends before the rest goes
};

}  // namespace kestrel
