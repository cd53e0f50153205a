// Arbitrary USB devices, and arbitrary requests to those that count as boards.
// SPDX-License-Identifier: MIT
// Arbitrary USB devices, and arbitrary requests to those that count as adapter boards.

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "platform/libusb/libusb_driver.h"
#include "require.h"
#include "scripted_libusb.h"

namespace kestrel {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kMostOperations = 40;
constexpr std::uint8_t kFiller = 0xA5;  // what a buffer held before

// The driver's requests to the boards of one input.
class Bench {
 public:
  explicit Bench(Input& input) : input_(input) {}

  void Run() {
    for (int i = 0; i < kMostOperations && !input_.Empty(); ++i) Operate();
  }

 private:
  void Operate() {
    switch (input_.Between(0, 6)) {
      case 0:
        return Open();
      case 1:
        return Close();
      case 2:
        return CheckPipes();
      case 3:
        return ChangeBus(input_);
      default:
        return Ask();
    }
  }

  void Open() {
    const std::string path = "\\\\.\\Ezusb-" + std::to_string(input_.Between(0, 12));
    const UsbDriver::Handle handle = driver_.CreateFile(path, 0x40000000, 2, 3);
    Require(handle >= 1 || driver_.LastError() != 0, "a board opens or there is a reason");
    if (handle < 1) return;
    Require(path.size() == 11 && path.back() <= '3', "a name of ours opens");
    Require(handles_.insert(handle).second, "every handle is a new one");
    const std::uint32_t plugging = driver_.Plugging(handle);
    Require(plugging != 0 && driver_.Attached(path.substr(4)), "an open board is attached");
    Require(numbers_.try_emplace(plugging, path.back()).first->second == path.back(),
            "a board keeps its number");
  }

  void Close() {
    const UsbDriver::Handle handle = Handle();
    driver_.CloseHandle(handle);
    handles_.erase(handle);
  }

  // The bytes moved, nothing when it fails.
  std::optional<Bytes> Request(UsbDriver::Handle handle, std::uint32_t code, const Bytes& request,
                               Bytes buffer) {
    std::uint32_t moved = 0xFFFFFFFF;
    const bool ok = driver_.DeviceIoControl(handle, code, request, buffer, moved);
    Require(moved <= buffer.size(), "no more is moved than fits");
    Require(!ok || handles_.contains(handle), "only open boards answer");
    Require(ok || driver_.LastError() != 0, "a failure has a reason");
    if (!ok) return std::nullopt;
    return Bytes(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(moved));
  }

  void Ask() {
    constexpr std::array<std::uint32_t, 6> kCodes{
        kGetDeviceDescriptor, kGetStringDescriptor, kGetPipeInformation, kBulkTransfer, kBulkRead,
        0x222000 + 12};
    const std::uint32_t code = kCodes[input_.Byte() % kCodes.size()];
    const std::string_view request = input_.Bytes(input_.Byte() % 6);
    const UsbDriver::Handle handle = Handle();
    const auto moved = Request(handle, code, {request.begin(), request.end()},
                               Bytes(input_.Word() % 400U, kFiller));
    Require(!moved || code != kCodes.back(), "no other request is answered");
  }

  // Pipes 0 and 1 carry commands and answers on every board that has such pipes.
  void CheckPipes() {
    const UsbDriver::Handle handle = Handle();
    const auto told = Request(handle, kGetPipeInformation, {}, Bytes(356, kFiller));
    Require(told.has_value() == handles_.contains(handle), "an open board tells its pipes");
    if (!told) return;
    Require(told->size() == 356, "all of them");
    const unsigned count = (*told)[12];
    Require(count == 0 || (count >= 4 && count <= 17), "the board's speed can be told");
    Require(16 + 20 * count == (*told)[0] + 256U * (*told)[1], "head and pipes have their size");
    if (count == 0) {
      for (const std::uint8_t pipe : Bytes{0, 1}) {
        Require(!Request(handle, kBulkTransfer, {pipe, 0, 0, 0}, Bytes(2)), "no pipe, no transfer");
      }
      return;
    }
    Require(((*told)[16 + 2] & 0x80U) == 0, "pipe 0 leads to the board");
    Require(((*told)[36 + 2] & 0x80U) != 0, "pipe 1 leads to the computer");
    Require(!Request(handle, kBulkRead, {0, 0, 0, 0}, Bytes(2)), "nothing is read from pipe 0");
    Require(!Request(handle, kBulkTransfer, {0xFF, 0, 0, 1}, Bytes(2)), "no other pipes");
  }

  // An open one, mostly.
  UsbDriver::Handle Handle() {
    const std::uint8_t choice = input_.Byte();
    if (handles_.empty() || choice >= 0xF0) return choice;
    return *std::next(handles_.begin(), choice % static_cast<std::ptrdiff_t>(handles_.size()));
  }

  Input& input_;
  LibusbDriver driver_;
  std::set<UsbDriver::Handle> handles_;
  std::map<std::uint32_t, char> numbers_;  // of boards, by their plugging-in
};

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, 2048);
  kestrel::Input input(data, size);
  kestrel::PlugIn(input);
  kestrel::Bench(input).Run();
  kestrel::Require(kestrel::AllGivenBack(), "everything is given back");
  return 0;
}
