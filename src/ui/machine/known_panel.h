// Known frequencies of the machine: its speed, mains, gears and bearings, and which are seen.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QSpinBox>
#include <QTableWidget>
#include <QToolButton>
#include <QWidget>
#include <string>

#include "display/known_table.h"
#include "study/bearing_library.h"
#include "ui/study/number_field.h"
#include "ui/study/study_model.h"

namespace kestrel {

// While it is hidden it waits.
class KnownPanel : public QWidget {
  Q_OBJECT

 public:
  explicit KnownPanel(StudyModel& model, QWidget* parent = nullptr);

  // The user's bearings as a text to keep.
  [[nodiscard]] std::string SaveLibrary() const { return study::TextOf(library_); }
  // Takes what can be read; a message about what could not, empty where all was.
  std::string LoadLibrary(const std::string& text);
  [[nodiscard]] const study::BearingLibrary& Library() const { return library_; }

 public slots:
  void TakeSpeedFromPeak();
  void AddMesh();
  void AddBearing();
  void AddFrequency();
  void RemoveSelected();

 signals:
  void LibraryChanged();  // time to keep it

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void LayOut();
  void SetUpMenu();
  void SetUpTable();
  void Connect();
  void Refresh();
  void FillTable(const study::KnownTable& table);
  void ShowMains();
  void Change(const analysis::Machine& machine);
  void ChooseMains(int index);

  StudyModel& model_;
  study::BearingLibrary library_;
  NumberField* speed_;
  QToolButton* fromPeak_;
  QComboBox* mains_;
  NumberField* ownMains_;
  QSpinBox* harmonics_;
  QTableWidget* table_;
  QLabel* note_;
  QToolButton* add_;
  QToolButton* remove_;
  bool isOwnMains_ = false;
  bool isFilling_ = false;
};

}  // namespace kestrel
