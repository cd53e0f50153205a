// A band of the user's: asked for, checked, and told.
// SPDX-License-Identifier: MIT
#include "ui/machine/band_dialog.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <QPushButton>
#include <optional>

namespace kestrel {
namespace {

class BandDialogTest : public ::testing::Test {
 protected:
  BandDialogTest() : dialog_(new BandDialog({9.7, 1000.2})) {
    QObject::connect(dialog_, &BandDialog::Told, [this](const auto& band) { told_ = band; });
  }
  ~BandDialogTest() override { delete dialog_; }
  QLineEdit& Field(const char* name) { return *dialog_->findChild<QLineEdit*>(name); }
  void Add() {
    for (QPushButton* button : dialog_->findChildren<QPushButton*>()) {
      if (button->text() == "Add") button->click();
    }
  }

  QPointer<BandDialog> dialog_;
  std::optional<study::FreeBand> told_;
};

TEST_F(BandDialogTest, ProposesWhatThePlotShows) {
  Add();
  EXPECT_EQ(told_, (study::FreeBand{"Band", 10, 1000}));
}

TEST_F(BandDialogTest, ABandThatEndsBeforeItBeginsIsRefusedWithTheCure) {
  Field("txtBandTo").setText("5");
  Add();
  EXPECT_FALSE(told_);
  EXPECT_TRUE(
      dialog_->findChild<QLabel*>("lblBandWhyNot")->text().contains("larger number for To"));
}

TEST_F(BandDialogTest, WhatIsNoFrequencyIsNotTaken) {
  for (const char* text : {"abc", "-3", "1e999", "1.500,5"}) {
    Field("txtBandFrom").setText(text);
    Add();
    EXPECT_FALSE(told_) << text;
  }
}

}  // namespace
}  // namespace kestrel
