// Alarm bands between a table and the sensor's flash, and out of files.
// SPDX-License-Identifier: MIT
#include "station/sensor_bands.h"

#include <stdexcept>

#include "alarms/alarm_file.h"
#include "alarms/band_state.h"
#include "alarms/band_transfer.h"
#include "numeric/runtime_error.h"
#include "transport/register_access.h"

namespace kestrel {

// Progress goes to the watch, and the last words are kept.
class SensorBands::View : public BandTransferView {
 public:
  explicit View(const Watch& watch) : watch_(watch) {}

  void DisplaySpectrum(std::int16_t /*option*/) override {}
  void ShowTransfer(const std::string& activity, int done, int total) override {
    watch_.Tell({activity, done, total});
  }
  void HideTransfer() override {}
  void SetMessage(const std::string& text) override { message_ = text; }

  [[nodiscard]] const std::string& Message() const { return message_; }

 private:
  const Watch& watch_;
  std::string message_;
};

Result<BandTable> SensorBands::Read() {
  View view(watch_);
  BandTransfer transfer(core_.registers, core_.delay, loop_, messages_, view);
  loop_.OnInterrupt([&transfer] { transfer.Cancel(); });
  transfer.ReadAllFlash();
  const auto end = End(view);
  if (!end) return end.Why();
  return AlarmBandTable;
}

Result<std::string> SensorBands::Write(const BandTable& table) {
  if (const std::string misfit = MisfitText(table); !misfit.empty()) {
    return Failure{FailureKind::Refused,
                   "Writing alarm bands: " + misfit + ". Nothing was written."};
  }
  ChangeableBands() = table;
  View view(watch_);
  BandTransfer transfer(core_.registers, core_.delay, loop_, messages_, view);
  loop_.OnInterrupt([&transfer] { transfer.Cancel(); });
  transfer.cmdWriteAll_Click();
  return End(view);
}

Result<std::string> SensorBands::Clear() {
  View view(watch_);
  BandTransfer transfer(core_.registers, core_.delay, loop_, messages_, view);
  loop_.OnInterrupt([&transfer] { transfer.Cancel(); });
  transfer.cmdClearAll_Click();
  return End(view);
}

Result<std::string> SensorBands::End(const View& view) {
  const bool interrupted = loop_.WasInterrupted();
  loop_.Forget();
  if (!core_.registers.Reachable()) return end_.Lost(view.Message());
  if (interrupted) return end_.Failed(FailureKind::Interrupted, view.Message());
  return view.Message();
}

Result<BandTable> ReadBandFile(Files& files, const std::filesystem::path& file) {
  const auto refused = [](const std::string& text) { return Failure{FailureKind::Refused, text}; };
  try {
    const auto content = files.Read(file, kLargestAlarmFile + 1);
    if (!content) return refused("The file " + file.string() + " cannot be read.");
    if (content->size() > kLargestAlarmFile) {
      return refused("The file " + file.string() + " is too large to be an alarm file.");
    }
    BandTable table;
    ReadAlarmFileText(*content, table);
    return table;
  } catch (const RuntimeError& error) {
    return refused(file.string() + ", " + error.what());
  } catch (const std::runtime_error& error) {  // the system's own
    return refused(error.what());
  }
}

}  // namespace kestrel
