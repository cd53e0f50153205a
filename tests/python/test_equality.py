# What Python tells is what the command line tells, to the last bit.
# SPDX-License-Identifier: MIT
import pytest

import kestrel


@pytest.fixture
def kept(archive, record, samples):
    """The same records for both: in an archive."""
    ids = [archive.write(record), archive.write(samples)]
    archive.close()
    return archive._place, ids


def test_records_are_equal(cli, kept, record, samples):
    place, ids = kept
    for id, each in zip(ids, (record, samples)):
        told = cli("--archive", place, "archive", "show", id)["record"]
        assert each.to_dict() == told
        for axis in "xyz":
            assert each.values(axis).tolist() == told["axes"][axis.upper()]["data_g"]
        assert each.supply == told["supply_v"] and each.temperature == told["temperature_c"]
        assert each.sample_rate == told["sample_rate_hz"]
        assert each.taken.isoformat(timespec="milliseconds").replace("+00:00", "Z") == told["time"]


@pytest.mark.parametrize("words, options", [
    (["--peaks", "8"], {}), (["--peaks", "5", "--quantity", "velocity"], {"quantity": "velocity"}),
    (["--peaks", "3", "--quantity", "g", "--amplitude", "pp"], {"amplitude": "pp"}),
    (["--peaks", "8", "--mode", "time"], {})])
def test_peaks_and_levels_are_equal(cli, archive, words, options):
    """The command line measures and keeps the record; Python reads it and tells the same."""
    told = cli("--simulate", "--archive", archive._place, "capture", "--option", "1", "--levels",
               *words)
    with kestrel.open(simulate=True) as sensor:
        bands = sensor.bands.read()
    record = archive.read(archive.search()[0]).record
    for axis in "xyz":
        expected = told["axes"][axis.upper()]
        assert record.values(axis).tolist() == expected["data_g"]
        peaks = record.peaks(axis, most=int(words[1]), **options)
        assert [(p.frequency, p.frequency_uncertainty, p.amplitude, p.uncertainty, p.unit)
                for p in peaks] == [
            (p["frequency_hz"], p["frequency_uncertainty_hz"], p["amplitude"], p["uncertainty"],
             p["unit"]) for p in expected["peaks"]]
        level = record.levels(axis, bands=None if record.is_time else bands, **options)
        levels = expected["levels"]
        assert (level.rms, level.unit) == (levels["overall"], levels["unit"])
        assert level.bands == levels["bands"]
        if record.is_time:
            assert (level.largest, level.mean, level.crest_factor, level.kurtosis) == (
                levels["peak"], levels["mean"], levels["crest_factor"], levels["kurtosis"])
        else:
            assert (level.largest, level.from_hz, level.to_hz) == (
                levels["largest"], levels["from_hz"], levels["to_hz"])


def test_registers_bands_and_state_are_equal(cli, sensor):
    told = {each["name"]: each for each in cli("--simulate", "registers", "list")}
    mine = sensor.registers.read_all()
    assert set(mine) == set(told)
    for name in set(told) - {"TEMP_OUT", "SUPPLY_OUT", "TIME_STMP_L", "TIME_STMP_H"}:
        assert (mine[name].address, mine[name].value, mine[name].scaled) == (
            told[name]["address"], told[name]["value"], told[name]["scaled"]), name
    rows = cli("--simulate", "bands", "read")
    assert [[each["option"], each["band"], each["f_low"], each["f_high"], each["alarm1_x"],
             each["alarm1_y"], each["alarm1_z"], each["alarm2_x"], each["alarm2_y"],
             each["alarm2_z"]] for each in rows] == sensor.bands.read().rows()


def test_trends_are_equal(cli, archive):
    with kestrel.open(simulate=True) as sensor:
        sensor.settings.averages = 1
        for record in sensor.captures(3):
            archive.write(record)
    mine = archive.trend("peak", "y")
    told = cli("--archive", archive._place, "trend", "peak", "--axis", "Y")
    assert mine.unit == told["unit"]
    points = told["series"][0]["points"]
    assert mine.series[0].values.tolist() == [each["value"] for each in points]
    assert mine.series[0].ids.tolist() == [each["id"] for each in points]
