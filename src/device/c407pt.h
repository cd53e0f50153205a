// One sensor's control models under one public name.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"

namespace kestrel {

// One sensor's control registers together. Assigning a value reaches the held object's first
// property; the object itself is never replaced. Nothing in the program makes one: it is kept as a
// public name of the models, which the program reaches through gRecCtrl and gAlmCtrl.
class c407pt {
 public:
  explicit c407pt(RegisterAccess& registers)
      : recCtrl_(std::make_unique<cRecCtrl>(registers)),
        almCtrl_(std::make_unique<cALMCtrl>(registers)) {}

  [[nodiscard]] cRecCtrl& RecCtrl() { return *recCtrl_; }
  void RecCtrl(std::int16_t recModeCode) { recCtrl_->RecModeCode(recModeCode); }

  [[nodiscard]] cALMCtrl& AlmCtrl() { return *almCtrl_; }
  void AlmCtrl(std::int16_t responseDelay) { almCtrl_->ResponseDelay(responseDelay); }

 private:
  std::unique_ptr<cRecCtrl> recCtrl_;
  std::unique_ptr<cALMCtrl> almCtrl_;
};

}  // namespace kestrel
