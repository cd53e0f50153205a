"""How a sensor is opened, and what becomes of it when the interpreter ends or forks."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import atexit
import os
import threading
import warnings
import weakref
from collections.abc import Callable

from kestrel import _kestrel, values
from kestrel.errors import SettingError
from kestrel.sensor import Sensor

__all__ = ["open", "scenarios"]

# How long the end of the interpreter waits for a step that is at work, s.
_PATIENCE = 10.0

_standing: weakref.WeakSet[Sensor] = weakref.WeakSet()
_opening = threading.Lock()


def _end_all() -> None:
    for sensor in list(_standing):
        if sensor.is_open:
            sensor._core.end(_PATIENCE)


def _forget_parents() -> None:
    global _opening
    _opening = threading.Lock()
    _kestrel.after_fork()


atexit.register(_end_all)
os.register_at_fork(after_in_child=_forget_parents)


def open(simulate: bool = False, *, scenario: str = "", adapter: int | None = None,
         parallel: int | None = None, port_device: str = "",
         progress: Callable[[str, int, int], object] | None = None) -> Sensor:
    """Opens the one sensor.

    With nothing chosen it is the one that CommPort.cfg names, or else the
    first adapter that is found.

    Parameters
    ----------
    simulate : bool
        Uses the simulated sensor; no hardware is needed.
    scenario : str
        What the simulated sensor measures, one of `scenarios`.
    adapter : int, optional
        USB adapter 0 to 3, Ezusb-0 to Ezusb-3.
    parallel : int, optional
        Address of the parallel port, 0x378.
    port_device : str
        Device of the parallel port, "/dev/parport1".
    progress : callable, optional
        As `Sensor.on_progress` takes it.

    Returns
    -------
    Sensor

    Raises
    ------
    SensorLost
        Where none answers.
    BusyError
        Where another sensor is open in this process.

    Examples
    --------
    >>> with kestrel.open(simulate=True) as sensor:
    ...     record = sensor.capture()
    """
    if scenario and scenario not in scenarios():
        raise SettingError(f"scenario is {scenario!r}; it can be {', '.join(scenarios())}.")
    if scenario and not simulate:
        raise SettingError("scenario is what the simulated sensor measures; say simulate=True.")
    if adapter is not None:
        adapter = values.whole("adapter", adapter, range(4))
    if parallel is not None:
        parallel = values.whole("parallel", parallel, range(65536))
    if adapter is not None and (parallel is not None or port_device):
        raise SettingError("A sensor is on an adapter or on a parallel port; choose one.")
    with _opening:
        core = _kestrel.Sensor(simulate, scenario, adapter, parallel, port_device)
    sensor = Sensor(core)
    _standing.add(sensor)
    sensor.on_progress(progress)
    try:
        core.connect()
    except BaseException:
        core.close()
        raise
    for note in core.notes():
        warnings.warn(note, stacklevel=2)
    return sensor


def scenarios() -> list[str]:
    """What the simulated sensor can measure; the first is the usual one."""
    return _kestrel.scenario_names()
