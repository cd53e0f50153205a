// Where the user guide is found, and how it opens.
// SPDX-License-Identifier: MIT
#include "ui/windows/user_guide.h"

#include <gmock/gmock.h>

#include <QDesktopServices>
#include <QUrl>

#include "ui/window_bench.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UserGuide : public testing::Test {
 protected:
  void Open() {
    OpenUserGuide(files, messages, [this](const std::filesystem::path& file) {
      opened.push_back(file.string());
      return opens;
    });
  }

  MemoryFiles files;  // the program is in /program
  RecordingMessages messages;
  std::vector<std::string> opened;
  bool opens = true;
};

TEST_F(UserGuide, ThePageBesideTheProgramIsOpened) {
  files.contents["/program/guide/guide.html"] = "<html>";
  files.contents["/share/kestrel/guide/guide.html"] = "<html>";
  Open();
  EXPECT_THAT(opened, ElementsAre("/program/guide/guide.html"));
  EXPECT_THAT(messages.Texts(), IsEmpty());
}

TEST_F(UserGuide, OrThePageThatIsInstalled) {
  files.contents["/share/kestrel/guide/guide.html"] = "<html>";
  files.contents["/program/guide/guide.md"] = "#";
  Open();
  EXPECT_THAT(opened, ElementsAre("/share/kestrel/guide/guide.html"));
}

TEST_F(UserGuide, WithoutAPageItsTextIsOpened) {
  files.contents["/program/guide/guide.md"] = "#";
  Open();
  EXPECT_THAT(opened, ElementsAre("/program/guide/guide.md"));
}

TEST_F(UserGuide, WhereItIsMissingAMessageTellsWhereItShouldBe) {
  Open();
  EXPECT_THAT(opened, IsEmpty());
  EXPECT_THAT(messages.Texts(),
              ElementsAre("The user guide cannot be found. It should be\n"
                          "/program/guide/guide.html\nor\n/share/kestrel/guide/guide.html"));
}

TEST_F(UserGuide, WhereNothingCanShowItAMessageTellsItsPlace) {
  files.contents["/program/guide/guide.html"] = "<html>";
  opens = false;
  Open();
  EXPECT_THAT(messages.Texts(), ElementsAre("There is no program to show the user guide with. Any "
                                            "web browser can open\n/program/guide/guide.html"));
}

class GuideMenu : public WindowBench {};

// The desktop hands addresses to whoever has asked for them.
class UrlCatcher : public QObject {
  Q_OBJECT

 public:
  UrlCatcher() { QDesktopServices::setUrlHandler("file", this, "Take"); }
  ~UrlCatcher() override { QDesktopServices::unsetUrlHandler("file"); }
  UrlCatcher(const UrlCatcher&) = delete;
  UrlCatcher& operator=(const UrlCatcher&) = delete;

  QList<QUrl> taken;

 public slots:
  void Take(const QUrl& url) { taken << url; }
};

TEST_F(GuideMenu, HelpOpensTheGuide) {
  files_.contents["/program/guide/guide.html"] = "<html>";
  Start();
  UrlCatcher desktop;
  Trigger("mnuGuide");
  EXPECT_EQ(desktop.taken, QList<QUrl>{QUrl("file:///program/guide/guide.html")});
  EXPECT_EQ(Find<QAction>("mnuGuide").shortcut(), QKeySequence("F1"));
}

TEST_F(GuideMenu, F1OpensItFromOtherWindowsToo) {
  files_.contents["/program/guide/guide.html"] = "<html>";
  Start();
  Trigger("mnuCommand");
  UrlCatcher desktop;
  auto& other = Find<QDialog>("frmCommand");
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  QTest::keyClick(&other, Qt::Key_F1);
  EXPECT_EQ(desktop.taken.size(), 1);
}

}  // namespace
}  // namespace kestrel

#include "user_guide_test.moc"
