// The actions of the adapter debug window, and the report of its log.
// SPDX-License-Identifier: MIT
#include "transport/adapter_debug.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "app/program_state.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "transport/typed_word.h"

namespace kestrel {
namespace {

constexpr int kReadSettings = 1;
constexpr int kSetup = 11;
constexpr int kTransferPerWord = 13;
constexpr int kTransfer = 14;
constexpr double kMostSetup = 255;
constexpr std::size_t kFrameDigits = 4;
constexpr std::size_t kByteDigits = 2;
constexpr const char* kLineBreak = "\r\n";

// The first "Adapter_LOG.txt", "Adapter_LOG_2.txt", ... that is not there yet.
std::filesystem::path FreeName(Files& files) {
  const std::filesystem::path folder = FolderOfUserFiles(files);
  const std::vector<std::string> taken = files.List(folder);
  std::string name = "Adapter_LOG.txt";
  for (int number = 2; std::find(taken.begin(), taken.end(), name) != taken.end(); ++number) {
    name = "Adapter_LOG_" + std::to_string(number) + ".txt";
  }
  return folder / name;
}

}  // namespace

bool AdapterDebug::AdapterSelected() {
  if (UsbPresent && SelectedAdapterNumber >= 0) return true;
  messages_.Show("Please Select a Buffer first");
  return false;
}

void AdapterDebug::cmdReadBits_Click() {
  const std::string answer = ReadSettings();
  if (!answer.empty()) view_.ShowBits(answer);
}

void AdapterDebug::cmdReadDelay_Click() {
  const std::string answer = ReadSettings();
  if (!answer.empty()) view_.ShowDelay(answer);
}

// What the two bytes mean is the firmware's affair; both are shown. Empty when there is no answer.
std::string AdapterDebug::ReadSettings() {
  if (!AdapterSelected()) return {};
  const auto answer = usb_.UsbReadSettings();
  if (!answer) {
    Note(kReadSettings, {}, {}, false);
    return {};
  }
  const auto [first, second] = *answer;
  Note(kReadSettings, {}, {first, second}, true);
  return PaddedHex(first, kByteDigits) + " " + PaddedHex(second, kByteDigits) + " hex  (" +
         std::to_string(first) + ", " + std::to_string(second) + ")";
}

void AdapterDebug::txtLoopDelay_KeyDown(const std::string& text) {
  if (!AdapterSelected()) return;
  const auto value = WholeTextNumber(text);
  if (!value || *value < 0 || *value > kMostSetup || *value != std::floor(*value)) {
    messages_.Show("SPI set-up value: " + Quoted(text) +
                   " is not a whole number from 0 to 255.\nNothing was sent.");
    return;
  }
  const bool good{usb_.UsbSetupSpi(static_cast<std::uint8_t>(*value))};
  Note(kSetup, {UsbSpiSetupValue}, {}, good);
  if (good) view_.ShowSetup(std::to_string(UsbSpiSetupValue));
}

void AdapterDebug::UseChipSelectPerWord(bool perWord) {
  UsbAdapter::UseChipSelectPerWord(perWord);
}

std::string AdapterDebug::OtherPolarity(const std::string& caption) {
  return caption == kPositive ? kNegative : kPositive;
}

bool AdapterDebug::cmdWriteSpi_Click() {
  if (!AdapterSelected()) return false;
  TypedFrames typed = ReadTypedFrames(view_.Frames());
  if (typed.faultyFrame != 0) {
    messages_.Show(typed.fault);
    view_.PointAtFrame(typed.faultyFrame);
    return false;
  }
  frames_ = std::move(typed.frames);
  return Transfer();
}

bool AdapterDebug::Repeat() {
  return Transfer();
}

// Register accesses between two transfers of the loop use the same buffer, so it is filled anew.
bool AdapterDebug::Transfer() {
  UsbAdapter::FillTx(std::vector<std::int32_t>(frames_.begin(), frames_.end()));
  const bool good{usb_.UsbSpiTransfer(static_cast<int>(frames_.size()))};
  ++transfers_;
  std::vector<std::uint16_t> received;
  std::vector<std::string> shown;
  for (std::size_t i = 0; good && i < frames_.size(); ++i) {
    received.push_back(static_cast<std::uint16_t>(SpiRx(static_cast<int>(i) + 1)));
    shown.push_back(PaddedHex(received.back(), kFrameDigits));
  }
  if (!good) ++errors_;
  Note(UsbCsPerWord ? kTransferPerWord : kTransfer, frames_, std::move(received), good);
  if (good) view_.ShowAnswers(shown);
  view_.ShowCounts(transfers_, errors_);
  return good;
}

void AdapterDebug::Note(int command, std::vector<std::uint16_t> sent,
                        std::vector<std::uint16_t> received, bool good) {
  log_.Add({clock_.Monotonic(), command, std::move(sent), std::move(received), !good});
}

std::filesystem::path AdapterDebug::cmdSave_Click(Files& files, Locale& locale,
                                                  const std::string& polarity) {
  if (log_.Entries().empty()) {
    messages_.Show("Save: nothing has been sent yet.");
    return {};
  }
  std::filesystem::path file = FreeName(files);
  files.ReplaceWhole(file, Report(locale, polarity) + log_.Text());
  return file;
}

std::string AdapterDebug::Report(Locale& locale, const std::string& polarity) const {
  std::string text;
  const auto line = [&text](const char* title, const std::string& value) {
    text += title + std::string("\t") + value + kLineBreak;
  };
  line("Saved", locale.ShortDate() + " " + locale.Time());
  line("Adapter", SelectedAdapter.deviceName + " " + SelectedAdapter.boardType + ", " +
                      SelectedAdapter.string1 + ", " + SelectedAdapter.string2 + ", firmware " +
                      FixedNumber(static_cast<double>(SelectedAdapter.firmwareVersion), 1));
  line("Polarity", polarity);
  line("Transfers", std::to_string(transfers_));
  line("Errors", std::to_string(errors_));
  line("Older entries dropped", std::to_string(log_.Dropped()));
  return text + kLineBreak;
}

void AdapterDebug::cmdClear_Click() {
  log_.Clear();
  transfers_ = 0;
  errors_ = 0;
  view_.ShowAnswers({});
  view_.ShowCounts(0, 0);
}

}  // namespace kestrel
