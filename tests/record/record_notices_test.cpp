// When a record on the screen is not what it seems, and what is said then.
// SPDX-License-Identifier: MIT
#include "record/record_notices.h"

#include <gmock/gmock.h>

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NoticesOf : public testing::Test {
 protected:
  NoticesOf() {
    record.settings = SettingsFromWords(0x1C08, 0);
    record.time = std::chrono::system_clock::from_time_t(1'700'000'000);
    record.conditions.recordCount = 7;
    for (AxisRecord& axis : record.axes) {
      for (int i = 0; i < 512; ++i) axis.raw(i) = 100 + i;
    }
    record = Rescaled(record, 3);
  }
  [[nodiscard]] std::vector<NoticeKind> Kinds(bool lost = false) const {
    std::vector<NoticeKind> kinds;
    for (const auto& notice : RecordNotices(record, {.sensorLost = lost})) {
      kinds.push_back(notice.kind);
    }
    return kinds;
  }
  [[nodiscard]] RecordNotice First() const { return RecordNotices(record, {}).at(0); }
  void Fill(double word) {
    for (AxisRecord& axis : record.axes) {
      for (int i = 0; i < 512; ++i) axis.raw(i) = word;
    }
  }

  Record record;
};

TEST_F(NoticesOf, ARecordThatIsWhatItSeemsHasNone) {
  EXPECT_THAT(Kinds(), IsEmpty());
}

TEST_F(NoticesOf, ARecordThatWasNeverTakenHasNone) {
  record.time = {};
  record.origin.stopped = true;
  EXPECT_THAT(Kinds(true), IsEmpty());
}

TEST_F(NoticesOf, AnotherScaleNamesBothRangesAndOffersTheRecordsOwn) {
  record = Rescaled(record, 1);
  const RecordNotice notice = First();
  EXPECT_EQ(notice.what, "Taken at 0 to 70g, scaled for 0 to 5g");
  EXPECT_EQ(notice.means, "Every value shown is 15.62 times too small.");
  EXPECT_EQ(notice.cure, Cure::UseOwnRange);
  EXPECT_EQ(notice.cureText, "Use 0 to 70g");
  record = Rescaled(record, 3);
  EXPECT_THAT(Kinds(), IsEmpty());
  record.settings = SettingsFromWords(1 << 10, 0);
  EXPECT_EQ(First().means, "Every value shown is 15.62 times too large.");
}

TEST_F(NoticesOf, EveryPairOfRangesAndKindIsTold) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    record.kind = kind;
    for (std::int16_t own = 0; own < 4; ++own) {
      for (std::int16_t used = 0; used < 4; ++used) {
        record.settings = SettingsFromWords(own << 10, 0);
        record = Rescaled(record, used);
        EXPECT_EQ(Kinds().empty(), own == used) << own << " scaled as " << used;
      }
    }
  }
}

TEST_F(NoticesOf, AWeightThatIsNoRangesIsNamedItself) {
  record.lsbWeight = 0.25;
  EXPECT_EQ(First().what, "Taken at 0 to 70g, scaled by 0.25 g a step");
  record.lsbWeight = LsbWeightOf(3, RecordKind::Spectrum) / 1.5;
  EXPECT_EQ(First().means, "Every value shown is 1.50 times too small.");
  record.lsbWeight = LsbWeightOf(3, RecordKind::Spectrum) * 1.5;
  EXPECT_EQ(First().means, "Every value shown is 1.50 times too large.");
  record.lsbWeight = 0;
  EXPECT_EQ(First().means, "All values read as zero.");
}

TEST_F(NoticesOf, AStoppedCaptureWhoseCountDidNotMoveIsTheRecordBefore) {
  record.origin = {.stopped = true, .countBefore = 7, .stored = {}};
  EXPECT_FALSE(record.IsNew());
  const RecordNotice notice = First();
  EXPECT_EQ(notice.kind, NoticeKind::NotNew);
  EXPECT_EQ(notice.what, "The capture was stopped before data were ready");
  EXPECT_EQ(notice.means, "These are the data of the record before.");
  EXPECT_EQ(notice.cure, Cure::CaptureAgain);
}

TEST_F(NoticesOf, AStoppedCaptureThatWasCountedIsNew) {
  record.origin = {.stopped = true, .countBefore = 6, .stored = {}};
  EXPECT_TRUE(record.IsNew());
  EXPECT_THAT(Kinds(), IsEmpty());
}

TEST_F(NoticesOf, AStoppedCaptureWithoutAKnownCountIsNotTakenForNew) {
  record.origin.stopped = true;
  EXPECT_FALSE(record.IsNew());
  EXPECT_EQ(First().means, "These are the data of an earlier record, or none.");
}

TEST_F(NoticesOf, AnEmptyStoredRecordIsNamedAndNotJudgedFurther) {
  record.origin.stored = 5;
  record.settings = SettingsFromWords(0, 0);  // an empty slot has no information either
  for (const double blank : {0.0, 65535.0}) {
    Fill(blank);
    EXPECT_THAT(Kinds(), ElementsAre(NoticeKind::Empty));
    EXPECT_EQ(First().what, "Record 5 of the sensor is empty");
    EXPECT_EQ(First().cure, Cure::None);
  }
  record.kind = RecordKind::Time;
  Fill(-1);
  EXPECT_THAT(Kinds(), ElementsAre(NoticeKind::Empty));
}

TEST_F(NoticesOf, BuffersWithoutARecordAreEmptyToo) {
  Fill(0);
  EXPECT_EQ(First().what, "The sensor's buffers are empty");
  EXPECT_EQ(First().cure, Cure::CaptureAgain);
}

TEST_F(NoticesOf, OneWordThatDiffersIsARecord) {
  Fill(0);
  record.Of(Axis::Z).raw(255) = 1;
  EXPECT_THAT(Kinds(), IsEmpty());
  record.Of(Axis::Z).raw(255) = 0;
  record.Of(Axis::Z).raw(256) = 1;  // beyond a spectrum's last bin
  EXPECT_THAT(Kinds(), ElementsAre(NoticeKind::Empty));
}

TEST_F(NoticesOf, AMagnitudeAtTheTopCodeIsClipped) {
  record.Of(Axis::Y).raw(40) = 65534;
  EXPECT_THAT(Kinds(), IsEmpty());
  record.Of(Axis::Y).raw(40) = 65535;
  EXPECT_EQ(First().what, "Clipped at full scale: Y (1 point)");
  EXPECT_EQ(First().cure, Cure::None) << "there is no higher range";
}

TEST_F(NoticesOf, ATimeSampleAtEitherEndIsClippedAndAHigherRangeOffered) {
  record.kind = RecordKind::Time;
  record.settings = SettingsFromWords(1 << 10, 0);
  record = Rescaled(record, 1);
  record.Of(Axis::X).raw(500) = 32767;
  record.Of(Axis::X).raw(3) = -32768;
  record.Of(Axis::Z).raw(4) = -32768;
  EXPECT_EQ(First().what, "Clipped at full scale: X (2 points), Z (1 point)");
  EXPECT_EQ(First().cure, Cure::UseHigherRange);
  EXPECT_EQ(First().cureText, "Use 0 to 20g");
  record.Of(Axis::X).raw(500) = 32766;
  record.Of(Axis::X).raw(3) = record.Of(Axis::Z).raw(4) = -32767;
  EXPECT_THAT(Kinds(), IsEmpty());
}

TEST_F(NoticesOf, ALostSensorIsTheLeastGraveAndComesLast) {
  record.origin = {.stopped = true, .countBefore = 7, .stored = {}};
  record = Rescaled(record, 0);
  record.Of(Axis::X).raw(1) = 65535;
  EXPECT_THAT(Kinds(true), ElementsAre(NoticeKind::NotNew, NoticeKind::WrongScale,
                                       NoticeKind::Clipped, NoticeKind::SensorLost));
}

}  // namespace
}  // namespace kestrel
