// Records on their way into files of other programs, and back.
// SPDX-License-Identifier: MIT
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "exchange/exported.h"
#include "exchange/imported.h"
#include "python/bindings.h"
#include "python/interpreter_lock.h"
#include "python/raise.h"
#include "python/remarks.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

// Records, each with its remarks.
py::bytes Written(const std::vector<std::pair<std::shared_ptr<Record>, py::dict>>& records,
                  const std::string& format) {
  std::vector<exchange::NotedRecord> noted;
  for (const auto& [record, told] : records) {
    const archive::Remarks remarks = RemarksOf(told);
    noted.push_back({.record = *record,
                     .note = {.machine = remarks.machine,
                              .point = remarks.point,
                              .orientation = remarks.orientation,
                              .speedRpm = remarks.rpm,
                              .note = remarks.note,
                              .tags = remarks.tags,
                              .program = KESTREL_VERSION}});
  }
  const auto content = [&] {
    const Unlocked unlocked;
    return exchange::Exported(noted, *exchange::FormatNamed(format));
  }();
  return Got(content);
}

// Record, note, title, when it was taken as the file has it.
py::list Read(const std::string& file, const py::bytes& content, const py::dict& told) {
  exchange::Said said;
  const auto take = [&](const char* name, std::optional<std::int16_t>& code) {
    if (told.contains(name)) code = told[name].cast<std::int16_t>();
  };
  take("option", said.option);
  take("range", said.range);
  take("window", said.window);
  const std::string bytes = content;
  const auto imported = [&] {
    const Unlocked unlocked;
    return exchange::Imported(file, bytes);
  }();
  py::list records;
  for (const auto& each : Got(imported).records) {
    const auto record = exchange::RecordOf(each, said);
    if (!record) Raise("FileError", file + ": " + record.Why().Text());
    records.append(py::make_tuple(std::make_shared<Record>(*record), each.note, each.title));
  }
  return py::list(py::make_tuple(records, imported->notices));
}

}  // namespace

void BindExchange(py::module_& module) {
  py::dict formats;
  for (const auto format : exchange::kExportFormats) {
    if (exchange::IsBuiltIn(format)) {
      formats[py::str(exchange::NameOf(format))] = exchange::ExtensionOf(format);
    }
  }
  module.attr("formats") = formats;
  module.def("exported", &Written);
  module.def("imported", &Read);
}

}  // namespace kestrel::python
