"""The sensor, its archive and its analysis.

Examples
--------
>>> import kestrel
>>> with kestrel.open(simulate=True) as sensor:
...     record = sensor.capture()
...     print(record.levels("x").unit)
g RMS
"""
# SPDX-License-Identifier: MIT
from kestrel._kestrel import version as __version__
from kestrel.archive import Archive, open_archive
from kestrel.bands import Band, Bands, BandTable
from kestrel.baseline import Baseline
from kestrel.errors import (ArchiveError, BusyError, CannotTell, ClosedError, Error, FileError,
                            Interrupted, SensorLost, SensorRefused, SettingError, Stopped,
                            UnknownName, WrongKind)
from kestrel.files import formats, load, save
from kestrel.filters import Filter, RecordSet, Remarks
from kestrel.kept import ArchivedRecord
from kestrel.measured import AxisAlarms, SensorIdentity
from kestrel.numbers import Curve, Level, Peak, Velocity
from kestrel.opening import open, scenarios
from kestrel.record import Record
from kestrel.registers import Field, Register, Registers
from kestrel.sensor import Sensor
from kestrel.settings import Settings, SettingValues
from kestrel.setups import Difference, Restored, Setup, Setups
from kestrel.state import Adapter, Command, State
from kestrel.tables import COLOURS
from kestrel.trends import Trend, TrendSeries
from kestrel.values import AXES, Amplitude, Axis, Mode, Quantity, Window
from kestrel.wide import Line, Overlap, Segment, WideSpectrum, join

__all__ = [
    "AXES", "Adapter", "Amplitude", "Archive", "ArchiveError", "ArchivedRecord", "Axis",
    "AxisAlarms", "Band", "BandTable", "Bands", "Baseline", "BusyError", "COLOURS", "CannotTell",
    "ClosedError", "Command", "Curve", "Difference", "Error", "Field", "FileError", "Filter",
    "Interrupted", "Level", "Line", "Mode", "Overlap", "Peak", "Quantity", "Record", "RecordSet",
    "Register", "Registers", "Remarks", "Restored", "Segment", "Sensor", "SensorIdentity", "SensorLost",
    "SensorRefused", "SettingError", "SettingValues", "Settings", "Setup", "Setups", "State",
    "Stopped", "Trend", "TrendSeries", "UnknownName", "Velocity", "WideSpectrum", "Window",
    "WrongKind", "__version__", "formats", "join", "load", "open", "open_archive", "save",
    "scenarios",
]
