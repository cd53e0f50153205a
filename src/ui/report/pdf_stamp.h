// What a PDF file tells of its making, put in by us instead of by the clock and by chance.
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <chrono>

namespace kestrel {

// The file with this moment (UTC) as its date, and with an identity that follows from its content.
// It has a plain cross-reference table, as the toolkit writes it; other bytes come back as they
// are.
[[nodiscard]] QByteArray Stamped(QByteArray pdf, std::chrono::system_clock::time_point moment);

}  // namespace kestrel
