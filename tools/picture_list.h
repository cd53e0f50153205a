// Every picture of the documents, with how it is drawn.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

namespace kestrel {

// Every picture of README.md and docs/guide.md, in docs/pictures.
inline constexpr std::array kPictures{"spectrum.png",
                                      "time_record_dark.png",
                                      "bands_on_plot.png",
                                      "alarm_spectrum.png",
                                      "alarm_control.png",
                                      "data_log.png",
                                      "registers.png",
                                      "dio_gpio.png",
                                      "calibration.png",
                                      "usb_adapter.png",
                                      "adapter_lost.png",
                                      "record_line.png",
                                      "record_line_dark.png",
                                      "analyser.png",
                                      "waterfall.png",
                                      "library.png",
                                      "trend.png",
                                      "alarm_bands.png",
                                      "wide.png",
                                      "monitor.png"};

}  // namespace kestrel
