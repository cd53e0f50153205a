// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QButtonGroup>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <array>
#include <utility>
#include <vector>

#include "device/dio_gpio.h"

namespace kestrel {

// The option groups of one digital line.
class DioLineBox : public QGroupBox {
 public:
  using NamedOptions = std::vector<std::pair<QRadioButton*, const char*>>;

  // Line 1 or 2.
  explicit DioLineBox(int line);

  void Show(const DioLine& line);
  [[nodiscard]] DioLine Line() const;

  // The options of DIO_CTRL and of GPIO_CTRL, each with the name of its handler.
  [[nodiscard]] const NamedOptions& DioOptions() const { return dioOptions_; }
  [[nodiscard]] const NamedOptions& GpioOptions() const { return gpioOptions_; }

 private:
  QRadioButton* Add(QGroupBox* frame, QButtonGroup* group, const char* name,
                    const QString& caption);
  [[nodiscard]] QGroupBox* MakeFrame(const char* name, const QString& title);
  void EnableGpio(bool enabled);

  NamedOptions dioOptions_;
  NamedOptions gpioOptions_;
  std::array<QRadioButton*, 4> function_{};
  QRadioButton* activeHigh_ = nullptr;
  QRadioButton* activeLow_ = nullptr;
  QRadioButton* input_ = nullptr;
  QRadioButton* output_ = nullptr;
  QRadioButton* high_ = nullptr;
  QRadioButton* low_ = nullptr;
  QButtonGroup* functionGroup_;
  QButtonGroup* polarityGroup_;
  QButtonGroup* directionGroup_;
  QButtonGroup* levelGroup_;
  QGroupBox* fraGPIO_ = nullptr;
  QGroupBox* fraGDirection_ = nullptr;
  QGroupBox* fraGLevel_ = nullptr;
  QLabel* LbLGPIOinfo_ = nullptr;
};

}  // namespace kestrel
