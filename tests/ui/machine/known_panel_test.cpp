// Known frequencies told by hand: speed, mains, gears, bearings, and what cannot be seen.
// SPDX-License-Identifier: MIT
#include "ui/machine/known_panel.h"

#include <QDir>
#include <QSignalSpy>

#include "ui/chart/look.h"
#include "ui/machine/bearing_dialog.h"
#include "ui/machine/part_dialog.h"
#include "ui/made_up_records.h"
#include "ui/rendering.h"

namespace kestrel {
namespace {

class KnownPanelTest : public ::testing::Test {
 protected:
  KnownPanelTest() {
    panel_.setPalette(Look::Light().Palette());
    panel_.setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    panel_.resize(360, 520);
    model_.Change([](study::StudyChoice& choice) { choice.focus = Axis::Z; });
    panel_.show();
  }
  template <typename Widget>
  Widget* Find(const char* name) {
    auto* found = panel_.findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void Type(const char* name, const QString& text) {
    auto* edit = Find<QLineEdit>(name);
    edit->selectAll();
    if (text.isEmpty()) QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
  }
  void Choose(const char* name, int index) {
    auto* list = Find<QComboBox>(name);
    list->setCurrentIndex(index);
    emit list->activated(index);
  }
  void Press(const char* name) {
    auto* button = Find<QAbstractButton>(name);
    QTest::mouseClick(button, Qt::LeftButton);
  }
  QTableWidgetItem* Item(const QString& name) {
    const auto found = Find<QTableWidget>("knownTable")->findItems(name, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : found.front();
  }
  const analysis::Machine& Machine() const { return model_.Choice().machine; }

  StudyModel model_;
  KnownPanel panel_{model_};
};

TEST_F(KnownPanelTest, TheFirstSpeedIsTakenAndShown) {
  Type("shaftSpeed", "59,214");
  EXPECT_EQ(Machine().rpm, 59214);
  EXPECT_TRUE(model_.Choice().showKnown);
  ASSERT_NE(Item("Shaft"), nullptr);
  Type("shaftSpeed", "");
  EXPECT_FALSE(Machine().rpm);
}

TEST_F(KnownPanelTest, ASpeedThatIsNoneChangesNothing) {
  Type("shaftSpeed", "1500");
  for (const QString text : {"0", "-3", "1e999", "1.500,5", "abc", "10000001"}) {
    Type("shaftSpeed", text);
    EXPECT_EQ(Machine().rpm, 1500);
    EXPECT_EQ(Find<QLabel>("shaftSpeedMessage")->text(),
              text + " is not a valid speed: above 0 to 10,000,000 rpm");
  }
}

TEST_F(KnownPanelTest, TheSpeedComesFromThePeakOrSaysThatThereIsNone) {
  Press("speedFromPeak");
  EXPECT_FALSE(Machine().rpm);
  EXPECT_NE(Find<QLabel>("shaftSpeedMessage")->text(), "");
  TakeRecord(model_, MadeUpSpectrum(0, {{39, 500}, {40, 1000}, {41, 500}}));
  Press("speedFromPeak");
  ASSERT_TRUE(Machine().rpm);
  EXPECT_NEAR(*Machine().rpm, 40 * BinWidth(0) * 60, BinWidth(0) * 6);
}

TEST_F(KnownPanelTest, TheMainsAreFiftySixtyOrTheUsers) {
  Choose("mains", 1);
  EXPECT_EQ(Machine().lineHz, 50);
  Choose("mains", 2);
  EXPECT_EQ(Machine().lineHz, 60);
  EXPECT_FALSE(Find<QLineEdit>("ownMains")->isVisible());
  Choose("mains", 3);
  EXPECT_TRUE(Find<QLineEdit>("ownMains")->isVisible());
  Type("ownMains", "16.7");
  EXPECT_EQ(Machine().lineHz, 16.7);
  for (const QString text : {"0", "-3", "1e999", "1.500,5", "", "abc"}) {
    Type("ownMains", text);
    EXPECT_EQ(Machine().lineHz, 16.7);
    EXPECT_NE(Find<QLabel>("ownMainsMessage")->text(), "");
  }
  Choose("mains", 0);
  EXPECT_FALSE(Machine().lineHz);
}

TEST_F(KnownPanelTest, AGearIsAddedAndTakenAway) {
  Type("shaftSpeed", "59214");
  panel_.AddMesh();
  for (const QString text : {"0", "-3", "1e999", "1.500,5", "2.5", "abc", ""}) {
    Type("meshDialogNumber", text);
    Press("meshDialogAdd");
    EXPECT_TRUE(Machine().meshes.empty()) << text.toStdString();
    EXPECT_NE(Find<QLabel>("meshDialogNumberMessage")->text(), "");
  }
  auto* teeth = Find<QLineEdit>("meshDialogNumber");
  teeth->clear();
  QTest::keyClicks(teeth, "23");
  Press("meshDialogAdd");
  ASSERT_EQ(Machine().meshes.size(), 1U);
  ASSERT_NE(Item("Gear mesh, 23 teeth"), nullptr);
  Find<QTableWidget>("knownTable")->setCurrentItem(Item("Gear mesh, 23 teeth"));
  Press("removeKnown");
  EXPECT_TRUE(Machine().meshes.empty());
  EXPECT_EQ(Item("Gear mesh, 23 teeth"), nullptr);
}

TEST_F(KnownPanelTest, AFrequencyOfTheUsersIsAdded) {
  panel_.AddFrequency();
  auto* hz = Find<QLineEdit>("frequencyDialogNumber");
  QTest::keyClicks(hz, "1,210.5");
  Press("frequencyDialogAdd");
  ASSERT_EQ(Machine().free.size(), 1U);
  EXPECT_EQ(Machine().free[0].hz, 1210.5);
  EXPECT_TRUE(model_.Choice().showKnown);
}

TEST_F(KnownPanelTest, ABearingIsToldByItsGeometryKeptAndPutOnTheMachine) {
  Type("shaftSpeed", "59214");
  QSignalSpy changed(&panel_, &KnownPanel::LibraryChanged);
  panel_.AddBearing();
  QTest::keyClicks(Find<QLineEdit>("bearingName"), "front");
  Press("useBearing");
  EXPECT_TRUE(Machine().bearings.empty());
  EXPECT_NE(Find<QLabel>("bearingSaid")->text(), "");
  Type("elements", "9");
  Type("elementDiameter", "40");
  Type("pitchDiameter", "39.04");
  Press("useBearing");
  EXPECT_TRUE(Machine().bearings.empty());
  Type("elementDiameter", "7.94");
  Type("contactAngle", "90");
  EXPECT_NE(Find<QLabel>("contactAngleMessage")->text(), "");
  Press("keepBearing");
  EXPECT_EQ(changed.count(), 1);
  Press("useBearing");
  ASSERT_EQ(Machine().bearings.size(), 1U);
  EXPECT_EQ(Machine().bearings[0].factors, *analysis::FactorsOf({9, 7.94, 39.04, 0}));
  EXPECT_NE(Item("Outer race, front"), nullptr);
  const std::string kept = panel_.SaveLibrary();
  KnownPanel other(model_);
  EXPECT_EQ(other.LoadLibrary(kept), "");
  EXPECT_EQ(other.Library(), panel_.Library());
  EXPECT_NE(other.LoadLibrary("garbage\n" + kept), "");
  EXPECT_EQ(other.Library(), panel_.Library());
}

TEST_F(KnownPanelTest, FactorsThatDoNotAddUpAreSaid) {
  panel_.AddBearing();
  QTest::keyClicks(Find<QLineEdit>("bearingName"), "rear");
  Find<QComboBox>("bearingMode")->setCurrentIndex(1);
  Type("outerFactor", "3.58");
  Type("innerFactor", "5.3");
  Type("spinFactor", "2.3");
  Type("cageFactor", "1.4");
  EXPECT_NE(Find<QLabel>("cageFactorMessage")->text(), "");
  Type("cageFactor", "0.4");
  EXPECT_TRUE(Find<QLabel>("bearingSaid")->text().contains("no whole number"));
  Type("innerFactor", "5.42");
  EXPECT_EQ(Find<QLabel>("bearingSaid")->text(), "9 rolling elements.");
}

TEST_F(KnownPanelTest, ABearingCanBeTakenOutOfTheLibrary) {
  panel_.LoadLibrary(study::TextOf({{.name = "a", .factors = {3, 5, 2, 0.4}, .geometry = {}},
                                    {.name = "b", .factors = {3, 5, 2, 0.4}, .geometry = {}}}));
  panel_.AddBearing();
  Find<QListWidget>("bearingList")->setCurrentRow(0);
  EXPECT_EQ(Find<QLineEdit>("bearingName")->text(), "a");
  Press("forgetBearing");
  ASSERT_EQ(panel_.Library().size(), 1U);
  EXPECT_EQ(panel_.Library()[0].name, "b");
}

TEST_F(KnownPanelTest, ATickSwitchesAFrequencyOffAndOn) {
  Type("shaftSpeed", "59214");
  Choose("mains", 1);
  Item("Mains")->setCheckState(Qt::Unchecked);
  EXPECT_TRUE(model_.Choice().knownOff.contains("Mains"));
  EXPECT_EQ(study::KnownOf(model_.Choice()).size(), 1U);
  Item("Mains")->setCheckState(Qt::Checked);
  EXPECT_TRUE(model_.Choice().knownOff.empty());
}

TEST_F(KnownPanelTest, WhatTheRecordCannotShowIsMutedWithItsReason) {
  Type("shaftSpeed", "59214");
  Choose("mains", 1);
  TakeRecord(model_, MadeUpSpectrum(0, {{40, 1000}}));
  EXPECT_EQ(Item("Shaft")->foreground().color(), Look::Light().text);
  EXPECT_EQ(Item("Mains")->foreground().color(), Look::Light().muted);
  EXPECT_TRUE(Item("Mains")->toolTip().contains("option 1"));
  EXPECT_TRUE(Find<QLabel>("knownNote")->text().contains("Mains lies below"));
}

TEST_F(KnownPanelTest, TheNoteIsMutedInEitherTheme) {
  Choose("mains", 1);
  TakeRecord(model_, MadeUpSpectrum(0, {{40, 1000}}));
  for (const Look& look : {Look::Light(), Look::Dark(), Look::Light()}) {
    panel_.setPalette(look.Palette());
    QCoreApplication::processEvents();
    const auto* note = Find<QLabel>("knownNote");
    EXPECT_EQ(note->palette().color(note->foregroundRole()), look.muted);
  }
}

TEST_F(KnownPanelTest, ARecordThatComesDoesNotDisturbTyping) {
  auto* edit = Find<QLineEdit>("shaftSpeed");
  edit->setFocus();
  QTest::keyClicks(edit, "15");
  TakeRecord(model_, MadeUpSpectrum(0, {{40, 1000}}));
  QTest::keyClicks(edit, "00");
  QTest::keyClick(edit, Qt::Key_Return);
  EXPECT_EQ(Machine().rpm, 1500);
}

// To be looked at: KESTREL_APPROVE names the folder.
TEST_F(KnownPanelTest, APictureToLookAt) {
  Type("shaftSpeed", "59214");
  Choose("mains", 1);
  panel_.LoadLibrary("");
  model_.Change([](study::StudyChoice& choice) {
    choice.machine = study::With(
        study::With(choice.machine,
                    analysis::Bearing{.name = "front", .factors = {8.33, 11.67, 5.3, 0.42}}),
        analysis::GearMesh{.name = "Gear mesh, 23 teeth", .teeth = 23});
    choice.knownOff = {"Mains"};
  });
  TakeRecord(model_, MadeUpSpectrum(0, {{40, 1000}}));
  const QString folder = qEnvironmentVariable("KESTREL_APPROVE");
  for (const bool isDark : {false, true}) {
    panel_.setPalette(isDark ? Look::Dark().Palette() : Look::Light().Palette());
    QCoreApplication::processEvents();
    const QImage picture = RenderOf(panel_, 1);
    EXPECT_EQ(picture.size(), panel_.size());
    if (folder.isEmpty()) continue;
    EXPECT_TRUE(picture.save(QDir(folder).filePath(isDark ? "known-dark.png" : "known-light.png")));
  }
}

}  // namespace
}  // namespace kestrel
