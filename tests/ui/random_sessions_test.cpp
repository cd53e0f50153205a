// Captures while somebody presses, opens, changes and unplugs whatever there is.
// SPDX-License-Identifier: MIT
// Captures in the real windows while somebody presses, opens, closes, changes and unplugs whatever
// there is, at any pass of the event loop.

#include <algorithm>

#include "record/capture_data.h"
#include "support/given.h"
#include "ui/random_use_bench.h"

namespace kestrel {
namespace {

constexpr int kCaptures = 8;
constexpr int kStopMs = 300;       // when the user loses patience
constexpr int kMostPasses = 2000;  // of one capture, whatever is done meanwhile

class Session : public RandomUseBench {
 public:
  explicit Session(Random& random) : random_(random) {
    loop_.Hurry();
    loop_.AtPass([this] { return NextDeed(); });
  }
  void TestBody() override {}

  void Go() {
    // A second board stands beside the one that is chosen.
    if (random_.OneIn(3)) hardware_.Adapter().SetBoard(1, {});
    Start();
    ChooseShortCaptures();
    Settle();
    for (int i = 0; i < kCaptures && Window().isVisible() && !HasFailure(); ++i) {
      SCOPED_TRACE("capture " + std::to_string(i));
      Prepare();
      Press("cmdStart");
      EXPECT_LE(loop_.Passes() - firstPass_, kMostPasses);
      disturbed_ = false;
      Settle();
      Check();
      if (Window().isVisible()) Recover();
    }
    windows_.reset();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  }

 private:
  void Prepare() {
    Find<QCheckBox>("ckDataLog").setChecked(random_.OneIn(2));
    Find<QCheckBox>("ckAutoPlot").setChecked(!random_.OneIn(4));
    messages_.Clear();
    done_.clear();
    losses_ = 0;
    files_.failure = random_.OneIn(8) ? "no space left" : "";
    earlierFiles_ = files_.contents;
    firstPass_ = loop_.Passes();
    deedsLeft_ = random_.Below(14);
    nextDeed_ = random_.Below(4);
    impatient_ = false;
    disturbed_ = true;
    LosePatience();
  }

  void LosePatience() {
    QTimer::singleShot(kStopMs, &Window(), [this] { impatient_ = true; });
  }

  // Handlers run inside handlers, as deep as the windows allow.
  std::function<void()> NextDeed() {
    if (!disturbed_ || !Window().isVisible()) return {};
    if (impatient_) {
      impatient_ = false;
      return [this] { StopIfCapturing(); };
    }
    if (deedsLeft_ == 0 || --nextDeed_ > 0) return {};
    --deedsLeft_;
    nextDeed_ = random_.Below(5);
    return [this] { Do(); };
  }

  void StopIfCapturing() {
    if (Find<QPushButton>("cmdStart").text() == "Stop") Press("cmdStart");
    LosePatience();
  }

  void Do() {
    QWidget* modal = QApplication::activeModalWidget();
    switch (random_.Below(12)) {
      case 0:
      case 1:
        return Note("press"), modal == nullptr ? Press("cmdStart") : void(modal->close());
      case 2:
        return Note("Escape"), QTest::keyClick(modal ? modal : &Window(), Qt::Key_Escape);
      case 3:
      case 4:
        return Note("open"), OpenWithoutWriting();
      case 5:
        return Note("close"), CloseADialog();
      case 6:
        return Unplug();
      case 7:
        usb_.Mend();
        hardware_.Adapter().Replug(1);
        return Note("replug"), hardware_.Adapter().Replug(0);
      case 8:
        if (!random_.OneIn(3)) return;
        return Leave();
      default:
        return ClickAnything();
    }
  }

  // At once, or in the middle of what is sent next.
  void Unplug() {
    ++losses_;
    if (random_.OneIn(2))
      return Note("unplug"), hardware_.Adapter().Unplug(random_.OneIn(4) ? 1 : 0);
    const int request = random_.Between(1, 1 << random_.Between(1, 12));
    Note("unplug at request " + std::to_string(request));
    usb_.FailFrom(request);
  }

  void Leave() {
    Note("leave");
    EXPECT_TRUE(Window().close());
    frames.clear();
  }

  void Note(const std::string& deed) { done_ += deed + "; "; }

  void ClickAnything() {
    std::vector<QWidget*> widgets = Clickable();
    if (widgets.empty()) return;
    QWidget* widget = random_.Of(widgets);
    const QString name = widget->objectName();
    // Numbers begin anew by it, and files are replaced then.
    if (name == "cmdReSetFileIndex") return;
    Note(name.toStdString());
    Click(widget, random_);
  }

  void OpenWithoutWriting() {
    const int passes = loop_.Passes();
    frames.clear();
    OpenSomething(random_);
    if (loop_.Passes() != passes) return;  // others were at work meanwhile
    EXPECT_EQ(Writes(), std::vector<int>{}) << done_;
  }

  void CloseADialog() {
    std::vector<QWidget*> open;
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && qobject_cast<QDialog*>(window) != nullptr) open.push_back(window);
    }
    if (!open.empty()) random_.Of(open)->close();
  }

  void Check() {
    SCOPED_TRACE(done_);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(DelayActive, 0);
    EXPECT_EQ(hardware_.Adapter().OpenHandles(), 0U);
    EXPECT_EQ(hardware_.Adapter().HandleErrors(), 0U);
    if (Window().isVisible()) {
      EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
      EXPECT_TRUE(Find<QLabel>("lblCapturingData").isHidden());
      EXPECT_TRUE(Find<QProgressBar>("prgReadout").isHidden());
    } else {
      EXPECT_EQ(frames, std::vector<int>{}) << "after the window was closed";
    }
    CheckMessages();
    CheckFiles();
    for (int i = 0; i <= Buff.width; ++i) {
      ASSERT_EQ(DataX(i), RawX(i) * LsbWeight) << i;
      ASSERT_EQ(DataY(i), RawY(i) * LsbWeight) << i;
      ASSERT_EQ(DataZ(i), RawZ(i) * LsbWeight) << i;
    }
  }

  // What a search for the adapter says when the plug is out, or pulled meanwhile.
  [[nodiscard]] bool IsOfASearch(const std::string& text) const {
    static const std::set<std::string> kTexts{"No USB Buffers Found, Please Verify Setup.",
                                              "Error getting Board Info", "Error Setting SPI Bits",
                                              "Error Setting up SPI"};
    const bool otherBoard = text.starts_with("Ezusb-") && text.find(" is gone. ") != text.npos;
    return losses_ > 0 && (otherBoard || kTexts.contains(text));
  }

  // One box for one pulled plug.
  void CheckMessages() {
    int lost = 0;
    for (const std::string& text : messages_.Texts()) {
      if (text == "Error Writing SPI" || text == "Error Reading SPI") {
        ++lost;
      } else if (text.find("no space left") == std::string::npos && !IsOfASearch(text)) {
        EXPECT_TRUE(HasACause(text)) << text;
      }
    }
    EXPECT_LE(lost, losses_) << testing::PrintToString(messages_.Texts());
  }

  // Every file is whole, bears the next number and is never written again.
  void CheckFiles() {
    for (const auto& [path, content] : files_.contents) {
      const std::string name = path.filename().string();
      if (!name.starts_with("Datalog_") && !name.starts_with("DATALOG_")) continue;
      const auto before = earlierFiles_.find(path);
      if (before != earlierFiles_.end()) {
        EXPECT_EQ(before->second, content) << name;
        continue;
      }
      const auto lines = std::count(content.begin(), content.end(), '\n');
      EXPECT_TRUE(lines == 12 + 256 || lines == 12 + 512) << name << ": " << lines;
      EXPECT_TRUE(content.ends_with("\r\n")) << name;
    }
    EXPECT_EQ(NumbersOfFiles(), Counted());
  }

  [[nodiscard]] std::vector<int> NumbersOfFiles() const {
    std::vector<int> numbers;
    for (const auto& [path, content] : files_.contents) {
      const std::string name = path.stem().string();
      if (name.starts_with("Datalog_") || name.starts_with("DATALOG_")) {
        numbers.push_back(std::stoi(name.substr(8)));
      }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
  }
  [[nodiscard]] static std::vector<int> Counted() {
    std::vector<int> numbers;
    for (int number = 1; number < DataLogIndex; ++number) numbers.push_back(number);
    return numbers;
  }

  // The sensor starts afresh, is selected again, and delivers.
  void Recover() {
    SCOPED_TRACE("afterwards: " + done_);
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (qobject_cast<QDialog*>(window) != nullptr) window->close();
    }
    usb_.Mend();
    hardware_.Adapter().Unplug(0);
    hardware_.Adapter().Replug(0);
    core_.registers.Use(kUsbAdapter);
    Given(UsbPresent) = false;
    Settle();
    Press("cmdReadBuffer");  // finds the adapter again
    Choose("cbxRecMode", 0);
    ChooseShortCaptures();
    Find<QCheckBox>("ckAutoPlot").setChecked(true);
    messages_.Clear();
    files_.failure.clear();
    Settle();
    const RecordArray before = RawX;
    Press("cmdStart");
    EXPECT_EQ(Text("lblStatusFlag_7"), "SET");
    EXPECT_NE(RawX, before);
    EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
    EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  }

  Random& random_;
  std::string done_;
  int losses_ = 0;
  int firstPass_ = 0;
  int deedsLeft_ = 0;
  int nextDeed_ = 0;
  bool disturbed_ = false;  // something is done meanwhile
  bool impatient_ = false;
  std::map<std::filesystem::path, std::string> earlierFiles_;
};

TEST(RandomSessions, WhateverIsDoneMeanwhileACaptureEndsWellAndTheNextOneWorks) {
  WithSeeds(6, [](Random& random) { Session(random).Go(); });
}

}  // namespace
}  // namespace kestrel
