"""One sensor: settings, captures, registers, bands, set-ups and functions."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import contextlib
import time
from collections.abc import Callable, Iterable, Iterator, Mapping
from types import TracebackType

from kestrel import _kestrel, values
from kestrel.bands import Bands
from kestrel.errors import Error, SettingError
from kestrel.plans import check_progress, steps_of
from kestrel.record import Record
from kestrel.registers import Registers
from kestrel.settings import Settings, SettingValues, codes_of
from kestrel.setups import Setups
from kestrel.state import Adapter, Command, State
from kestrel.wide import WideSpectrum, join

__all__ = ["Sensor"]


class Sensor:
    """One sensor. Made by `kestrel.open`; use it in a ``with`` block, or close it.

    Notes
    -----
    One sensor can be open in a process at a time. It may be used from one
    thread at a time: another one that calls it meanwhile gets a `BusyError`.
    Only `stop` may be called from any thread. Other threads run while it
    waits. After a fork it belongs to the parent; the child gets a
    `ClosedError` and can open another sensor.
    """

    __slots__ = ("__weakref__", "_bands", "_core", "_registers", "_settings", "_setups")

    def __init__(self, core: _kestrel.Sensor) -> None:
        values.core(core, _kestrel.Sensor, "kestrel.open opens a sensor.")
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
        """Closes the sensor; closing it again does nothing.

        Raises
        ------
        BusyError
            While another thread is in a step; `stop` that first.
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
        """Its whole configuration, read and restored."""
        return self._setups

    def capture(self, *, mode: values.Mode | None = None, range: int | None = None,
                option: int | None = None, window: values.Window | None = None,
                averages: int | None = None) -> Record:
        """Takes one capture and waits for it, as long as it takes.

        Settings that are given are written first, as `Settings.update` does,
        and stay.

        Parameters
        ----------
        mode : {"manual", "timer", "time"}, optional
        range : int, optional
            Full scale in g: 1, 5, 20 or 70.
        option : int, optional
            Sample-rate option, 0 (fastest) to 3.
        window : {"rectangular", "hanning", "flattop"}, optional
        averages : int, optional
            1 to 255.

        Returns
        -------
        Record

        Raises
        ------
        SensorLost
            Where the sensor cannot be reached.
        Interrupted
            After Ctrl-C: the capture was ended as the Stop button does.
        Stopped
            After `stop`, where new data were not ready.
        """
        codes = codes_of({"mode": mode, "range": range, "option": option, "window": window,
                          "averages": averages})
        if codes:
            self._core.configure(codes)
        return Record(self._core.capture())

    def captures(self, count: int | None = None, *, interval: float = 0.0,
                 plan: Iterable[SettingValues | Mapping[str, object]] | None = None
                 ) -> Iterator[Record]:
        """Captures one after the other.

        Parameters
        ----------
        count : int, optional
            Number of captures, or of rounds of the plan. Left out: one round of
            the plan; without a plan, captures until something ends them.
        interval : float
            Seconds from the start of a capture to the start of the next, 0 to
            86400; 0: at once.
        plan : iterable of SettingValues, optional
            Settings of each capture of a round, all checked before the first
            capture.

        Yields
        ------
        Record

        Raises
        ------
        SettingError
            Where the plan is wrong: it names the step and the value. Whatever
            is raised during a step of the plan names the step in a note.

        Examples
        --------
        >>> plan = [{"range": g, "window": "hanning"} for g in (1, 5, 20, 70)]
        >>> with kestrel.open(simulate=True) as sensor:
        ...     records = list(sensor.captures(plan=plan))
        """
        steps = steps_of(plan)
        rounds = count if count is not None or plan is None else 1
        if rounds is not None:
            rounds = values.whole("count", rounds, range(1, 10**9 + 1))
        return self._captures(rounds, values.number("interval", interval, 0, 86400, "s"), steps)

    def _captures(self, rounds: int | None, interval: float,
                  steps: list[SettingValues]) -> Iterator[Record]:
        done = 0
        due = time.monotonic()
        while rounds is None or done < rounds * len(steps):
            if done:
                due = max(due + interval, time.monotonic() if not interval else 0.0)
                if not self.wait(max(due - time.monotonic(), 0.0)):
                    return
            due = max(due, time.monotonic())
            yield self._step(steps, done)
            done += 1

    def _step(self, steps: list[SettingValues], done: int) -> Record:
        try:
            return self.capture(**steps[done % len(steps)])
        except BaseException as error:
            if len(steps) > 1:
                error.add_note(f"In step {done % len(steps) + 1} of the plan, round "
                               f"{done // len(steps) + 1}: {steps[done % len(steps)]}.")
            raise

    def wide(self, axis: values.Axis = "x", *, options: Iterable[int] = (0, 1, 2, 3),
             limit: float = 3.0) -> WideSpectrum:
        """Captures a spectrum at several sample-rate options and joins them.

        Afterwards mode and sample-rate option are set as they were before.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        options : iterable of int
            Of 0 to 3, each once.
        limit : float
            Difference in dB, where two options overlap, above which the machine
            counts as not steady; 0 to 100.

        Returns
        -------
        WideSpectrum
        """
        values.axis_index(axis)
        limit = values.number("limit", limit, 0, 100, "dB")
        options = [values.whole("options", option, values.OPTIONS) for option in options]
        if not options or len(set(options)) < len(options):
            raise SettingError(f"options are {options}; give at least one of 0 to 3, each once.")
        before = self._settings.as_dict()
        back: SettingValues = {"mode": before["mode"], "option": before["option"]}
        try:
            records = [self.capture(mode="manual", option=option) for option in options]
        except BaseException:
            with contextlib.suppress(Error):
                self._settings.update(**back)
            raise
        self._settings.update(**back)
        return join(records, axis=axis, limit=limit)

    def stored(self, number: int, kind: str = "spectrum") -> Record:
        """Reads a stored record from the sensor's flash.

        Parameters
        ----------
        number : int
            0 to 15.
        kind : {"spectrum", "time"}
            What to read it as: the sensor does not tell which it is.

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
        record = Record(self._core.state(values.flag("clear", clear)))
        return State(record.status, record.alarms, record.supply, record.temperature)

    def command(self, command: Command | int | str) -> None:
        """Starts one of the sensor's functions and waits as long as it needs.

        Parameters
        ----------
        command : Command, int or str
            A member, its number 0 to 15, or its name: `Command.SELF_TEST`, 2 or
            "self_test".
        """
        if isinstance(command, str):
            names = {each.name.lower(): int(each) for each in Command}
            self._core.send(values.code("command", command.lower(), names))
        else:
            self._core.send(values.whole("command", command, range(16)))

    def wait(self, seconds: float) -> bool:
        """Waits; Ctrl-C and `stop` end it.

        Parameters
        ----------
        seconds : float
            0 or more.

        Returns
        -------
        bool
            False where `stop` ended it.
        """
        return self._core.pause(values.number("seconds", seconds, 0, 1e9))

    def stop(self) -> None:
        """Ends the step under way as the Stop button does; may be called from any thread."""
        self._core.stop()

    def adapters(self) -> list[Adapter]:
        """The USB adapters that answer now."""
        return [Adapter(*each) for each in self._core.adapters()]

    def on_progress(self, callback: Callable[[str, int, int], object] | None) -> None:
        """Sets a function that follows long steps.

        Parameters
        ----------
        callback : callable, optional
            Called with a text of what is being done, how much of it is done and
            how much there is in all. Where that is not known it is 0, and
            what is done is in seconds. An exception of the function ends the
            step and comes out of it. None: no function.
        """
        check_progress(callback)
        self._core.set_progress(callback)

    def __repr__(self) -> str:
        return "<kestrel.Sensor: " + ("open" if self.is_open else "closed") + ">"
