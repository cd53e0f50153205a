// The settings of the data log, by their window.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmFileDir.h"
#include "support/given.h"

#include <QPointer>

#include "logging/data_log.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class FrmFileDir : public WindowBench {
 protected:
  // The window lives for one edit.
  QPointer<frmFileDir> Open() {
    if (windows_ == nullptr) Start();
    Trigger("mnuDatalog");
    return &Find<frmFileDir>("frmFileDir");
  }
  void TypeName(const char* name) { Find<QLineEdit>("txtFileName").setText(name); }

  // Windows that were unloaded are gone after this.
  static void Settle() {
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
};

TEST_F(FrmFileDir, LoadsWithTheStartSettings) {
  Open();
  EXPECT_EQ(BoxText("txtFileName"), "DATALOG");
  EXPECT_EQ(Text("lblFileNumber"), "1");
  EXPECT_EQ(Text("lblFileExtension"), ".csv  ");
  EXPECT_EQ(Text("lblFolder"), "/program");
  EXPECT_TRUE(Find<QRadioButton>("OpDataFormatScaled").isChecked());
  EXPECT_FALSE(Find<QRadioButton>("opDataFormatLSB").isChecked());
}

TEST_F(FrmFileDir, LoadsWithTheSettingsThatHold) {
  Given(DataLogName) = "pump 7";
  Given(DataLogIndex) = 32767;
  Given(DataFormatLSB) = true;
  locale_.decimalMark = ',';
  files_.readOnly.insert("/program");
  Open();
  EXPECT_EQ(BoxText("txtFileName"), "pump 7");
  EXPECT_EQ(Text("lblFileNumber"), "32767");
  EXPECT_EQ(Text("lblFileExtension"), ".txt  ");
  EXPECT_EQ(Text("lblFolder"), "/documents");
  EXPECT_TRUE(Find<QRadioButton>("opDataFormatLSB").isChecked());
}

TEST_F(FrmFileDir, OkKeepsTheSettingsAndUnloadsTheWindow) {
  const auto window = Open();
  TypeName("Prüfstand 泵");
  Find<QRadioButton>("opDataFormatLSB").click();
  Press("cmdOK");
  Settle();
  EXPECT_TRUE(window.isNull());
  EXPECT_EQ(DataLogName, "Prüfstand 泵");
  EXPECT_TRUE(DataFormatLSB);
  Open();
  EXPECT_EQ(BoxText("txtFileName"), "Prüfstand 泵");
  EXPECT_TRUE(Find<QRadioButton>("opDataFormatLSB").isChecked());
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmFileDir, AnEmptyNameIsRefusedAndTheWindowStays) {
  Given(DataLogName) = "pump";
  const auto window = Open();
  TypeName("");
  Press("cmdOK");
  Settle();
  EXPECT_EQ(messages_.Texts(), Words{"Please enter a file name or press CANCEL"});
  ASSERT_FALSE(window.isNull());
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(DataLogName, "pump");
}

TEST_F(FrmFileDir, ANameWithASeparatorIsRefusedWithTheName) {
  const auto window = Open();
  TypeName("../pump");
  Press("cmdOK");
  Settle();
  EXPECT_EQ(messages_.Texts(),
            Words{"File name ../pump: the character / cannot stand in a file name."});
  EXPECT_FALSE(window.isNull());
  TypeName("pump");
  Press("cmdOK");
  Settle();
  EXPECT_TRUE(window.isNull());
  EXPECT_EQ(DataLogName, "pump");
}

TEST_F(FrmFileDir, CancelEscapeAndTheCloseButtonTakeTheChangesBack) {
  using Way = std::function<void(frmFileDir&)>;
  const Way ways[] = {[this](frmFileDir&) { Press("cmdCancel"); },
                      [](frmFileDir& window) { QTest::keyClick(&window, Qt::Key_Escape); },
                      [](frmFileDir& window) { window.close(); }};
  Given(DataLogName) = "pump";
  for (const Way& leave : ways) {
    const auto window = Open();
    TypeName("fan");
    EXPECT_EQ(DataLogName, "fan");
    Find<QRadioButton>("opDataFormatLSB").click();
    leave(*window);
    Settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(DataLogName, "pump");
    EXPECT_FALSE(DataFormatLSB);
  }
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmFileDir, TheIndexIsResetAndShown) {
  Given(DataLogIndex) = 9;
  Open();
  Press("cmdReSetFileIndex");
  EXPECT_EQ(DataLogIndex, 1);
  EXPECT_EQ(Text("lblFileNumber"), "1");
}

TEST_F(FrmFileDir, TheFormatHoldsAtOnce) {
  Open();
  Find<QRadioButton>("opDataFormatLSB").click();
  EXPECT_TRUE(DataFormatLSB);
  Find<QRadioButton>("OpDataFormatScaled").click();
  EXPECT_FALSE(DataFormatLSB);
}

TEST_F(FrmFileDir, CapturesFollowTheSettings) {
  Open();
  TypeName("pump");
  Find<QRadioButton>("opDataFormatLSB").click();
  Press("cmdOK");
  Settle();
  Find<QCheckBox>("ckDataLog").click();
  for (int i = 0; i < 3; ++i) Press("cmdReadBuffer");
  ASSERT_EQ(files_.contents.count("/program/pump_3.csv"), 1U);
  EXPECT_EQ(files_.contents["/program/pump_3.csv"].substr(0, 18), "File Name,pump.csv");
  Open();
  EXPECT_EQ(Text("lblFileNumber"), "4");
}

TEST_F(FrmFileDir, AFullSeriesIsToldAndResettingTheIndexLetsItGoOn) {
  Start();
  Find<QCheckBox>("ckDataLog").click();
  Given(DataLogIndex) = 32767;
  for (int i = 0; i < 2; ++i) {
    messages_.Clear();
    Press("cmdReadBuffer");
    EXPECT_EQ(messages_.Texts(), Words{"cmdReadBuffer_Click\nOverflow"});
    EXPECT_EQ(files_.contents.count("/program/Datalog_32767.csv"), 1U);
  }
  messages_.Clear();
  Open();
  Press("cmdReSetFileIndex");
  Press("cmdOK");
  Settle();
  Press("cmdReadBuffer");
  EXPECT_TRUE(messages_.Texts().empty());
  EXPECT_EQ(files_.contents.count("/program/DATALOG_1.csv"), 1U);
}

TEST_F(FrmFileDir, CancelTakesAResetBackSoThatNoFileIsReplaced) {
  Given(DataLogIndex) = 9;
  Open();
  Press("cmdReSetFileIndex");
  Press("cmdCancel");
  Settle();
  EXPECT_EQ(DataLogIndex, 9);
}

// Whether a press or a key reaches the main window while this one is open.
TEST_F(FrmFileDir, StopAndEscapeOfARunningCaptureStayAtHand) {
  Start();
  using Way = std::function<void()>;
  for (const Way& stop : {Way([this] { QTest::mouseClick(&Find("cmdStart"), Qt::LeftButton); }),
                          Way([this] { QTest::keyClick(&Window(), Qt::Key_Escape); })}) {
    Choose("cbxFFTAvgs", 200);
    Open();
    EXPECT_FALSE(QApplication::activeModalWidget());
    QString afterwards;
    During(50, [&] {
      stop();
      afterwards = Find<QPushButton>("cmdStart").text();
    });
    Press("cmdStart");
    EXPECT_EQ(afterwards, "Start");
    Press("cmdCancel");
    Settle();
  }
}

TEST_F(FrmFileDir, ThereIsOneAtATime) {
  const auto window = Open();
  TypeName("pump 7");
  Open();
  EXPECT_EQ(Window().findChildren<frmFileDir*>().size(), 1);
  EXPECT_EQ(BoxText("txtFileName"), "pump 7");
}

TEST_F(FrmFileDir, EarlierFilesThatWillBeReplacedAreCounted) {
  files_.contents["/program/DATALOG_2.csv"] = "earlier";
  Open();
  EXPECT_EQ(Text("lblInTheWay"),
            "Earlier files with this or a higher number, which new ones will replace: 1.");
  TypeName("pump");
  EXPECT_EQ(Text("lblInTheWay"), "");
}

}  // namespace
}  // namespace kestrel
