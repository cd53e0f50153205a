// What the keys of the analyser's plot do to the study.
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/chart/analyser_plot.h"
#include "ui/study/study_model.h"

namespace kestrel {

// Carries out what the plot asks for, but for pictures, which need the plot itself.
class PlotCommands : public QObject {
  Q_OBJECT

 public:
  PlotCommands(StudyModel& model, AnalyserPlot& plot);

  // `row` is the study whose peaks and places are meant; null for what the model shows.
  void CarryOut(PlotCommand command, const study::Study* row = nullptr);

 signals:
  void CopyAsked();
  void ExportAsked();
  void MarkerAsked(double hz);
  void MemberAsked(int step);  // the next of the cursor's members, or the one before

 private:
  void Listen();
  void ChangeAxes(PlotCommand command);
  void ChangeCursor(PlotCommand command, const study::Study& study);
  void NextFocus();
  void NextMember(int step);

  StudyModel& model_;
  AnalyserPlot& plot_;
};

}  // namespace kestrel
