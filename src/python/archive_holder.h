// The archive as Python holds it, and filters as dictionaries.
// SPDX-License-Identifier: MIT
#pragma once

#include "archive/archive.h"
#include "python/held.h"

namespace kestrel::python {

using HeldArchive = Held<archive::Archive>;

// since, until (nanoseconds), machine, point, bench, tag, text, is_time, option, range, window,
// alarm, simulated, deleted; what is not there asks for nothing.
[[nodiscard]] archive::Filter FilterOf(const pybind11::dict& told);

}  // namespace kestrel::python
