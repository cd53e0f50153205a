# Whatever is passed to a public callable: an exception of the family or a TypeError, never a crash.
# More calls, or others: KESTREL_FUZZ_CALLS=200000 KESTREL_FUZZ_SEED=7.
# SPDX-License-Identifier: MIT
import collections
import dataclasses
import datetime
import decimal
import enum
import functools
import fractions
import inspect
import os
import pathlib
import random
import traceback
import typing
import warnings

import numpy as np
import pytest

import kestrel

CALLS = int(os.environ.get("KESTREL_FUZZ_CALLS", "4000"))
SEED = int(os.environ.get("KESTREL_FUZZ_SEED", "1"))
UTC = datetime.timezone.utc


class Hostile:
    """Nothing of it does what it should."""

    def __repr__(self):
        raise RuntimeError("no text")

    def __eq__(self, other):
        raise TypeError("not to be compared")

    __hash__ = None


ODD = [None, True, False, 0, 1, 2, 3, 4, -1, 7, 16, 255, 256, 511, 65535, 65536, 2**31, 2**63, 10**30,
       -10**30, 0.0, -0.0, 0.5, -1.5, 1e-320, 1e300, float("nan"), float("inf"), -float("inf"), 1j,
       "", "x", "Z", "w", "peak", "velocity", "\0", "\ud800", "ä" * 5000, "/", "..", b"", b"\xff\0",
       [], [1, 2, 3], [None] * 4, (), (0, 3), (1, 2, 3), ("x",) * 10, {}, {"range": 5}, {1: 2},
       {"tag": "good"}, {"ids": [1, "a"]}, {"ids": [1, 1, 1]}, set(), frozenset([1]), range(5), object(),
       object, len, lambda *_: None, iter([1, 2]), np.zeros(3), np.array(1), np.float64(2.5),
       np.int64(2), np.bool_(True), np.array([[1, 2], [3, 4]]), np.str_("x"), decimal.Decimal("1.5"),
       fractions.Fraction(1, 3), datetime.datetime(2026, 1, 1), datetime.datetime.max.replace(tzinfo=UTC),
       datetime.datetime.min.replace(tzinfo=UTC), datetime.date(2026, 1, 1), Hostile(), Hostile,
       pathlib.Path("none"), memoryview(b"abc"), bytearray(8), Ellipsis, NotImplemented, kestrel,
       [[9] * 10], [[0, 1] + [0] * 8], [{"range": 5}], [{"range": 7}], "rms", "spectrum", "time"]

# Values that are right for parameters of this name, so that calls get further than the first check.
RIGHT = {
    "axis": ["x", "y", "z"], "option": range(4), "range": [1, 5, 20, 70], "averages": [1, 2],
    "window": ["rectangular", "hanning", "flattop"], "mode": ["manual", "time"], "number": range(1, 7),
    "quantity": ["g", "velocity", "displacement", "density"], "amplitude": ["peak", "rms", "pp"],
    "lowest": [5.0, 100.0], "low": [0, 40, 1000.0], "high": [60, 4000.0], "of": ["rms", "peak"],
    "near": [1000.0], "within": [100.0], "count": [1, 2], "options": [(0, 1), [0]],
    "kind": ["spectrum", "time"], "name": ["ALM_S_MAG", "REC_CTRL", "before"], "field": ["Windowing"],
    "value": [0, 1, 2], "machine": ["Pump"], "tags": [["a"], "b"], "rpm": [1500.0], "id": [1, 2],
    "ids": [[1, 2], 1], "from_hz": [100.0], "to_hz": [4000.0], "text": ["a"], "limit": [3.0],
    "command": ["clear_status", 4], "seconds": [0, 0.001], "simulate": [True], "percentile": [95],
    "good": [{}, {"tag": "a"}], "format": ["uff58", "csv", "json"], "most": [1, 50],
}
# These wait or run as long as they are told to, or are told of below.
SPARED = {"Sensor.wait", "Sensor.on_progress", "Sensor.captures", "Sensor.wide", "Sensor.close", "Archive.close", "open",
          "open_archive"}
# These move much data, or need the sensor's own time.
SLOW = {"Sensor.capture", "Sensor.stored", "Sensor.command", "Bands.read", "Bands.write",
        "Bands.clear", "Setups.read", "Setups.restore", "Registers.read_all", "Archive.baseline"}
ALLOWED = (kestrel.Error, TypeError)


def callables(live):
    """(name, function, parameters) of every public callable, methods bound to what is live."""
    for name in kestrel.__all__:
        value = getattr(kestrel, name)
        if name not in SPARED and (inspect.isfunction(value)
                                   or inspect.isclass(value) and judges(value)):
            yield name, value, parameters_of(value)
    for thing in live:
        kind = type(thing)
        for name in dir(kind):
            member = inspect.getattr_static(kind, name)
            full = f"{kind.__name__}.{name}"
            if full in SPARED or name.startswith("_") and name not in (
                    "__getitem__", "__setitem__", "__contains__", "__eq__", "__setattr__"):
                continue
            if isinstance(member, property) and member.fset:
                yield full, functools.partial(member.fset, thing), [name]
            elif isinstance(member, property):
                yield full, functools.partial(member.fget, thing), []
            elif name == "__setattr__" or not callable(getattr(thing, name)):
                continue
            elif inspect.isfunction(member) or isinstance(member, classmethod):
                yield full, getattr(thing, name), parameters_of(getattr(thing, name))


def judges(kind):
    """Whether a class looks at what it is made of; a plain value holds whatever it is given."""
    is_plain = issubclass(kind, tuple) or (
        dataclasses.is_dataclass(kind) and not hasattr(kind, "__post_init__"))
    return not is_plain and not typing.is_typeddict(kind) and not issubclass(
        kind, (BaseException, enum.Enum))


def parameters_of(function):
    try:
        return list(inspect.signature(function).parameters.values())
    except (TypeError, ValueError):
        return []


def one_of(random, name, live, folder):
    """A value for a parameter: right, odd, or some other part of the package."""
    chance = random.random()
    if name in ("path", "place"):
        return random.choice([str(folder / f"out{random.choice(['.uff', '.csv', '.json', '.x', ''])}"),
                              folder, *ODD])
    if name in RIGHT and (chance < 0.5 or name == "averages" and chance < 0.95):
        return random.choice(list(RIGHT[name]))
    if name == "averages":
        return random.choice(["x", 0, 256, 1.5])  # many take minutes
    if chance < 0.6:
        return random.choice(live)
    return random.choice(ODD)


def arguments(random, parameters, live, folder):
    words, named = [], {}
    for each in parameters:
        name = getattr(each, "name", each)
        if isinstance(each, str):
            words.append(one_of(random, name, live, folder))
        elif each.kind is each.VAR_POSITIONAL:
            words += [one_of(random, name, live, folder) for _ in range(random.randrange(3))]
        elif each.kind is each.KEYWORD_ONLY:
            if random.random() < 0.4:
                named[name] = one_of(random, name, live, folder)
        elif each.kind is not each.VAR_KEYWORD and (
                each.default is each.empty or random.random() < 0.6):
            words.append(one_of(random, name, live, folder))
    if random.random() < 0.02:
        words.append(random.choice(ODD))
    return words, named


def used(result):
    """What comes back is looked at, not only made."""
    if inspect.isgenerator(result):
        for _, each in zip(range(3), result):
            used(each)
    repr(result)
    if isinstance(result, np.ndarray):
        assert not result.flags.writeable and result.sum() is not None


@pytest.fixture
def live(archive, record, samples, sensor):
    sensor.settings.averages = 1
    for each in (record, samples, record, record):
        archive.write(each, machine="Pump", tags="a")
    trend = archive.trend()
    setup = sensor.setups.read("before")
    return [archive, record, samples, sensor, sensor.settings, sensor.registers, sensor.bands,
            sensor.setups, setup, setup.bands, setup.bands[0, 1], archive.read(1), trend,
            trend.series[0], record.peaks("x")[0], record.levels("x"), record.to_velocity(),
            samples.to_velocity("x"), kestrel.join([record]), record.alarms["x"], record.sensor,
            sensor.state(), sensor.registers["REC_CTRL"], sensor.registers["REC_CTRL"].fields[0],
            archive.baseline({"ids": [1, 3, 4]}) if len(archive) else None]


def test_whatever_is_passed_ends_in_an_answer_or_an_error_of_the_family(live, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    chosen = random.Random(SEED)
    everything = list(callables(live))
    assert len(everything) > 180
    often = [each for each in everything if each[0] not in SLOW]
    ends, others = collections.Counter(), {}
    for number in range(CALLS):
        # Each at least once, then by chance.
        name, function, parameters = (everything[number] if number < len(everything)
                                      else chosen.choice(often if number % 20 else everything))
        words, named = arguments(chosen, parameters, live, tmp_path)
        try:
            with warnings.catch_warnings():
                warnings.simplefilter("ignore")
                used(function(*words, **named))
            ends["answers"] += 1
        except ALLOWED as error:
            assert not isinstance(error, kestrel.Error) or len(str(error)) > 10, name
            ends[type(error).__name__] += 1
        except Exception as error:
            shown = [kestrel.values.shown(each) for each in [*words, *named.items()]]
            place = traceback.extract_tb(error.__traceback__)[-1]
            others[f"{name}: {type(error).__name__} of {os.path.basename(place.filename)}:"
                   f"{place.lineno}"] = f"call {number}, ({', '.join(shown)}): {error}"
    assert others == {}
    print(dict(ends))
    assert ends["answers"] > CALLS / 10 and ends["SettingError"] > CALLS / 50
    sensor = live[3]
    sensor.on_progress(None)
    assert sensor.is_open and sensor.capture(mode="manual", averages=1).is_new


@pytest.mark.parametrize("function, names", [
    (kestrel.open, ["simulate", "scenario", "adapter", "parallel", "port_device", "progress"]),
    (kestrel.open_archive, ["place", "read_only"])])
def test_nothing_is_opened_by_nonsense(function, names, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    chosen = random.Random(SEED)
    for _ in range(CALLS // 20):
        # Never the user's own archive, and never a search for adapters.
        named = {name: chosen.choice(ODD) for name in names if chosen.random() < 0.6}
        if function is kestrel.open:
            named["simulate"] = chosen.choice([True, True, *(each for each in ODD if each is not False)])
        elif named.get("place") is None:
            named["place"] = "archive.db"
        try:
            with function(**named) as opened:
                assert opened.is_open
        except ALLOWED:
            pass
    with kestrel.open(simulate=True) as sensor:
        assert sensor.is_open


def test_captures_and_plans_of_nonsense_are_refused_before_the_first_capture(sensor):
    chosen = random.Random(SEED)
    count = sensor.registers["REC_CNT"].word
    for _ in range(CALLS // 10):
        odd = chosen.choice(ODD)
        with pytest.raises(ALLOWED):
            sensor.captures(plan=[{"range": 5}, {chosen.choice(["mode", "window"]): Hostile()}],
                            count=odd)
        with pytest.raises(ALLOWED):
            sensor.wide("x", options=[0, 9, odd])
        with pytest.raises(ALLOWED):
            sensor.captures(interval=-1 if isinstance(odd, (int, float)) or np.isscalar(odd) or isinstance(
                odd, (decimal.Decimal, fractions.Fraction, np.ndarray)) else odd)
    assert sensor.registers["REC_CNT"].word == count
