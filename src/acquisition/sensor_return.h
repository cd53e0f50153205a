// A sensor that was lost, looked for without a message.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "connection/core.h"

namespace kestrel {

// Finds the road to a lost sensor again: the same board, or the same port. Another board is never
// chosen, since it may have another sensor.
class SensorReturn {
 public:
  explicit SensorReturn(Core& core) : core_(core) {}

  // Remembers the road that is in use; to be called while the sensor can be reached, or when it has
  // just been lost.
  void NoteRoad();

  // Whether the sensor can be reached, if need be over the remembered road, which then is the
  // interface again. A board that is not attached is not asked; one that is there and does not
  // answer is asked ever less often. Messages may come of it.
  [[nodiscard]] bool Look();

  // Whether the interface is the remembered road.
  [[nodiscard]] bool SameRoad() const;

 private:
  [[nodiscard]] bool LookForBoard();
  [[nodiscard]] bool LookForPort();

  Core& core_;
  std::int16_t type_ = 0;  // as InterfaceType
  std::string board_;
  int vain_ = 0;  // searches for a board that is attached
  int skip_ = 0;  // looks to be left out before the next one
};

}  // namespace kestrel
