// The column of status flags.
// SPDX-License-Identifier: MIT
#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <array>

#include "acquisition/status.h"
#include "record/status_flags.h"
#include "ui/panels/spacing.h"
#include "ui/panels/state_chip.h"
#include "ui/parts/as_of_box.h"

namespace kestrel {

// The column of status flags with its two buttons.
class StatusPanel : public AsOfBox, public StatusView {
 public:
  explicit StatusPanel(Locale& locale);

  void SetSpacing(const Spacing& spacing);

  void SetStatusName(int bit, const std::string& text) override;
  void SetStatusFlag(int bit, const std::string& text, double colour) override;

  QPushButton* CmdReadStatus;
  QPushButton* cmdClearStatus;

 protected:
  void Grey() override;

 private:
  QHBoxLayout* buttons_;
  std::array<QLabel*, kStatusFlags> lblStatusName_{};
  std::array<StateChip*, kStatusFlags> lblStatusFlag_{};
};

}  // namespace kestrel
