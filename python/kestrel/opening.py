"""How a sensor is opened."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import warnings
from collections.abc import Callable

from kestrel import _kestrel, standing, values
from kestrel.errors import SettingError
from kestrel.plans import check_progress
from kestrel.sensor import Sensor

__all__ = ["open", "scenarios"]

def open(simulate: bool = False, *, scenario: str = "", adapter: int | None = None,
         parallel: int | None = None, port_device: str = "",
         progress: Callable[[str, int, int], object] | None = None) -> Sensor:
    """Opens a sensor.

    Without arguments it is the one that CommPort.cfg in the working folder
    names, or else the first USB adapter that is found.

    Parameters
    ----------
    simulate : bool
        Uses the simulated sensor; no hardware is needed.
    scenario : str
        What the simulated sensor measures, one of `scenarios`.
    adapter : int, optional
        Number of the USB adapter, 0 to 3: Ezusb-0 to Ezusb-3.
    parallel : int, optional
        Address of the parallel port, for example 0x378.
    port_device : str
        Device of the parallel port, for example "/dev/parport1": for ports
        whose address the system does not report.
    progress : callable, optional
        Called during long steps, as `Sensor.on_progress` describes.

    Returns
    -------
    Sensor

    Raises
    ------
    SensorLost
        Where no sensor answers.
    BusyError
        Where another sensor is open in this process.

    Examples
    --------
    >>> with kestrel.open(simulate=True) as sensor:
    ...     record = sensor.capture()
    """
    simulate = values.flag("simulate", simulate)
    scenario = values.text("scenario", scenario)
    port_device = values.text("port_device", port_device)
    if scenario and scenario not in scenarios():
        raise SettingError(f"scenario is {values.shown(scenario)}; it can be "
                           f"{', '.join(scenarios())}.")
    if scenario and not simulate:
        raise SettingError("scenario is what the simulated sensor measures; give simulate=True as "
                           "well.")
    if adapter is not None:
        adapter = values.whole("adapter", adapter, range(4))
    if parallel is not None:
        parallel = values.whole("parallel", parallel, range(65536))
    if adapter is not None and (parallel is not None or port_device):
        raise SettingError("A sensor is at an adapter or at a parallel port; choose one.")
    check_progress(progress)
    with standing.opening():
        core = _kestrel.Sensor(simulate, scenario, adapter, parallel, port_device)
    standing.stands(core)
    sensor = Sensor(core)
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
    """What the simulated sensor can measure; the first is the default."""
    return _kestrel.scenario_names()
