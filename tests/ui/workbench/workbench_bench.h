// The workbench in the analyser of the running program, over an archive of a machine's records.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDoubleSpinBox>
#include <QMessageBox>

#include "alarms/band_table.h"
#include "ui/library/library_bench.h"
#include "ui/workbench/machine_records.h"

namespace kestrel {

class WorkbenchBench : public LibraryBench {
 protected:
  ~WorkbenchBench() override { windows_.reset(); }

  void Put(int good, int bad, int otherRange = 0) {
    Archived().KeepAll(MachineRecords(good, bad, otherRange));
  }
  // The view, with the machine's bands in the alarm editor's table.
  WorkbenchView& OpenWorkbench() {
    ChangeableBands() = MachineBandTable();
    StartKeeping();
    Trigger("mnuAnalyser");
    Analyser().ChooseView(study::View::AlarmBands);
    Settle();
    return View();
  }
  WorkbenchView& View() { return Analyser().Workbench(); }
  WorkbenchModel& Bench() { return View().Model(); }
  static baseline::Part Tagged(baseline::Verdict verdict, const std::string& tag) {
    archive::Filter filter;
    filter.tag = tag;
    return {.verdict = verdict, .name = tag, .filter = filter};
  }
  bool Read() {
    return Gets([this] { return !Bench().IsReading(); });
  }
  // Good and bad ones by their tags.
  WorkbenchView& OpenFilled(int good = 64, int bad = 12, int otherRange = 0) {
    Put(good, bad, otherRange);
    OpenWorkbench();
    Bench().AddPart(Tagged(baseline::Verdict::Good, "good"));
    Bench().AddPart(Tagged(baseline::Verdict::Bad, "outer race"));
    EXPECT_TRUE(Read());
    EXPECT_TRUE(Bench().HasGood()) << Bench().Trouble().toStdString();
    Bench().ChooseCell({3, Axis::Z});
    Settle();
    return View();
  }
  DetailPlot& Detail() { return In<DetailPlot>("detailPlot"); }
  QString Label(const char* name) { return In<QLabel>(name).text(); }
  baseline::Counts Counts() { return Bench().Cell().warnings; }
  frmAlarmSpectrum& Editor() { return Find<frmAlarmSpectrum>("frmAlarmSpectrum"); }
  bool Tells(const QString& part) {
    return Gets([&] { return Label("lblProposalSaid").contains(part); });
  }
};

}  // namespace kestrel
