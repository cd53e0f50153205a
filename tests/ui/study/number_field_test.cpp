// Numbers as the user's locale writes them; what is none is said and changes nothing.
// SPDX-License-Identifier: MIT
#include "ui/study/number_field.h"

#include <QSignalSpy>

namespace kestrel {
namespace {

const QLocale kEnglish(QLocale::English, QLocale::UnitedStates);
const QLocale kGerman(QLocale::German, QLocale::Germany);

TEST(NumberIn, ReadsTheLocalesOwnWriting) {
  EXPECT_EQ(NumberIn(kEnglish, "1,500.5"), 1500.5);
  EXPECT_EQ(NumberIn(kGerman, "1.500,5"), 1500.5);
  EXPECT_EQ(NumberIn(kEnglish, " 59214 "), 59214);
  EXPECT_EQ(NumberIn(kEnglish, QStringLiteral("−3")), -3);
  EXPECT_EQ(NumberIn(QLocale(QLocale::Arabic, QLocale::Egypt), QStringLiteral("١٥٠٠")), 1500);
}

TEST(NumberIn, TakesNothingElseForANumber) {
  for (const char* text : {"", " ", "abc", "1.500,5", "1e999", "nan", "inf", "12 rpm", "1,5,0"}) {
    EXPECT_EQ(NumberIn(kEnglish, text), std::nullopt) << text;
  }
  EXPECT_EQ(NumberIn(kGerman, "1,500.5"), std::nullopt);
}

class NumberFieldTest : public ::testing::Test {
 protected:
  NumberFieldTest() {
    field_.setLocale(kEnglish);
    field_.SetNumber(1500.0);
  }
  void Type(const QString& text) {
    field_.Edit().selectAll();
    QTest::keyClicks(&field_.Edit(), text);
    if (text.isEmpty()) QTest::keyClick(&field_.Edit(), Qt::Key_Delete);
    QTest::keyClick(&field_.Edit(), Qt::Key_Return);
  }

  NumberField field_{QStringLiteral("speed"),
                     QStringLiteral("Speed"),
                     {QStringLiteral("speed"), QStringLiteral("above 0 to 100 rpm"),
                      [](double n) { return n > 0 && n <= 10'000; }}};
};

TEST_F(NumberFieldTest, ANumberIsTakenAndTold) {
  QSignalSpy entered(&field_, &NumberField::Entered);
  Type("2,000.5");
  ASSERT_EQ(entered.count(), 1);
  EXPECT_EQ(entered[0][0].toDouble(), 2000.5);
  EXPECT_EQ(field_.Edit().text(), "2,000.5");
  Type("2000.5");
  EXPECT_EQ(field_.Edit().text(), "2,000.5");
}

TEST_F(NumberFieldTest, WhatIsNoneKeepsTheNumberAndSaysWhatWouldDo) {
  QSignalSpy entered(&field_, &NumberField::Entered);
  for (const QString text : {"0", "-3", "1e999", "1.500,5", "abc", "20000"}) {
    Type(text);
    EXPECT_EQ(field_.Number(), 1500.0);
    EXPECT_EQ(field_.Edit().text(), "1,500");
    EXPECT_EQ(field_.Message(), text + " is not a valid speed: above 0 to 100 rpm");
  }
  Type("");
  EXPECT_EQ(field_.Message(), "Nothing is not a valid speed: above 0 to 100 rpm");
  EXPECT_EQ(entered.count(), 0);
  Type("7");
  EXPECT_EQ(field_.Message(), "");
}

TEST_F(NumberFieldTest, AnotherLocaleWritesAndReadsItsOwnWay) {
  Type("1234.5");
  field_.setLocale(kGerman);
  EXPECT_EQ(field_.Edit().text(), "1.234,5");
  Type("1.500,5");
  EXPECT_EQ(field_.Number(), 1500.5);
}

TEST_F(NumberFieldTest, LeavingItUntouchedKeepsAllDigits) {
  field_.SetNumber(100.0 / 3);
  QSignalSpy entered(&field_, &NumberField::Entered);
  QTest::keyClick(&field_.Edit(), Qt::Key_Return);
  EXPECT_EQ(field_.Number(), 100.0 / 3);
  EXPECT_EQ(entered.count(), 0);
}

}  // namespace
}  // namespace kestrel
