// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <array>

#include "app/core.h"
#include "device/dio_gpio.h"
#include "ui/dio_line_box.h"
#include "ui/secondary_window.h"

namespace kestrel {

// Functions, polarity, direction and level of the sensor's two digital lines.
class frmDIOGPIO : public SecondaryWindow, public DioGpioView {
 public:
  frmDIOGPIO(Core& core, HandlerEdge& edge, QWidget* parent);

  void ShowLines(const DioLines& lines) override;
  void ShowWords(const std::string& dioCtrl, const std::string& gpioCtrl) override;
  [[nodiscard]] DioLines Lines() override;

 protected:
  void Form_Activate() override;

 private:
  void LayOut();

  DioGpio logic_;
  std::array<DioLineBox*, kDioLines> lines_;
  QLabel* lblDioWord_;
  QLabel* lblGpioWord_;
};

}  // namespace kestrel
