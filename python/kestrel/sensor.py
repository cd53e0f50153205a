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
    thread at a time: a second one that calls in meanwhile gets a
    `BusyError`. `stop` alone may be called from anywhere. After a fork it
    belongs to the parent; the child gets a `ClosedError` and can open its own
    road to another sensor. Waits let other threads run.
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

    def capture(self, *, mode: values.Mode | None = None, range: int | None = None,
                option: int | None = None, window: values.Window | None = None,
                averages: int | None = None) -> Record:
        """Takes one capture and waits for it, as long as it takes.

        Parameters
        ----------
        mode : {"manual", "timer", "time"}, optional
            Settings that are told are written first, as `Settings.update` does,
            and stay.
        range : int, optional
            g.
        option : int, optional
        window : {"rectangular", "hanning", "flattop"}, optional
        averages : int, optional

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
            So many, or so many rounds of the plan; without end where neither
            is told, one round where a plan is.
        interval : float
            Seconds from the start of a capture to the start of the next; 0: at
            once.
        plan : iterable of SettingValues, optional
            Settings of each capture of a round. All of it is judged before the
            first capture.

        Yields
        ------
        Record

        Raises
        ------
        SettingError
            Names the step of the plan and the value. An exception of a step
            that runs has the step as its note.

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

        Mode and option that were set before are set again in the end.

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
        values.axis_index(axis)
        limit = values.number("limit", limit, 0, 1000, "dB")
        options = [values.whole("options", option, values.OPTIONS) for option in options]
        if not options or len(set(options)) < len(options):
            raise SettingError(f"options are {options}; at least one of 0 to 3, each once.")
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
        record = Record(self._core.state(values.flag("clear", clear)))
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
        return self._core.pause(values.number("seconds", seconds, 0, 1e9))

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
        check_progress(callback)
        self._core.set_progress(callback)

    def __repr__(self) -> str:
        return "<kestrel.Sensor: " + ("open" if self.is_open else "closed") + ">"
