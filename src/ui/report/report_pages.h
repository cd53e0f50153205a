// A whole report as blocks, and its pages on a PDF writer.
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "report/report.h"
#include "ui/chart/picture_out.h"
#include "ui/report/page_flow.h"
#include "ui/report/text_rows.h"

namespace kestrel {

// Title, then the sections in their order. The report lives longer.
[[nodiscard]] std::vector<Block> BlocksOf(const report::Report& report, const PageText& page);

// A plot of a report in unscaled pixels; with what is needed to read it later, `withSource`, where
// it leaves the report.
[[nodiscard]] PlotPicture PictureOf(const report::Plot& plot, PageFonts& fonts, double width,
                                    bool withSource);

}  // namespace kestrel
