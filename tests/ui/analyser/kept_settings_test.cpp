// What the analyser remembers: choices outlive the window, damage begins anew and is told.
// SPDX-License-Identifier: MIT
#include "ui/analyser/kept_settings.h"

#include <QDir>
#include <QFile>
#include <QStatusBar>

#include "support/memory_files.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/analyser/no_host.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using ::testing::HasSubstr;

// In no window's way.
std::unique_ptr<frmAnalyser> Analyser() {
  static MemoryFiles files;
  return std::make_unique<frmAnalyser>(NoHost(files));
}

std::string Said(frmAnalyser& window) {
  return window.statusBar()->currentMessage().toStdString();
}

void ChooseMuch(study::StudyChoice& choice) {
  choice.view = study::View::Waterfall;
  choice.quantity = {.quantity = analysis::Quantity::Velocity,
                     .amplitude = analysis::Amplitude::Rms,
                     .lowestHz = 10};
  choice.up = study::Scale::Logarithmic;
  choice.unit = analysis::HorizontalUnit::Order;
  choice.shown = {true, false, true};
  choice.focus = Axis::Z;
  choice.extras = {study::Extra::LinearAverage};
  choice.averageOf = 25;
  choice.cursor = study::CursorKind::Harmonic;
  choice.inSpectrum.at = 587.25;
  choice.machine.rpm = 59'214;
  choice.machine.lineHz = 50;
  choice.machine.meshes = {{"pump", 17}};
  choice.knownOff = {"Line"};
  choice.zones = {"own limits", 1, 2, 3};
  choice.bands = {{"low", 587, 1370.5}};
  choice.markers = {{8220.9, "outer race; \"front\", µm = ü"}};
}

TEST(KeptSettings, OfTestsAreNotTheUsers) {
  EXPECT_TRUE(KeptSettings().fileName().startsWith(QDir::tempPath()));
  EXPECT_TRUE(KeptSettings().allKeys().isEmpty());
}

TEST(KeptSettings, WhatWasChosenOutlivesTheWindow) {
  auto window = Analyser();
  EXPECT_EQ(window->Model().Choice(), study::StudyChoice());
  window->Model().Change(ChooseMuch);
  const study::StudyChoice chosen = window->Model().Choice();
  window.reset();
  window = Analyser();
  EXPECT_EQ(window->Model().Choice(), chosen);
  EXPECT_EQ(window->findChild<QStackedWidget*>("views")->currentIndex(), 1);
  EXPECT_EQ(Said(*window), "");
}

TEST(KeptSettings, EachViewFindsItsDocksAgain) {
  auto window = Analyser();
  window->show();
  window->findChild<QDockWidget*>("dockPeaks")->hide();
  window->ChooseView(study::View::Waterfall);
  window->findChild<QDockWidget*>("dockPeaks")->show();
  window->findChild<QDockWidget*>("dockCursor")->hide();
  window.reset();
  window = Analyser();
  window->show();
  EXPECT_FALSE(window->findChild<QDockWidget*>("dockPeaks")->isHidden());
  EXPECT_TRUE(window->findChild<QDockWidget*>("dockCursor")->isHidden());
  window->ChooseView(study::View::Spectrum);
  EXPECT_TRUE(window->findChild<QDockWidget*>("dockPeaks")->isHidden());
  EXPECT_FALSE(window->findChild<QDockWidget*>("dockCursor")->isHidden());
}

TEST(KeptSettings, AReferenceIsNotThereAnyMore) {
  auto window = Analyser();
  Record record;
  record.time = std::chrono::system_clock::now();
  window->Model().Take(record);
  window->Model().TakeReference();
  window->Model().Change([](auto& choice) { choice.difference = true; });
  window.reset();
  window = Analyser();
  EXPECT_FALSE(window->Model().Choice().Has(study::Extra::Reference));
  EXPECT_FALSE(window->Model().Choice().difference);
}

TEST(KeptSettings, ADamagedLineBeginsAnewAndIsTold) {
  KeptSettings().setValue("choice", "average of = 0\nshaft rpm = 1500\n");
  auto window = Analyser();
  EXPECT_EQ(window->Model().Choice().averageOf, study::StudyChoice().averageOf);
  EXPECT_EQ(window->Model().Choice().machine.rpm, 1500);
  EXPECT_THAT(Said(*window), HasSubstr("Line 1 cannot be read: average of"));
  window.reset();
  EXPECT_EQ(Said(*Analyser()), "");
}

TEST(KeptSettings, OfMuchDamageTheFirstIsNamed) {
  KeptSettings().setValue("choice", "a\nb\nc\nd\ne\n");
  KeptSettings().setValue("bearings", "x\t1\n");
  EXPECT_THAT(Said(*Analyser()), HasSubstr("and 3 more"));
}

TEST(KeptSettings, ADamagedFileBeginsAnewAndIsTold) {
  const QString name = KeptSettings().fileName();
  QDir().mkpath(QFileInfo(name).absolutePath());
  QFile file(name);
  ASSERT_TRUE(file.open(QFile::WriteOnly));
  file.write(QByteArray("[General\n\x00\xff\xfe choice\n=%%%\ngeometry=@ByteArray(\\x1\n", 50));
  file.close();
  const auto window = Analyser();
  EXPECT_EQ(window->Model().Choice(), study::StudyChoice());
  EXPECT_THAT(Said(*window), HasSubstr("can be read"));
}

TEST(KeptSettings, SettingsOfNoSenseDoNoHarm) {
  for (const char* key : {"choice", "geometry", "docks/0", "docks/2", "bearings", "theme"}) {
    KeptSettings().setValue(key, QStringList{"1", "\xff", "nothing"});
  }
  EXPECT_EQ(Analyser()->Model().Choice(), study::StudyChoice());
}

class KeptTheme : public ::testing::Test {
 protected:
  ~KeptTheme() override { ApplyTheme(Theme::System); }
  static bool IsDark() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }
};

TEST_F(KeptTheme, IsAppliedWhenTheProgramStartsNotWhenTheAnalyserOpens) {
  Analyser()->findChild<QAction*>("mnuTheme2")->trigger();
  EXPECT_TRUE(IsDark());
  ApplyTheme(Theme::System);  // as the program starts anew
  const auto window = Analyser();
  EXPECT_FALSE(IsDark());
  EXPECT_TRUE(window->findChild<QAction*>("mnuTheme2")->isChecked());
  ApplyKeptTheme();
  EXPECT_TRUE(IsDark());
}

TEST_F(KeptTheme, IsTheSystemsWhereNoneOrNoSuchIsKept) {
  for (const QVariant& kept : {QVariant(), QVariant(7), QVariant(-1), QVariant("dark")}) {
    KeptSettings().setValue("theme", kept);
    ApplyKeptTheme();
    EXPECT_FALSE(IsDark()) << kept.toString().toStdString();
  }
}

}  // namespace
}  // namespace kestrel
