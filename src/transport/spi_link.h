// The road of SPI frames to the sensor, whichever interface carries them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

#include "seams/error.h"
#include "transport/parallel_port.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// Frames in, frames out. A frame is one 16-bit word of the sensor's SPI port.
class SpiLink {
 public:
  virtual ~SpiLink() = default;

  // Whether frames can reach the sensor, as far as that is known without sending one.
  [[nodiscard]] virtual Outcome Ready() = 0;

  // Sends 1 or 2 frames, one after the other.
  virtual Outcome Send(std::span<const std::int32_t> frames) = 0;

  // Sends a read command and leaves the sensor's answer to it in `answer`; that of an earlier
  // transfer where it fails.
  virtual Outcome Ask(std::int32_t readFrame, std::int32_t& answer) = 0;

  // Sends 1 to 16 frames as one block. `answers`, of the same size, gets the word that came in
  // during each: the sensor's answer to the frame before. Where it fails they are left as they are.
  virtual Outcome Exchange(std::span<const std::int32_t> frames,
                           std::span<std::int32_t> answers) = 0;

  // From Hold to Release the way is not opened anew for each operation, where it would be.
  virtual void Hold() {}
  virtual void Release() {}
};

// While no interface is selected: nothing is sent, and answers are 0.
class NoLink : public SpiLink {
 public:
  [[nodiscard]] Outcome Ready() override;
  Outcome Send(std::span<const std::int32_t> frames) override;
  Outcome Ask(std::int32_t readFrame, std::int32_t& answer) override;
  Outcome Exchange(std::span<const std::int32_t> frames, std::span<std::int32_t> answers) override;
};

// One transfer an operation. The read command goes out twice: the sensor answers in the second
// frame.
class AdapterLink : public SpiLink {
 public:
  explicit AdapterLink(UsbAdapter& usb) : usb_(usb) {}
  [[nodiscard]] Outcome Ready() override;
  Outcome Send(std::span<const std::int32_t> frames) override;
  Outcome Ask(std::int32_t readFrame, std::int32_t& answer) override;
  Outcome Exchange(std::span<const std::int32_t> frames, std::span<std::int32_t> answers) override;
  void Hold() override { usb_.Hold(); }
  void Release() override { usb_.Release(); }

 private:
  UsbAdapter& usb_;
};

// Pin by pin. A port that the program does not hold carries nothing.
class PortLink : public SpiLink {
 public:
  explicit PortLink(ParallelPort& port) : port_(port) {}
  [[nodiscard]] Outcome Ready() override;
  Outcome Send(std::span<const std::int32_t> frames) override;
  Outcome Ask(std::int32_t readFrame, std::int32_t& answer) override;
  Outcome Exchange(std::span<const std::int32_t> frames, std::span<std::int32_t> answers) override;

 private:
  ParallelPort& port_;
};

}  // namespace kestrel
