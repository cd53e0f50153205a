// What the fields of a set-up's file are called.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "alarms/band_table.h"

namespace kestrel::setup {

inline constexpr const char* kSetupFormat = "kestrel setup";
inline constexpr int kSetupVersion = 1;

// In the order of kBandFields.
inline constexpr std::array<const char*, kBandFields.size()> kBandKeys{
    "f_low", "f_high", "alarm1_x", "alarm1_y", "alarm1_z", "alarm2_x", "alarm2_y", "alarm2_z"};

}  // namespace kestrel::setup
