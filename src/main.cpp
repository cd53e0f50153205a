// Entry point of the desktop program: reads the command line, makes the seams and starts.
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/system.h"
#include "simulator/signal/scenario.h"
#include "start/fonts_ahead.h"
#include "start/start.h"
#include "ui/analyser/kept_settings.h"
#include "ui/library/record_keeper.h"
#include "ui/main/app_icon.h"
#include "ui/main/demo.h"
#include "ui/main/start_windows.h"
#include "ui/parts/fit_screen.h"
#include "ui/parts/qt_event_loop.h"
#include "ui/parts/qt_seams.h"
#include "ui/watch/desktop_notifier.h"

namespace {

struct Options {
  bool simulate = false;
  bool quickStart = false;
  std::optional<kestrel::Scenario> scenario;  // where one is named
  std::string scenarioName;
  std::optional<QString> demoFolder;
  QString portDevice;
  std::optional<QString> archive;
  bool noArchive = false;
};

// Handles --help, --version and wrong options itself by ending the program.
Options ParseOptions() {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "Bench program for one tri-axial vibration sensor. The interface to the sensor is kept in\n"
      "CommPort.cfg in the working directory.");
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption simulate("simulate", "Use a simulated sensor; no hardware is needed.");
  const QCommandLineOption quick("quick-start",
                                 "Show the main window at once, without the delay's trials.");
  const QCommandLineOption demo(
      "demo",
      "Take captures without a display, and put pictures and data files of them into <folder>: "
      "one in each record mode or, with --scenario, spectra with their alarms.",
      "folder");
  QStringList names;
  for (const std::string& name : kestrel::ScenarioNames()) names << QString::fromStdString(name);
  const QCommandLineOption scenario(
      "scenario", "What the simulated sensor measures: " + names.join(", ") + ".", "name");
  const QCommandLineOption portDevice(
      "port-device", "Use this parallel port, for example /dev/parport1, whatever its address.",
      "device");
  const QCommandLineOption archive(
      "archive",
      "Keep every record in this archive: a file, or postgresql://... on a server. Without this "
      "option it is archive.db in the user's data folder.",
      "place");
  const QCommandLineOption noArchive("no-archive", "Keep no records in an archive.");
  parser.addOptions({simulate, quick, scenario, demo, portDevice, archive, noArchive});
  parser.process(*QCoreApplication::instance());
  if (!parser.positionalArguments().isEmpty()) {
    std::fprintf(stderr, "kestrel: unexpected argument '%s'. --help lists the options.\n",
                 qPrintable(parser.positionalArguments().constFirst()));
    std::exit(1);
  }
  Options options;
  options.simulate = parser.isSet(simulate);
  options.quickStart = parser.isSet(quick);
  if (parser.isSet(scenario)) {
    const auto found = kestrel::ScenarioNamed(parser.value(scenario).toStdString());
    if (!found) {
      std::fprintf(stderr, "kestrel: there is no scenario '%s'. --help lists them.\n",
                   qPrintable(parser.value(scenario)));
      std::exit(1);
    }
    options.scenario = found;
    options.scenarioName = parser.value(scenario).toStdString();
  }
  if (parser.isSet(demo)) options.demoFolder = parser.value(demo);
  options.portDevice = parser.value(portDevice);
  if (parser.isSet(archive)) options.archive = parser.value(archive);
  options.noArchive = parser.isSet(noArchive);
  return options;
}

bool Given(int argc, char** argv, std::initializer_list<const char*> options) {
  for (int i = 1; i < argc; ++i) {
    for (const char* option : options) {
      if (std::strcmp(argv[i], option) == 0) return true;
    }
  }
  return false;
}

bool IsDemo(int argc, char** argv) {
  return std::any_of(argv + 1, argv + argc,
                     [](const char* argument) { return std::strncmp(argument, "--demo", 6) == 0; });
}

// Whether the toolkit has been told where to show windows; it aborts the program otherwise.
bool DisplayKnown(int argc, char** argv) {
  return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
         qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || Given(argc, argv, {"-platform"});
}

// Says of every window that it cannot pass size hints on; nobody needs to know.
void DropOffscreenNotes(QtMsgType type, const QMessageLogContext& /*context*/,
                        const QString& text) {
  if (text.contains("propagateSizeHints") || text.contains("XDG_RUNTIME_DIR")) return;
  std::fprintf(stderr, "%s\n", qPrintable(text));
  if (type == QtFatalMsg) std::abort();
}

// Without windows to look at records in, they are kept only where a place is named.
kestrel::ArchiveChoice ArchiveOf(const Options& options) {
  using kestrel::archive::Place;
  kestrel::ArchiveChoice choice{.usual = kestrel::archive::UsualPlace(kestrel::System::Environment),
                                .program = KESTREL_VERSION,
                                .bench = kestrel::System::ComputerName()};
  if (options.noArchive) return choice;
  if (!options.archive) {
    if (!options.demoFolder) choice.place = choice.usual;
    return choice;
  }
  choice.place = {options.archive->toStdString()};
  if (!choice.place.IsServer()) {
    choice.place.text = QDir(*options.archive).absolutePath().toStdString();
  }
  return choice;
}

int Run(const Options& options, kestrel::FontsAhead& fonts) {
  using namespace kestrel;
  QtMousePointer pointer;
  System system(
      {.portAddress = [] { return PortAddress; },
       .waiting = [&pointer](bool now) { now ? pointer.ShowHourglass() : pointer.ShowDefault(); }});
  system.UsePortDevice(options.portDevice.toStdString());
  iniSystem2(System::Version());
  QtEventLoop loop;
  const bool demo = options.demoFolder.has_value();
  std::unique_ptr<Messages> messages;
  if (demo) {
    AssumeEndlessScreen();
    if (!QDir().mkpath(*options.demoFolder)) {
      std::fprintf(stderr, "The folder %s cannot be made.\n", qPrintable(*options.demoFolder));
      return 1;
    }
    messages = std::make_unique<ConsoleMessages>();
  } else {
    ApplyKeptTheme();
    messages = std::make_unique<QtMessages>();
  }

  SensorRoad road({system.SystemClock(), loop, pointer, *messages, system.SystemFiles(),
                   system.SystemLocale(), system.Devices()});
  if (demo) {
    road.UseFolder(std::filesystem::path(QDir(*options.demoFolder).absolutePath().toStdU16String())
                       .make_preferred());
  }
  const Scenario scenario = options.scenario.value_or(RunningMachine());
  if (options.simulate) road.Simulate(scenario);
  DesktopNotifier notifier;
  QtStartWindows windows(road.core, ControlOf(road, scenario), ArchiveOf(options),
                         {.notifier = &notifier,
                          .letGo = [&system] { system.LetGo(); },
                          .road = {options.scenarioName, options.portDevice.toStdString()}});
  fonts.Wait();
  Main(road.core, windows,
       {.quickStart = options.quickStart,
        .interfaceWithoutConfig = options.simulate ? kUsbAdapter : kNoInterface});
  if (!demo) return QApplication::exec();
  const auto run = options.scenario ? RunAlarmDemo : RunDemo;
  return run(windows.MainWindow(), *options.demoFolder);
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication::setApplicationName("kestrel");
  QCoreApplication::setApplicationVersion(KESTREL_VERSION);
  QGuiApplication::setApplicationDisplayName("");
  if (IsDemo(argc, argv)) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(DropOffscreenNotes);
  }
  if (Given(argc, argv, {"-h", "--help", "-v", "--version"}) || !DisplayKnown(argc, argv)) {
    const QCoreApplication textOnly(argc, argv);
    ParseOptions();
    std::fprintf(stderr, "kestrel: there is no display. --demo FOLDER works without one.\n");
    return 1;
  }
  kestrel::FontsAhead fonts;
  const QApplication application(argc, argv);
  // Desktops that know windows by their desktop file take the icon from there.
  QGuiApplication::setDesktopFileName("io.kestrel.evaluation");
  QApplication::setWindowIcon(kestrel::AppIcon());
  return Run(ParseOptions(), fonts);
}
