// Remarks of a record as a dictionary, and back.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>

#include "archive/kept_record.h"
#include "archive/remarks_change.h"

namespace kestrel::python {

// machine, point, orientation, rpm, note, tags; what is not there is empty.
[[nodiscard]] archive::Remarks RemarksOf(const pybind11::dict& told);
[[nodiscard]] archive::RemarksChange ChangeOf(const pybind11::dict& told);
[[nodiscard]] pybind11::dict DictOf(const archive::Remarks& remarks);

}  // namespace kestrel::python
