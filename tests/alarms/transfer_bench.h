// Transfers over scripted hardware, with what shows kept beside the frames.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "alarms/band_transfer.h"
#include "support/journal.h"
#include "support/register_bench.h"
#include "support/reset_alarms.h"

namespace kestrel {

// Transfers over scripted hardware. What shows is kept, each time with the frames sent by then.
class TransferBench : public RegisterBench, public BandTransferView {
 public:
  void DisplaySpectrum(std::int16_t option) override {
    journal.Note("option " + std::to_string(option));
  }
  void ShowTransfer(const std::string& activity, int done, int total) override {
    progress.push_back(activity + " " + std::to_string(done) + "/" + std::to_string(total));
    shown = true;
  }
  void HideTransfer() override { shown = false; }
  void SetMessage(const std::string& text) override { message = text; }

 protected:
  TransferBench() : RegisterBench(ResetAlarms) {}

  static constexpr int kPointer = 0x30;
  static constexpr std::array<int, 8> kAddresses{0x20, 0x22, 0x24, 0x26, 0x28, 0x2A, 0x2C, 0x2E};
  static constexpr int kRetrieveFrame = 0xBF40;
  static constexpr int kSaveFrame = 0xBF10;
  static constexpr int kClearFrame = 0xBF02;

  static Frames PointerFrames(int band, int option) {
    return WriteFrames(kPointer, band + 256 * option);
  }
  static Frames ReadBandFrames(int band, int option) {
    Frames frames = PointerFrames(band, option) + Frames{kRetrieveFrame};
    for (const int address : kAddresses) frames = std::move(frames) + ReadFrames(address);
    return frames;
  }
  static Frames WriteBandFrames(int band, int option, const BandTable& table) {
    Frames frames;
    for (std::size_t i = 0; i < kAddresses.size(); ++i) {
      frames = std::move(frames) + WriteFrames(kAddresses[i], table(kBandFields[i], band, option));
    }
    return std::move(frames) + PointerFrames(band, option) + Frames{kSaveFrame};
  }

  // Bins up to 255, codes up to 32767, which every register keeps.
  static BandTable RandomTable(unsigned seed) {
    std::mt19937 random(seed);
    BandTable table;
    for (int option = 0; option < kSampleRateOptions; ++option) {
      for (int band = 1; band <= kAlarmBands; ++band) {
        for (const int field : kBandFields) {
          const std::uint32_t most = field <= kFHighField ? 256 : 32768;
          table(field, band, option) = static_cast<std::int32_t>(random() % most);
        }
      }
    }
    return table;
  }

  // Wait between the transfers of two frames that follow on each other.
  std::chrono::nanoseconds After(std::size_t number) const {
    const auto& transfers = sensor.Transfers();
    return transfers.at(number + 1).at - transfers.at(number).at;
  }

  Journal journal;
  std::vector<std::string> progress;
  bool shown = false;
  std::string message;
  BandTransfer transfer{core.registers, core.delay, loop, messages, *this};
};

}  // namespace kestrel
