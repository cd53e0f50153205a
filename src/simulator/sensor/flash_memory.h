// The sensor's flash: saved settings, stored records and alarm bands, and the count of writes.
// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/registers/alarm_bands.h"
#include "simulator/registers/register_file.h"
#include "simulator/sensor/flash_records.h"
#include "simulator/sensor/surroundings.h"

namespace kestrel::sensor {

// What exchanges words with it are the registers. Whatever writes to it is counted in ENDURANCE,
// and changes nothing but STATUS while the surroundings let writing fail.
class FlashMemory {
 public:
  FlashMemory(RegisterFile& registers, const Surroundings& surroundings)
      : registers_(registers), surroundings_(surroundings), settings_(registers.FactoryValues()) {}

  // As a new sensor comes: the factory's values and the preset, no records; not counted.
  void Deliver(const Preset& preset);

  // Back to the factory's values, without records and bands. Returns whether it could be written.
  [[nodiscard]] bool Erase();

  void SaveSettings();
  void RestoreSettings() { registers_.Restart(settings_); }

  [[nodiscard]] bool IsFull() const { return records_.IsFull(); }
  // Keeps a record with what the registers tell about it.
  void StoreRecord(const CapturedRecord& record);
  // The record that REC_PNTR names; the registers tell about it from then on. An empty slot has
  // neither data nor information; supply and temperature stay those last measured.
  [[nodiscard]] CapturedRecord RetrieveRecord();
  void ClearRecords();

  [[nodiscard]] const AlarmBands& Bands() const { return bands_; }
  // The band that ALM_PNTR names, from and to ALM_F_LOW and the registers after it. SaveBand and
  // ClearBands return whether the bands may be other ones now.
  [[nodiscard]] bool SaveBand();
  void RetrieveBand();
  [[nodiscard]] bool ClearBands();

 private:
  [[nodiscard]] bool Write();

  RegisterFile& registers_;
  const Surroundings& surroundings_;
  RegisterFile::Words settings_;
  FlashRecords records_;
  AlarmBands bands_;
};

}  // namespace kestrel::sensor
