// The record at the cursor of a trend: a small picture of it, to be opened or compared with.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QWidget>
#include <optional>

#include "study/study.h"
#include "ui/chart/look.h"
#include "ui/parts/line_label.h"
#include "ui/study/flat_button.h"

namespace kestrel {

// Pressed, it opens what it shows.
class RecordPicture : public QAbstractButton {
 public:
  RecordPicture();

  // The record, and one that it is compared with.
  void Show(study::RecordPointer record, study::RecordPointer other);
  [[nodiscard]] const PlotScene& Scene() const { return scene_; }

  [[nodiscard]] QSize sizeHint() const override { return {280, 190}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {160, 120}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PlotScene scene_;
};

class RecordCard : public QWidget {
  Q_OBJECT

 public:
  RecordCard();

  // Nothing at the cursor: says what will stand here, or why there is nothing.
  void ShowNone(const QString& hint);
  void Show(const QString& moment, study::RecordPointer record, study::RecordPointer other,
            const QString& otherMoment);
  // That the record at the cursor is the one to compare with.
  void SetMarked(bool isMarked);
  [[nodiscard]] RecordPicture& Picture() { return *picture_; }

  FlatButton* cmdCompare;
  FlatButton* cmdOpen;

 signals:
  void OpenAsked();

 private:
  LineLabel* lblMoment_;
  RecordPicture* picture_;
  LineLabel* lblLine_;
};

}  // namespace kestrel
