// The window of set-ups: the sensor's whole configuration saved, compared, restored, handed on.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "connection/core.h"
#include "setup/sensor_setup.h"
#include "setup/setup_store.h"
#include "ui/parts/secondary_window.h"
#include "ui/setup/setups_panel.h"

namespace kestrel {

// Reads the sensor only when asked to. What it shows of the sensor is as of the last reading, which
// it says.
class frmSetups : public SecondaryWindow {
  Q_OBJECT

 public:
  // Set-ups are kept in this folder; with none, in files only.
  frmSetups(Core& core, HandlerEdge& edge, QWidget* parent, const std::filesystem::path& folder,
            std::string program);

  // Another sensor may be connected now.
  void ForgetSensor();
  // Ends a transfer before its next band.
  void CancelTransfer() { isWanted_ = false; }

  void Export(const QString& file);
  void Import(const QString& file);

  void reject() override;

 signals:
  // The sensor's registers and bands may be other ones.
  void Restored();

 protected:
  void Form_Activate() override;
  void keyPressEvent(QKeyEvent* event) override;
  void Refused(const QString& why) override;

 private:
  void Connect();
  void ShowChosen();
  void Refill(const std::string& chosen);
  [[nodiscard]] std::optional<setup::Setup> Chosen();
  void Save();
  void Compare();
  void Restore();
  void Delete();
  void AskExport();
  void AskImport();
  // Where no name is in the way, or the user wants it replaced.
  [[nodiscard]] bool MayKeep(const std::string& name);
  void Note(const std::string& text);

  // What the sensor holds now; none after saying why.
  [[nodiscard]] std::optional<setup::Setup> ReadSensor();
  [[nodiscard]] setup::SensorAccess Sensor() {
    return {core_.registers, core_.delay, core_.seams.loop};
  }
  // Runs while others are kept out; none where the sensor is in use.
  void Transfer(const char* name, const std::function<void(const setup::Follow&)>& work);

  Core& core_;
  setup::SetupStore store_;
  std::string program_;
  SetupsPanel* panel_;
  std::optional<setup::Setup> now_;  // as it was read last
  bool isWanted_ = true;             // the transfer
  bool isTransferring_ = false;
  bool closeAfterTransfer_ = false;
};

}  // namespace kestrel
