// What the search found, in rows and in words.
// SPDX-License-Identifier: MIT
#include "transport/adapter_search.h"

#include "numeric/number_format.h"
#include "seams/usb_no_driver.h"
#include "transport/typed_word.h"

namespace kestrel {
namespace {

constexpr std::size_t kIdDigits = 4;

std::string ExplainOpenError(std::int32_t code) {
  switch (code) {
    case kUsbNoPermission:
      return "attached, but you have no permission to use it. Ask your administrator for access "
             "to the device, then plug it in again.";
    case kUsbBusyElsewhere:
      return "attached, but in use by another program. Close that program, then try again.";
    case kUsbNoDriver:
      return "attached, but without a driver that programs can use. On Windows give it the "
             "system's "
             "own driver, WinUSB, in the device manager, then try again.";
    case 0:
      return "could not be opened. Plug the board in again, then try again.";
    default:
      return "could not be opened (system error " + std::to_string(code) +
             "). Plug the board in again, then try again.";
  }
}

// Why there is no board of ours under a name; empty when nothing is attached or all is well.
std::string Trouble(const AdapterRecord& record, const NameFinding& finding) {
  if (record.present || (!finding.opened && finding.openError == kUsbNotAttached)) return {};
  if (!finding.opened) return ExplainOpenError(finding.openError);
  if (!finding.described) {
    return "attached, but it does not say what it is. Plug the board in again, then try again.";
  }
  return "not a board for this sensor (vendor " + PaddedHex(finding.vendor, kIdDigits) +
         ", product " + PaddedHex(finding.product, kIdDigits) + ").";
}

std::string Headline(bool troubled) {
  if (AdapterCount == 1) return "1 adapter found.";
  if (AdapterCount > 1) return std::to_string(AdapterCount) + " adapters found.";
  if (troubled) return "No adapter can be used.";
  return "No adapter is attached. Plug the board in, then try again.";
}

}  // namespace

AdapterRow RowOf(const AdapterRecord& record) {
  if (!record.present) return {};
  return {record.deviceName,
          record.boardType,
          record.string1,
          record.string2,
          FixedNumber(static_cast<double>(record.firmwareVersion), 1),
          record.usbVersion};
}

std::string ExplainSearch() {
  std::string troubles;
  for (std::size_t n = 0; n < kAdapterNames; ++n) {
    const std::string trouble = Trouble(AdapterRecords[n], NameFindings[n]);
    if (!trouble.empty()) troubles += "\nEzusb-" + std::to_string(n) + ": " + trouble;
  }
  return Headline(!troubles.empty()) + troubles;
}

}  // namespace kestrel
