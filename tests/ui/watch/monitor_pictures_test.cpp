// Pictures of the monitor's view, light and dark, at two pixel ratios, beside approved ones.
// SPDX-License-Identifier: MIT
#include <ostream>
#include <random>

#include "support/fake_clock.h"
#include "support/memory_files.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/approved_picture.h"
#include "ui/archive_pictures.h"
#include "ui/made_up_records.h"
#include "ui/rendering.h"
#include "ui/watch/fake_monitor.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

constexpr const char* kPlan =
    "# A plan for the monitor. Sections [capture], [wide] are taken in turn.\n"
    "bench = Hall 3\nsensor = Pump 7\nconnect = usb\nevery = 10 min\npoint = drive end\n"
    "\n[capture]\nrange = 5\noption = 0\nwindow = hanning\naverages = 8\n"
    "\n[wide]\naverages = 4\n"
    "\n[judge]\nalarm = 3 of 5\nseverity = group 1, rigid\n";

enum class Scene { Empty, Mistakes, Running, Ended };

struct Sight {
  const char* name;
  Scene scene;
  bool isDark;
  double ratio;
  QSize size{1280, 720};
  int font = 12;
};

void PrintTo(const Sight& sight, std::ostream* out) {
  *out << sight.name << (sight.isDark ? "dark" : "light") << sight.ratio;
}

// Midnight of an earlier day, so that dates are shown.
std::chrono::system_clock::time_point Base() {
  return std::chrono::sys_days{std::chrono::year{2026} / 3 / 14};
}

class MonitorPictures : public ::testing::TestWithParam<Sight> {
 protected:
  static std::vector<archive::JournalEntry> Journal() {
    const auto entry = [](const char* kind, const char* text, auto began, auto lasted, int missed) {
      archive::JournalEntry one = Lasting(kind, text, Base() + began);
      one.bench = "Hall 3";
      one.sensor = "Pump 7";
      one.ended = one.began + lasted;
      one.missed = missed;
      return one;
    };
    return {
        entry("sensor away", "Ezusb-0 is not attached. Plug it in.", 2h, 31min, 3),
        entry("settings changed", "The sensor had other settings: averages 1; put back.",
              2h + 31min, 0s, 0),
        entry("alarm", "Warning 3, Z, option 0, of the sensor: 0.91 g, limit 0.88 g", 5h, 2h, 0),
        entry("broker away", "The broker cannot be reached.", 9h, 4min, 0),
        entry("not running", "The monitor was stopped and started again.", 11h, 20min, 2)};
  }
  // Every ten minutes; the line of Z grows.
  static std::vector<archive::NewRecord> Records() {
    std::mt19937 random(7);
    std::vector<archive::NewRecord> records;
    for (int i = 0; i < 82; ++i) {
      if (i > 12 && i < 16) continue;
      const int noise = static_cast<int>(random() % 60);
      records.push_back({archive::NewUid(),
                         MadeUpSpectrum(600 * i, {{42, 600 + noise + 5 * std::max(i - 40, 0)}}),
                         {.machine = "Pump 7"},
                         "0.1.0",
                         "Hall 3"});
      records.back().record.time = Base() + 600s * i;
    }
    return records;
  }
  static monitor::Account Account() {
    monitor::Account account{.doing = monitor::Account::Doing::Waiting,
                             .isConnected = true,
                             .nextIn = 247.0,
                             .lastRecord = Base() + 13h + 40min + 12s,
                             .records = 1284,
                             .missed = 5,
                             .incidents = {Lasting("archive away",
                                                   "The archive cannot be reached; records wait "
                                                   "in a file on this computer.",
                                                   Base() + 13h + 35min)},
                             .alarms = {Lasting("alarm",
                                                "Fault 3, Z, option 0, of the sensor: 1.31 g, "
                                                "limit 1.22 g",
                                                Base() + 13h + 20min)}};
    account.incidents[0].missed = 1;
    return account;
  }
  void Show(const Sight& sight, frmAnalyser& window) {
    MonitorView& view = window.Monitor();
    if (sight.scene == Scene::Empty) return;
    QString text = kPlan;
    if (sight.scene == Scene::Mistakes) {
      text.replace("every = 10 min", "every = often").replace("range = 5", "range = 7");
      text.replace("alarm = 3 of 5", "alarm = 6 of 5");
    }
    files_.contents["/plans/pump7.plan"] = text.toStdString();
    view.Open("/plans/pump7.plan");
    if (sight.scene == Scene::Mistakes) return view.StartOrStop();
    view.StartOrStop();
    fake_.Tell(Account());
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.Incidents().Rows().size() == 7; }, 20'000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return view.Trend().Data().Shown().size() == 79; }, 20'000));
    if (sight.scene != Scene::Ended) return;
    fake_.hears.complaint("Hall 3's archive is of a later version of this program.");
    fake_.End({.code = 1});
  }

  ArchivePictures world_{Records()};
  MemoryFiles files_;
  FakeClock clock_;
  FakeMonitor fake_;
  RecordingNotifier notifier_;
};

TEST_P(MonitorPictures, LookAsApproved) {
  const Sight& sight = GetParam();
  QFont font = QApplication::font();
  font.setPixelSize(sight.font);
  QApplication::setFont(font);
  ApplyTheme(sight.isDark ? Theme::Dark : Theme::Light);
  {
    auto archive = archive::Open(world_.Place());
    PutEntries(archive, Journal());
  }
  CurrentRecord record;
  RecordKeeper keeper(record, {.place = world_.Place()});
  MonitorRunner runner(clock_, {.make = fake_.Make()});
  AlarmTeller teller(runner, &notifier_);
  AnalyserHost host{files_, [] {}, [] {}, [](int) {}, [](Cure) {}, [] {}, [] {}, &keeper};
  host.monitor = {.runner = &runner, .teller = &teller};
  frmAnalyser window(host);
  window.SetSensor(
      sight.scene == Scene::Running ? "The monitor has the sensor" : "USB adapter Ezusb-0", {});
  window.resize(sight.size);
  window.show();
  window.ChooseView(study::View::Monitor);
  Show(sight, window);
  QTest::qWait(300);
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  EXPECT_EQ(window.size(), sight.size);
  const QString name = QStringLiteral("%1-%2-%3.png")
                           .arg(QLatin1String(sight.name), sight.isDark ? "dark" : "light")
                           .arg(sight.ratio);
  ExpectApproved(RenderOf(window, sight.ratio), name, sight.ratio, KESTREL_APPROVED);
}

INSTANTIATE_TEST_SUITE_P(
    All, MonitorPictures,
    ::testing::Values(Sight{"empty", Scene::Empty, false, 1}, Sight{"empty", Scene::Empty, true, 1},
                      Sight{"mistakes", Scene::Mistakes, false, 1},
                      Sight{"mistakes", Scene::Mistakes, true, 2},
                      Sight{"running", Scene::Running, false, 1},
                      Sight{"running", Scene::Running, true, 1},
                      Sight{"running", Scene::Running, false, 2},
                      Sight{"running", Scene::Running, true, 2, QSize(1440, 900)},
                      Sight{"large", Scene::Running, false, 1, QSize(1280, 720), 18},
                      Sight{"ended", Scene::Ended, false, 1}));

}  // namespace
}  // namespace kestrel
