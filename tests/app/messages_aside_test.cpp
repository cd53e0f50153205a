// Messages that are taken aside, and those that are not.
// SPDX-License-Identifier: MIT
#include "app/messages_aside.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/recording_messages.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MessagesOnTheirWay, ArePassedOn) {
  RecordingMessages shown;
  MessagesAside messages(shown);
  messages.Show("one", "title");
  messages.ShowExplained("two", "", "because");
  EXPECT_THAT(shown.Texts(), ElementsAre("one", "two"));
  EXPECT_THAT(shown.explanations, ElementsAre("because"));
}

TEST(MessagesOnTheirWay, AreTakenAsideAsLongAsSomebodyWantsThem) {
  RecordingMessages shown;
  MessagesAside messages(shown);
  {
    const MessagesAside::Aside outer(messages, [] { return true; });
    {
      const MessagesAside::Aside inner(messages, [] { return true; });
      messages.Show("one");
      EXPECT_THAT(inner.Texts(), ElementsAre("one"));
    }
    messages.ShowExplained("two", "", "because");
    EXPECT_THAT(outer.Texts(), ElementsAre("two"));
  }
  EXPECT_THAT(shown.Texts(), IsEmpty());
  messages.Show("three");
  EXPECT_THAT(shown.Texts(), ElementsAre("three"));
}

TEST(MessagesOnTheirWay, ReachTheUserWhereTheyAreNotMeant) {
  RecordingMessages shown;
  MessagesAside messages(shown);
  const MessagesAside::Aside aside(messages, [] { return false; });
  messages.Show("one");
  EXPECT_THAT(shown.Texts(), ElementsAre("one"));
  EXPECT_THAT(aside.Texts(), IsEmpty());
}

TEST(MessagesOnTheirWay, QuestionsAlwaysReachTheUser) {
  RecordingMessages shown;
  shown.answer = Unsaved::Cancel;
  shown.earlierFiles = EarlierFiles::Replace;
  MessagesAside messages(shown);
  const MessagesAside::Aside aside(messages, [] { return true; });
  EXPECT_EQ(messages.AskToSave("save?"), Unsaved::Cancel);
  EXPECT_EQ(messages.AskAboutEarlierFiles("replace?"), EarlierFiles::Replace);
  EXPECT_THAT(shown.questions, ElementsAre("save?", "replace?"));
}

}  // namespace
}  // namespace kestrel
