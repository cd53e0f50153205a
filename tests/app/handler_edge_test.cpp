// Handlers that run, fail, are refused and are followed up.
// SPDX-License-Identifier: MIT
#include "app/handler_edge.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "numeric/runtime_error.h"
#include "support/journal.h"
#include "support/recording_messages.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class Edge : public testing::Test {
 protected:
  bool busy = false;
  bool idle = true;
  Journal journal;
  RecordingMessages messages;
  HandlerEdge edge{messages,
                   {.busy = [this] { return busy; },
                    .refused = [this] { journal.Note("refused"); },
                    .after = [this] { journal.Note("after"); },
                    .idle = [this] { return idle; }}};
};

TEST_F(Edge, AHandlerRunsAndIsFollowedUp) {
  edge.Run("cmdRead_Click", [this] { journal.Note("handler"); });
  EXPECT_EQ(journal.Entries(), (Words{"handler", "after"}));
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(Edge, ARunTimeErrorEndsTheHandlerWithAMessageThatNamesIt) {
  edge.Run("cmdRead_Click", [this] {
    journal.Note("handler");
    throw RuntimeError(kOverflow);
  });
  EXPECT_EQ(messages.Texts(), Words{"cmdRead_Click\nOverflow"});
  EXPECT_EQ(messages.Titles(), Words{""});
  EXPECT_EQ(journal.Entries(), (Words{"handler", "after"}));
  edge.Run("Form_Load", [this] { journal.Note("next"); });
  EXPECT_EQ(messages.Texts().size(), 1U);
}

TEST_F(Edge, WhileARegisterSequenceIsUnderWayHandlersAreRefused) {
  busy = true;
  edge.Run("cmdRead_Click", [this] { journal.Note("handler"); });
  EXPECT_EQ(journal.Entries(), Words{"refused"});
  EXPECT_TRUE(messages.Texts().empty());
  busy = false;
  edge.Run("cmdRead_Click", [this] { journal.Note("handler"); });
  EXPECT_EQ(journal.Entries(), (Words{"refused", "handler", "after"}));
}

TEST_F(Edge, WhileAHandlerOccupiesItHandlersAreRefused) {
  edge.Run("cmdReadAll_Click", [this] {
    const HandlerEdge::Occupation occupation(edge);
    edge.Run("cmdRead_Click", [this] { journal.Note("handler"); });
  });
  edge.Run("cmdRead_Click", [this] { journal.Note("later"); });
  EXPECT_EQ(journal.Entries(), (Words{"refused", "after", "later", "after"}));
}

TEST_F(Edge, WhatWouldDisturbACaptureWaitsForItsEnd) {
  idle = false;
  edge.RunIdle("cmdReadAll_Click", [this] { journal.Note("handler"); });
  idle = true;
  edge.RunIdle("cmdReadAll_Click", [this] { journal.Note("later"); });
  EXPECT_EQ(journal.Entries(), (Words{"after", "later", "after"}));
}

TEST_F(Edge, RestsWhileNothingIsAtWork) {
  EXPECT_TRUE(edge.Resting());
  busy = true;
  EXPECT_FALSE(edge.Resting());
  busy = false;
  edge.Run("cmdRead_Click", [this] {
    EXPECT_FALSE(edge.Resting());
    edge.Run("Form_Load", [] {});
    EXPECT_FALSE(edge.Resting());
    throw RuntimeError(kOverflow);
  });
  EXPECT_TRUE(edge.Resting());
  const HandlerEdge::Occupation occupation(edge);
  EXPECT_FALSE(edge.Resting());
}

TEST_F(Edge, AHandlerInAHandlerHasAnEdgeOfItsOwn) {
  edge.Run("mnuRecInfo_Click", [this] {
    edge.Run("Form_Load", [] { throw RuntimeError(kSubscriptOutOfRange); });
    journal.Note("outer goes on");
  });
  EXPECT_EQ(messages.Texts(), Words{"Form_Load\nSubscript out of range"});
  EXPECT_EQ(journal.Entries(), (Words{"after", "outer goes on", "after"}));
}

}  // namespace
}  // namespace kestrel
