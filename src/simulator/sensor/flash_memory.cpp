// Writing to the sensor's flash and reading back from it.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/flash_memory.h"

#include <utility>

#include "simulator/registers/sensor_registers.h"

namespace kestrel::sensor {
namespace {

std::uint8_t BandRegister(std::size_t word) {
  return static_cast<std::uint8_t>(kAlmFLow + 2 * word);
}

}  // namespace

void FlashMemory::Deliver(const Preset& preset) {
  settings_ = RegisterFile::FactoryValues();
  for (const auto& setting : preset.settings) settings_[setting.address / 2U] = setting.word;
  records_.Clear();
  bands_.Clear();
  for (const auto& saved : preset.bands) {
    if (AlarmBands::Band* band = bands_.At(saved.pointer)) *band = saved.band;
  }
}

bool FlashMemory::Erase() {
  if (!Write()) return false;
  settings_ = RegisterFile::FactoryValues();
  records_.Clear();
  registers_.Set(kRecFlshCnt, 0);
  bands_.Clear();
  return true;
}

void FlashMemory::SaveSettings() {
  if (Write()) settings_ = registers_.Image();
}

void FlashMemory::StoreRecord(const CapturedRecord& record) {
  if (!Write()) return;
  StoredRecord stored{.record = record};
  for (std::size_t i = 0; i < stored.registers.size(); ++i) {
    stored.registers[i] = registers_.Read(kRecordRegisters[i]);
  }
  records_.Store(std::move(stored));
  registers_.Set(kRecFlshCnt, records_.Count());
}

CapturedRecord FlashMemory::RetrieveRecord() {
  const StoredRecord* stored = records_.At(registers_.Read(kRecPntr));
  if (stored == nullptr) {
    for (const auto address : kRecordRegisters) {
      if (address != kSupplyOut && address != kTempOut) registers_.Set(address, 0);
    }
    return {};
  }
  for (std::size_t i = 0; i < stored->registers.size(); ++i) {
    registers_.Set(kRecordRegisters[i], stored->registers[i]);
  }
  return stored->record;
}

void FlashMemory::ClearRecords() {
  if (!Write()) return;
  records_.Clear();
  registers_.Set(kRecFlshCnt, 0);
}

bool FlashMemory::SaveBand() {
  AlarmBands::Band* band = bands_.At(registers_.Read(kAlmPntr));
  if (band == nullptr || !Write()) return false;
  for (std::size_t i = 0; i < band->size(); ++i) (*band)[i] = registers_.Read(BandRegister(i));
  return true;
}

void FlashMemory::RetrieveBand() {
  const AlarmBands::Band* band = bands_.At(registers_.Read(kAlmPntr));
  if (band == nullptr) return;
  for (std::size_t i = 0; i < band->size(); ++i) registers_.Set(BandRegister(i), (*band)[i]);
}

bool FlashMemory::ClearBands() {
  if (!Write()) return false;
  bands_.Clear();
  return true;
}

bool FlashMemory::Write() {
  if (surroundings_.scenario.faults.flashUpdate) {
    registers_.SetBits(kStatus, kFlashUpdateFailure);
    return false;
  }
  registers_.Add(kEndurance, 1);
  return true;
}

}  // namespace kestrel::sensor
