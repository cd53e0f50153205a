// The sixteen record slots of the sensor's flash.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulator/registers/sensor_registers.h"
#include "simulator/signal/capture_engine.h"

namespace kestrel {

// A record as flash keeps it: its words, and what the registers told about it.
struct StoredRecord {
  CapturedRecord record;
  std::array<std::uint16_t, sensor::kRecordRegisters.size()> registers{};
};

// The records in the sensor's flash, stored in turn.
class FlashRecords {
 public:
  static constexpr std::size_t kSlots = 16;

  [[nodiscard]] bool IsFull() const { return records_.size() == kSlots; }
  [[nodiscard]] std::uint16_t Count() const { return static_cast<std::uint16_t>(records_.size()); }

  // Fills the next slot; nothing happens when all are full.
  void Store(StoredRecord record);

  // None when the slot is empty.
  [[nodiscard]] const StoredRecord* At(std::size_t slot) const;

  void Clear() { records_.clear(); }

 private:
  std::vector<StoredRecord> records_;
};

}  // namespace kestrel
