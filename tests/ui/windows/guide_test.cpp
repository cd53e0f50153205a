// The user guide and the README beside the real windows.
// SPDX-License-Identifier: MIT
// The user guide and the README beside the real windows: every caption, key and picture that they
// name is there, and every menu item is in the guide.

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QShortcut>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "../tools/picture_list.h"
#include "ui/all_windows_bench.h"

namespace kestrel {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

namespace fs = std::filesystem;

const fs::path kRoot = KESTREL_ROOT;
const fs::path kGuide = kRoot / "docs" / "guide.md";
const fs::path kReadme = kRoot / "README.md";
const fs::path kFromOthers = kRoot / "docs" / "from-other-analysers.md";

// Keys that widgets handle themselves; the tests of those widgets press them.
const QSet<QString> kKeysOfWidgets{
    "Alt+Down",  "Escape",  "Left",  "Right", "PgUp", "PgDown", "Home", "End",
    "Return",    "Shift",   "Alt",   "Ctrl",  "Tab",  "+",      "-",    "Alt+Left",
    "Alt+Right", "Shift+Z", "Space", "A",     "B",    "C",      "D",    "G",
    "H",         "L",       "M",     "N",     "O",    "P",      "R",    "S",
    "T",         "U",       "X",     "Y",     "Z",    "Up",     "Down", "Backspace"};

// Without code, in which nothing is a caption, and with each paragraph on one line.
QString TextOf(const fs::path& file) {
  std::ifstream stream(file);
  QString text = QString::fromStdString({std::istreambuf_iterator<char>(stream), {}});
  text.remove(QRegularExpression("(?m)^    .*$"));
  text.remove(QRegularExpression("`[^`]*`"));
  return text.replace('\n', ' ');
}

std::vector<std::string> Matches(const QString& text, const char* pattern) {
  std::vector<std::string> found;
  auto matches = QRegularExpression(pattern).globalMatch(text);
  while (matches.hasNext()) {
    found.push_back(matches.next().captured(1).simplified().toStdString());
  }
  return found;
}

QString Plain(QString caption) {
  return caption.remove('&').simplified();
}

class Guide : public AllWindowsBench {
 protected:
  void SetUp() override {
    Start();
    Trigger("mnuSimulated");
    for (const Item& item : kItems) Open(item);
    Press("cmdDebugUsb");
    Settle();
    for (const QWidget* window : QApplication::topLevelWidgets()) Collect(*window);
    AddCaption("Stop");              // of the button Start during a capture
    AddCaption("Start monitoring");  // of the button Capture in the view Monitor
  }

  void Collect(const QWidget& window) {
    AddCaption(window.windowTitle());
    for (const auto* label : window.findChildren<QLabel*>()) AddCaption(label->text());
    for (const auto* group : window.findChildren<QGroupBox*>()) AddCaption(group->title());
    for (const auto* list : window.findChildren<QComboBox*>()) {
      for (int i = 0; i < list->count(); ++i) AddCaption(list->itemText(i));
    }
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
      AddCaption(button->text());
      if (!button->shortcut().isEmpty()) keys.insert(button->shortcut().toString());
    }
    for (const auto* action : window.findChildren<QAction*>()) {
      AddCaption(action->text());
      for (const QKeySequence& key : action->shortcuts()) keys.insert(key.toString());
    }
    for (const auto* key : window.findChildren<QShortcut*>()) keys.insert(key->key().toString());
  }
  void AddCaption(const QString& caption) {
    captions.insert(Plain(caption));
    captions.insert(Plain(caption).section("   ", 0, 0));
    if (caption.startsWith("Datalog")) captions.insert("Datalog");  // with ON or OFF
  }

  // Bold words that are no caption.
  std::vector<std::string> Unknown(const fs::path& document) {
    std::vector<std::string> unknown = Matches(TextOf(document), "\\*\\*([^*]+)\\*\\*");
    EXPECT_GT(unknown.size(), 10U);
    std::erase_if(unknown, [&](const std::string& bold) {
      return captions.contains(QString::fromStdString(bold));
    });
    return unknown;
  }

  QSet<QString> captions;
  QSet<QString> keys;
};

TEST_F(Guide, EveryBoldWordIsACaption) {
  EXPECT_THAT(Unknown(kGuide), IsEmpty());
  EXPECT_THAT(Unknown(kReadme), IsEmpty());
  EXPECT_THAT(Unknown(kFromOthers), IsEmpty());
}

TEST_F(Guide, EveryKeyDoesSomething) {
  for (const fs::path& document : {kGuide, kFromOthers}) {
    std::vector<std::string> unknown = Matches(TextOf(document), "<kbd>([^<]+)</kbd>");
    EXPECT_GT(unknown.size(), 10U);
    std::erase_if(unknown, [&](const std::string& key) {
      const QString name = QString::fromStdString(key);
      return keys.contains(name) || kKeysOfWidgets.contains(name);
    });
    EXPECT_THAT(unknown, IsEmpty()) << document;
  }
}

TEST_F(Guide, EveryMenuItemIsInTheGuide) {
  const std::vector<std::string> bold = Matches(TextOf(kGuide), "\\*\\*([^*]+)\\*\\*");
  for (const QAction* menu : Window().menuBar()->actions()) {
    for (const QAction* item : menu->menu()->actions()) {
      if (item->isSeparator()) continue;
      EXPECT_NE(std::ranges::find(bold, Plain(item->text()).toStdString()), bold.end())
          << Plain(item->text()).toStdString();
    }
  }
}

// Names of the pictures that documents show; each of them exists.
std::set<std::string> ShownIn(const std::vector<fs::path>& documents) {
  std::set<std::string> shown;
  for (const fs::path& document : documents) {
    for (const std::string& file : Matches(TextOf(document), "!\\[[^\\]]*\\]\\(([^)]+)\\)")) {
      const fs::path picture = document.parent_path() / file;
      EXPECT_TRUE(fs::exists(picture)) << picture;
      EXPECT_EQ(fs::weakly_canonical(picture).parent_path(), kRoot / "docs" / "pictures")
          << picture;
      shown.insert(picture.filename().string());
    }
  }
  return shown;
}

TEST(GuidePictures, TheDocumentsShowEveryPictureThatIsDrawnAndNoOther) {
  std::set<std::string> shown = ShownIn({kGuide, kReadme});
  EXPECT_THAT(shown, UnorderedElementsAreArray(kPictures));
  // Those of the Python package are drawn by its own script.
  shown.merge(ShownIn({kRoot / "docs" / "python.md"}));
  std::set<std::string> stored;
  for (const auto& entry : fs::directory_iterator(kRoot / "docs" / "pictures")) {
    stored.insert(entry.path().filename().string());
    EXPECT_LT(entry.file_size(), 120'000U) << entry.path();
  }
  EXPECT_EQ(stored, shown);
}

}  // namespace
}  // namespace kestrel
