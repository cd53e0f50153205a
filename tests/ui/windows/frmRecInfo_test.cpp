// The window of the record information.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmRecInfo.h"

#include "regmap/register_table.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class FrmRecInfo : public WindowBench {
 protected:
  frmRecInfo& Open() {
    Trigger("mnuRecInfo");
    return Find<frmRecInfo>("frmRecInfo");
  }

  // Bits, title, value and setting of a row, 1 to 4.
  Words Row(int index) {
    Words texts;
    for (const char* name : {"lblBits", "lblParam", "lblValue", "lblSetting"}) {
      texts.push_back(Text(QString("%1_%2").arg(name).arg(index).toUtf8()).toStdString());
    }
    return texts;
  }
};

TEST_F(FrmRecInfo, ShowsTheWordAndItsFourFields) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  Open();
  EXPECT_EQ(Text("lblHex"), "1C01   ");
  EXPECT_EQ(Row(4), (Words{"15:14  ", "Sample Rate Option  ", "0  ", "SR0 (FS / 1)  "}));
  EXPECT_EQ(Row(3), (Words{"13:12  ", "Windowing  ", "1  ", "Hanning [default]  "}));
  EXPECT_EQ(Row(2), (Words{"11:10  ", "Signal Range  ", "3  ", "0 - 70g [default]  "}));
  EXPECT_EQ(Row(1), (Words{"8:0  ", "FFT Averages  ", "1  ", "1  "}));
}

TEST_F(FrmRecInfo, TheRowsStandOneBelowTheOtherAsTheirBitsDo) {
  Start();
  Open();
  QApplication::processEvents();
  for (int row = 4; row > 1; --row) {
    const auto y = [this](int index) {
      return Find<QLabel>(QString("lblParam_%1").arg(index).toUtf8()).y();
    };
    EXPECT_LT(y(row), y(row - 1));
  }
}

// No record yet: the word is 0, which counts as one average beside what was read.
TEST_F(FrmRecInfo, WithoutARecordOneAverageStandsBesideNone) {
  Start();
  Open();
  EXPECT_EQ(Text("lblHex"), "0   ");
  EXPECT_EQ(Row(1), (Words{"8:0  ", "FFT Averages  ", "1  ", "0  "}));
}

TEST_F(FrmRecInfo, IsReadAgainByItsButtonAndWheneverItIsOpened) {
  Start();
  frmRecInfo& window = Open();
  const auto record = [this](int averages) {
    core_.registers.WriteReg(row::FFT_AVG, averages);
    Press("cmdStart");
  };
  record(2);
  EXPECT_EQ(Row(1)[3], "0  ") << "what is shown changes only when it is read";
  window.findChild<QPushButton*>("cmdRead")->click();
  EXPECT_EQ(Row(1)[3], "2  ");
  window.findChild<QPushButton*>("cmdClose")->click();
  EXPECT_FALSE(window.isVisible());
  record(3);
  Press("cmdRecInfo");
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(Row(1)[3], "3  ");
  EXPECT_EQ(Window().findChildren<frmRecInfo*>("frmRecInfo").size(), 1);
}

TEST_F(FrmRecInfo, ALostSensorGivesOneMessageAndLeavesWhatIsShown) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  frmRecInfo& window = Open();
  usb_.FailFrom(1);
  window.findChild<QPushButton*>("cmdRead")->click();
  EXPECT_EQ(messages_.Texts(), Words{"Error Writing SPI"});
  EXPECT_EQ(Text("lblHex"), "1C01   ");
  EXPECT_EQ(Text("lblInterface"), "USB adapter lost");
}

TEST_F(FrmRecInfo, WithoutAnInterfaceItStaysEmpty) {
  files_.contents.clear();
  Start();
  messages_.Clear();
  EXPECT_TRUE(Open().isVisible());
  EXPECT_EQ(Text("lblHex"), "");
  EXPECT_EQ(Row(4), (Words{"", "", "", ""}));
  EXPECT_TRUE(messages_.Texts().empty());
}

}  // namespace
}  // namespace kestrel
