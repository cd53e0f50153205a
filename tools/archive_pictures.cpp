// Pictures of the views that look at the archive: weeks of a machine whose bearing wears.
// SPDX-License-Identifier: MIT
#include "archive_pictures.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <chrono>
#include <cmath>
#include <random>
#include <type_traits>
#include <vector>

#include "archive/archive.h"
#include "archive/journal.h"
#include "record/frequency.h"
#include "simulator/simulated_hardware.h"
#include "station/station.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/temporary_database.h"
#include "ui/watch/fake_monitor.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Moment = std::chrono::system_clock::time_point;

constexpr int kGood = 104;
constexpr int kWorn = 14;
constexpr auto kEvery = 6h;
constexpr double kLoadDb = 0.3;  // by which the load of the machine varies
constexpr int kHeadBand = 3;     // the bearing's

Moment First() {
  return std::chrono::sys_days{std::chrono::year{2026} / 10 / 21} + 6h;
}

// Captures of a machine, without waiting.
std::vector<Record> Captures(const Scenario& scenario, int count) {
  FakeClock clock;
  MemoryFiles files;
  SimulatedHardware hardware(clock, scenario);
  FixedLocale locale;
  Station station({.clock = clock,
                   .files = files,
                   .locale = locale,
                   .hardware = {&hardware.Adapter(), &hardware.Port(), &hardware.Service()},
                   .watch = {}});
  if (!station.Connect()) throw std::runtime_error("no simulated sensor");
  std::vector<Record> records;
  for (int i = 0; i < count; ++i) {
    const auto captured = station.Records().Capture();
    if (!captured) throw std::runtime_error(captured.Why().text);
    records.push_back(captured->record);
  }
  return records;
}

// As a load taken at random would have it.
Record WithLoad(Record record, std::mt19937& random) {
  const double gain = std::pow(10, std::normal_distribution<double>(0, kLoadDb)(random) / 20);
  for (const Axis axis : kAxes) {
    for (int bin = 0; bin < static_cast<int>(record.Points()); ++bin) {
      auto& word = record.Of(axis).raw(bin);
      word = static_cast<std::remove_reference_t<decltype(word)>>(std::lround(word * gain));
      record.Of(axis).data(bin) = word * record.lsbWeight;
    }
  }
  return record;
}

std::vector<archive::NewRecord> SpindleRecords() {
  std::mt19937 random(7);
  std::vector<archive::NewRecord> records;
  const auto add = [&records, &random](const std::vector<Record>& captures, const char* tag) {
    for (const Record& capture : captures) {
      const auto at = static_cast<int>(records.size());
      archive::NewRecord record{.uid = archive::NewUid(),
                                .record = WithLoad(capture, random),
                                .remarks = {.machine = "Spindle 2",
                                            .point = "Front bearing",
                                            .rpm = 59'214,
                                            .tags = {tag}},
                                .program = KESTREL_VERSION,
                                .bench = "Hall 3"};
      record.record.time = First() + at * kEvery;
      if (at == kGood + 4) record.remarks.note = "Hums at full speed";
      records.push_back(record);
    }
  };
  add(Captures(RunningMachine(), kGood), "good");
  add(Captures(BearingFault(), kWorn), "worn");
  return records;
}

std::vector<archive::NewRecord> FanRecords() {
  std::vector<archive::NewRecord> records;
  for (const Record& capture : Captures(BroadbandMachine(), 12)) {
    const auto at = static_cast<int>(records.size());
    records.push_back({.uid = archive::NewUid(),
                       .record = capture,
                       .remarks = {.machine = "Fan, hall 1", .point = "Drive end", .rpm = 1480},
                       .program = KESTREL_VERSION,
                       .bench = "Hall 3"});
    records.back().record.time = First() + 25 * 24h + 3h + at * 10h;
  }
  return records;
}

std::vector<archive::JournalEntry> Journal() {
  const auto entry = [](const char* kind, const char* text, auto began, auto lasted, int missed) {
    archive::JournalEntry one = Lasting(kind, text, First() + began);
    one.bench = "Hall 3";
    one.sensor = "Spindle 2";
    one.ended = one.began + lasted;
    one.missed = missed;
    return one;
  };
  return {entry("sensor away", "Ezusb-0 is not attached. Plug it in.", 49h, 31min, 0),
          entry("archive away",
                "The archive cannot be reached; records wait in a file on this "
                "computer.",
                300h, 7h, 0),
          entry("not running", "The monitor was stopped and started again.", 410h, 20min, 0)};
}

constexpr const char* kPlan =
    "# A plan for the monitor.\n"
    "bench = Hall 3\nsensor = Spindle 2\nconnect = usb\n"
    "every = 6 h\nmachine = Spindle 2\npoint = Front bearing\n"
    "\n[capture]\nrange = 70\noption = 0\nwindow = hanning\naverages = 8\n"
    "\n[judge]\nalarm = 3 of 5\n";

void DrawLibrary(Gallery& gallery, frmAnalyser& window) {
  window.ChooseView(study::View::Library);
  auto* table = window.findChild<LibraryTable*>("tblLibrary");
  WaitUntil("the library", [&] { return table->model()->rowCount() == kGood + kWorn + 12; });
  table->setCurrentIndex(table->model()->index(6, 0));
  gallery.Add("library.png", window);
}

void DrawWaterfall(Gallery& gallery, frmAnalyser& window) {
  window.resize(kAnalyserSize + QSize(0, 60));  // room for the map
  auto* machine = window.findChild<QComboBox*>("cbxLibraryMachine");
  machine->setCurrentIndex(machine->findText("Spindle 2"));
  auto* table = window.findChild<LibraryTable*>("tblLibrary");
  WaitUntil("one machine", [&] { return table->model()->rowCount() == kGood + kWorn; });
  Settle();
  table->selectAll();
  Settle();
  window.findChild<QAbstractButton*>("cmdWaterfall")->click();
  Settle(2000);
  window.Model().Change([](study::StudyChoice& choice) {
    choice.focus = Axis::Z;
    choice.up = study::Scale::Logarithmic;
    choice.showKnown = choice.showLabels = choice.showBands = false;
  });
  window.Area().Commands().CarryOut(PlotCommand::CursorSingle);
  gallery.Add("waterfall.png", window);
}

void DrawTrend(Gallery& gallery, frmAnalyser& window) {
  window.ChooseView(study::View::Trend);
  window.Model().Change([](study::StudyChoice& choice) { choice.focus = Axis::Z; });
  auto* machine = window.findChild<QComboBox*>("cbxTrendMachine");
  WaitUntil("the machines", [&] { return machine->findText("Spindle 2") >= 0; });
  machine->setCurrentIndex(machine->findText("Spindle 2"));
  TrendView& view = window.Trend();
  view.ChooseLevel({.of = archive::TrendOf::BandPeak,
                    .fromHz = 39.5 * BinWidth(0),
                    .toHz = 44.5 * BinWidth(0),
                    .name = "Band 3",
                    .band = kHeadBand});
  WaitUntil("the levels", [&] {
    return view.Source()->Data().Shown().size() == static_cast<std::size_t>(kGood + kWorn);
  });
  view.FocusPlot();
  QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
  QApplication::sendEvent(&view.Plot(), &end);
  auto* open = window.findChild<QAbstractButton*>("cmdTrendOpen");
  WaitUntil("the record at the cursor", [&] { return open->isEnabled(); });
  Settle(500);
  gallery.Add("trend.png", window);
}

void DrawWorkbench(Gallery& gallery, frmAnalyser& window) {
  window.ChooseView(study::View::AlarmBands);
  WorkbenchModel& model = window.Workbench().Model();
  archive::Filter filter;
  filter.tag = "good";
  model.AddPart({.verdict = baseline::Verdict::Good, .name = {}, .filter = filter});
  filter.tag = "worn";
  model.AddPart({.verdict = baseline::Verdict::Bad, .name = "outer race", .filter = filter});
  WaitUntil("the baseline", [&] { return !model.IsReading() && model.HasGood(); });
  model.ChooseCell({kHeadBand, Axis::Z});
  gallery.Add("alarm_bands.png", window);
}

void DrawMonitor(Gallery& gallery, Studio& studio, frmAnalyser& window, FakeMonitor& fake) {
  window.ChooseView(study::View::Monitor);
  MonitorView& view = window.Monitor();
  studio.TheFiles().contents["/plans/spindle2.plan"] = kPlan;
  view.Open("/plans/spindle2.plan");
  view.StartOrStop();
  Settle();
  const Moment last = First() + (kGood + kWorn - 1) * kEvery;
  monitor::Account account{.doing = monitor::Account::Doing::Waiting,
                           .isConnected = true,
                           .nextIn = 4327.0,
                           .lastRecord = last,
                           .records = kGood + kWorn,
                           .alarms = {Lasting("alarm",
                                              "Fault 3, Z, option 0, of the sensor: 1.31 g, limit "
                                              "1.24 g",
                                              last - 3 * kEvery)}};
  fake.Tell(account);
  WaitUntil("the journal", [&] { return view.Incidents().Rows().size() == 4; });
  WaitUntil("its levels", [&] {
    return view.Trend().Data().Shown().size() == static_cast<std::size_t>(kGood + kWorn);
  });
  gallery.Add("monitor.png", window);
  view.StartOrStop();
  fake.End();
}

void DrawWide(Gallery& gallery) {
  const TemporaryFile own;
  Studio studio(BroadbandMachine(), {.place = {own.Name()}});
  studio.Choose("cbxFFTAvgs", 4);
  studio.Choose("cbxSignalRange", 0);
  frmAnalyser& window = studio.OpenAnalyser(kAnalyserSize);
  window.ChooseView(study::View::Wide);
  window.Model().Change([](study::StudyChoice& choice) { choice.machine = {}; });
  auto* capture = window.findChild<QAbstractButton*>("cmdCapture");
  capture->click();
  Settle(1000);
  WaitUntil("the wide captures", [&] { return capture->text() != "Stop"; });
  Settle(1000);
  gallery.Add("wide.png", window);
}

}  // namespace

void DrawArchive(Gallery& gallery) {
  TemporaryFile kept;
  {
    archive::Archive archive(kept.Connect());
    archive.KeepAll(SpindleRecords());
    archive.KeepAll(FanRecords());
    PutEntries(archive, Journal());
  }
  FakeMonitor fake;
  Studio studio(BearingFault(), {.place = {kept.Name()}, .program = KESTREL_VERSION},
                {.make = fake.Make()});
  studio.Open("mnuAlarmSpectrum", "frmAlarmSpectrum").close();
  frmAnalyser& window = studio.OpenAnalyser(kAnalyserSize);
  DrawLibrary(gallery, window);
  DrawTrend(gallery, window);
  DrawWorkbench(gallery, window);
  DrawMonitor(gallery, studio, window, fake);
  window.ChooseView(study::View::Library);
  DrawWaterfall(gallery, window);
  DrawWide(gallery);
}

}  // namespace kestrel
