// Adapter boards that answer with arbitrary bytes, under all the program asks of them.
// SPDX-License-Identifier: MIT
// Adapter boards that answer with arbitrary bytes, under everything the program asks of them.

#include <algorithm>
#include <string>

#include "absent_port.h"
#include "answering_driver.h"
#include "app/program_state.h"
#include "counting_clock.h"
#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "device/register_models.h"
#include "numeric/runtime_error.h"
#include "regmap/register_table.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_program.h"
#include "transport/adapter_choice.h"
#include "transport/adapter_search.h"
#include "utf8.h"

namespace kestrel {
namespace {

using Answer = AnsweringDriver::Answer;

constexpr int kMostOperations = 40;

// The program's road to the boards of one input.
struct Bench {
  explicit Bench(Input& from) : input(from), driver(input) {
    delay.SkipCalibration();
    InitRegisterTable(registers);
  }

  Input& input;
  CountingClock clock;
  RecordingPointer pointer;
  AbsentPort port;
  RecordingMessages messages;
  MemoryFiles files;
  AnsweringDriver driver;
  SoftwareDelay delay{clock, pointer};
  UsbAdapter usb{driver, messages};
  ParallelPort parallel{port, delay};
  RegisterAccess registers{usb, parallel, delay};
};

// The last answer of a board to requests of this kind; null when there is none.
const Answer* Find(const Bench& bench, const std::string& name, std::uint32_t code,
                   std::uint8_t argument) {
  const Answer* found = nullptr;
  for (const Answer& answer : bench.driver.Answers()) {
    if (answer.path.ends_with(name) && answer.code == code && answer.argument == argument) {
      found = &answer;
    }
  }
  return found;
}

int WordAt(const Answer& answer, std::size_t at) {
  return answer.bytes[at] + 256 * answer.bytes[at + 1];
}

void CheckString(const Bench& bench, const std::string& name, std::uint8_t index,
                 const std::string& text) {
  const std::size_t units = Utf16Units(text);
  if (text == "None") return;
  const Answer* answer = Find(bench, name, kGetStringDescriptor, index);
  Require(answer != nullptr && answer->whole, "a string comes from a whole descriptor");
  Require(units == (answer->bytes.size() - 2) / 2, "and is all of it");
}

void CheckRecord(const Bench& bench, const AdapterRecord& record, const std::string& name) {
  if (!record.present) {
    Require(record.deviceName.empty() && record.string1.empty(), "nothing is known of no board");
    return;
  }
  const Answer* device = Find(bench, name, kGetDeviceDescriptor, 0);
  Require(record.deviceName == name, "a board has its name");
  Require(device != nullptr && device->bytes.size() >= 12, "a board has told what it is");
  Require(WordAt(*device, 8) == 0x5A17, "it is of our vendor");
  const bool fifo = WordAt(*device, 10) == 0xED03;
  Require(fifo || WordAt(*device, 10) == 0xEF00, "and one of our products");
  Require(record.boardType == (fifo ? "FIFO4" : "MCP"), "and has its type");
  CheckString(bench, name, 1, record.string1);
  CheckString(bench, name, 2, record.string2);
  const Answer* version = Find(bench, name, kBulkTransfer, 1);
  Require(record.firmwareVersion == 0 || (version != nullptr && version->whole),
          "a version comes from a whole answer");
  const Answer* pipes = Find(bench, name, kGetPipeInformation, 0);
  const bool fast = pipes != nullptr && pipes->bytes.size() >= 78 && WordAt(*pipes, 76) > 64;
  Require(record.usbVersion == "1.1" || (record.usbVersion == "2" && fast),
          "the speed is what pipe 3 tells");
}

void CheckSearch(const Bench& bench) {
  int present = 0;
  for (std::size_t n = 0; n < kAdapterNames; ++n) {
    const std::string name = "Ezusb-" + std::to_string(n);
    const AdapterRecord& record = AdapterRecords[n];
    if (record.present) ++present;
    CheckRecord(bench, record, name);
    const NameFinding& finding = NameFindings[n];
    const Answer* device = Find(bench, name, kGetDeviceDescriptor, 0);
    Require(!finding.described ||
                (device != nullptr && device->bytes.size() >= 12 &&
                 WordAt(*device, 8) == finding.vendor && WordAt(*device, 10) == finding.product),
            "vendor and product are what was delivered");
    Utf16Units(RowOf(record).string1);
  }
  Require(present == AdapterCount, "every board is counted");
  const std::string explanation = ExplainSearch();
  Require(!explanation.empty() && explanation.size() < 900, "a search is explained");
}

void Transfer(Bench& bench) {
  const int frames = bench.input.Between(1, kFramesPerTransfer);
  for (int i = 1; i <= frames; ++i) Given(SpiTx)(i) = bench.input.Word() % 0xFF00;
  FrameBuffer before = SpiRx;
  Given(UsbCsPerWord) = bench.input.Byte() % 2 == 0;
  const bool present = UsbPresent;
  bench.usb.UsbSpiTransfer(frames);
  const auto& answers = bench.driver.Answers();
  for (int i = 1; i <= kFramesPerTransfer; ++i) {
    if (!UsbPresent || i > frames) {
      Require(SpiRx(i) == before(i), "what was not answered stays");
      continue;
    }
    const auto at = static_cast<std::size_t>(2 * i - 2);
    Require(answers.back().whole, "answers come whole");
    Require(SpiRx(i) == answers.back().bytes[at] * 256 + answers.back().bytes[at + 1],
            "an answer is two bytes");
  }
  if (!present) return;
  if (!bench.driver.Sent().empty()) {
    Require(UsbSpiDelay >= 1 && UsbSpiDelay <= 5, "the delay code is one of the board's");
  }
}

void ReadRegister(Bench& bench) {
  const auto row = static_cast<std::int16_t>(bench.input.Between(0, RegCount));
  bench.registers.ReadReg(row);
  if (!bench.registers.Reachable() || !RegReadable[row]) return;
  const Answer& answer = bench.driver.Answers().back();
  Require(answer.whole && answer.bytes.size() == 4, "a value comes from a whole answer");
  const int raw = answer.bytes[2] * 256 + answer.bytes[3];
  const std::int64_t range = std::int64_t{1} << RegBits[row];
  Require((RegValue - raw) % std::min<std::int64_t>(range, 65536) == 0, "and is the sensor's word");
  Require(RegSigned[row] ? RegValue >= -range / 2 && RegValue < range / 2
                         : RegValue >= 0 && RegValue < range,
          "of as many bits as the register has");
}

void ReadModel(Bench& bench) {
  switch (bench.input.Between(0, 2)) {
    case 0:
      gRecCtrl->ReadRecCtrl();
      Require(gRecCtrl->gLsb() >= 0 && gRecCtrl->gLsb() < 0.01, "a range is one of the sensor's");
      break;
    case 1:
      gAlmCtrl->ReadAlmCtrl();
      break;
    default:
      gRecInfo->ReadRec_Info();
      break;
  }
}

// How many messages there may be.
std::size_t Operate(Bench& bench) {
  Input& input = bench.input;
  switch (input.Between(0, 9)) {
    case 0:
      bench.usb.FindAdapters();
      CheckSearch(bench);
      return static_cast<std::size_t>(AdapterCount);
    case 1:
      bench.usb.SelectUsbAdapter();
      CheckSearch(bench);
      Require(UsbPresent == (AdapterCount > 0), "a board that is there is selected");
      return std::max<std::size_t>(static_cast<std::size_t>(AdapterCount), 1);
    case 2:
      ChooseAdapter(bench.usb, bench.registers, bench.files, input.Between(-1, 4));
      return 1;
    case 3:
      bench.usb.UsbSetupSpi(input.Byte());
      return 1;
    case 4:
      bench.usb.UsbSetSpiBits(input.Byte());
      return 1;
    case 5: {
      const auto answer = bench.usb.UsbReadSettings();
      Require(answer.has_value() == UsbPresent, "settings or a board lost");
      Require(!answer || bench.driver.Answers().back().whole, "settings come whole");
      return 1;
    }
    case 6:
      Transfer(bench);
      return 1;
    case 7:
      ReadRegister(bench);
      return 1;
    case 8:
      ReadModel(bench);
      return 1;
    default:
      static_cast<void>(bench.usb.FindLost());
      return 0;
  }
}

void Run(Input& input) {
  ResetProgram();
  Bench bench(input);
  bench.registers.Use(kUsbAdapter);
  bench.usb.SelectUsbAdapter();
  for (int i = 0; i < kMostOperations && !input.Empty(); ++i) {
    bench.messages.Clear();
    bench.driver.Forget();
    const bool present = UsbPresent;
    const std::size_t allowed = Operate(bench);
    Require(!bench.driver.IsOpen(), "every board is closed again");
    Require(bench.messages.Texts().size() <= allowed, "one message at most");
    Require(allowed != 1 || !present || UsbPresent || bench.messages.Texts().size() == 1 ||
                AdapterCount == 0 || SelectedAdapterNumber < 0,
            "a board that is lost is told");
    if (UsbPresent) continue;
    const long requests = bench.driver.Requests();
    bench.registers.ReadReg(0);
    bench.usb.UsbSetupSpi(1);
    Require(bench.driver.Requests() == requests, "nothing goes to a board that is lost");
    Require(StopSpiLoop, "and no loop goes on");
  }
}

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, 4096);
  kestrel::Input input(data, size);
  kestrel::Run(input);
  return 0;
}
