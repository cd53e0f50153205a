// The option groups of one digital line.
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

  // Line 0 is DIO1, line 1 DIO2.
  explicit DioLineBox(std::size_t line);

  void Show(const DioLine& line);
  [[nodiscard]] DioLine Line() const;

  // The options of DIO_CTRL and of GPIO_CTRL, each with the name of its handler.
  [[nodiscard]] const NamedOptions& DioOptions() const { return dioOptions_; }
  [[nodiscard]] const NamedOptions& GpioOptions() const { return gpioOptions_; }

 private:
  struct Names;

  void BuildDio(const Names& names);
  void BuildGpio(const Names& names);
  void LayOut();
  QRadioButton* Add(QGroupBox* frame, QButtonGroup* group, const char* name,
                    const QString& caption);
  void EnableGpio(bool enabled);

  static const std::array<Names, kDioLines> kNames;

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
  QGroupBox* fraFunction_ = nullptr;
  QGroupBox* fraPolarity_ = nullptr;
  QGroupBox* fraGPIO_ = nullptr;
  QGroupBox* fraGDirection_ = nullptr;
  QGroupBox* fraGLevel_ = nullptr;
  QLabel* lblPolarityBit_ = nullptr;
  QLabel* LbLGPIOinfo_ = nullptr;
};

}  // namespace kestrel
