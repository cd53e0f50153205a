"""One sensor: settings, captures, registers, bands, set-ups and functions."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import atexit
import enum
import os
import threading
import time
import warnings
import weakref
from collections.abc import Callable, Iterable, Iterator, Mapping
from dataclasses import dataclass
from types import TracebackType
from typing import Any, NamedTuple

from kestrel import _kestrel, values
from kestrel.bands import Bands
from kestrel.errors import SettingError
from kestrel.record import AxisAlarms, Record
from kestrel.registers import Registers
from kestrel.settings import Settings, codes_of
from kestrel.setups import Setups
from kestrel.wide import WideSpectrum, join

__all__ = ["Adapter", "Command", "Sensor", "Settings", "State", "open", "scenarios"]

# How long the end of the interpreter waits for a step that is at work, s.
_PATIENCE = 10.0


class Command(enum.IntEnum):
    """The sensor's functions, by their bit of the register COMMAND."""

    AUTONULL = 0
    POWER_DOWN = 1
    SELF_TEST = 2
    FACTORY_RESET = 3
    CLEAR_STATUS = 4
    FLASH_TEST = 5
    FLASH_UPDATE = 6
    SOFTWARE_RESET = 7
    CLEAR_RECORDS = 8
    CLEAR_ALARM_BANDS = 9
    RESET_BUFFER_POINTER = 10
    RECORD_START_STOP = 11
    SAVE_ALARM_BAND = 12
    RETRIEVE_RECORD = 13
    RETRIEVE_ALARM_BAND = 14
    CLEAR_NULLS = 15


class Adapter(NamedTuple):
    """A USB adapter that answers: name, board type, its two texts, firmware, USB version."""

    name: str
    type: str
    text1: str
    text2: str
    firmware: float
    usb: str


@dataclass(frozen=True)
class State:
    """STATUS, alarms and conditions at one moment.

    Attributes
    ----------
    status : mapping of str to bool
        Flags of STATUS by name.
    alarms : mapping of str to AxisAlarms
        By axis.
    supply : float
        V.
    temperature : float
        Degrees Celsius.
    """

    status: Mapping[str, bool]
    alarms: Mapping[values.Axis, AxisAlarms]
    supply: float
    temperature: float


class Sensor:
    """One sensor. Made by `open`; use it in a ``with`` block, or close it.

    Notes
    -----
    One sensor can be open in a process at a time. It may be used from one
    thread at a time: a second one that calls in meanwhile gets a
    `BusyError`. `stop` alone may be called from anywhere. After a fork it
    belongs to the parent; the child gets a `ClosedError` and can open its own
    road to another sensor. Waits let other threads run.
    """

    def __init__(self, core: _kestrel.Sensor) -> None:
        self._core = core
        self._settings = Settings(core)
        self._registers = Registers(core)
        self._bands = Bands(core)
        self._setups = Setups(core)

    def __enter__(self) -> Sensor:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.close()

    def close(self) -> None:
        """Lets the sensor go; once more does nothing.

        Raises
        ------
        BusyError
            While another thread is in a step; `stop` it first.
        """
        self._core.close()

    @property
    def is_open(self) -> bool:
        """Whether it can be used."""
        return self._core.is_open

    @property
    def settings(self) -> Settings:
        """How it records: properties that read and write the sensor."""
        return self._settings

    @property
    def registers(self) -> Registers:
        """Its registers by name."""
        return self._registers

    @property
    def bands(self) -> Bands:
        """The alarm bands in its flash."""
        return self._bands

    @property
    def setups(self) -> Setups:
        """Its whole configuration."""
        return self._setups

    def capture(self, **settings: Any) -> Record:
        """Takes one capture and waits for it, as long as it takes.

        Parameters
        ----------
        **settings
            Written first, as `Settings.update` takes them: mode, range (g),
            option, window, averages.

        Returns
        -------
        Record

        Raises
        ------
        SensorLost
            Where the sensor cannot be reached.
        Interrupted
            After Ctrl-C: the sensor was stopped as Stop does.
        Stopped
            After `stop`, where data were not ready.
        """
        if settings:
            self._settings.update(**settings)
        return Record(self._core.capture())

    def captures(self, count: int | None = None, *, interval: float = 0.0,
                 plan: Iterable[Mapping[str, Any]] | None = None) -> Iterator[Record]:
        """Captures one after the other.

        Parameters
        ----------
        count : int, optional
            So many, or so many rounds of the plan; without end where neither
            is told, one round where a plan is.
        interval : float
            Seconds from the start of a capture to the start of the next; 0: at
            once.
        plan : iterable of mappings, optional
            Settings of each capture of a round, as `Settings.update` takes
            them.

        Yields
        ------
        Record

        Examples
        --------
        >>> plan = [{"range": g, "window": "hanning"} for g in (1, 5, 20, 70)]
        >>> with kestrel.open(simulate=True) as sensor:
        ...     records = list(sensor.captures(plan=plan))
        """
        steps = [dict(step) for step in plan] if plan is not None else [{}]
        for step in steps:
            codes_of(step)
        if not steps:
            raise SettingError("plan is empty; it tells the settings of at least one capture.")
        rounds = count if count is not None or plan is None else 1
        if rounds is not None:
            rounds = values.whole("count", rounds, range(1, 10**9 + 1))
        if not 0 <= interval <= 86400:
            raise SettingError(f"interval is {interval!r}; it is a number of seconds from 0 to "
                               "86400.")
        return self._captures(rounds, float(interval), steps)

    def _captures(self, rounds: int | None, interval: float,
                  steps: list[dict[str, Any]]) -> Iterator[Record]:
        done = 0
        due = time.monotonic()
        while rounds is None or done < rounds * len(steps):
            if done:
                due = max(due + interval, time.monotonic() if not interval else 0.0)
                self.wait(max(due - time.monotonic(), 0.0))
            due = max(due, time.monotonic())
            yield self.capture(**steps[done % len(steps)])
            done += 1

    def wide(self, axis: values.Axis = "x", *, options: Iterable[int] = (0, 1, 2, 3),
             limit: float = 3.0) -> WideSpectrum:
        """Captures a spectrum at several sample-rate options and joins them.

        The option that was set before is set again in the end.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        options : iterable of int
            Of 0 to 3, each once.
        limit : float
            dB from which two options that overlap count as unsteady.

        Returns
        -------
        WideSpectrum
        """
        before = self._settings.option
        try:
            return join([self.capture(option=option) for option in options], axis=axis,
                        limit=limit)
        finally:
            if self.is_open:
                self._settings.option = before

    def stored(self, number: int, kind: str = "spectrum") -> Record:
        """A record of the sensor's flash.

        Parameters
        ----------
        number : int
            0 to 15.
        kind : {"spectrum", "time"}
            The sensor does not tell which it is.

        Returns
        -------
        Record
        """
        is_time = values.code("kind", kind, {"spectrum": 0, "time": 1}) == 1
        return Record(self._core.stored(values.whole("number", number, range(16)), is_time))

    def state(self, *, clear: bool = False) -> State:
        """Reads STATUS, alarms, supply and temperature.

        Parameters
        ----------
        clear : bool
            Clears the flags of STATUS first.

        Returns
        -------
        State
        """
        record = Record(self._core.state(clear))
        return State(record.status, record.alarms, record.supply, record.temperature)

    def command(self, command: Command | int | str) -> None:
        """Starts one of the sensor's functions and waits as long as it needs.

        Parameters
        ----------
        command : Command, int or str
            `Command.SELF_TEST`, 2 or "self_test".
        """
        if isinstance(command, str):
            names = {each.name.lower(): int(each) for each in Command}
            self._core.send(values.code("command", command.lower(), names))
        else:
            self._core.send(values.whole("command", command, range(16)))

    def wait(self, seconds: float) -> bool:
        """Waits, so that Ctrl-C and `stop` are heard.

        Parameters
        ----------
        seconds : float

        Returns
        -------
        bool
            False where `stop` ended it.
        """
        if not 0 <= seconds <= 1e9:
            raise SettingError(f"seconds is {seconds!r}; it is a number from 0 to 1e9.")
        return self._core.pause(seconds)

    def stop(self) -> None:
        """Ends the step at work as Stop does; may be called from any thread or handler."""
        self._core.stop()

    def adapters(self) -> list[Adapter]:
        """The USB adapters that answer now."""
        return [Adapter(*each) for each in self._core.adapters()]

    def on_progress(self, callback: Callable[[str, int, int], object] | None) -> None:
        """Has long steps followed.

        Parameters
        ----------
        callback : callable, optional
            Called with what is done, how much of it, and of how much; of 0
            where nobody knows, in seconds then. An exception of it ends the
            step and is raised out of it. None: nobody looks.
        """
        self._core.set_progress(callback)

    def __repr__(self) -> str:
        return "<kestrel.Sensor: " + ("open" if self.is_open else "closed") + ">"


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
