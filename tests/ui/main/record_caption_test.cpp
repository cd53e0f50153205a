// The line under the plot: which record is shown, and what about it is not as it seems.
// SPDX-License-Identifier: MIT
#include "ui/plot/record_caption.h"

#include <QRegularExpression>

#include "record/capture_data.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

class RecordCaptionOf : public WindowBench {
 protected:
  // The notice of a kind that is seen under the plot; empty for none.
  QString Noticed(NoticeKind kind) {
    const auto* row =
        Window().findChild<QWidget*>(QString("notice_record%1").arg(static_cast<int>(kind)));
    if (row == nullptr || !row->isVisible()) return {};
    return row->accessibleName();
  }
  void PressCure(NoticeKind kind) {
    Press(QString("cmdNotice_record%1").arg(static_cast<int>(kind)).toLatin1().constData());
  }
  bool IsAmber() { return Find("recordNotices").isVisible(); }
};

TEST_F(RecordCaptionOf, SaysNothingBeforeTheFirstRecord) {
  Start();
  EXPECT_EQ(Text("lblRecordLine"), "");
  EXPECT_FALSE(IsAmber());
}

TEST_F(RecordCaptionOf, SaysHowTheRecordWasTakenAndTheTipSaysAllOfIt) {
  Start();
  Choose("cbxFFTAvgs", 4);
  Press("cmdStart");
  const QRegularExpression line(
      QString::fromUtf8("^Spectrum, 0 to 70 g, Hanning, 4 averages, option 0, \u0394f 195\\.7 Hz, "
                        "(\\d{4}-\\d\\d-\\d\\d )?\\d\\d:\\d\\d:\\d\\d$"));
  EXPECT_TRUE(line.match(Text("lblRecordLine")).hasMatch()) << Text("lblRecordLine").toStdString();
  EXPECT_GE(Find<QLabel>("lblRecordLine").toolTip().count('\n'), 5);
  EXPECT_FALSE(IsAmber());
  Choose("cbxWindow", 2);
  EXPECT_TRUE(Text("lblRecordLine").contains("Hanning")) << "the record's own, not the setting";
  Choose("cbxRecMode", 2);
  Press("cmdStart");
  EXPECT_TRUE(Text("lblRecordLine").startsWith("Time record, 0 to 70 g, "));
}

TEST_F(RecordCaptionOf, ARecordScaledByAnotherRangeSaysSoAndTheCureScalesItByItsOwn) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  Choose("cbxSignalRange", 1);
  EXPECT_FALSE(IsAmber()) << "what is shown is still scaled as it was taken";
  Press("cmdReadBuffer");
  EXPECT_TRUE(Noticed(NoticeKind::WrongScale).startsWith("Taken at 0 to 70g, scaled for 0 to 5g."));
  EXPECT_EQ(DataX(5), RawX(5) * 0.0000763) << "the present setting scales what is read";
  PressCure(NoticeKind::WrongScale);
  EXPECT_EQ(DataX(5), RawX(5) * 0.0011921);
  EXPECT_FALSE(IsAmber());
}

TEST_F(RecordCaptionOf, ACaptureThatWasStoppedShowsTheRecordBeforeAndSaysSo) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  Choose("cbxFFTAvgs", 255);
  During(50, [this] { Press("cmdStart"); });
  Press("cmdStart");
  EXPECT_FALSE(Noticed(NoticeKind::NotNew).isEmpty());
  ChooseShortCaptures();
  PressCure(NoticeKind::NotNew);
  EXPECT_EQ(Text("lblRecCount"), "2");
  EXPECT_FALSE(IsAmber());
}

TEST_F(RecordCaptionOf, ANoticeThatIsClosedStaysClosedForThisRecord) {
  Start();
  Press("cmdReadBuffer");
  Find<QAbstractButton>("cmdNoticeClose_record1").click();
  EXPECT_FALSE(IsAmber());
  Press("CmdReadStatus");
  EXPECT_FALSE(IsAmber());
  Press("cmdReadBuffer");
  EXPECT_FALSE(Noticed(NoticeKind::Empty).isEmpty()) << "another record";
}

TEST_F(RecordCaptionOf, BuffersThatHoldNothingSaySo) {
  Start();
  Press("cmdReadBuffer");
  EXPECT_FALSE(Noticed(NoticeKind::Empty).isEmpty());
}

TEST_F(RecordCaptionOf, AClippedRecordSaysSoAndTheCureTakesTheNextRange) {
  Start();
  Choose("cbxSignalRange", 0);
  ChooseShortCaptures();
  Press("cmdStart");
  Record record = core_.record.Get();
  record.Of(Axis::Z).raw(20) = 65535;
  core_.record.HandOver(record);
  EXPECT_TRUE(Noticed(NoticeKind::Clipped).startsWith("Clipped at full scale: Z (1 point)."));
  PressCure(NoticeKind::Clipped);
  EXPECT_EQ(Find<QComboBox>("cbxSignalRange").currentIndex(), 1);
}

TEST_F(RecordCaptionOf, ASensorLostSinceIsSaidUntilItIsBack) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  hardware_.Adapter().Unplug(0);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QFrame>("lostNotice").isVisible(); }));
  EXPECT_TRUE(Noticed(NoticeKind::SensorLost).startsWith("The sensor was lost since."));
  hardware_.Adapter().Replug(0);
  Press("cmdLostRetry");
  EXPECT_TRUE(Noticed(NoticeKind::SensorLost).isEmpty());
}

}  // namespace
}  // namespace kestrel
