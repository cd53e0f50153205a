// All windows at once, and every frame that they send.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "ui/window_bench.h"

namespace kestrel {

// All windows at once, and every frame that they send.
class AllWindowsBench : public WindowBench {
 protected:
  struct Item {
    const char* action;
    const char* window;
  };
  static constexpr std::array<Item, 13> kItems{{{"mnuDatalog", "frmFileDir"},
                                                {"mnuCommand", "frmCommand"},
                                                {"mnuRecInfo", "frmRecInfo"},
                                                {"mnuAlarmCtrl", "frmALM_CTRL"},
                                                {"mnuAlarmSpectrum", "frmAlarmSpectrum"},
                                                {"mnuDIOGPIO", "frmDIOGPIO"},
                                                {"MnuCal", "frmCalibration"},
                                                {"mnuRegisters", "frmManualReg"},
                                                {"mnuSetups", "frmSetups"},
                                                {"mnuRepeat", "frmRepeat"},
                                                {"mnuAnalyser", "frmAnalyser"},
                                                {"mnuParallel", "frmPort"},
                                                {"mnuUsb", "frmUSBselect"}}};

  AllWindowsBench() {
    usb_.OnBlock([this](std::span<const std::uint8_t> block) { Note(block); });
  }

  // Opens a window by its menu item and lets it load.
  QWidget& Open(const Item& item) {
    Trigger(item.action);
    Settle();
    return Find<QWidget>(item.window);
  }

  static void Settle() {
    for (int i = 0; i < 20; ++i) QApplication::processEvents();
  }

  // Frames that write, apart from those that bring alarm bands out of the flash.
  [[nodiscard]] std::vector<int> Writes() const {
    std::vector<int> writes;
    for (const int frame : frames) {
      const int address = frame >> 8 & 0x7F;
      const bool retrieves = address == 0x30 || address == 0x31 || frame == 0xBF40;
      if ((frame & 0x8000) != 0 && !retrieves) writes.push_back(frame);
    }
    return writes;
  }

  std::vector<int> frames;

 private:
  // A transfer: 13 or 14, the delay code, the number of frames, the frames.
  void Note(std::span<const std::uint8_t> block) {
    if (block[0] != 13 && block[0] != 14) return;
    ASSERT_GE(block.size(), 5U);
    ASSERT_EQ(block.size(), 3U + 2U * block[2]);
    EXPECT_GE(block[1], 1);
    EXPECT_LE(block[1], 5);
    for (std::size_t i = 3; i < block.size(); i += 2)
      frames.push_back(block[i] * 256 + block[i + 1]);
  }
};

}  // namespace kestrel
