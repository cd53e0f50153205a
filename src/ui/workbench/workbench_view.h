// The alarm-band workbench: from records that are known to be good to thresholds in the sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QProgressBar>
#include <QStackedWidget>
#include <QWidget>
#include <functional>
#include <string>

#include "seams/files.h"
#include "ui/library/library.h"
#include "ui/parts/notice_strip.h"
#include "ui/workbench/bench_card.h"
#include "ui/workbench/detail_panel.h"
#include "ui/workbench/distribution_table.h"
#include "ui/workbench/proposal_panel.h"
#include "ui/workbench/replay_panel.h"
#include "ui/workbench/rule_panel.h"
#include "ui/workbench/sets_panel.h"

namespace kestrel {

// What the workbench asks of the program around it. Each returns at once.
struct WorkbenchHost {
  Files& files;  // where the evidence goes
  // Opens the alarm editor, which reads the sensor's bands.
  std::function<void()> openBands = [] {};
  // Puts bands into the alarm editor's table and, where wished, writes them into the sensor and
  // reads them back. `told` hears how it ended.
  std::function<void(const BandProposal&, bool isWritten,
                     std::function<void(const std::string&)> told)>
      propose = [](const auto&, bool, const auto&) {};
};

// Reads nothing before it is first shown.
class WorkbenchView : public QWidget {
  Q_OBJECT

 public:
  // `archive` without a text: it says that there is none. `program` is told in the evidence.
  WorkbenchView(const archive::Place& archive, WorkbenchHost host);
  ~WorkbenchView() override;
  WorkbenchView(const WorkbenchView&) = delete;
  WorkbenchView& operator=(const WorkbenchView&) = delete;

  [[nodiscard]] WorkbenchModel& Model() { return model_; }
  // Records of the library's selection.
  void TakeRecords(baseline::Verdict verdict, const std::vector<ArchiveId>& ids);
  // Writes the evidence into a file: ".csv", otherwise text. Says how that went.
  bool WriteEvidence(const QString& file);
  void FocusFirst();

 signals:
  void Said(const QString& text);  // in passing

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void LayOut();
  [[nodiscard]] QWidget* MakeTools();
  [[nodiscard]] QWidget* MakeProgress();
  [[nodiscard]] QWidget* MakeLeft();
  [[nodiscard]] QWidget* MakeMiddle();
  [[nodiscard]] QWidget* MakeRight();
  [[nodiscard]] QWidget* MakeEmpty();
  void Connect();
  void Begin();
  void Show();
  void ShowSummaries();
  void ShowTools();
  void ShowReading();
  void ShowNotices();
  void AskWrite();
  void AskReport();
  void Propose(bool isWritten);

  WorkbenchHost host_;
  WorkbenchModel model_;
  bool hasBegun_ = false;
  NoticeStrip* notices_;
  QComboBox* cbxOption_;
  Segments* segScale_;
  FlatButton* cmdShowNow_;
  FlatButton* cmdShowBad_;
  QWidget* progress_;
  QLabel* lblProgress_;
  QProgressBar* barProgress_;
  SetsPanel* sets_;
  RulePanel* rule_;
  DistributionTable* distributions_;
  DetailPanel* detail_;
  ReplayPanel* replay_;
  ProposalPanel* proposal_;
  BenchCard* cardSets_;
  BenchCard* cardDistributions_;
  BenchCard* cardDetail_;
  BenchCard* cardReplay_;
  BenchCard* cardProposal_;
  QStackedWidget* middle_;
  QLabel* lblEmpty_;
};

}  // namespace kestrel
