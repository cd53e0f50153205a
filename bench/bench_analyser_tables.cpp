// What the analyser costs beside its plot: a record to all tables, opening it, many records,
// memory. SPDX-License-Identifier: MIT
#include <unistd.h>

#include <QDockWidget>
#include <QSettings>
#include <QTemporaryDir>
#include <cmath>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "display/cursors.h"
#include "display/scene.h"
#include "display/tables.h"
#include "figure.h"
#include "program.h"
#include "record/frequency.h"
#include "support/memory_files.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/analyser/no_host.h"

namespace kestrel {
namespace {

constexpr int kRounds = 51;
constexpr double kTablesMs = 2;
constexpr double kFrameMs = 16;
constexpr double kOpenMs = 150;
constexpr int kSelected = 100;
constexpr QSize kUsual{1600, 900};

// Of the processor's time, which other work on the machine does not add to; all is done in one
// thread.
double SpentMs() {
  return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double MsOf(const std::function<void()>& work) {
  const double start = SpentMs();
  work();
  return SpentMs() - start;
}

double MedianMs(const std::function<void()>& work, int rounds = kRounds) {
  std::vector<double> taken;
  for (int i = 0; i < rounds; ++i) taken.push_back(MsOf(work));
  return Median(taken);
}

// Noise with the harmonics of a bearing and of a shaft on every axis; no two are the same.
class Records {
 public:
  std::shared_ptr<const Record> Next();

 private:
  std::mt19937 random_{1};
  std::time_t time_ = 1'763'750'000;
};

std::shared_ptr<const Record> Records::Next() {
  std::uniform_int_distribution<int> noise(20, 60);
  auto record = std::make_shared<Record>();
  record->time = std::chrono::system_clock::from_time_t(++time_);
  record->settings.window = 1;
  record->settings.averages = 8;
  record->settings.range = record->scaledRange = 3;
  record->lsbWeight = LsbWeightOf(3, RecordKind::Spectrum);
  for (const Axis axis : kAxes) {
    for (int bin = 0; bin < 256; ++bin) {
      const bool isLine = bin % 23 == 17 || bin % 42 == 20;
      const int word = isLine ? 10 * noise(random_) * 256 / (bin + 40) : noise(random_);
      record->Of(axis).raw(bin) = word;
      record->Of(axis).data(bin) = word * record->lsbWeight;
    }
  }
  return record;
}

study::SensorBands Bands() {
  study::SensorBands bands;
  for (auto& axis : bands) {
    for (int band = 0; band < 6; ++band) {
      axis[static_cast<std::size_t>(band)] = {10 + 40 * band, 40 + 40 * band, 2000, 4000};
    }
  }
  return bands;
}

// Everything that has a number is switched on.
void ChooseMuch(study::StudyChoice& choice) {
  choice.focus = Axis::Z;
  choice.up = study::Scale::Logarithmic;
  choice.cursor = study::CursorKind::Harmonic;
  choice.inSpectrum.at = 17 * BinWidth(0);
  choice.showKnown = true;
  choice.machine.rpm = 59'214;
  choice.machine.lineHz = 50;
  choice.machine.meshes = {{"pump", 17}};
  choice.machine.bearings = {{"front", {3.6, 5.4, 2.4, 0.4}, {}}};
  choice.extras = {study::Extra::LinearAverage, study::Extra::MaximumHold};
  choice.bands = {{"low", 600, 2000}, {"high", 10'000, 20'000}};
}

void Settle() {
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

// The tables as values, without a window.
void Values() {
  Records records;
  StudyModel model;
  model.Change(ChooseMuch);
  model.SetSensorBands({{0, Bands()}});
  model.Take(records.Next());
  std::size_t peaks = 0;
  const auto measure = [&](const auto& tell) {
    return MedianMs([&] {
      model.Take(records.Next());
      tell(model.Get());
    });
  };
  const double all = measure([&](const study::Study& study) {
    static_cast<void>(study::SceneOf(study));
    peaks = study::PeaksOf(study).rows.size();
    static_cast<void>(study::LevelsOf(study));
    static_cast<void>(study::BandsOf(study));
    static_cast<void>(study::CursorTableOf(study));
  });
  Print({.name =
             "analyser: a record as spectra, scene, peaks, levels, bands and cursor table, values",
         .measured = Amount(all, 2, "ms"),
         .promise = "at most 2 ms",
         .kept = peaks > 10 && all <= kTablesMs});
  const double spectra = measure([](const study::Study&) {});
  const double scene = measure([](const auto& s) { static_cast<void>(study::SceneOf(s)); });
  const double peak = measure([](const auto& s) { static_cast<void>(study::PeaksOf(s)); });
  const double level = measure([](const auto& s) { static_cast<void>(study::LevelsOf(s)); });
  const double band = measure([](const auto& s) { static_cast<void>(study::BandsOf(s)); });
  const double cursor = measure([](const auto& s) { static_cast<void>(study::CursorTableOf(s)); });
  PrintNote("of these: spectra " + Amount(spectra, 2, "ms") + ", scene " +
            Amount(scene - spectra, 2, "ms") + ", peaks " + Amount(peak - spectra, 2, "ms") +
            ", levels " + Amount(level - spectra, 2, "ms") + ", bands " +
            Amount(band - spectra, 2, "ms") + ", cursor " + Amount(cursor - spectra, 2, "ms"));
}

// At its full size, every dock in sight.
void ShowWhole(frmAnalyser& window) {
  auto* levels = window.findChild<QDockWidget*>("dockLevels");
  for (auto* dock : window.findChildren<QDockWidget*>()) {
    dock->show();
    if (dock != levels && !window.tabifiedDockWidgets(dock).isEmpty()) {
      window.splitDockWidget(levels, dock, Qt::Vertical);
    }
  }
  window.resize(kUsual);
  window.show();
  Settle();
}

void Tables() {
  Records records;
  MemoryFiles files;
  frmAnalyser window(NoHost(files));
  window.Model().Change(ChooseMuch);
  window.Model().SetSensorBands({{0, Bands()}});
  ShowWhole(window);
  for (int i = 0; i < 20; ++i) window.Model().Take(records.Next());
  Settle();
  auto* peaks = window.findChild<QTableView*>("tblPeaks");
  std::vector<double> taken;
  std::vector<double> painted;
  for (int i = 0; i < kRounds; ++i) {
    const auto record = records.Next();
    taken.push_back(MsOf([&] { window.Model().Take(record); }));
    painted.push_back(MsOf(Settle));
  }
  const double plot = MedianMs([&] { window.Area().Plot().repaint(); });
  const double all = Median(taken);
  Print({.name = "analyser: a record to all tables of the window, every dock in sight, 1600 x 900",
         .measured = Amount(all, 2, "ms"),
         .promise = "at most 2 ms",
         .kept = peaks->isVisible() && peaks->model()->rowCount() > 10 && all <= kTablesMs});
  PrintNote("painting the window then: " + Amount(Median(painted), 1, "ms") +
            ", the plot painted alone: " + Amount(plot, 1, "ms"));
}

frmAnalyser* OpenAnalyser() {
  for (QWidget* top : QApplication::topLevelWidgets()) {
    if (auto* analyser = dynamic_cast<frmAnalyser*>(top)) return analyser;
  }
  return nullptr;
}

void Opening() {
  Program program;
  Expose(program.Window());
  Settle();
  const frmAnalyser* none = OpenAnalyser();
  frmAnalyser* window = nullptr;
  const auto open = [&] {
    program.Window().findChild<QAction*>("mnuAnalyser")->trigger();
    window = OpenAnalyser();
    Expose(*window);
    Settle();
  };
  const double first = MsOf(open);
  Print({.name = "analyser: opened for the first time beside the main window, until painted",
         .measured = Amount(first, 0, "ms"),
         .promise = "at most 150 ms",
         .kept = none == nullptr && window->isVisible() && first <= kOpenMs});
}

void ManyRecords() {
  Records records;
  MemoryFiles files;
  frmAnalyser window(NoHost(files));
  ShowWhole(window);
  for (std::size_t i = 0; i < study::kShelfRecords; ++i) window.Model().Take(records.Next());
  std::vector<study::RecordId> ids;
  for (const auto& entry : window.Model().Get().Records().Entries()) {
    if (ids.size() < kSelected) ids.push_back(entry.id);
  }
  const double select = MsOf([&] { window.Model().Select(ids); });
  Settle();
  AnalyserPlot& plot = window.Area().Plot();
  bool isRms = false;
  const double choose = MedianMs([&] {
    isRms = !isRms;
    window.Model().Change([isRms](study::StudyChoice& choice) {
      choice.quantity.amplitude = isRms ? analysis::Amplitude::Rms : analysis::Amplitude::Peak;
    });
  });
  const double scale = MedianMs([&] {
    isRms = !isRms;
    window.Model().Change([isRms](study::StudyChoice& choice) {
      choice.up = isRms ? study::Scale::Logarithmic : study::Scale::Linear;
    });
    plot.repaint();
  });
  int step = 0;
  const int before = plot.TracePaints();
  const auto zoom = [&] {
    plot.ZoomAcross(step++ % 10 < 5 ? 1.2 : 1 / 1.2);
    plot.repaint();
  };
  const double zoomed = MedianMs(zoom);
  const bool isThere = window.Model().Get().Others().size() == kSelected - 1;
  const bool isDrawn = plot.TracePaints() >= before + kRounds;
  Print({.name = "analyser: another quantity with 100 records selected of 2,000",
         .measured = Amount(choose, 1, "ms"),
         .promise = "at most 16 ms",
         .kept = isThere && choose <= kFrameMs});
  Print({.name = "analyser: another scale with 100 records selected, and its plot",
         .measured = Amount(scale, 1, "ms"),
         .promise = "at most 16 ms",
         .kept = isThere && scale <= kFrameMs});
  Print({.name = "analyser: zoom of the window's plot with 100 records selected",
         .measured = Amount(zoomed, 1, "ms") + " a frame",
         .promise = "at most 16 ms",
         .kept = isThere && isDrawn && zoomed <= kFrameMs});
  PrintNote("selecting 100 records: " + Amount(select, 1, "ms"));
}

double ResidentMb() {
  std::ifstream statm("/proc/self/statm");
  double pages = 0;
  statm >> pages >> pages;
  return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

// Shelf and waterfall are full after as many records as the larger of them holds.
void Soak() {
  constexpr int kFull = 10'000;
  constexpr int kMore = 5'000;
  constexpr double kMostMb = 2;
  Records records;
  MemoryFiles files;
  frmAnalyser window(NoHost(files));
  ShowWhole(window);
  const auto take = [&](int count) {
    for (int i = 0; i < count; ++i) {
      window.Model().Take(records.Next());
      if (i % 50 == 0) Settle();
    }
  };
  const double empty = ResidentMb();
  take(static_cast<int>(study::kShelfRecords));
  const double shelf = ResidentMb();
  take(kFull - static_cast<int>(study::kShelfRecords));
  const double full = ResidentMb();
  take(kMore);
  const double growth = ResidentMb() - full;
  const bool isFull = window.Model().Get().Records().Entries().size() == study::kShelfRecords;
  Print({.name = "analyser: memory over 5,000 more records after 10,000",
         .measured = Amount(growth, 1, "MB"),
         .promise = "at most 2 MB",
         .kept = isFull && growth <= kMostMb});
  PrintNote("its memory: empty " + Amount(empty, 0, "MB") + ", 2,000 records " +
            Amount(shelf, 0, "MB") + ", 10,000 taken " + Amount(full, 0, "MB"));
}

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const QTemporaryDir settings;  // of a user who has changed none
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  using namespace kestrel;
  const std::vector<std::pair<std::string, void (*)()>> figures{
      {"memory", Soak},  // first, while nothing that others freed can be used again
      {"opening", Opening},
      {"values", Values},
      {"tables", Tables},
      {"many", ManyRecords}};
  for (const auto& [name, measure] : figures) {
    if (argc < 2 || name == argv[1]) measure();
  }
  return 0;
}
