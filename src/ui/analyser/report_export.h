// The records that are looked at, printed into a PDF file that the user names.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>
#include <QObject>
#include <optional>
#include <vector>

#include "archive/kept_record.h"
#include "seams/files.h"
#include "ui/library/library_view.h"
#include "ui/study/study_model.h"

namespace kestrel {

class ReportExport : public QObject {
  Q_OBJECT

 public:
  // The archive's remarks stand beside records that it has.
  ReportExport(StudyModel& model, LibraryView& library, Files& files, QMainWindow& window);

  // What a report would be of: the records selected in the library, where that is shown, else those
  // that the plot shows.
  void SetFromLibrary(bool isFromLibrary) { isFromLibrary_ = isFromLibrary; }
  // Asks for a file, or says why there is nothing to print.
  void Ask();
  void Write(const QString& file);

 signals:
  void Said(const QString& text, bool isTrouble);
  void Ended(bool isWritten);

 private:
  using Records = std::vector<archive::KeptRecord>;

  // Why not; empty where there is something.
  [[nodiscard]] QString WhyNothing() const;
  [[nodiscard]] std::vector<study::RecordPointer> Shown() const;
  void Print(const Records& records);
  void Fail(const QString& why);

  StudyModel& model_;
  LibraryView& library_;
  Files& files_;
  QMainWindow& window_;
  bool isFromLibrary_ = false;
  std::optional<QString> waiting_;  // the file, while the archive is asked
};

}  // namespace kestrel
