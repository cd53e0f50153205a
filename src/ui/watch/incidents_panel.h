// What stood in the way and alarms, of the archive's journal and of the monitor that runs.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "archive/place.h"
#include "archive/worker.h"
#include "monitor/account.h"
#include "ui/study/text_table.h"
#include "ui/workbench/bench_card.h"

namespace kestrel {

// The journal is read by a thread of its own.
class IncidentsPanel : public QWidget {
  Q_OBJECT

 public:
  IncidentsPanel();
  ~IncidentsPanel() override;
  IncidentsPanel(const IncidentsPanel&) = delete;
  IncidentsPanel& operator=(const IncidentsPanel&) = delete;

  // The entries of this bench and sensor there; without a place there are none.
  void Of(const archive::Place& place, const std::string& bench, const std::string& sensor);
  // As a monitor tells that runs; null: none does. What is new is read soon.
  void Follow(const monitor::Account* account);
  void Read();
  [[nodiscard]] const std::vector<monitor::JournalRow>& Rows() const { return rows_; }
  [[nodiscard]] TextTable& Table() { return *table_; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Take(std::vector<archive::JournalEntry> journal, const QString& trouble);
  void Show();

  archive::Place place_;
  std::string bench_;
  std::string sensor_;
  std::vector<archive::JournalEntry> journal_;
  std::optional<monitor::Account> account_;
  std::vector<monitor::JournalRow> rows_;
  QString trouble_;
  TextTable* table_;
  BenchCard* card_;
  QTimer soon_;
  std::unique_ptr<archive::Worker> worker_;  // ends first
};

}  // namespace kestrel
