// What the user does with the sensor, with a fault at one of its transfers.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <QTableWidget>
#include <QToolButton>
#include <algorithm>
#include <map>
#include <set>

#include "acquisition/window_delay.h"
#include "alarms/alarm_file.h"
#include "alarms/band_table.h"
#include "record/capture_data.h"
#include "support/given.h"
#include "ui/all_windows_bench.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/main/adapter_watcher.h"

namespace kestrel {

class FaultBench;

// Something that the user does and that talks to the sensor.
struct Operation {
  std::string name;
  std::function<void(FaultBench&)> press;
  // Puts the windows and the sensor in the state that it begins with.
  std::function<void(FaultBench&)> open = [](FaultBench&) {};
  // What it empties before it fills it again.
  std::set<std::string> clears = {};
  // It looks for the board itself: what it meets, it may tell in other words.
  bool searches = false;
  // A loss is a gap, without a message.
  bool isQuiet = false;
};

// All windows, where faults can be let happen in the middle of an operation.
class FaultBench : public AllWindowsBench {
 public:
  // What the controls show, by window and name. Left out is what differs from reading to reading
  // and what tells about the connection itself.
  using Screen = std::map<std::string, std::string>;

  using WindowBench::Choose;
  using WindowBench::Find;
  using WindowBench::Press;

  ~FaultBench() override { QApplication::processEvents(); }

  template <typename Control = QWidget>
  Control& In(const std::string& window, const char* control) {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top->objectName().toStdString() != window || !top->isVisible()) continue;
      if (auto* found = top->findChild<Control*>(control)) return *found;
    }
    throw std::runtime_error("no control " + window + "." + control);
  }
  RepeatRunner& Repeats() { return Window().Repeats(); }
  void Click(const std::string& window, const char* button) {
    In<QAbstractButton>(window, button).click();
    Settle();
  }
  void Type(const std::string& window, const char* box, const char* text) {
    In<QLineEdit>(window, box).setText(text);
  }
  // A file of other bands than the sensor's, chosen in the alarm editor.
  void ChooseAlarmFile() {
    BandTable table;
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const int field : kBandFields) table(field, band, band % 4) = 20 * band + field;
    }
    files_.contents["/program/AlarmSpectrum_walk.csv"] = AlarmFileText(table);
    List("frmAlarmSpectrum", "cbxAfiles").setEditText("AlarmSpectrum_walk.csv");
  }
  QComboBox& List(const std::string& window, const char* list) {
    return In<QComboBox>(window, list);
  }
  void OpenWindow(const char* item) {
    Trigger(item);
    Settle();
  }
  void CloseWindows() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top != &Window() && top->isVisible()) top->close();
    }
    Settle();
  }
  static void Settle() {
    for (int i = 0; i < 6; ++i) QApplication::processEvents();
  }

 protected:
  // The watch looks at the board at times of its own, which would count as requests.
  void StartQuietly() {
    Start();
    delete Window().findChild<AdapterWatcher*>();
  }

  // The power-up state of the sensor, shown by windows that were opened afresh.
  void Begin(const Operation& operation) {
    usb_.Mend();
    Bound();
    CloseWindows();
    hardware_.Adapter().Unplug(0);
    hardware_.Adapter().Replug(0);
    Given(UsbPresent) = false;
    core_.registers.Use(kUsbAdapter);
    Find<QPushButton>("cmdLostRetry").click();
    ASSERT_TRUE(core_.registers.Reachable());
    operation.open(*this);
    Settle();
    ASSERT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
    frames.clear();
  }

  // A hang would be one pass of the event loop after the other.
  void Bound() {
    loop_.SkipWaits(5000, [this] {
      ADD_FAILURE() << "waits without end";
      Window().close();
    });
  }

  void Let(UsbFault fault, int number) {
    const auto pull = [this] { hardware_.Adapter().Unplug(0); };
    const auto wait = [this, fault] {
      clock_.WaitUntil(clock_.Monotonic() + (fault == UsbFault::Late
                                                 ? std::chrono::milliseconds{2000}
                                                 : std::chrono::milliseconds{1900}));
    };
    if (fault == UsbFault::Unplugged) {
      usb_.FaultAt(number, fault, pull);
    } else if (fault == UsbFault::Late || fault == UsbFault::Slow) {
      usb_.FaultAt(number, fault, wait);
    } else {
      usb_.FaultAt(number, fault);
    }
  }

  [[nodiscard]] Screen ReadScreen() {
    Screen screen;
    for (QWidget* top : QApplication::topLevelWidgets()) {
      // The analyser's numbers are those of the record that it is shown to hold.
      if (!top->isVisible() || top->objectName() == "frmAnalyser") continue;
      for (QWidget* widget : top->findChildren<QWidget*>()) {
        const std::string name = widget->objectName().toStdString();
        if (widget->window() != top || name.empty() || name.starts_with("qt_") || Varies(name))
          continue;
        screen[top->objectName().toStdString() + "." + name] = Shown(*widget).toStdString();
      }
    }
    for (int field = 0; field < 8; ++field) {
      for (int place = 0; place < 24; ++place) {
        screen["band " + std::to_string(field) + " " + std::to_string(place)] = std::to_string(
            AlarmBandTable(kBandFields[static_cast<std::size_t>(field)], place % 6 + 1, place / 6));
      }
    }
    return screen;
  }

  // Nothing waits, nothing is marked as busy, nothing is left open.
  void ExpectIdle() {
    EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
    EXPECT_TRUE(Find<QLabel>("lblCapturingData").isHidden());
    EXPECT_TRUE(Find<QProgressBar>("prgReadout").isHidden());
    EXPECT_EQ(Find<QGroupBox>("FraCap").title(), "Record settings");
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(Window().Edge().Resting());
    EXPECT_EQ(DelayActive, 0);
    EXPECT_EQ(hardware_.Adapter().OpenHandles(), 0U);
    EXPECT_EQ(hardware_.Adapter().HandleErrors(), 0U);
    const auto hidden = [this](const char* name) {
      const auto* widget = Window().findChild<QWidget*>(name);
      return widget == nullptr || !widget->isVisible();
    };
    EXPECT_TRUE(hidden("LbLBusy"));
    EXPECT_TRUE(hidden("cmdCancel"));
    const auto* loop = Window().findChild<QPushButton*>("cmdLoop");
    EXPECT_TRUE(loop == nullptr || loop->text() == "Loop");
    ASSERT_TRUE(Window().isVisible());
    ExpectTruthfulAnalyser();
  }

  // It shows the record at hand; what may be older is said to be.
  void ExpectTruthfulAnalyser() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      auto* analyser = dynamic_cast<frmAnalyser*>(top);
      if (analyser == nullptr || !analyser->isVisible()) continue;
      EXPECT_EQ(In<QToolButton>("frmAnalyser", "cmdCapture").text(), "Capture");
      const study::Measured* shown = analyser->Model().Get().Shown();
      const Record& record = core_.record.Get();
      ASSERT_EQ(shown != nullptr, record.Taken());
      if (shown == nullptr) continue;
      EXPECT_EQ(*shown->record, record);
      for (const auto& notice :
           RecordNotices(record, {.sensorLost = !core_.registers.Reachable()})) {
        if (notice.kind == NoticeKind::WrongScale) continue;  // it has a scale of its own
        EXPECT_TRUE(AnalyserSays(notice.what)) << notice.what;
      }
    }
  }

  bool AnalyserSays(const std::string& text) {
    auto& notices = In<QWidget>("frmAnalyser", "analyserNotices");
    const auto labels = notices.findChildren<QLabel*>();
    return notices.isVisible() &&
           std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
             return label->text().contains(QString::fromStdString(text));
           });
  }

 private:
  static bool Varies(const std::string& name) {
    static const std::set<std::string> kNames{
        "LbLSupply", "LbLTemp",     "lblInterface", "lostNotice",    "lblLost",     "lblLostReason",
        "lblNote",   "lblListNote", "lblmsg",       "lblState",      "lblCounts",   "lblRecCount",
        "cbxAfiles", "lblFinding",  "txtLoopDelay", "cmdLostSelect", "cmdLostRetry"};
    for (const char* start :
         {"txtPK", "txtFreq", "txtRx_", "lblStatusFlag_", "optUsbPort_", "lblBoardType_",
          "lblString", "lblFirmware_", "lblUsbVersion_", "mnu", "Mnu"}) {
      if (name.starts_with(start)) return true;
    }
    return kNames.contains(name);
  }

  static QString Shown(QWidget& widget) {
    if (auto* label = qobject_cast<QLabel*>(&widget)) return label->text();
    if (auto* box = qobject_cast<QLineEdit*>(&widget)) return box->text();
    if (auto* list = qobject_cast<QComboBox*>(&widget)) return list->currentText();
    if (auto* group = qobject_cast<QGroupBox*>(&widget)) return group->title();
    if (auto* text = qobject_cast<QPlainTextEdit*>(&widget))
      return SteadyLines(text->toPlainText());
    if (auto* table = qobject_cast<QTableWidget*>(&widget)) return Cells(*table);
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
      return button->text() + (button->isChecked() ? " checked" : "");
    }
    return {};
  }
  // Without the registers whose values change by themselves.
  static QString SteadyLines(const QString& list) {
    QStringList lines = list.split('\n');
    lines.removeIf([](const QString& line) {
      return line.startsWith("ENDURANCE") || line.startsWith("TIME_STMP") ||
             line.startsWith("SUPPLY_OUT") || line.startsWith("TEMP_OUT");
    });
    return lines.join('\n');
  }
  static QString Cells(const QTableWidget& table) {
    QString text;
    for (int row = 0; row < table.rowCount(); ++row) {
      for (int column = 0; column < table.columnCount(); ++column) {
        if (const auto* item = table.item(row, column)) text += item->text() + '\t';
      }
    }
    return text;
  }
};

}  // namespace kestrel
