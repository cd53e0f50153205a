// The parts of the Python module, each of which adds its names to it.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>

namespace kestrel::python {

// A record's points, settings and conditions, as views and plain values.
void BindRecord(pybind11::module_& module);
// Peaks, levels, quantities, velocity over time and joined spectra of records.
void BindAnalysis(pybind11::module_& module);
void BindJoined(pybind11::module_& module);
// A station: one sensor with its settings, records, registers, bands and set-ups.
void BindSensor(pybind11::module_& module);
// Bands of files and set-ups as values.
void BindSetup(pybind11::module_& module);
// The archive: found, read, amended, kept.
void BindArchive(pybind11::module_& module);
// Trends and baselines of the archive.
void BindTrend(pybind11::module_& module);
// Files of other programs.
void BindExchange(pybind11::module_& module);

}  // namespace kestrel::python
