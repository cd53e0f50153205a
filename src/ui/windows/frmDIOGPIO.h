// The window of the sensor's two digital lines.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <array>

#include "connection/core.h"
#include "device/dio_gpio.h"
#include "ui/parts/sensor_window.h"
#include "ui/windows/dio_line_box.h"

namespace kestrel {

// Functions, polarity, direction and level of the sensor's two digital lines.
class frmDIOGPIO : public SensorWindow, public DioGpioView {
 public:
  frmDIOGPIO(Core& core, HandlerEdge& edge, QWidget* parent);

  void ReadDIOGPIO() { logic_.ReadDIOGPIO(); }
  void WriteDIOCTRL() { logic_.WriteDIOCTRL(); }
  void WriteGPIOCTRL() { logic_.WriteGPIOCTRL(); }

  void ShowControls(const DioControls& controls) override;
  [[nodiscard]] DioControls Controls() override;

 protected:
  void ReadSensor() override { ReadDIOGPIO(); }
  void ShowLastRead() override { logic_.ShowLastRead(); }

 private:
  [[nodiscard]] QLayout* Words();

  DioGpio logic_;
  std::array<DioLineBox*, kDioLines> lines_;
  QLabel* lblDioWord_;
  QLabel* lblGpioWord_;
};

}  // namespace kestrel
