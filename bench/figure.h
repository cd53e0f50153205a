// A figure that the program promises, as a row of the table that bench/run prints.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace kestrel {

// A figure that the program promises, as a row of the table that bench/run prints.
struct Figure {
  std::string name;
  std::string measured;
  std::string peer = {};  // the floor, or what else does the same work; empty without one
  double ratio = 0;       // measured to peer
  std::string promise;
  bool kept = false;
};

// "12.3 ms"; as many decimals as are asked for.
inline std::string Amount(double value, int decimals, const char* unit) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f %s", decimals, value, unit);
  return text.data();
}

// One line, its cells separated by tabs.
inline void Print(const Figure& figure) {
  const std::string ratio = figure.peer.empty() ? "" : Amount(figure.ratio, 2, "");
  std::printf("figure\t%s\t%s\t%s\t%s\t%s\t%s\n", figure.name.c_str(), figure.measured.c_str(),
              figure.peer.c_str(), ratio.c_str(), figure.promise.c_str(),
              figure.kept ? "yes" : "MISSED");
  std::fflush(stdout);
}

// What nothing is promised of, for below the table.
inline void PrintNote(const std::string& text) {
  std::printf("note\t%s\n", text.c_str());
  std::fflush(stdout);
}

// For an exit code: whether what was measured was done at all. Times do not matter to it.
inline int WasDone(bool done, const char* otherwise) {
  if (!done) std::fprintf(stderr, "%s\n", otherwise);
  return done ? 0 : 1;
}

}  // namespace kestrel
