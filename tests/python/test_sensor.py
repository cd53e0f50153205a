# A sensor from Python: opened, set, captured, read and written.
# SPDX-License-Identifier: MIT
import time

import pytest

import kestrel


def test_a_sensor_is_closed_at_the_end_of_its_block():
    with kestrel.open(simulate=True) as sensor:
        assert sensor.is_open
    assert not sensor.is_open
    with pytest.raises(kestrel.ClosedError, match="is closed. Open it again"):
        sensor.capture()
    sensor.close()


def test_settings_are_read_and_written_with_units(sensor):
    sensor.settings.range = 5
    sensor.settings.window = "flattop"
    sensor.settings.update(averages=7, option=2)
    assert sensor.settings.as_dict() == {"mode": "manual", "range": 5, "option": 2,
                                         "window": "flattop", "averages": 7}
    assert sensor.registers["FFT_AVG"].word == 7
    record = sensor.capture()
    assert (record.range, record.window, record.option, record.averages) == (5, "flattop", 2, 7)
    assert record.sample_rate == sensor.settings.sample_rate


@pytest.mark.parametrize("name, value, text", [
    ("range", 3, "range is 3; it can be 1, 5, 20 or 70."),
    ("range", True, "range is True"),
    ("window", "hamming", "window is 'hamming'; it can be 'rectangular', 'hanning' or 'flattop'."),
    ("averages", 0, "averages is 0; it must be a whole number from 1 to 255."),
    ("averages", 2.5, "averages is 2.5"),
    ("averages", float("nan"), "averages is nan"),
    ("option", 4, "option is 4; it must be a whole number from 0 to 3."),
    ("mode", "fast", "mode is 'fast'"),
])
def test_a_setting_that_cannot_be_names_what_can(sensor, name, value, text):
    before = sensor.settings.as_dict()
    with pytest.raises(kestrel.SettingError) as error:
        setattr(sensor.settings, name, value)
    assert text in str(error.value)
    assert isinstance(error.value, ValueError)
    with pytest.raises(TypeError, match="unexpected keyword argument 'rnage'"):
        sensor.settings.update(rnage=5)
    with pytest.raises(kestrel.SettingError, match="plan, step 2: There is no setting 'rnage'"):
        sensor.captures(plan=[{}, {"rnage": 5}])
    assert sensor.settings.as_dict() == before


def test_a_name_that_is_mistyped_is_not_set_in_silence(sensor, archive):
    wide = sensor.wide("x", options=(0, 1))
    for thing in (sensor, sensor.settings, sensor.registers, sensor.bands, sensor.setups, archive,
                  sensor.setups.read("now"), sensor.bands.read(), wide):
        with pytest.raises(AttributeError):
            thing.rnage = 5
    assert repr(wide) == f"<kestrel.WideSpectrum: X, {wide.frequency[0]:.4g} to " \
                         f"{wide.frequency[-1]:.6g} Hz, options 1, 0>"
    assert "TEMP_OUT" in repr(sensor.registers)
    sensor.close()
    assert repr(sensor.registers) == "<kestrel.Registers: closed>"


def test_captures_follow_a_plan_in_rounds(sensor):
    plan = [{"range": 5, "window": "hanning"}, {"range": 70, "window": "flattop"}]
    records = list(sensor.captures(2, plan=plan))
    assert [record.range for record in records] == [5, 70, 5, 70]
    assert [record.window for record in records] == ["hanning", "flattop"] * 2
    assert len(list(sensor.captures(plan=plan))) == 2


def test_a_plan_is_judged_before_the_first_capture(sensor):
    with pytest.raises(kestrel.SettingError, match=r"plan, step 2: range is 7; it can be 1, 5, 20 or 70\."):
        sensor.captures(plan=[{"range": 5}, {"range": 7}])
    with pytest.raises(kestrel.SettingError, match="plan is empty"):
        sensor.captures(plan=[])
    with pytest.raises(kestrel.SettingError, match="interval is -1"):
        sensor.captures(1, interval=-1)
    with pytest.raises(kestrel.SettingError, match="plan, step 1 is 5; it must be a mapping"):
        sensor.captures(plan=[5])


def test_an_error_on_the_way_names_the_step_of_the_plan(sensor):
    divisors = [1]
    sensor.on_progress(lambda *_: 1 / divisors[0])
    plan = sensor.captures(2, plan=[{"range": 5, "averages": 1}, {"range": 20, "averages": 1}])
    next(plan)
    divisors[0] = 0
    with pytest.raises(ZeroDivisionError) as error:
        next(plan)
    assert error.value.__notes__ == [
        "In step 2 of the plan, round 1: {'range': 20, 'averages': 1}."]


class Rehearsed:
    """Stands in for the sensor: captures take as long as they are told to, waits none."""

    def __init__(self, monkeypatch, seconds):
        self.now, self.seconds, self.begins, self.stops_at = 100.0, list(seconds), [], None
        monkeypatch.setattr(time, "monotonic", lambda: self.now)

    def sensor(self):
        class Standing(kestrel.Sensor):
            def __init__(self, capture):
                self.capture = capture
        sensor = Standing(self.capture)
        sensor._core = self
        return sensor

    def capture(self):
        self.begins.append(self.now)
        self.now += self.seconds.pop(0)

    def pause(self, seconds):
        self.now += seconds
        return self.stops_at is None or self.now < self.stops_at


def test_captures_begin_an_interval_apart(monkeypatch):
    core = Rehearsed(monkeypatch, [0.5, 2.5, 0.5, 0.5])
    list(core.sensor().captures(4, interval=2.0))
    # One that takes longer is followed by the next at once, and none is caught up on.
    assert core.begins == [100.0, 102.0, 104.5, 106.5]


def test_a_stop_between_captures_ends_them(monkeypatch):
    core = Rehearsed(monkeypatch, [0.5] * 9)
    core.stops_at = 105
    assert len(list(core.sensor().captures(9, interval=2.0))) == 3


def test_registers_are_read_and_written_by_name_and_field(sensor):
    assert "TEMP_OUT" in sensor.registers
    assert sensor.registers["temp_out"].scaled == pytest.approx(25, abs=5)
    sensor.registers["ALM_S_MAG"] = 0x234
    assert sensor.registers["ALM_S_MAG"].word == 0x234
    changed = sensor.registers.set_field("REC_CTRL", "Windowing", 2)
    assert changed["windowing"].value == 2
    assert changed["windowing"].bits == "13:12"
    assert sensor.settings.window == "flattop"
    everything = sensor.registers.read_all()
    assert set(everything) == set(sensor.registers)
    assert len(sensor.registers) == len(everything)


def test_registers_that_are_not_there_are_key_errors(sensor):
    with pytest.raises(KeyError) as error:
        sensor.registers["TEMP_OT"]
    assert isinstance(error.value, kestrel.UnknownName)
    assert str(error.value) == ("There is no register 'TEMP_OT' that can be read. Similar names: TEMP_OUT.")
    with pytest.raises(kestrel.UnknownName, match="names those that can be read"):
        sensor.registers[5]
    with pytest.raises(kestrel.UnknownName, match="TEMP_OUT has no fields"):
        sensor.registers["TEMP_OUT"]["x"]
    with pytest.raises(KeyError, match="can be written"):
        sensor.registers["TEMP_OUT"] = 1
    with pytest.raises(kestrel.SettingError, match="FFT_AVG is 65536"):
        sensor.registers["FFT_AVG"] = 65536
    with pytest.raises(KeyError, match="there are: .*Windowing"):
        sensor.registers["REC_CTRL"]["Colour"]
    with pytest.raises(kestrel.SettingError, match="Windowing is 4; it must be a whole number from 0 to 3"):
        sensor.registers.set_field("REC_CTRL", "Windowing", 4)


def test_bands_go_to_the_sensor_and_come_back(sensor, tmp_path):
    table = kestrel.BandTable().with_band(1, 3, low=40, high=60, warning=(120, 130, 140),
                                          fault=(200, 210, 220))
    assert repr(table) == "<kestrel.BandTable: 1 of 24 bands set>"
    sensor.bands.write(table)
    assert sensor.bands.read() == table
    file = tmp_path / "AlarmSpectrum_pump.csv"
    table.save(file)
    assert kestrel.BandTable.load(file) == table
    assert table[1, 3].from_hz / 40 == pytest.approx(table[1, 3].to_hz / 60)
    sensor.bands.clear()
    assert sensor.bands.read() == kestrel.BandTable()
    assert sensor.bands.g_per_code > 0


def test_a_band_that_cannot_be_names_its_value(tmp_path):
    with pytest.raises(kestrel.SettingError, match="option 0, band 1: low is 256"):
        kestrel.Band(0, 1, low=256)
    with pytest.raises(kestrel.UnknownName, match="number is 7"):
        kestrel.BandTable()[0, 7]
    with pytest.raises(kestrel.SettingError, match="row 2 has 3 values; it must have 10"):
        kestrel.BandTable.of_rows([[0, 1] + [0] * 8, [1, 2, 3]])
    assert kestrel.Band(0, 1, warning=[1, 2, 3]) == kestrel.Band(0, 1, warning=(1, 2, 3))
    with pytest.raises(kestrel.SettingError, match="AlarmSpectrum_<name>.csv"):
        kestrel.BandTable().save(tmp_path / "bands.csv")
    bad = tmp_path / "AlarmSpectrum_bad.csv"
    bad.write_text("head\r\n1,2,x\r\n")
    with pytest.raises(kestrel.FileError, match="AlarmSpectrum_bad.csv"):
        kestrel.BandTable.load(bad)


def test_a_setup_is_saved_compared_and_restored(sensor, tmp_path):
    before = sensor.setups.read("before")
    before.save(tmp_path / "before.setup.json")
    assert kestrel.Setup.load(tmp_path / "before.setup.json") == before
    sensor.settings.averages = 9
    now = sensor.setups.read("now")
    difference = before.differences(now)
    assert [each.place for each in difference] == ["FFT_AVG"]
    restored = sensor.setups.restore(before)
    assert restored.whole and restored.written == ["FFT_AVG"]
    assert sensor.settings.averages == before.registers["FFT_AVG"]
    assert now.name == "now" and now.taken.tzinfo is not None
    assert len(before.bands) == 24 and before.product == 31407
    (tmp_path / "bad.json").write_text("{")
    with pytest.raises(kestrel.FileError, match="bad.json"):
        kestrel.Setup.load(tmp_path / "bad.json")


def test_functions_and_state(sensor):
    sensor.command(kestrel.Command.SELF_TEST)
    sensor.command("clear_status")
    state = sensor.state()
    assert state.supply == pytest.approx(3.3, abs=0.1)
    assert state.status["Self-test Diagnostic"] is False
    assert set(state.alarms) == {"x", "y", "z"}
    assert sensor.state(clear=True).temperature == pytest.approx(25, abs=5)
    with pytest.raises(kestrel.SettingError, match="command is 'dance'"):
        sensor.command("dance")
    with pytest.raises(kestrel.SettingError, match="command is 16"):
        sensor.command(16)
    assert sensor.adapters()[0].name == "Ezusb-0"


def test_a_stored_record_is_read_out_of_flash(sensor):
    record = sensor.stored(0)
    assert record.stored == 0
    assert any("blank" in notice or "othing" in notice for notice in record.notices)
    with pytest.raises(kestrel.SettingError, match="number is 16"):
        sensor.stored(16)


def test_all_options_join_into_one_wide_spectrum(sensor):
    sensor.settings.update(option=1, averages=1)
    wide = sensor.wide("z")
    assert sensor.settings.option == 1
    assert [segment.option for segment in wide.segments] == [3, 2, 1, 0]
    assert (wide.frequency[1:] > wide.frequency[:-1]).all()
    assert wide.density.shape == wide.magnitude.shape == wide.options.shape == wide.frequency.shape
    assert wide.rms(100, 10000) > 0
    assert wide.lines[0].amplitude >= wide.lines[-1].amplitude
    assert len(wide.overlaps) == 3
    assert wide.axis == "z"
    with pytest.raises(kestrel.CannotTell, match="Ask for frequencies from") as error:
        wide.rms(0.01, 100)
    assert error.value.needs == 0.01 < error.value.has < 100
    with pytest.raises(kestrel.CannotTell, match="up to"):
        wide.rms(100, 100000)
    with pytest.raises(kestrel.SettingError, match="from_hz must be the lower"):
        wide.rms(100, 10)


def test_what_a_wide_spectrum_is_asked_for_is_judged_before_the_first_capture(sensor):
    count = sensor.registers["REC_CNT"].word
    for wrong in ({"axis": "w"}, {"options": (0, 0)}, {"options": (4,)}, {"options": ()},
                  {"limit": "loud"}):
        with pytest.raises(kestrel.SettingError, match=next(iter(wrong))):
            sensor.wide(**wrong)
    assert sensor.registers["REC_CNT"].word == count


def test_a_level_over_a_gap_between_options_is_not_told(sensor):
    sensor.settings.averages = 1
    wide = sensor.wide("z", options=(0, 3))
    with pytest.raises(kestrel.CannotTell, match="Capture at the options between"):
        wide.rms(50, 5000)
    assert wide.rms(1000, 5000) > 0 and wide.rms(20, 60) > 0


def test_progress_is_told(sensor):
    told = []
    sensor.on_progress(lambda what, done, total: told.append((what, done, total)))
    sensor.capture()
    assert ("Reading", told[-1][1], told[-1][2]) == told[-1]
    sensor.on_progress(None)
    before = len(told)
    sensor.capture()
    assert len(told) == before


def test_what_cannot_be_opened_says_why():
    with pytest.raises(kestrel.SettingError, match="scenario is 'none'"):
        kestrel.open(simulate=True, scenario="none")
    with pytest.raises(kestrel.SettingError, match="simulate=True"):
        kestrel.open(scenario=kestrel.scenarios()[0])
    with pytest.raises(kestrel.SettingError, match="adapter is 4"):
        kestrel.open(adapter=4)
    with pytest.raises(kestrel.SettingError, match="choose one"):
        kestrel.open(adapter=0, parallel=0x378)
    with pytest.raises(kestrel.SensorLost, match="/dev/none"):
        kestrel.open(port_device="/dev/none")
    with kestrel.open(simulate=True):  # nothing of the failed ones stands in the way
        pass
