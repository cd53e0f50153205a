// What stands in the menu of a plot.
// SPDX-License-Identifier: MIT
#include "ui/analyser/plot_menu.h"

#include <utility>

#include "numeric/number_texts.h"
#include "ui/study/text_table.h"

namespace kestrel {

using study::CursorKind;

PlotMenu::PlotMenu(StudyModel& model, Deeds deeds, QWidget* parent)
    : ChoiceMenu("menuPlot", model, parent), deeds_(std::move(deeds)) {}

void PlotMenu::Open(QPoint place, double x, int pane) {
  x_ = x;
  pane_ = pane;
  popup(place);
}

void PlotMenu::Fill() {
  FillViews();
  addSeparator();
  FillCursors();
  addSeparator();
  if (Choice().view != study::View::Time) {
    QAction* marker = Do("mnuPlotMarker", tr("Marker at %1...").arg(Text(analysis::HertzText(x_))),
                         [this] { deeds_.addMarker(x_); });
    if (Model().Get().Shown() == nullptr) Grey(marker, tr("no record yet"));
  }
  Do("mnuPlotCopy", tr("Copy picture\tCtrl+C"), [this] { deeds_.carryOut(PlotCommand::Copy); });
  Do("mnuPlotExport", tr("Export picture...\tCtrl+E"),
     [this] { deeds_.carryOut(PlotCommand::Export); });
}

void PlotMenu::FillViews() {
  const AnalyserPlot& plot = deeds_.plot();
  QAction* back = Do("mnuPlotBack", tr("Zoom back\tAlt+Left"), [this] { deeds_.plot().GoBack(); });
  if (!plot.CanGoBack()) Grey(back, tr("no view before this one"));
  QAction* forward =
      Do("mnuPlotForward", tr("Zoom forward\tAlt+Right"), [this] { deeds_.plot().GoForward(); });
  if (!plot.CanGoForward()) Grey(forward, tr("no view after this one"));
  QAction* all = Do("mnuPlotShowAll", tr("Show all\tA"), [this] { deeds_.plot().ShowAll(); });
  if (plot.ShowsAll()) Grey(all, tr("all is shown"));
}

void PlotMenu::FillCursors() {
  AddCursor("mnuPlotNoCursor", tr("No cursor\tN"), CursorKind::None, PlotCommand::CursorNone);
  AddCursor("mnuPlotSingle", tr("Single cursor\tC"), CursorKind::Single, PlotCommand::CursorSingle);
  AddCursor("mnuPlotDelta", tr("Delta cursor\tD"), CursorKind::Delta, PlotCommand::CursorDelta);
  AddCursor("mnuPlotHarmonic", tr("Harmonic cursor\tH"), CursorKind::Harmonic,
            PlotCommand::CursorHarmonic);
  AddCursor("mnuPlotSideband", tr("Sideband cursor\tS"), CursorKind::Sideband,
            PlotCommand::CursorSideband);
}

// A cursor that there was none of begins where the menu was asked for.
void PlotMenu::AddCursor(const char* name, const QString& text, CursorKind kind,
                         PlotCommand command) {
  const CursorKind now = Choice().cursor;
  QAction* action = Do(name, text, [this, command, now, kind] {
    deeds_.carryOut(command);
    if (now == CursorKind::None && kind != CursorKind::None) {
      emit deeds_.plot().CursorPlaced(x_, pane_);
    }
  });
  action->setCheckable(true);
  action->setChecked(now == kind);
  const bool isOfSpectra = kind == CursorKind::Harmonic || kind == CursorKind::Sideband;
  if (Choice().view == study::View::Time && isOfSpectra) Grey(action, tr("of spectra"));
}

}  // namespace kestrel
