// Blocks of cells as spreadsheets exchange them.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "alarms/band_cells.h"

namespace kestrel {

// Rows of cells as spreadsheets put them on the clipboard: tabs between cells, LF, CR LF or CR
// between rows, quotes around a cell that holds one of these, a quote in it doubled.
using TextBlock = std::vector<std::vector<std::string>>;
[[nodiscard]] TextBlock ParseTextBlock(std::string_view text);

// The cells of a block in this form, rows parted by LF, in the decimal mark of the user's
// spreadsheet. A threshold without a known range is an empty cell.
[[nodiscard]] std::string BlockText(const BandTable& table, const CellBlock& block, int option,
                                    const BandScale& scale, char decimalMark);

}  // namespace kestrel
