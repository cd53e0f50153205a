// The adapter driver through the system's device calls to a simulated adapter.
// SPDX-License-Identifier: MIT
// Through the system's device calls and a kernel driver to a simulated adapter at the other end of
// a loopback connection.

#include "platform/windows/ezusb_driver.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "app/program_state.h"
#include "platform/system.h"
#include "platform/windows/system_clock.h"
#include "regmap/register_table.h"
#include "simulator/simulated_hardware.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/unused_hardware.h"
#include "transport/register_access.h"
#include "transport/usb_adapter.h"

// Last: they make macros of names that the program uses.
// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on
#undef CreateFile

namespace kestrel {
namespace {

constexpr std::uint32_t kWriteAccess = 0x40000000;
constexpr std::uint32_t kShareWrite = 2;
constexpr std::uint32_t kExisting = 3;
constexpr std::int32_t kFileNotFound = 2;

// Answers the kernel driver's requests from a simulated adapter.
class AdapterServer {
 public:
  AdapterServer() {
    WSADATA data;
    WSAStartup(0x202, &data);
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(45678);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listener_, 1), 0);
    thread_ = std::thread([this] { Serve(); });
  }
  ~AdapterServer() {
    stop_ = true;
    thread_.join();
    for (const SOCKET opened : {connection_, listener_}) closesocket(opened);
  }
  AdapterServer(const AdapterServer&) = delete;
  AdapterServer& operator=(const AdapterServer&) = delete;

 private:
  // Whether something has come before the server is stopped.
  bool WaitFor(SOCKET source) const {
    while (!stop_) {
      fd_set sources;
      FD_ZERO(&sources);
      FD_SET(source, &sources);
      timeval wait{0, 50000};
      if (select(0, &sources, nullptr, nullptr, &wait) > 0) return true;
    }
    return false;
  }

  bool Receive(void* data, std::size_t size) const {
    return size == 0 || recv(connection_, static_cast<char*>(data), static_cast<int>(size),
                             MSG_WAITALL) == static_cast<int>(size);
  }

  void Serve() {
    if (!WaitFor(listener_)) return;
    connection_ = accept(listener_, nullptr, nullptr);
    const UsbDriver::Handle device =
        hardware_.Adapter().CreateFile("\\\\.\\Ezusb-0", kWriteAccess, kShareWrite, kExisting);
    std::uint32_t head[3] = {};
    while (WaitFor(connection_) && Receive(head, sizeof head)) {
      std::vector<std::uint8_t> input(head[1]);
      std::vector<std::uint8_t> output(head[2]);
      if (!Receive(input.data(), input.size()) || !Receive(output.data(), output.size())) return;
      std::uint32_t returned = 0;
      const bool good =
          hardware_.Adapter().DeviceIoControl(device, head[0], input, output, returned);
      const auto moved = good ? static_cast<std::int32_t>(returned) : -1;
      send(connection_, reinterpret_cast<const char*>(&moved), sizeof moved, 0);
      if (moved > 0) send(connection_, reinterpret_cast<const char*>(output.data()), moved, 0);
    }
  }

  SystemClock clock_;
  SimulatedHardware hardware_{clock_};
  SOCKET listener_ = INVALID_SOCKET;
  SOCKET connection_ = INVALID_SOCKET;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

TEST(EzusbDriverTest, ABoardThatIsNotThereGivesTheSystemsError) {
  EzusbDriver driver;
  EXPECT_LT(driver.CreateFile("\\\\.\\Ezusb-3", kWriteAccess, kShareWrite, kExisting), 1);
  EXPECT_EQ(driver.LastError(), kFileNotFound);
}

TEST(EzusbDriverTest, AWholeRoadToARegister) {
  AdapterServer server;
  EzusbDriver driver;
  SystemClock clock;
  RecordingMessages messages;
  UsbAdapter usb(driver, messages);
  usb.SelectUsbAdapter();
  ASSERT_TRUE(UsbPresent) << testing::PrintToString(messages.Texts());
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-0");
  EXPECT_EQ(SelectedAdapter.boardType, "FIFO4");
  EXPECT_EQ(AdapterCount, 1);
  RecordingPointer pointer;
  SoftwareDelay delay(clock, pointer);
  UnusedPort port;
  ParallelPort parallel(port, delay);
  RegisterAccess registers(usb, parallel, delay);
  registers.Use(kUsbAdapter);
  BuildRegisterTable();
  registers.ReadReg(row::PROD_ID);
  EXPECT_EQ(RegValue, 31407);
  registers.WriteReg(row::FFT_AVG, 77);
  registers.ReadReg(row::FFT_AVG);
  EXPECT_EQ(RegValue, 77);
  EXPECT_TRUE(messages.Texts().empty());
}

// The whole way that the programs take.
TEST(WindowsSystem, FindsTheBoardThatItsOwnDriverLeadsToAndNoOther) {
  AdapterServer server;
  System system({.portAddress = [] { return std::int16_t{888}; }});
  UsbDriver& driver = *system.Devices().usb;
  EXPECT_TRUE(driver.Attached("Ezusb-0"));
  EXPECT_FALSE(driver.Attached("Ezusb-1"));
  RecordingMessages messages;
  UsbAdapter usb(driver, messages);
  usb.SelectUsbAdapter();
  EXPECT_TRUE(UsbPresent) << testing::PrintToString(messages.Texts());
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-0");
  EXPECT_EQ(AdapterCount, 1);
  EXPECT_LT(driver.CreateFile("\\\\.\\Ezusb-1", kWriteAccess, kShareWrite, kExisting), 1);
  EXPECT_EQ(driver.LastError(), kFileNotFound) << "the generic driver has no board either";
}

// A board in use is one program's: the second one learns whose it is.
TEST(WindowsSystem, KeepsABoardFromAnotherProgramUntilItIsLetGo) {
  AdapterServer server;
  System system({.portAddress = [] { return std::int16_t{888}; }, .user = [] { return "first"; }});
  std::vector<std::string> said;
  System other({.portAddress = [] { return std::int16_t{888}; },
                .inUse = [&said](const std::string& line) { said.push_back(line); }});
  RecordingMessages messages;
  UsbAdapter usb(*system.Devices().usb, messages);
  usb.SelectUsbAdapter();
  ASSERT_TRUE(UsbPresent);
  UsbDriver& second = *other.Devices().usb;
  EXPECT_LT(second.CreateFile("\\\\.\\Ezusb-0", kWriteAccess, kShareWrite, kExisting), 1);
  EXPECT_EQ(second.LastError(), kUsbBusyElsewhere);
  ASSERT_EQ(said.size(), 1U);
  EXPECT_EQ(said[0].find("Ezusb-0 is in use by first (process "), 0U) << said[0];
  system.LetGo();
  const auto board = second.CreateFile("\\\\.\\Ezusb-0", kWriteAccess, kShareWrite, kExisting);
  EXPECT_GE(board, 1);
  if (board >= 1) second.CloseHandle(board);
}

}  // namespace
}  // namespace kestrel
