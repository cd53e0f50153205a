// Arbitrary requests to the simulated adapter.
// SPDX-License-Identifier: MIT
// Arbitrary requests, command blocks of arbitrary lengths among them, to the simulated adapter.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "counting_clock.h"
#include "input.h"
#include "require.h"
#include "simulator/simulated_adapter.h"

namespace kestrel {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kMostOperations = 64;
constexpr std::uint8_t kFiller = 0xA5;  // what a buffer held before

Bytes Copy(std::string_view bytes) {
  return {bytes.begin(), bytes.end()};
}

// What the board's program has to do with a block, told a second time.
class Expectation {
 public:
  explicit Expectation(SimulatedSensor& sensor) : sensor_(sensor) {}

  // Whether it takes the block.
  bool Take(const Bytes& block) {
    if (block.empty()) return false;
    const std::size_t size = block.size();
    if (block[0] == 0 || block[0] == 1) {
      if (size != 1) return false;
      answer_ = block[0] == 0 ? Bytes{1, 2} : Bytes{bits_, setup_};
      return true;
    }
    if (block[0] == 11 || block[0] == 12) {
      if (size != 2 || (block[0] == 11 && block[1] == 0)) return false;
      answer_.clear();
      (block[0] == 11 ? setup_ : bits_) = block[1];
      return true;
    }
    if (block[0] != 13 && block[0] != 14) return false;
    if (size < 5 || size > 35 || size != 3U + 2U * block[2]) return false;
    if (block[1] < 1 || block[1] > 5) return false;
    if (bits_ == 0 || setup_ == 0) return false;
    answer_.clear();
    for (std::size_t at = 3; at < size; at += 2) {
      const unsigned word =
          sensor_.Exchange(static_cast<std::uint16_t>(block[at] * 256 + block[at + 1]));
      answer_.push_back(static_cast<std::uint8_t>(word >> 8U));
      answer_.push_back(static_cast<std::uint8_t>(word & 0xFFU));
    }
    return true;
  }

  // The next bytes of the answer, at most `most`.
  Bytes Fetch(std::size_t most) {
    const auto end = answer_.begin() + static_cast<std::ptrdiff_t>(std::min(most, answer_.size()));
    Bytes fetched(answer_.begin(), end);
    answer_.erase(answer_.begin(), end);
    return fetched;
  }

  // The board starts afresh, and the sensor with it.
  void Replug() {
    answer_.clear();
    bits_ = 0;
    setup_ = 0;
    sensor_.RestorePower();
  }

 private:
  SimulatedSensor& sensor_;
  Bytes answer_;
  std::uint8_t bits_ = 0;
  std::uint8_t setup_ = 0;
};

class Bench {
 public:
  explicit Bench(Input& input) : input_(input) {}

  void Run() {
    handle_ = adapter_.CreateFile("\\\\.\\Ezusb-0", 0x40000000, 2, 3);
    for (int i = 0; i < kMostOperations && !input_.Empty(); ++i) {
      Operate();
      Require(adapter_.OpenHandles() == (handle_ > 0 ? 1U : 0U), "handles are counted");
    }
  }

 private:
  void Operate() {
    switch (input_.Between(0, 9)) {
      case 0:
        return Open();
      case 1:
        return Close();
      case 2:
        return Plug();
      case 3:
        clock_.Advance(std::chrono::milliseconds{input_.Word()});
        return;
      case 4:
        return Describe();
      case 5:
      case 6:
        return Fetch();
      default:
        return Send();
    }
  }

  void Open() {
    if (handle_ > 0) return;
    const std::string path =
        input_.Byte() % 4 == 0 ? std::string(input_.Bytes(input_.Byte() % 16)) : "\\\\.\\Ezusb-0";
    const std::uint32_t share = input_.Byte() % 8 == 0 ? input_.Byte() : 2;
    handle_ = adapter_.CreateFile(path, 0x40000000, share, 3);
    const bool there = plugged_ && path == "\\\\.\\Ezusb-0" && share == 2;
    Require((handle_ >= 1) == there, "a board that is there opens");
    Require(there || adapter_.LastError() != 0, "a refusal has a reason");
    attached_ = there;
  }

  void Close() {
    const unsigned errors = adapter_.HandleErrors();
    const bool other = input_.Byte() % 4 == 0;
    adapter_.CloseHandle(other ? handle_ + 1 : handle_);
    const bool wrong = other || handle_ <= 0;
    Require(adapter_.HandleErrors() == errors + (wrong ? 1U : 0U), "wrong handles are counted");
    if (wrong) return;
    handle_ = 0;
    attached_ = false;
  }

  void Plug() {
    plugged_ = !plugged_;
    if (plugged_) {
      adapter_.Replug();
      expected_.Replug();
      return;
    }
    adapter_.Unplug();
    twin_.CutPower();
    attached_ = false;
  }

  // One request, with the rules that hold for all; the bytes moved, nothing when it fails.
  std::optional<Bytes> Request(std::uint32_t code, const Bytes& request, Bytes& buffer) {
    const Bytes before = buffer;
    std::uint32_t moved = 0xFFFFFFFF;
    const bool ok = adapter_.DeviceIoControl(handle_, code, request, buffer, moved);
    Require(moved <= buffer.size(), "no more is moved than fits");
    Require(ok || moved == 0, "a failure moves nothing");
    Require(ok || adapter_.LastError() != 0, "and has a reason");
    Require(!ok || attached_, "a board that is gone does nothing");
    const auto rest = static_cast<std::ptrdiff_t>(moved);
    Require(std::equal(buffer.begin() + rest, buffer.end(), before.begin() + rest),
            "the rest of the buffer stays");
    if (!ok) return std::nullopt;
    return Bytes(buffer.begin(), buffer.begin() + rest);
  }

  void Describe() {
    constexpr std::array<std::uint32_t, 4> kCodes{kGetDeviceDescriptor, kGetStringDescriptor,
                                                  kGetPipeInformation, 0x22204E};
    const std::uint32_t code = kCodes[input_.Byte() % kCodes.size()];
    Bytes buffer(input_.Word() % 512U, kFiller);
    const Bytes request = Copy(input_.Bytes(input_.Byte() % 8));
    const auto moved = Request(code, request, buffer);
    const bool asked = code == kGetStringDescriptor   ? request.size() == 5 && request[0] <= 2
                       : code == kGetDeviceDescriptor ? buffer.size() >= 147
                                                      : buffer.size() >= 356;
    Require(moved.has_value() == (attached_ && asked && code != 0x22204E),
            "a request that makes sense is answered");
  }

  void Send() {
    const bool right = input_.Byte() % 8 != 0;
    const Bytes pipe = right ? Bytes{0, 0, 0, 0} : Copy(input_.Bytes(input_.Byte() % 6));
    if (pipe == Bytes{1, 0, 0, 0}) return;
    Bytes block = Block();
    const Bytes sent = block;
    const auto moved = Request(kBulkTransfer, pipe, block);
    Require(block == sent, "a block is only read");
    if (!attached_ || pipe != Bytes{0, 0, 0, 0}) {
      Require(!moved, "no other pipe takes a block");
      return;
    }
    const bool taken = expected_.Take(sent);
    Require(moved.has_value() == taken, "exactly the known blocks are taken");
    Require(!taken || moved->size() == sent.size(), "and whole");
  }

  // Any bytes, or a transfer that is mostly in order.
  Bytes Block() {
    if (input_.Byte() % 2 == 0) return Copy(input_.Bytes(input_.Byte() % 48));
    Bytes block{static_cast<std::uint8_t>(13 + input_.Byte() % 2), input_.Byte(), input_.Byte()};
    if (block[1] > 5) block[1] = 1;
    const Bytes frames = Copy(input_.Bytes(2U * (block[2] % 20U)));
    block.insert(block.end(), frames.begin(), frames.end());
    return block;
  }

  void Fetch() {
    Bytes buffer(input_.Byte() % 40U, kFiller);
    const auto moved = Request(kBulkTransfer, {1, 0, 0, 0}, buffer);
    if (!attached_) return;
    const Bytes expected = expected_.Fetch(buffer.size());
    Require(moved.has_value() == !expected.empty(), "there is an answer or there is none");
    Require(!moved || *moved == expected, "an answer is the sensor's own, in order");
  }

  Input& input_;
  CountingClock clock_;
  SimulatedSensor sensor_{clock_, SingleTone(1000, 1)};
  SimulatedAdapter adapter_{sensor_};
  SimulatedSensor twin_{clock_, SingleTone(1000, 1)};  // reached by no adapter
  Expectation expected_{twin_};
  UsbDriver::Handle handle_ = 0;
  bool plugged_ = true;
  bool attached_ = true;  // the handle's board is still the one that was opened
};

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, 2048);
  kestrel::Input input(data, size);
  kestrel::Bench(input).Run();
  return 0;
}
