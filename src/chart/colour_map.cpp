// The map's support points, and the steps between them.
// SPDX-License-Identifier: MIT
#include "chart/colour_map.h"

#include <cmath>
#include <cstddef>
#include <span>

namespace kestrel {
namespace {

struct Stop {
  double place;
  std::uint32_t colour;  // 0xRRGGBB
};

constexpr std::array kLight{Stop{0, 0xFFFFFF},    Stop{0.18, 0xE3EDF7}, Stop{0.40, 0x9FC3E6},
                            Stop{0.60, 0x5A8FD0}, Stop{0.78, 0x4A52B0}, Stop{0.90, 0x4A1F80},
                            Stop{1, 0x22063F}};
// The map known as magma, at every sixteenth.
constexpr std::array kDark{Stop{0, 0x000004},      Stop{0.0625, 0x0B0924}, Stop{0.125, 0x1D1147},
                           Stop{0.1875, 0x36106B}, Stop{0.25, 0x51127C},   Stop{0.3125, 0x6A1C81},
                           Stop{0.375, 0x832681},  Stop{0.4375, 0x9C2E7F}, Stop{0.5, 0xB73779},
                           Stop{0.5625, 0xD0416F}, Stop{0.625, 0xE75263},  Stop{0.6875, 0xF56B5C},
                           Stop{0.75, 0xFC8961},   Stop{0.8125, 0xFEA772}, Stop{0.875, 0xFEC488},
                           Stop{0.9375, 0xFDE2A3}, Stop{1, 0xFCFDBF}};

double Linear(std::uint32_t colour, int shift) {
  const double part = static_cast<double>(colour >> shift & 0xFFU) / 255;
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

std::uint32_t Encoded(double light, int shift) {
  const double part = light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
  return static_cast<std::uint32_t>(std::lround(part * 255)) << shift;
}

// Mixed as light is.
std::uint32_t Mixed(std::uint32_t a, std::uint32_t b, double part) {
  std::uint32_t colour = 0xFF000000U;
  for (const int shift : {0, 8, 16}) {
    colour |= Encoded(Linear(a, shift) + (Linear(b, shift) - Linear(a, shift)) * part, shift);
  }
  return colour;
}

ColourMap MapOf(std::span<const Stop> stops) {
  ColourMap map{};
  std::size_t stop = 0;
  for (std::size_t i = 0; i < map.size(); ++i) {
    const double place = static_cast<double>(i) / 255;
    while (stop + 2 < stops.size() && place > stops[stop + 1].place) ++stop;
    const Stop& from = stops[stop];
    const Stop& to = stops[stop + 1];
    map[i] = Mixed(from.colour, to.colour, (place - from.place) / (to.place - from.place));
  }
  return map;
}

}  // namespace

ColourMap MapForLightPaper() {
  return MapOf(kLight);
}
ColourMap MapForDarkPaper() {
  return MapOf(kDark);
}

}  // namespace kestrel
