// The panel of the record settings.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <array>

#include "acquisition/settings_exchange.h"
#include "ui/panels/spacing.h"

namespace kestrel {

// The record settings, in the frame FraCap. Signals come from the user's changes only, never from
// the window filling its controls.
class RecordPanel : public QGroupBox, public SettingsExchangeView {
  Q_OBJECT

 public:
  explicit RecordPanel(QLabel* lblRecCount);

  void SetSpacing(const Spacing& spacing);

  // Adds the items of all lists, in their fixed order.
  void FillLists();

  [[nodiscard]] int Selected(Setting setting) override;
  bool Select(Setting setting, int index) override;
  void Deselect(Setting setting) override;
  [[nodiscard]] bool SampleRateBit(int bit) override;
  void SetSampleRateBit(int bit, bool on) override;
  [[nodiscard]] bool PowerDownTicked() override;
  void SetPowerDown(bool on) override;
  void SetRecCount(const std::string& text) override;
  [[nodiscard]] std::string FraCapCaption() override;
  void SetFraCapCaption(const std::string& text) override;

  [[nodiscard]] QString FftAvgsText() const;
  // "every 10 minutes"
  [[nodiscard]] QString PeriodInWords() const;

  QPushButton* cmdGetRecord;
  QPushButton* cmdRecInfo;

 signals:
  void RecCtrlChanged();  // any setting of REC_CTRL
  void RecPrdChanged();
  void FftAvgsChanged();
  void RecPntrChanged();

 private:
  static constexpr std::size_t kLists = 8;
  static constexpr std::size_t kRateBits = 4;

  [[nodiscard]] QComboBox* List(Setting setting) const;
  void BuildLists();
  void BuildBoxes();
  void LayOut();
  void Connect();
  void ShowSampleRate();

  std::array<QComboBox*, kLists> lists_{};
  std::array<QCheckBox*, kRateBits> ckBW_{};
  QCheckBox* ckPowerDown_ = nullptr;
  QLabel* lblSampleRate_ = nullptr;
  QLabel* lblRecCount_;
};

}  // namespace kestrel
