// The library: the archive's records found, looked at, remarked upon, deleted and brought back.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QPointer>
#include <QUndoStack>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>

#include "ui/library/calendar_popup.h"
#include "ui/library/filter_bar.h"
#include "ui/library/library_model.h"
#include "ui/library/library_table.h"
#include "ui/library/look_at.h"
#include "ui/library/record_keeper.h"
#include "ui/library/remarks_panel.h"
#include "ui/parts/line_label.h"
#include "ui/parts/notice_strip.h"

namespace kestrel {

// Reads nothing before it is first shown.
class LibraryView : public QWidget {
  Q_OBJECT

 public:
  using Exports = std::function<void(std::vector<ArchiveId>)>;

  // Over the keeper's archive; with none, or none that has a place, it says so.
  LibraryView(StudyModel& study, RecordKeeper* keeper);
  ~LibraryView() override;
  LibraryView(const LibraryView&) = delete;
  LibraryView& operator=(const LibraryView&) = delete;

  // Null without a place.
  [[nodiscard]] Library* Archive() { return library_.get(); }
  // The records selected, from the top.
  [[nodiscard]] std::vector<ArchiveId> Chosen() const;
  // An entry of the menu of a row.
  void AddRowAction(QAction* action);
  [[nodiscard]] LibraryTable* Table() { return table_; }
  [[nodiscard]] QUndoStack& Edits() { return edits_; }
  // Entries for a menu of the window.
  void AddActions(QMenu& menu);
  // Offers the selected records as known good or known bad.
  using Takes = std::function<void(const std::vector<ArchiveId>&, bool areGood)>;
  void SetTaken(Takes taken) { taken_ = std::move(taken); }
  // Offers "Export...".
  void SetExport(Exports exports);
  void FocusList() { table_ != nullptr ? table_->setFocus() : setFocus(); }
  void FocusFilter() { filter_->Text().setFocus(); }
  // Asks the archive anew.
  void Refresh();

 signals:
  void Said(const QString& text);  // in passing

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void LayOut();
  [[nodiscard]] QWidget* MakeSide();
  [[nodiscard]] QWidget* MakeActionRow();
  void Connect();
  void ConnectArchive();
  void FollowKeeper();
  void ShowCounts();
  void ShowChosen();
  void ShowTrouble();
  void ShowSite();
  void Look(Way way);
  void AskDelete();
  void TakeRemarks();
  void AskLimit();

  StudyModel& study_;
  RecordKeeper* keeper_;
  std::unique_ptr<Library> library_;  // none without a place
  std::unique_ptr<LibraryModel> model_;
  LibraryTable* table_ = nullptr;
  FilterBar* filter_;
  RemarksPanel* remarks_;
  RemarksPanel* site_;
  NoticeStrip* notices_;
  CalendarPopup* calendar_;
  LineLabel* lblCounts_;
  LineLabel* lblKeeper_;
  std::array<FlatButton*, 5> ways_{};
  FlatButton* cmdDelete_;
  FlatButton* cmdExport_;
  QPointer<QAction> mnuKeep_;
  QUndoStack edits_;
  Exports exports_;
  Takes taken_;
  std::array<QPointer<QAction>, 2> mnuTake_;  // good, bad
  QTimer soon_;
  std::vector<ArchiveId> remarked_;  // whose remarks are shown
  qint64 all_ = 0;
  std::int64_t kept_ = 0;
  bool isFound_ = false;
};

}  // namespace kestrel
