// The menu of the analyser's plots: views, cursors, a marker, and pictures.
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/analyser/choice_menus.h"
#include "ui/chart/analyser_plot.h"

namespace kestrel {

class PlotMenu : public ChoiceMenu {
 public:
  struct Deeds {
    std::function<AnalyserPlot&()> plot;        // of the view that is shown
    std::function<void(PlotCommand)> carryOut;  // in that view
    std::function<void(double hz)> addMarker;
  };

  PlotMenu(StudyModel& model, Deeds deeds, QWidget* parent);

  // At a place on the screen; x (Hz or s) and the pane are what the commands are about.
  void Open(QPoint place, double x, int pane);

 protected:
  void Fill() override;

 private:
  void FillViews();
  void FillCursors();
  void AddCursor(const char* name, const QString& text, study::CursorKind kind,
                 PlotCommand command);

  Deeds deeds_;
  double x_ = 0;
  int pane_ = 0;
};

}  // namespace kestrel
