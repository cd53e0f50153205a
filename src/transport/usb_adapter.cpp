// Search, selection, settings and transfers; one open and close of the board each.
// SPDX-License-Identifier: MIT
#include "transport/usb_adapter.h"

#include <algorithm>
#include <vector>

#include "numeric/runtime_error.h"

namespace kestrel {

namespace {

struct Settings {
  bool stopLoop = true;
  bool csPerWord = true;
  std::uint8_t delay = 1;
  std::uint8_t bits = 120;
  std::uint8_t setup = 25;
};

struct AdapterState {
  FrameBuffer tx;
  FrameBuffer rx;
  std::uint8_t wordCount = 0;
  std::array<AdapterRecord, kAdapterNames> records;
  std::array<NameFinding, kAdapterNames> findings;
  AdapterRecord selected;
  std::int16_t count = 0;
  std::int16_t selectedNumber = -1;
  bool present = false;
  Settings settings;
};

AdapterState state;

}  // namespace

const FrameBuffer& SpiTx = state.tx;
const FrameBuffer& SpiRx = state.rx;
const std::uint8_t& SpiWordCount = state.wordCount;
const std::array<AdapterRecord, kAdapterNames>& AdapterRecords = state.records;
const std::array<NameFinding, kAdapterNames>& NameFindings = state.findings;
const AdapterRecord& SelectedAdapter = state.selected;
const std::int16_t& AdapterCount = state.count;
const std::int16_t& SelectedAdapterNumber = state.selectedNumber;
const bool& UsbPresent = state.present;
const bool& StopSpiLoop = state.settings.stopLoop;
const bool& UsbCsPerWord = state.settings.csPerWord;
const std::uint8_t& UsbSpiDelay = state.settings.delay;
const std::uint8_t& UsbSpiBits = state.settings.bits;
const std::uint8_t& UsbSpiSetupValue = state.settings.setup;

namespace {

constexpr std::uint32_t kOpenForWriting = 0x40000000;
constexpr std::uint32_t kShareWriting = 2;
constexpr std::uint32_t kOpenExisting = 3;

constexpr std::uint32_t kCommandPipe = 0;
constexpr std::uint32_t kAnswerPipe = 1;

constexpr const char* kCure = "Plug the board in and select it again.";
constexpr const char* kWriteError = "Error Writing SPI";
constexpr const char* kReadError = "Error Reading SPI";

}  // namespace

void ResetAdapterState() {
  state = {};
}

void ResetAdapterSettings() {
  state.settings = {};
}

// A board opened for one operation; closed again whichever way the operation ends.
class UsbAdapter::OpenedDevice {
 public:
  OpenedDevice(UsbAdapter& adapter, const std::string& name)
      : driver_(adapter.driver_), handle_(adapter.OpenDevice(name)) {}
  ~OpenedDevice() {
    if (valid()) driver_.CloseHandle(handle_);
  }
  OpenedDevice(const OpenedDevice&) = delete;
  OpenedDevice& operator=(const OpenedDevice&) = delete;

  [[nodiscard]] bool valid() const { return handle_ >= 1; }
  [[nodiscard]] UsbDriver::Handle handle() const { return handle_; }

 private:
  UsbDriver& driver_;
  UsbDriver::Handle handle_;
};

UsbDriver::Handle UsbAdapter::OpenDevice(const std::string& name) {
  const UsbDriver::Handle handle =
      driver_.CreateFile("\\\\.\\" + name, kOpenForWriting, kShareWriting, kOpenExisting);
  return handle >= 1 ? handle : -static_cast<UsbDriver::Handle>(driver_.LastError());
}

void UsbAdapter::Hold() {
  holds_ = true;
}

void UsbAdapter::Release() {
  holds_ = false;
  held_.reset();
}

std::shared_ptr<const UsbAdapter::OpenedDevice> UsbAdapter::Open() {
  if (held_) return held_;
  auto opened = std::make_shared<const OpenedDevice>(*this, SelectedAdapter.deviceName);
  if (holds_) held_ = opened;
  return opened;
}

void UsbAdapter::FindAdapters() {
  Release();
  state.count = 0;
  state.records = {};
  state.findings = {};
  for (int n = 0; n < kAdapterNames; ++n) {
    const std::string name = "Ezusb-" + std::to_string(n);
    NameFinding& finding = state.findings[static_cast<std::size_t>(n)];
    const OpenedDevice device(*this, name);
    finding.opened = device.valid();
    if (!finding.opened) {
      finding.openError = static_cast<std::int32_t>(-device.handle());
      continue;
    }
    const std::string boardType = ReadBoardType(device.handle(), finding);
    if (boardType == "None") continue;
    AdapterRecord& record = state.records[static_cast<std::size_t>(n)];
    ++state.count;
    record.present = true;
    record.deviceName = name;
    record.boardType = boardType;
    GetBoardInfo(device.handle(), record);
  }
}

void UsbAdapter::SelectUsbAdapter() {
  state.present = false;
  state.selectedNumber = -1;
  FindAdapters();
  if (AdapterCount == 0) {
    messages_.Show("No USB Buffers Found, Please Verify Setup.");
    return;
  }
  for (int n = 0; n < kAdapterNames; ++n) {
    if (!AdapterRecords[static_cast<std::size_t>(n)].present) continue;
    SelectAdapter(n);
    return;
  }
  // Cannot happen as boards are counted: each one that is counted is present.
  messages_.Show("No Valid USB Buffers Found, Please Verify Setup.");  // GCOVR_EXCL_LINE
}

void UsbAdapter::SelectAdapter(int number) {
  Release();
  state.selected = AdapterRecords.at(static_cast<std::size_t>(number));
  state.selectedNumber = static_cast<std::int16_t>(number);
  state.present = true;
  bitsSetFor_ = 0;
  setupSetFor_ = 0;
}

void UsbAdapter::SelectNone() {
  state.selectedNumber = -1;
  Lose();
}

void UsbAdapter::LetLoopRun() {
  state.settings.stopLoop = false;
}

void UsbAdapter::EndLoop() {
  state.settings.stopLoop = true;
}

void UsbAdapter::UseChipSelectPerWord(bool perWord) {
  state.settings.csPerWord = perWord;
}

void UsbAdapter::UseSpiDelay(std::uint8_t code) {
  state.settings.delay = code;
}

void UsbAdapter::FillTx(std::span<const std::int32_t> frames) {
  int number = 0;
  for (const std::int32_t frame : frames) state.tx(++number) = frame;
}

Outcome UsbAdapter::UsbSetupSpi(std::uint8_t value) {
  if (!UsbPresent) return Absent();
  state.settings.setup = value == 0 ? 1 : value;
  return SendSetting(kCommandSetup, UsbSpiSetupValue);
}

Outcome UsbAdapter::UsbSetSpiBits(std::uint8_t value) {
  if (!UsbPresent) return Absent();
  state.settings.bits = value;
  return SendSetting(kCommandBits, UsbSpiBits);
}

Outcome UsbAdapter::SendSetting(std::uint8_t command, std::uint8_t value) {
  const char* failure = Set(*Open(), command, value);
  if (failure != nullptr) return Fail(failure);
  return {};
}

const char* UsbAdapter::Set(const OpenedDevice& device, std::uint8_t command, std::uint8_t value) {
  const bool bits = command == kCommandBits;
  std::array<std::uint8_t, 2> block{command, value};
  if (BulkTransfer(device.handle(), kCommandPipe, block) != 1) {
    return bits ? "Error Setting SPI Bits" : "Error Setting up SPI";
  }
  (bits ? bitsSetFor_ : setupSetFor_) = driver_.Plugging(device.handle());
  return nullptr;
}

// A board starts without settings. What stands under the name of the board that was chosen must
// still be of its kind.
const char* UsbAdapter::SetAgainAfterPowerLoss(const OpenedDevice& device) {
  const std::uint32_t plugging = device.valid() ? driver_.Plugging(device.handle()) : 0;
  if (plugging == 0 || (bitsSetFor_ == plugging && setupSetFor_ == plugging)) return nullptr;
  NameFinding finding;
  if (ReadBoardType(device.handle(), finding) != SelectedAdapter.boardType) return kWriteError;
  const char* failure = bitsSetFor_ == plugging ? nullptr : Set(device, kCommandBits, UsbSpiBits);
  if (failure != nullptr || setupSetFor_ == plugging) return failure;
  return Set(device, kCommandSetup, UsbSpiSetupValue);
}

const char* UsbAdapter::Exchange(const OpenedDevice& device, std::span<std::uint8_t> block,
                                 std::span<std::uint8_t> answer) {
  if (BulkTransfer(device.handle(), kCommandPipe, block) != 1) return kWriteError;
  return BulkTransfer(device.handle(), kAnswerPipe, answer) == 1 ? nullptr : kReadError;
}

std::optional<std::array<std::uint8_t, 2>> UsbAdapter::UsbReadSettings() {
  if (!UsbPresent) return std::nullopt;
  std::array<std::uint8_t, 2> answer{};
  std::array<std::uint8_t, 1> block{kCommandReadSettings};
  const char* failure = Exchange(*Open(), block, answer);
  if (failure == nullptr) return answer;
  Fail(failure);
  return std::nullopt;
}

Outcome UsbAdapter::UsbSpiTransfer(int n) {
  if (!UsbPresent) return Absent();
  if (n < 1 || n > kFramesPerTransfer) throw RuntimeError(kSubscriptOutOfRange);
  state.settings.delay = std::clamp<std::uint8_t>(UsbSpiDelay, 1, 5);
  state.wordCount = static_cast<std::uint8_t>(n);
  const char* failure = nullptr;
  std::vector<std::uint8_t> answer(2 * static_cast<std::size_t>(n));
  {
    const auto device = Open();
    std::vector<std::uint8_t> block = TransferBlock(
        UsbCsPerWord ? kCommandTransferPerWord : kCommandTransfer, UsbSpiDelay, SpiTx, n);
    failure = SetAgainAfterPowerLoss(*device);
    if (failure == nullptr) failure = Exchange(*device, block, answer);
  }
  if (failure != nullptr) return Fail(failure);
  for (int i = 1; i <= n; ++i) {
    const std::size_t at = 2 * static_cast<std::size_t>(i - 1);
    state.rx(i) = answer[at] * 256 + answer[at + 1];
  }
  return {};
}

bool UsbAdapter::FindLost() {
  if (!UsbPresent || driver_.Attached(SelectedAdapter.deviceName)) return false;
  Lose();
  return true;
}

// The same request serves both directions: the driver takes the direction from the pipe.
int UsbAdapter::BulkTransfer(UsbDriver::Handle device, std::uint32_t pipe,
                             std::span<std::uint8_t> buffer) {
  if (device < 1) return -2;
  const auto input = PipeNumber(pipe);
  std::uint32_t moved = 0;
  const bool ok = driver_.DeviceIoControl(device, kBulkTransfer, input, buffer, moved);
  return ok && moved == buffer.size() ? 1 : 0;
}

void UsbAdapter::Lose() {
  state.present = false;
  EndLoop();
}

// Presence falls before the box shows: handlers that run meanwhile must not reach the board.
Error UsbAdapter::Fail(const char* text) {
  Release();
  Lose();
  Error error{text, SelectedAdapter.deviceName, kCure};
  messages_.Show(text);
  return error;
}

Error UsbAdapter::Absent() {
  return {"The USB adapter is not in use.", SelectedAdapter.deviceName, kCure};
}

}  // namespace kestrel
