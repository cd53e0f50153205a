// The user's bearings: chosen from the library, or told by geometry or by factors.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <array>
#include <optional>

#include "study/bearing_library.h"
#include "ui/study/number_field.h"

namespace kestrel {

class BearingDialog : public QDialog {
  Q_OBJECT

 public:
  explicit BearingDialog(study::BearingLibrary library, QWidget* parent = nullptr);

  // What the fields say; why there is no bearing where they say none.
  [[nodiscard]] analysis::Told<analysis::Bearing> Told() const;

 public slots:
  void Keep();  // into the library
  void Forget();
  void Use();  // on the machine

 signals:
  void Chosen(const analysis::Bearing& bearing);
  void LibraryChanged(const kestrel::study::BearingLibrary& library);

 private:
  void LayOut();
  [[nodiscard]] QLayout* Buttons();
  void Show(const analysis::Bearing& bearing);
  void ShowLibrary();
  void ShowFactors();
  void SetMode(bool byFactors);
  [[nodiscard]] bool ByFactors() const { return mode_->currentIndex() == 1; }
  [[nodiscard]] std::optional<analysis::Bearing> TakenOrSaid();

  study::BearingLibrary library_;
  QListWidget* list_;
  QLineEdit* name_;
  QComboBox* mode_;
  std::array<NumberField*, 4> geometry_;  // elements, d, D, angle
  std::array<NumberField*, 4> factors_;   // outer, inner, spin, cage
  QWidget* byGeometry_;
  QWidget* byFactors_;
  QLabel* said_;
};

}  // namespace kestrel
