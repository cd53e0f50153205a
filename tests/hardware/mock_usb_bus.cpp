// Mock boards: descriptors, endpoints and transfers as the bus sees them.
// SPDX-License-Identifier: MIT
#include "hardware/mock_usb_bus.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <span>

namespace kestrel {
namespace {

constexpr const char* kController = "/devices/pci0000:00/0000:00:14.0";

std::string ThreeDigits(int number) {
  char text[8];
  std::snprintf(text, sizeof text, "%03d", number);
  return text;
}

std::string NodeName(int bus, int address) {
  return "bus/usb/" + ThreeDigits(bus) + '/' + ThreeDigits(address);
}

std::string SystemPathOf(int bus, const std::string& ports) {
  std::string path = kController + std::string("/usb") + std::to_string(bus);
  for (auto dot = ports.find('.'); dot != std::string::npos; dot = ports.find('.', dot + 1)) {
    path += '/' + std::to_string(bus) + '-' + ports.substr(0, dot);
  }
  return ports == "0" ? path : path + '/' + std::to_string(bus) + '-' + ports;
}

std::string Hexadecimal(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  char digits[3];
  for (const std::uint8_t byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02X", byte);
    text += digits;
  }
  return text;
}

std::vector<std::uint8_t> ConfigDescriptor(const std::vector<MockEndpoint>& endpoints) {
  std::vector<std::uint8_t> bytes = {9, 2, 0, 0, 1, 1, 0, 0x80, 50};
  const auto count = static_cast<std::uint8_t>(endpoints.size());
  const std::uint8_t interface[] = {9, 4, 0, 0, count, 0xFF, 0, 0, 0};
  bytes.insert(bytes.end(), std::begin(interface), std::end(interface));
  for (const MockEndpoint& endpoint : endpoints) {
    const std::uint8_t descriptor[] = {7,
                                       5,
                                       endpoint.address,
                                       endpoint.type,
                                       static_cast<std::uint8_t>(endpoint.packetSize & 0xFFU),
                                       static_cast<std::uint8_t>(endpoint.packetSize >> 8U),
                                       0};
    bytes.insert(bytes.end(), std::begin(descriptor), std::end(descriptor));
  }
  bytes[2] = static_cast<std::uint8_t>(bytes.size());
  return bytes;
}

// What the system's device manager knows of a device.
std::string Description(const MockBoardPlan& plan) {
  const auto device = DeviceDescriptor(plan.description);
  std::vector<std::uint8_t> descriptors(device.begin(), device.end());
  const auto config = ConfigDescriptor(plan.endpoints);
  descriptors.insert(descriptors.end(), config.begin(), config.end());

  char numbers[160];
  std::snprintf(numbers, sizeof numbers,
                "A: busnum=%d\\n\nA: devnum=%d\\n\nA: idVendor=%04x\\n\nA: idProduct=%04x\\n\n",
                plan.bus, plan.address, plan.description.vendor, plan.description.product);
  return "P: " + SystemPathOf(plan.bus, plan.ports) + "\nN: " + NodeName(plan.bus, plan.address) +
         "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: BUSNUM=" + ThreeDigits(plan.bus) +
         "\nE: DEVNUM=" + ThreeDigits(plan.address) + "\nE: DEVNAME=/dev/" +
         NodeName(plan.bus, plan.address) +
         "\nE: MAJOR=189\nE: MINOR=" + std::to_string((plan.bus - 1) * 128 + plan.address - 1) +
         "\n" + numbers +
         "A: speed=480\\n\nA: bConfigurationValue=1\\n\nA: bNumConfigurations=1\\n\nA: devpath=" +
         plan.ports + "\\n\nH: descriptors=" + Hexadecimal(descriptors) + "\n";
}

MockBoardPlan Hub(int bus, const std::string& ports, int address) {
  MockBoardPlan hub{.bus = bus, .ports = ports, .address = address, .endpoints = {{0x81, 3, 4}}};
  hub.description.vendor = 0x1D6B;
  hub.description.product = 2;
  return hub;
}

usbdevfs_urb& Urb(const RequestData& data) {
  return *reinterpret_cast<usbdevfs_urb*>(data->data);
}

}  // namespace

MockBoard::MockBoard(MockTestbed& testbed, const MockBoardPlan& plan, SimulatedSensor& sensor)
    : plan_(plan),
      firmware_(sensor, plan.description.firmwareMajor, plan.description.firmwareMinor),
      systemPath_("/sys" + SystemPathOf(plan.bus, plan.ports)),
      driverBound_(!plan.kernelDriver.empty()) {
  testbed.Add(Description(plan));
  node_ = std::make_unique<MockNode>(testbed, "/dev/" + NodeName(plan.bus, plan.address),
                                     [this](unsigned long request, UMockdevIoctlData* argument) {
                                       return Answer(request, argument);
                                     });
}

long MockBoard::Answer(unsigned long request, UMockdevIoctlData* argument) {
  if (pulled_ && request != USBDEVFS_REAPURBNDELAY) return -ENODEV;
  switch (request) {
    case USBDEVFS_GET_CAPABILITIES: {
      const RequestData data = Resolve(argument, 0, sizeof(std::uint32_t));
      *reinterpret_cast<std::uint32_t*>(data->data) =
          USBDEVFS_CAP_BULK_CONTINUATION | USBDEVFS_CAP_NO_PACKET_SIZE_LIM;
      return 0;
    }
    case USBDEVFS_CLAIMINTERFACE:
      return Claim(false);
    case USBDEVFS_DISCONNECT_CLAIM:
      return Claim(true);
    case USBDEVFS_RELEASEINTERFACE:
      claimed_ = false;
      ++releases;
      return 0;
    case USBDEVFS_IOCTL:  // gives the interface back to its driver
      if (driverBound_) return -EBUSY;
      driverBound_ = !plan_.kernelDriver.empty();
      if (driverBound_) ++driverAttached;
      return driverBound_ ? 1 : 0;
    case USBDEVFS_CLEAR_HALT: {
      const RequestData endpoint = Resolve(argument, 0, sizeof(unsigned));
      halted_[static_cast<std::uint8_t>(*reinterpret_cast<unsigned*>(endpoint->data))] = false;
      ++haltsCleared;
      return 0;
    }
    case USBDEVFS_SUBMITURB:
      return Submit(argument);
    case USBDEVFS_REAPURB:
    case USBDEVFS_REAPURBNDELAY:
      return Reap(argument);
    case USBDEVFS_DISCARDURB:
      return Discard(argument);
    default:
      std::fprintf(stderr, "the mock board does not know request %#lx\n", request);
      return -ENOTTY;
  }
}

long MockBoard::Claim(bool detaching) {
  if (claimError != 0) return -claimError;
  if ((claimed_ && !shareClaims) || (driverBound_ && !detaching)) return -EBUSY;
  if (driverBound_) ++driverDetached;
  driverBound_ = false;
  claimed_ = true;
  ++claims;
  return 0;
}

long MockBoard::Submit(UMockdevIoctlData* argument) {
  Transfer transfer;
  transfer.address = *reinterpret_cast<std::uintptr_t*>(argument->data);
  transfer.urb = Resolve(argument, 0, sizeof(usbdevfs_urb));
  const auto length = static_cast<std::size_t>(Urb(transfer.urb).buffer_length);
  if (length > 0) {
    transfer.buffer = Resolve(transfer.urb.get(), offsetof(usbdevfs_urb, buffer), length);
  }
  if (Urb(transfer.urb).type == USBDEVFS_URB_TYPE_CONTROL) {
    Control(std::move(transfer));
    return 0;
  }
  return SubmitBulk(std::move(transfer));
}

long MockBoard::SubmitBulk(Transfer transfer) {
  if (!claimed_) return -EINVAL;
  ++bulkTransfers;
  if (unplugAt > 0 && --unplugAt == 0) {
    Pull();
    return -ENODEV;
  }
  const usbdevfs_urb& urb = Urb(transfer.urb);
  const auto length = static_cast<std::size_t>(urb.buffer_length);
  if (halted_[urb.endpoint]) {
    Finish(std::move(transfer), -EPIPE, 0);
  } else if ((urb.endpoint & 0x80U) != 0) {
    waiting_.push_back(std::move(transfer));
    AnswerWaiting();
  } else {
    const std::uint8_t* data = transfer.buffer ? transfer.buffer->data : nullptr;
    const std::span<const std::uint8_t> block(data, length);
    commands.emplace_back(block.begin(), block.end());
    const bool taken = !refuseCommands && firmware_.Accept(block);
    halted_[urb.endpoint] = !taken;
    QueueAnswer();
    Finish(std::move(transfer), taken ? 0 : -EPIPE, taken ? length : 0);
    AnswerWaiting();
  }
  return 0;
}

// A board keeps its answers, one packet each, whatever commands come before they are fetched.
void MockBoard::QueueAnswer() {
  std::vector<std::uint8_t> packet(64);  // the longest answer is 32 bytes
  packet.resize(firmware_.Fetch(packet));
  if (!packet.empty()) answers_.push_back(std::move(packet));
}

void MockBoard::AnswerWaiting() {
  while (!waiting_.empty() && !answers_.empty() && !holdAnswers) {
    Transfer& first = waiting_.front();
    const auto room = static_cast<std::size_t>(Urb(first.urb).buffer_length);
    std::vector<std::uint8_t> packet = std::move(answers_.front());
    answers_.pop_front();
    if (answerShort) packet.pop_back();
    const bool fits = packet.size() <= room;
    if (fits) std::copy(packet.begin(), packet.end(), first.buffer->data);
    Finish(std::move(first), fits ? 0 : -EOVERFLOW, fits ? packet.size() : 0);
    waiting_.pop_front();
  }
}

// Descriptors; anything else is refused.
void MockBoard::Control(Transfer transfer) {
  constexpr std::size_t kSetup = 8;
  constexpr int kGetDescriptor = 6;
  std::uint8_t* bytes = transfer.buffer->data;
  const std::size_t room = static_cast<std::size_t>(Urb(transfer.urb).buffer_length) - kSetup;
  std::vector<std::uint8_t> answer;
  if (bytes[0] == 0x80 && bytes[1] == kGetDescriptor && bytes[3] == 3) {
    answer = StringDescriptor(plan_.description, bytes[2]);
    languagesAsked.push_back(static_cast<std::uint16_t>(bytes[4] | bytes[5] << 8U));
  }
  if (answer.empty()) return Finish(std::move(transfer), -EPIPE, 0);
  if (answer.size() > room) answer.resize(room);
  std::copy(answer.begin(), answer.end(), bytes + kSetup);
  Finish(std::move(transfer), 0, answer.size());
}

void MockBoard::Finish(Transfer transfer, int status, std::size_t moved) {
  Urb(transfer.urb).status = status;
  Urb(transfer.urb).actual_length = static_cast<int>(moved);
  finished_.push_back(std::move(transfer));
}

long MockBoard::Reap(UMockdevIoctlData* argument) {
  if (!pulled_) AnswerWaiting();
  if (finished_.empty()) {
    usleep(200);  // the program asks again without end while a transfer is pending
    return pulled_ ? -ENODEV : -EAGAIN;
  }
  const RequestData answer = Resolve(argument, 0, sizeof(void*));
  umockdev_ioctl_data_set_ptr(answer.get(), 0, finished_.front().urb.get());
  finished_.pop_front();
  return 0;
}

long MockBoard::Discard(UMockdevIoctlData* argument) {
  const auto address = *reinterpret_cast<std::uintptr_t*>(argument->data);
  const auto found = std::find_if(waiting_.begin(), waiting_.end(), [&](const Transfer& transfer) {
    return transfer.address == address;
  });
  if (found == waiting_.end()) return -EINVAL;
  Finish(std::move(*found), -ENOENT, 0);
  waiting_.erase(found);
  return 0;
}

MockUsbBus::MockUsbBus(SimulatedSensor& sensor) : sensor_(sensor) {
  testbed_.Add(Description(Hub(1, "0", 1)));
  testbed_.Add(Description(Hub(2, "0", 1)));
  testbed_.Add(Description(Hub(1, "2", 2)));
}

MockBoard& MockUsbBus::Plug(const MockBoardPlan& plan, SimulatedSensor& sensor) {
  for (const auto& board : boards_) {
    if (board->Pulled()) board->LeaveNode();
  }
  boards_.push_back(std::make_unique<MockBoard>(testbed_, plan, sensor));
  umockdev_testbed_uevent(testbed_.Get(), boards_.back()->SystemPath().c_str(), "add");
  return *boards_.back();
}

void MockUsbBus::Unplug(MockBoard& board) {
  board.Pull();
  umockdev_testbed_uevent(testbed_.Get(), board.SystemPath().c_str(), "remove");
  umockdev_testbed_remove_device(testbed_.Get(), board.SystemPath().c_str());
}

void MockUsbBus::Permit(const MockBoardPlan& plan, bool permitted) const {
  const std::filesystem::path root = testbed_.Root();
  const std::string node = NodeName(plan.bus, plan.address);
  std::filesystem::permissions(root / "dev" / node, std::filesystem::perms(permitted ? 0666 : 0));
  // The mock's own way to the node stays open: it is taken even where the node refuses.
  std::filesystem::permissions(root / "ioctl" / "dev" / node, std::filesystem::perms(0777));
}

}  // namespace kestrel
