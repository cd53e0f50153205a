// What a register read costs beside the bare calls of libusb.
// SPDX-License-Identifier: MIT

// Prints what a register read through the adapter driver costs beside the bare libusb calls on the
// same mock board. Run it by umockdev-wrapper.

#include <libusb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#include "figure.h"
#include "hardware/mock_usb_bus.h"
#include "platform/libusb/libusb_driver.h"
#include "support/fake_clock.h"

namespace {

using namespace kestrel;

constexpr double kAllowed = 1.2;
constexpr int kReads = 1500;
constexpr std::uint8_t kFftAverages = 8;

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

using Answer = std::array<std::uint8_t, 4>;

// Two frames that read FFT_AVG.
std::array<std::uint8_t, 7> ReadBlock() {
  return {13, 1, 2, 0x0E, 0x00, 0x0E, 0x00};
}

// The least that a program of its own would do, the device being known.
bool BareRead(libusb_device* device, Answer& answer) {
  constexpr unsigned kLimitMs = 2000;
  libusb_device_handle* handle = nullptr;
  if (libusb_open(device, &handle) != LIBUSB_SUCCESS) return false;
  auto block = ReadBlock();
  int sent = 0;
  int received = 0;
  const bool done =
      libusb_claim_interface(handle, 0) == LIBUSB_SUCCESS &&
      libusb_bulk_transfer(handle, 0x02, block.data(), static_cast<int>(block.size()), &sent,
                           kLimitMs) == LIBUSB_SUCCESS &&
      libusb_bulk_transfer(handle, 0x86, answer.data(), static_cast<int>(answer.size()), &received,
                           kLimitMs) == LIBUSB_SUCCESS;
  libusb_close(handle);
  return done && received == static_cast<int>(answer.size());
}

bool DriverRead(UsbDriver& driver, Answer& answer) {
  constexpr std::array<std::uint8_t, 4> kPipe0 = {0, 0, 0, 0};
  constexpr std::array<std::uint8_t, 4> kPipe1 = {1, 0, 0, 0};
  auto block = ReadBlock();
  std::uint32_t moved = 0;
  const auto device = driver.CreateFile("\\\\.\\Ezusb-0", 0x40000000, 2, 3);
  const bool done = driver.DeviceIoControl(device, kBulkTransfer, kPipe0, block, moved) &&
                    driver.DeviceIoControl(device, kBulkTransfer, kPipe1, answer, moved);
  driver.CloseHandle(device);
  return done && moved == answer.size();
}

// The driver's own part: looking through the attached devices for a board that is not there.
double SearchMicroseconds(UsbDriver& driver) {
  constexpr int kSearches = 10000;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kSearches; ++i) {
    if (driver.CreateFile("\\\\.\\Ezusb-1", 0x40000000, 2, 3) >= 1) return -1;
  }
  const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
  return taken.count() / kSearches;
}

double Microseconds(const std::function<bool(Answer&)>& read, bool& correct) {
  Answer answer{};
  const auto start = std::chrono::steady_clock::now();
  correct = read(answer) && answer[3] == kFftAverages && correct;
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
      .count();
}

}  // namespace

int main() {
  FakeClock clock;
  SimulatedSensor sensor(clock, RunningMachine());
  MockUsbBus bus(sensor);
  bus.Plug({}).shareClaims = true;  // the bare calls leave the release to the closing
  LibusbDriver driver;
  libusb_context* context = nullptr;
  libusb_init(&context);
  libusb_device_handle* found = libusb_open_device_with_vid_pid(context, 0x5A17, 0xED03);
  libusb_device* device = libusb_ref_device(libusb_get_device(found));
  libusb_close(found);

  bool correct = true;
  std::vector<double> bare;
  std::vector<double> through;
  for (int i = 0; i < kReads; ++i) {  // by turns, so that both see the same machine
    bare.push_back(Microseconds([&](Answer& a) { return BareRead(device, a); }, correct));
    through.push_back(Microseconds([&](Answer& a) { return DriverRead(driver, a); }, correct));
  }
  const double ratio = Median(through) / Median(bare);
  Print({.name = "register read through libusb",
         .measured = Amount(Median(through), 0, "us"),
         .peer = "bare calls: " + Amount(Median(bare), 0, "us"),
         .ratio = ratio,
         .promise = "at most 1.2 x",
         .kept = ratio <= kAllowed});
  PrintNote("Finding the board on the mock bus takes " +
            Amount(SearchMicroseconds(driver), 1, "us") + " of a register read.");
  libusb_unref_device(device);
  libusb_exit(context);
  return WasDone(correct, "registers were read wrong");
}
