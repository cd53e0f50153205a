// The seam to whoever lays reports out on paper and draws their plots.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "report/report.h"

namespace kestrel::report {

enum class Paper { A4, Letter };

struct PaintedReport {
  std::string pdf{};                   // the whole file
  std::vector<std::string> notices{};  // what could not be shown as it is, and what helps
};

class ReportPainter {
 public:
  virtual ~ReportPainter() = default;

  // The same report and paper give the same bytes. Throws RuntimeError where nothing can be printed
  // with.
  [[nodiscard]] virtual PaintedReport Pdf(const Report& report, Paper paper) = 0;

  // "png", and "svg" where it can be made.
  [[nodiscard]] virtual std::vector<std::string> PictureEndings() = 0;
  // The whole file of a plot; likewise.
  [[nodiscard]] virtual std::string Picture(const Plot& plot, const std::string& ending) = 0;
};

}  // namespace kestrel::report
