// The analyser's tool bar: what is shown, along which axes, with which overlays.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>
#include <QWidget>

#include "ui/study/flat_button.h"
#include "ui/study/study_model.h"

namespace kestrel {

// Changes the choice by itself; what needs the plot (history, pictures) is left to its owner.
class AnalyserToolBar : public QWidget {
  Q_OBJECT

 public:
  explicit AnalyserToolBar(StudyModel& model);

  FlatButton* cmdQuantity;
  Segments* segAmplitude;
  Segments* segVertical;
  FlatButton* cmdUnit;
  Segments* segHorizontal;
  Segments* segLayout;
  FlatButton* cmdTraces;
  FlatButton* cmdCursor;
  FlatButton* cmdBands;
  FlatButton* cmdLabels;
  FlatButton* cmdKnown;
  FlatButton* cmdLive;
  FlatButton* cmdBack;
  FlatButton* cmdForward;
  FlatButton* cmdShowAll;
  FlatButton* cmdCopy;
  FlatButton* cmdExport;

  // Without the words.
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Fill();
  void LayOut();
  void Connect();
  void Show();
  void ShowCursor();
  void ShowWords();

  StudyModel& model_;
  int narrow_ = 0;  // width without words
};

// A change of the choice by one of its parts, for menus and keys.
void ChooseQuantity(study::StudyChoice& choice, analysis::Quantity quantity);
void ChooseVertical(study::StudyChoice& choice, int kind);  // 0 linear, 1 logarithmic, 2 dB
// Whether the quantity can be read as a level.
[[nodiscard]] bool HasLevel(const study::StudyChoice& choice);
void ShowOrHide(study::StudyChoice& choice, Axis axis);
[[nodiscard]] int VerticalOf(const study::StudyChoice& choice);

}  // namespace kestrel
