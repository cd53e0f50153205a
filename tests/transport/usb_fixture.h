// An adapter over scripted boards, nothing searched for or selected yet.
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/program_state.h"
#include "support/recording_boards.h"
#include "support/recording_messages.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// An adapter over scripted boards, nothing searched for or selected yet.
class UsbTest : public testing::Test {
 protected:
  UsbTest() { Reset(); }
  ~UsbTest() override { Reset(); }

  // Makes a board under "Ezusb-0" the selected one and forgets the traffic that this took.
  void SelectABoard() {
    boards_.boards[0] = {};
    usb_.SelectUsbAdapter();
    ASSERT_TRUE(UsbPresent);
    boards_.ClearLog();
  }

  RecordingBoards boards_;
  RecordingMessages messages_;
  UsbAdapter usb_{boards_, messages_};

 private:
  static void Reset() {
    ResetProgramState();
    ResetAdapterState();
  }
};

}  // namespace kestrel
