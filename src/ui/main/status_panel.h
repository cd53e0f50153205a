// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <array>

#include "acquisition/status.h"
#include "record/status_flags.h"

namespace kestrel {

// The column of status flags with its two buttons.
class StatusPanel : public QGroupBox, public StatusView {
 public:
  StatusPanel();

  void SetStatusName(int bit, const std::string& text) override;
  void SetStatusFlag(int bit, const std::string& text, double colour) override;

  QPushButton* CmdReadStatus;
  QPushButton* cmdClearStatus;

 private:
  std::array<QLabel*, kStatusFlags> lblStatusName_{};
  std::array<QLabel*, kStatusFlags> lblStatusFlag_{};
};

}  // namespace kestrel
