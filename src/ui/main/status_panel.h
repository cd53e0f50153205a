// The column of status flags.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QPushButton>
#include <array>

#include "acquisition/status.h"
#include "record/status_flags.h"
#include "ui/parts/as_of_box.h"

namespace kestrel {

// The column of status flags with its two buttons.
class StatusPanel : public AsOfBox, public StatusView {
 public:
  explicit StatusPanel(Locale& locale);

  void SetStatusName(int bit, const std::string& text) override;
  void SetStatusFlag(int bit, const std::string& text, double colour) override;

  QPushButton* CmdReadStatus;
  QPushButton* cmdClearStatus;

 protected:
  void Grey() override;

 private:
  std::array<QLabel*, kStatusFlags> lblStatusName_{};
  std::array<QLabel*, kStatusFlags> lblStatusFlag_{};
};

}  // namespace kestrel
