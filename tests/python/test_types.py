# What comes back is of the types that the package names, and words of settings are those of the types.
# SPDX-License-Identifier: MIT
import threading
import time
import typing

import pytest

import kestrel


def test_a_sensor_gives_its_parts(sensor):
    assert isinstance(sensor.settings, kestrel.Settings)
    assert isinstance(sensor.registers, kestrel.Registers)
    assert isinstance(sensor.bands, kestrel.Bands)
    assert isinstance(sensor.setups, kestrel.Setups)
    assert isinstance(sensor.state(), kestrel.State)
    assert all(isinstance(each, kestrel.Adapter) for each in sensor.adapters())
    register = sensor.registers["REC_CTRL"]
    assert isinstance(register, kestrel.Register) and isinstance(register.fields[0], kestrel.Field)
    windowing = register["Windowing"]
    assert (windowing.mask, windowing.lowest) == (0x3000, 12)
    assert (register.word & windowing.mask) >> windowing.lowest == windowing.value
    before = sensor.setups.read("before")
    sensor.settings.averages = 5
    assert isinstance(before.differences(sensor.setups.read("now"))[0], kestrel.Difference)
    assert isinstance(sensor.setups.restore(before), kestrel.Restored)


def test_a_record_gives_its_parts(record, samples):
    assert isinstance(record.sensor, kestrel.SensorIdentity)
    assert isinstance(record.alarms["x"], kestrel.AxisAlarms)
    assert isinstance(record.peaks("x")[0], kestrel.Peak)
    assert isinstance(record.levels("x"), kestrel.Level)
    assert isinstance(record.spectrum("x"), kestrel.Curve)
    assert isinstance(samples.to_velocity("x"), kestrel.Velocity)


def test_a_wide_spectrum_gives_its_parts(sensor):
    wide = sensor.wide("x", options=(0, 1))
    assert isinstance(wide, kestrel.WideSpectrum)
    assert isinstance(wide.segments[0], kestrel.Segment)
    assert isinstance(wide.overlaps[0], kestrel.Overlap)
    assert isinstance(wide.lines[0], kestrel.Line)


def test_an_archive_gives_its_parts(archive, record, tmp_path):
    remarks: kestrel.Remarks = {"machine": "Pump", "tags": ["a"], "rpm": 1480.0}
    filter: kestrel.Filter = {"machine": "Pump"}
    kept = archive.read(archive.write(record, **remarks))
    assert {name: value for name, value in kept.remarks().items() if value} == remarks
    assert archive.search(**filter) == [kept.id]
    trend = archive.trend()
    assert isinstance(trend, kestrel.Trend) and isinstance(trend.series[0], kestrel.TrendSeries)
    for _ in range(2):
        archive.write(record)
    good: kestrel.RecordSet = {"machine": "Pump", "ids": archive.search()}
    with pytest.raises(kestrel.CannotTell):
        archive.baseline(good | {"ids": []})
    archive.amend(archive.search(), machine="Pump")
    baseline = archive.baseline(good)
    assert isinstance(baseline, kestrel.Baseline)
    assert any(band.is_used for band in baseline.bands)
    assert not kestrel.Band(0, 1).is_used
    kestrel.save(tmp_path / "kept.json", [kept])
    assert "Pump" in (tmp_path / "kept.json").read_text()


def test_settings_are_told_in_the_words_that_they_are_set_by(sensor):
    plan: list[kestrel.SettingValues] = [{"range": 5, "averages": 1, "window": None}]
    (record,) = sensor.captures(plan=plan)
    assert (record.range, record.window) == (5, "hanning")
    before = sensor.settings.as_dict()
    assert set(before) == set(kestrel.SettingValues.__annotations__)
    sensor.settings.update(range=20, window="flattop")
    sensor.settings.update(**before)
    assert sensor.settings.as_dict() == before


@pytest.mark.parametrize("words, name", [(kestrel.Mode, "mode"), (kestrel.Window, "window")])
def test_every_word_of_a_setting_is_taken(sensor, words, name):
    for word in typing.get_args(words):
        setattr(sensor.settings, name, word)
        assert getattr(sensor.settings, name) == word


def test_every_word_of_a_quantity_is_taken(record):
    assert typing.get_args(kestrel.Axis) == kestrel.AXES
    units = {record.spectrum("x", quantity).unit for quantity in typing.get_args(kestrel.Quantity)}
    assert units == {"g peak", "g²/Hz", "mm/s RMS", "µm peak to peak"}
    amplitudes = {record.spectrum("x", amplitude=word).values[50]
                  for word in typing.get_args(kestrel.Amplitude)}
    assert len(amplitudes) == 3


def test_what_the_sensor_cannot_do_is_refused(sensor):
    sensor.registers.set_field("REC_CTRL", "Record mode", 3) if "record mode" in [
        each.name.lower() for each in sensor.registers["REC_CTRL"].fields
    ] else sensor.registers.__setitem__("REC_CTRL", sensor.registers["REC_CTRL"].word | 3)
    sensor.settings.as_dict()
    with pytest.raises(kestrel.SensorRefused, match="record mode is 3"):
        sensor.capture()


def test_a_wait_ends_in_time_or_with_stop(sensor):
    start = time.monotonic()
    assert sensor.wait(0.2)
    assert 0.2 <= time.monotonic() - start < 1
    threading.Timer(0.2, sensor.stop).start()
    assert not sensor.wait(30)
    assert time.monotonic() - start < 5
    with pytest.raises(kestrel.SettingError, match="seconds is nan"):
        sensor.wait(float("nan"))
