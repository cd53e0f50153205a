// Runs tests of windows on a screen without a display.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <memory>

namespace {

// Each test begins with nothing remembered, and the user's own settings are left alone.
class SettingsOfTheTest : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& /*test*/) override {
    folder_ = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder_->path());
  }
  void OnTestEnd(const testing::TestInfo& /*test*/) override { folder_.reset(); }

 private:
  std::unique_ptr<QTemporaryDir> folder_;
};

}  // namespace

int main(int argc, char** argv) {
  // The smallest screen that all windows must fit.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" KESTREL_SCREEN);
  }
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new SettingsOfTheTest);
  return RUN_ALL_TESTS();
}
