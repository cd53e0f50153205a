# Records in Python: views, values, forms, and what analysis tells of them.
# SPDX-License-Identifier: MIT
import datetime
import gc
import pickle

import numpy as np
import pytest

import kestrel


def test_arrays_are_read_only_views_of_the_record(record):
    address = record.x.__array_interface__["data"][0]
    assert record.x.__array_interface__["data"][0] == address
    assert record.x.base is record._core
    for axis, array in enumerate((record.x, record.y, record.z)):
        assert array.__array_interface__["data"][0] == record._core.address(axis)
        assert array[5:].__array_interface__["data"][0] == record._core.address(axis) + 40
    assert record.values("X").__array_interface__["data"] == record.x.__array_interface__["data"]
    assert not record.x.flags.owndata and not record.x.flags.writeable
    with pytest.raises(ValueError):
        record.x[0] = 1
    with pytest.raises(ValueError):
        record.x.flags.writeable = True


def test_arrays_outlive_their_record(record):
    copy = pickle.loads(pickle.dumps(record))
    part = copy.z[10:20]
    expected = part.copy()
    del copy
    gc.collect()
    assert [bytearray(24576) for _ in range(50)]  # what was freed would be used again
    assert (part == expected).all()


def test_a_spectrum_has_a_frequency_and_a_time_record_a_time(record, samples):
    assert record.x.shape == (256,) and samples.x.shape == (512,)
    assert record.frequency[1] == record.bin_width
    assert samples.time[1] == pytest.approx(1 / samples.sample_rate)
    with pytest.raises(kestrel.WrongKind, match="frequency"):
        record.time
    assert not hasattr(record, "time") and hasattr(record, "frequency")
    with pytest.raises(AttributeError, match="time"):
        samples.frequency
    assert (record.kind, samples.kind) == ("spectrum", "time")
    assert samples.averages == 1


def test_words_times_their_worth_are_the_points(record):
    assert (record.words("y") * record.lsb == record.y).all()
    with pytest.raises(kestrel.SettingError, match="axis is 'w'"):
        record.words("w")


def test_times_have_a_zone(record):
    assert record.taken.tzinfo == datetime.timezone.utc
    age = datetime.datetime.now(datetime.timezone.utc) - record.taken
    assert datetime.timedelta(0) <= age < datetime.timedelta(minutes=5)


def test_a_record_comes_back_out_of_a_pickle(record, samples):
    for each in (record, samples):
        copy = pickle.loads(pickle.dumps(each))
        assert copy == each and hash(copy) == hash(each)
        assert copy.to_dict() == each.to_dict()
        assert copy.sensor == each.sensor and copy.taken == each.taken
        assert not np.shares_memory(copy.x, each.x)
    assert record != samples and record != 1
    restored, (state,) = record.__reduce__()
    for wrong in ((), (1,), (2, *state[1:]), state[:5] + ((0, 0, 9, 0, 0, 1),) + state[6:],
                  (1,) * len(state), None):
        with pytest.raises(kestrel.Error, match="pickled"):
            restored(wrong)


def test_conditions_alarms_and_origin_are_told(record):
    assert record.supply == pytest.approx(3.3, abs=0.1)
    assert record.temperature == pytest.approx(25, abs=5)
    assert record.sensor.simulated and record.sensor.interface == "Ezusb-0"
    assert record.status["Data Ready"] is True
    assert record.alarms["z"].warnings == () and record.alarms["z"].faults == ()
    assert record.is_new and not record.stopped and record.stored is None and record.count >= 0
    assert record.notices == []
    assert "Spectrum" in record.describe() and record.describe() in repr(record)
    assert len(record.details()) > 5


def test_peaks_lie_between_bins_with_bounds(record):
    peaks = record.peaks("x", most=5)
    assert 1 <= len(peaks) <= 5
    first = peaks[0]
    assert first.amplitude == pytest.approx(first.full["amplitude"], abs=first.uncertainty)
    assert abs(first.frequency - first.bin * record.bin_width) <= record.bin_width
    assert first.unit == "g peak" and first.noise < first.amplitude
    assert [peak.amplitude for peak in peaks] == sorted((p.amplitude for p in peaks), reverse=True)
    with pytest.raises(kestrel.SettingError, match="most is 0"):
        record.peaks("x", most=0)
    with pytest.raises(kestrel.SettingError, match="density is power"):
        record.peaks("x", quantity="density", amplitude="peak")


def test_levels_of_spectra_and_of_time_records(record, samples):
    level = record.levels("x")
    assert level.unit == "g RMS" and 0 < level.rms < level.largest
    assert level.crest_factor is None and level.from_hz < level.largest_hz < level.to_hz
    shape = samples.levels("z")
    assert shape.rms == pytest.approx(np.std(samples.z), rel=1e-5)
    assert shape.crest_factor == pytest.approx(shape.largest / shape.rms, rel=1e-4)
    assert shape.kurtosis > 1 and shape.mean == pytest.approx(np.mean(samples.z), rel=1e-4)


def test_bands_are_judged_as_the_sensor_does(record):
    largest = float(record.words("x")[40:61].max())
    table = kestrel.BandTable().with_band(record.option, 2, low=40, high=60,
                                          warning=(int(largest) - 1, 65535, 65535))
    states = {each["band"]: each["state"] for each in record.levels("x", bands=table).bands}
    assert states[2] == "warning"
    assert record.levels("y", bands=table).bands[1]["state"] == "free"


def test_what_cannot_be_told_names_the_cure():
    with kestrel.open(simulate=True) as sensor:
        samples = sensor.capture(mode="time", option=0)
    with pytest.raises(kestrel.CannotTell) as error:
        samples.to_velocity("x", lowest=10)
    assert error.value.cure_option in (1, 2, 3)
    assert error.value.unit in ("s", "Hz") and error.value.has != error.value.needs
    assert error.value.cure in str(error.value) and error.value.title and error.value.reason


def test_velocity_over_frequency_and_over_time(record, samples):
    curve = record.to_velocity("z")
    at = 100
    assert curve.unit == "mm/s RMS" and curve.values.shape == curve.frequency.shape
    assert curve.values[at] == pytest.approx(
        record.z[at] * 9806.65 / (2 * np.pi * record.frequency[at]) / np.sqrt(2), rel=1e-9)
    assert 0 < curve.first_valid < at and curve.floor[at] > 0 and curve.axis == "z"
    velocity = samples.to_velocity("z")
    assert velocity.values.shape == velocity.time.shape == (512,)
    assert velocity.rms == pytest.approx(np.sqrt(np.mean(velocity.values ** 2)), rel=1e-9)
    assert velocity.unit == "mm/s" and velocity.from_hz > 0


def test_a_record_wide_with_others_needs_other_options(record):
    with kestrel.open(simulate=True) as sensor:
        fine = sensor.capture(option=2)
    wide = record.wide(fine, axis="z")
    assert [segment.option for segment in wide.segments] == [2, record.option]
    assert kestrel.join([fine, record], axis="z").steady == wide.steady
    with pytest.raises(kestrel.CannotTell):
        record.wide(record)
    with pytest.raises(kestrel.CannotTell):
        kestrel.join([])


def test_every_format_is_written_and_those_that_can_be_are_read_back(record, samples, tmp_path):
    assert {"uff58", "mat", "csv", "json"} <= set(kestrel.formats())
    with pytest.raises(kestrel.FileError, match="A WAV file holds time records"):
        record.save(tmp_path / "record.wav")
    for name, ending in kestrel.formats().items():
        file = tmp_path / (name + ending)
        (samples if name == "wav" else record).save(file, format=name)
        assert file.stat().st_size > 1000
        assert file.stat().st_mode & 0o044
    back = kestrel.load(tmp_path / "uff58.uff")
    assert (back[0].x == record.x).all() and back[0].taken == record.taken.replace(
        microsecond=back[0].taken.microsecond)
    assert list(tmp_path.glob(".*")) == []


def test_files_that_cannot_be_name_themselves(record, tmp_path):
    with pytest.raises(kestrel.FileError, match="record.xyz: its ending tells no format; give one"):
        record.save(tmp_path / "record.xyz")
    with pytest.raises(kestrel.FileError, match="nowhere.*cannot be written"):
        record.save(tmp_path / "nowhere" / "record.uff")
    with pytest.raises(kestrel.FileError, match="none.uff cannot be read"):
        kestrel.load(tmp_path / "none.uff")
    (tmp_path / "bad.uff").write_text("no records")
    with pytest.raises(kestrel.FileError, match="bad.uff"):
        kestrel.load(tmp_path / "bad.uff")
    with pytest.raises(kestrel.FileError, match="there is no format 'uf'. The formats are"):
        record.save(tmp_path / "record.uff", format="uf")
    kestrel.save(tmp_path / "two.csv", [record, record])
    kestrel.save(tmp_path / "one.csv", record)
    with pytest.raises(kestrel.FileError, match="cannot be the name of a file"):
        kestrel.load("a\0b.uff")


def test_a_notebook_shows_a_picture(record, samples):
    for each in (record, samples):
        page = each._repr_html_()
        assert page.count("<polyline") == 3 and "aria-label" in page
        assert each.describe().split(",")[0] in page


def test_tables_and_plots(record):
    pandas = pytest.importorskip("pandas")
    frame = record.to_pandas()
    assert list(frame.columns) == ["x", "y", "z"] and len(frame) == 256
    assert frame.index.name == "frequency, Hz" and (frame["x"].values == record.x).all()
    assert isinstance(kestrel.BandTable().to_pandas(), pandas.DataFrame)
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    axes = record.plot()
    assert [line.get_label() for line in axes.get_lines()] == ["X", "Y", "Z"]
