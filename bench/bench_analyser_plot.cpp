// What the analyser's plot costs: many traces over the full height beside a well-known plot
// library, zooming and panning over many records. SPDX-License-Identifier: MIT
#include <qcustomplot.h>

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "figure.h"
#include "record/frequency.h"
#include "ui/analyser/waterfall_area.h"
#include "ui/chart/analyser_plot.h"
#include "ui/waterfall/waterfall_view.h"

namespace {

constexpr int kPoints = 256;
constexpr int kRounds = 31;
constexpr double kFrameMs = 16;
constexpr QSize kUsual{1600, 900};
constexpr QSize kFine{3840, 2160};

using Values = std::vector<std::vector<double>>;

// Every value anywhere between 0 and 1: long, steep segments.
Values FullHeight(int traces) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> value(0, 1);
  Values values(static_cast<std::size_t>(traces), std::vector<double>(kPoints));
  for (auto& trace : values)
    std::generate(trace.begin(), trace.end(), [&] { return value(random); });
  return values;
}

// Alternately at either end: the longest segments there can be.
Values Sawtooth(int traces) {
  Values values = FullHeight(traces);
  for (auto& trace : values) {
    for (std::size_t i = 0; i < trace.size(); ++i) {
      trace[i] = i % 2 == 0 ? trace[i] * 0.02 : 1 - trace[i] * 0.02;
    }
  }
  return values;
}

// A noise floor with a few lines, as a machine has it.
Values Machine(int records) {
  Values values = FullHeight(records);
  for (auto& record : values) {
    for (std::size_t i = 0; i < record.size(); ++i) {
      record[i] = 0.01 + 0.02 * record[i] + (i % 42 == 20 ? 0.7 * record[i] : 0);
    }
  }
  return values;
}

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

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double MedianMs(const std::function<void()>& work) {
  std::vector<double> taken;
  for (int i = 0; i < kRounds; ++i) taken.push_back(MsOf(work));
  return Median(taken);
}

std::vector<double> Bins() {
  std::vector<double> x;
  for (int i = 0; i < kPoints; ++i) x.push_back(i);
  return x;
}

kestrel::PlotScene Scene(const Values& values, kestrel::TraceStyle style) {
  kestrel::PlotScene scene;
  scene.across.title = "Frequency, Hz";
  scene.across.whole = {0, kPoints - 1};
  scene.panes.resize(1);
  scene.panes[0].range = kestrel::PlotRange{0, 1};
  for (std::size_t i = 0; i < values.size(); ++i) {
    kestrel::SceneTrace trace;
    trace.ink = static_cast<kestrel::PlotInk>(i % 3);
    trace.style = style;
    trace.x = Bins();
    trace.y = values[i];
    scene.panes[0].traces.push_back(std::move(trace));
  }
  return scene;
}

void Show(QWidget& widget, QSize size) {
  widget.resize(size);
  widget.show();
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

// The library's own cheapest antialiased pen.
std::unique_ptr<QCustomPlot> Peer(const Values& values) {
  auto plot = std::make_unique<QCustomPlot>();
  plot->setAntialiasedElements(QCP::aeAll);
  QVector<double> x;
  for (const double bin : Bins()) x << bin;
  for (const auto& trace : values) {
    QCPGraph* graph = plot->addGraph();
    graph->setPen(QPen(QColor(0, 95, 168), 0));
    graph->setData(x, QVector<double>(trace.begin(), trace.end()), true);
  }
  plot->xAxis->setRange(0, kPoints - 1);
  plot->yAxis->setRange(0, 1);
  return plot;
}

// From the record in hand to the screen: layout, ground and traces drawn anew each time. Ours and
// the peer's by turns, so that other work on the machine disturbs both.
void Compare(const char* what, const Values& values, QSize size) {
  const std::unique_ptr<QCustomPlot> theirPlot = Peer(values);
  kestrel::AnalyserPlot ourPlot;
  Show(*theirPlot, size);
  Show(ourPlot, size);
  const kestrel::PlotScene scene = Scene(values, kestrel::TraceStyle::Live);
  std::vector<double> ours;
  std::vector<double> peers;
  for (int i = 0; i < kRounds; ++i) {
    ours.push_back(MsOf([&] {
      ourPlot.SetScene(scene);
      ourPlot.repaint();
    }));
    peers.push_back(MsOf([&] { theirPlot->replot(QCustomPlot::rpImmediateRefresh); }));
  }
  const double our = Median(ours);
  const double peer = Median(peers);
  const std::string name = "analyser: " + std::to_string(values.size()) + " x 256 points, " + what +
                           ", " + std::to_string(size.width()) + " x " +
                           std::to_string(size.height()) + ", 1.5 px antialiased";
  kestrel::Print(
      {.name = name,
       .measured = kestrel::Amount(our, 1, "ms"),
       .peer = "QCustomPlot, cheapest antialiased pen: " + kestrel::Amount(peer, 1, "ms"),
       .ratio = our / peer,
       .promise = "at most 1 x",
       .kept = our <= peer});
}

void Frames(const char* what, const kestrel::PlotScene& scene) {
  kestrel::AnalyserPlot plot;
  Show(plot, kUsual);
  plot.SetScene(scene);
  int step = 0;
  const int before = plot.TracePaints();
  const double zoom = MedianMs([&] {
    plot.ZoomAcross(step++ % 10 < 5 ? 1.2 : 1 / 1.2);
    plot.repaint();
  });
  const double pan = MedianMs([&] {
    const double low = 20 + step++ % 10;
    plot.ShowAcross({low, low + 150});
    plot.repaint();
  });
  const double worst = std::max(zoom, pan);
  const bool isDrawn = plot.TracePaints() >= before + 2 * kRounds;
  kestrel::Print({.name = std::string("analyser: zoom and pan, 100 overlaid records, ") + what,
                  .measured = kestrel::Amount(worst, 1, "ms") + " a frame",
                  .promise = "at most 16 ms",
                  .kept = isDrawn && worst <= kFrameMs});
}

kestrel::PlotScene CrowdScene(const Values& values) {
  kestrel::PlotScene scene = Scene({}, kestrel::TraceStyle::Live);
  scene.panes[0].crowd = kestrel::PlotCrowd{"100 records", kestrel::PlotInk::Z, Bins(), values};
  return scene;
}

// From the record in hand to the screen, with the map full.
void Waterfall() {
  constexpr int kMost = 10000;
  constexpr double kPromisedMs = 2;
  constexpr double kPromisedBytes = 60e6;
  kestrel::WaterfallView view;
  kestrel::PlotAcross across;
  across.title = "Frequency, Hz";
  across.whole = {0, kPoints - 1};
  view.Begin(across, Bins());
  Show(view, kUsual);
  const Values records = Machine(64);
  double time = 1.7e9;
  const auto add = [&] {
    time += 1;
    return view.AddRow(time, records[static_cast<std::size_t>(time) % records.size()]);
  };
  for (int i = 0; i < kMost; ++i) add();
  view.repaint();
  bool isAdded = true;
  const double spent = MedianMs([&] {
    isAdded = add() && isAdded;
    view.repaint();
  });
  kestrel::Print({.name = "waterfall: a new row, 1600 x 900",
                  .measured = kestrel::Amount(spent, 2, "ms"),
                  .promise = "at most 2 ms",
                  .kept = isAdded && spent <= kPromisedMs});
  const auto bytes = static_cast<double>(view.Rows().Bytes());
  const bool isFull = view.Rows().Count() == kMost;
  kestrel::Print({.name = "waterfall: 10,000 rows in memory",
                  .measured = kestrel::Amount(bytes / 1e6, 1, "MB"),
                  .promise = "at most 60 MB",
                  .kept = isFull && bytes <= kPromisedBytes});
}

kestrel::Record RecordAt(double time, const std::vector<double>& words) {
  kestrel::Record record;
  record.time = std::chrono::system_clock::from_time_t(static_cast<std::time_t>(time));
  record.settings.window = 1;
  record.settings.range = record.scaledRange = 3;
  record.lsbWeight = kestrel::LsbWeightOf(3, kestrel::RecordKind::Spectrum);
  for (const kestrel::Axis axis : kestrel::kAxes) {
    for (int bin = 0; bin < kPoints; ++bin) {
      const double word = std::round(1000 * words[static_cast<std::size_t>(bin)]);
      record.Of(axis).raw(bin) = word;
      record.Of(axis).data(bin) = word * record.lsbWeight;
    }
  }
  return record;
}

// From the capture to the screen with everything around the map: spectrum, level over time.
void WaterfallWithItsSpectrum() {
  constexpr int kThere = 2000;
  kestrel::StudyModel model;
  model.Change([](kestrel::study::StudyChoice& choice) {
    choice.view = kestrel::study::View::Waterfall;
    choice.cursor = kestrel::study::CursorKind::Single;
    choice.inSpectrum.at = 40 * kestrel::BinWidth(0);
  });
  kestrel::WaterfallArea area(model);
  const Values records = Machine(64);
  double time = 1.7e9;
  const auto add = [&] {
    time += 1;
    model.Take(std::make_shared<const kestrel::Record>(
        RecordAt(time, records[static_cast<std::size_t>(time) % records.size()])));
  };
  for (int i = 0; i < kThere; ++i) add();
  Show(area, kUsual);
  area.repaint();
  const double spent = MedianMs([&] {
    add();
    area.repaint();
  });
  const bool isAdded = area.Map().Rows().Count() == kThere + kRounds && area.Rebuilds() == 1;
  kestrel::PrintNote("waterfall with its spectrum and level over time, a new record, 1600 x 900: " +
                     kestrel::Amount(spent, 1, "ms") + (isAdded ? "" : ", MISSING ROWS"));
}

void BesideThePeer() {
  for (const QSize size : {kUsual, kFine}) {
    for (const int traces : {3, 50}) {
      Compare("anywhere in the full height", FullHeight(traces), size);
      Compare("end to end over the full height", Sawtooth(traces), size);
    }
  }
}

void ManyRecords() {
  Frames("a line each, spectra", Scene(Machine(100), kestrel::TraceStyle::Held));
  Frames("a line each, full height", Scene(FullHeight(100), kestrel::TraceStyle::Held));
  Frames("least to largest and median, full height", CrowdScene(FullHeight(100)));
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const std::vector<std::pair<std::string, void (*)()>> figures{
      {"peer", BesideThePeer},
      {"many", ManyRecords},
      {"waterfall", Waterfall},
      {"spectrum", WaterfallWithItsSpectrum}};
  for (const auto& [name, measure] : figures) {
    if (argc < 2 || name == argv[1]) measure();
  }
  return 0;
}
