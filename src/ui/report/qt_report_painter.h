// Reports as PDF files, and their plots as pictures.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "report/report_painter.h"

namespace kestrel {

// Needs the toolkit's application to exist, but no display.
class QtReportPainter : public report::ReportPainter {
 public:
  [[nodiscard]] report::PaintedReport Pdf(const report::Report& report,
                                          report::Paper paper) override;
  [[nodiscard]] std::vector<std::string> PictureEndings() override;
  [[nodiscard]] std::string Picture(const report::Plot& plot, const std::string& ending) override;
};

// What the system's region prints on.
[[nodiscard]] report::Paper UsualPaper();

}  // namespace kestrel
