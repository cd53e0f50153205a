// Captures from Start to their record.
// SPDX-License-Identifier: MIT
#pragma once

#include "acquisition/capture_cycle.h"
#include "connection/init_interface.h"
#include "device/rec_ctrl.h"
#include "support/capture_bench.h"
#include "support/given.h"

namespace kestrel {

using namespace std::chrono_literals;

using Intervals = std::vector<std::chrono::milliseconds>;
using Times = std::vector<std::chrono::nanoseconds>;

inline constexpr int kStatusRead = address::kStatus * 256;
inline constexpr auto kAccessGap = 100us;  // after each register access

class Capture : public CaptureBench {
 protected:
  // STATUS is read once before the start command, then at each poll.
  void ReadyAtPoll(int poll) {
    sensor.Set(address::kStatus, 0);
    sensor.SetAtRead(address::kStatus, 1 + poll, 0x0080);
  }

  // From the clearing of the status to the status of the finished capture.
  static Frames WaitFrames(int polls) {
    Frames frames = Frames{kClearStatusFrame} + StatusFrames() + Frames{kCaptureFrame};
    for (int i = 0; i < polls; ++i) frames = std::move(frames) + ReadFrames(address::kStatus);
    return frames + StatusFrames();
  }
};

}  // namespace kestrel
