// The USB-to-SPI adapter: its boards, their settings, and transfers of frames.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "seams/error.h"
#include "seams/messages.h"
#include "seams/usb_driver.h"
#include "transport/adapter_blocks.h"

namespace kestrel {

inline constexpr int kAdapterNames = 4;  // "Ezusb-0" to "Ezusb-3"

// What is known of one adapter board.
struct AdapterRecord {
  std::string deviceName;  // "Ezusb-0" .. "Ezusb-3"
  bool present = false;    // a recognised board answers under this name
  std::string boardType;   // "FIFO4", "MCP" or "None"
  std::string string1;     // string descriptors of the board, or "None"
  std::string string2;
  float firmwareVersion = 0;  // major + minor / 10
  std::string usbVersion;     // "1.1" or "2"
};

// What the last search met under a device name.
struct NameFinding {
  std::int32_t openError = 0;  // system's error code; 0 when it opened, or when none was given
  bool opened = false;
  bool described = false;  // the device told its vendor and product
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
};

// What the adapter's last search, its choice and its transfers left, for reading; no units but
// where one is given, start values in brackets. UsbAdapter alone changes it.
extern const FrameBuffer& SpiTx;          // frames to send (all 0)
extern const FrameBuffer& SpiRx;          // answers received (all 0)
extern const std::uint8_t& SpiWordCount;  // frames of the last transfer (0)
extern const std::array<AdapterRecord, kAdapterNames>& AdapterRecords;
extern const std::array<NameFinding, kAdapterNames>& NameFindings;
extern const AdapterRecord& SelectedAdapter;       // copy of the record in use
extern const std::int16_t& AdapterCount;           // boards found by the last search (0)
extern const std::int16_t& SelectedAdapterNumber;  // 0..3, -1 when none (-1)

extern const bool& UsbPresent;                // the selected adapter answers (false)
extern const bool& StopSpiLoop;               // ends the adapter's endless transfer loop (true)
extern const bool& UsbCsPerWord;              // adapter command 13 rather than 14 (true)
extern const std::uint8_t& UsbSpiDelay;       // delay code of every transfer, 1..5 (1)
extern const std::uint8_t& UsbSpiBits;        // value last sent with adapter command 12 (120)
extern const std::uint8_t& UsbSpiSetupValue;  // value last sent with adapter command 11 (25)

// Back to the start values in brackets.
void ResetAdapterState();

// The settings of transfers and the loop's end back to their start values.
void ResetAdapterSettings();

// The USB-to-SPI adapter: command blocks to the board's firmware on pipe 0, answers on pipe 1.
// Every operation opens the board and closes it again, but between Hold and Release. A failed
// request shows one message, returns it as an error, clears UsbPresent and ends the endless
// transfer loop; nothing is sent while UsbPresent is false.
class UsbAdapter {
 public:
  UsbAdapter(UsbDriver& driver, Messages& messages) : driver_(driver), messages_(messages) {}

  // A handle of 1 or more; when the open fails the system's error code negated, or 0 when the
  // system gave none.
  [[nodiscard]] UsbDriver::Handle OpenDevice(const std::string& name);

  void FindAdapters();
  void GetBoardInfo(UsbDriver::Handle device, AdapterRecord& record);

  // Searches and selects the first board present, or shows why there is none.
  void SelectUsbAdapter();

  // Makes record 0..3 the selected one.
  void SelectAdapter(int number);

  // No board is selected; the transfer loop ends.
  static void SelectNone();

  static void LetLoopRun();
  static void EndLoop();

  static void UseChipSelectPerWord(bool perWord);
  static void UseSpiDelay(std::uint8_t code);

  // Puts frames into SpiTx from 1 on; sends nothing.
  static void FillTx(std::span<const std::int32_t> frames);

  Outcome UsbSetupSpi(std::uint8_t value);    // adapter command 11; 0 is sent as 1
  Outcome UsbSetSpiBits(std::uint8_t value);  // adapter command 12

  // Adapter command 1: the two bytes that the board answers. Nothing without a board or when it
  // fails.
  [[nodiscard]] std::optional<std::array<std::uint8_t, 2>> UsbReadSettings();

  // Sends SpiTx(1..n) and fills SpiRx(1..n); on failure SpiRx is unchanged. A frame with high byte
  // 255 throws RuntimeError "Overflow". A board that was without power since its last settings gets
  // them again first.
  Outcome UsbSpiTransfer(int n);

  // From Hold on the selected board stays open after the first operation that opens it: until
  // Release, a failure, or the search or choice of another.
  void Hold();
  void Release();

  // Looks whether the selected board is still attached; it is not touched. A board that is gone
  // counts as lost, without a message; returns whether it has just been found lost.
  [[nodiscard]] bool FindLost();

  // Whether the system lists a board of this name; it is not touched.
  [[nodiscard]] bool IsAttached(const std::string& name) { return driver_.Attached(name); }

  // Why nothing can be sent while UsbPresent is false.
  [[nodiscard]] static Error Absent();

  // One bulk request: 1 when all of `buffer` was moved, 0 when not, -2 without a handle.
  int BulkTransfer(UsbDriver::Handle device, std::uint32_t pipe, std::span<std::uint8_t> buffer);

 private:
  class OpenedDevice;

  // The selected board, open: for as long as this is kept, or longer.
  [[nodiscard]] std::shared_ptr<const OpenedDevice> Open();
  [[nodiscard]] std::string ReadBoardType(UsbDriver::Handle device, NameFinding& finding);
  [[nodiscard]] std::string ReadStringDescriptor(UsbDriver::Handle device, std::uint8_t index);
  [[nodiscard]] bool ReadFirmwareVersion(UsbDriver::Handle device, float& version);
  [[nodiscard]] int ReadPacketSize(UsbDriver::Handle device, std::size_t pipe);
  Outcome SendSetting(std::uint8_t command, std::uint8_t value);
  // These return the message of what failed; null when all went well.
  [[nodiscard]] const char* Set(const OpenedDevice& device, std::uint8_t command,
                                std::uint8_t value);
  [[nodiscard]] const char* SetAgainAfterPowerLoss(const OpenedDevice& device);
  [[nodiscard]] const char* Exchange(const OpenedDevice& device, std::span<std::uint8_t> block,
                                     std::span<std::uint8_t> answer);
  static void Lose();
  Error Fail(const char* text);

  UsbDriver& driver_;
  Messages& messages_;
  bool holds_ = false;
  std::shared_ptr<const OpenedDevice> held_;
  // The pluggings-in of the selected board for which its settings hold; 0 for none.
  std::uint32_t bitsSetFor_ = 0;
  std::uint32_t setupSetFor_ = 0;
};

}  // namespace kestrel
