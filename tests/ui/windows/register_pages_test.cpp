// The register window's pages on paper.
// SPDX-License-Identifier: MIT
#include "ui/windows/register_pages.h"

#include <gtest/gtest.h>

#include "device/manual_register.h"
#include "regmap/register_table.h"
#include "support/reset_program.h"

namespace kestrel {
namespace {

class RegisterPagesTest : public testing::Test {
 protected:
  RegisterPagesTest() { BuildRegisterTable(); }
  ~RegisterPagesTest() override { ResetProgram(); }

  static QString Printed(std::int16_t row, std::optional<std::int32_t> word) {
    return MakeDocument({.title = "Title\r\n3/14/2024  9:26:53 AM\r\n",
                         .row = row,
                         .word = word,
                         .hex = "1030",
                         .scaled = "4144",
                         .list = "A\t1\r\nB\t2\r\n"})
        ->toPlainText();
  }
};

TEST_F(RegisterPagesTest, HoldTitleChosenRegisterItsFieldsAndTheList) {
  const QString text = Printed(row::REC_CTRL, 0x1030);
  EXPECT_TRUE(text.startsWith("Title\n3/14/2024  9:26:53 AM\n"));
  EXPECT_TRUE(
      text.contains("REC_CTRL    address 1C    hexadecimal 1030    scaled 4144    bits 0001 "
                    "0000 0011 0000"));
  EXPECT_TRUE(text.contains("13:12\nWindowing\n1  Hanning [default]\n"));
  EXPECT_TRUE(text.endsWith("\nA\t1\nB\t2\n"));
}

TEST_F(RegisterPagesTest, WithoutAChosenRegisterOnlyTheListIsPrinted) {
  EXPECT_EQ(Printed(kNoRegister, std::nullopt), "Title\n3/14/2024  9:26:53 AM\n\nA\t1\nB\t2\n");
}

TEST_F(RegisterPagesTest, ARegisterThatWasNotReadShowsNoValue) {
  const QString text = Printed(row::COMMAND, std::nullopt);
  EXPECT_TRUE(text.contains("COMMAND    address 3E\n"));
  EXPECT_FALSE(text.contains("hexadecimal"));
}

}  // namespace
}  // namespace kestrel
