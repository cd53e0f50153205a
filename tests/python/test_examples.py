# The examples run, on the simulated sensor, and do what they say.
# SPDX-License-Identifier: MIT
import csv
import re
import signal
import subprocess
import sys
import time

import pytest

import kestrel
from conftest import EXAMPLES


@pytest.fixture
def run(tmp_path):
    def run(name, *words):
        done = subprocess.run([sys.executable, EXAMPLES / f"{name}.py", *map(str, words)],
                              cwd=tmp_path, capture_output=True, text=True, timeout=120)
        assert (done.returncode, done.stderr) == (0, "")
        return done.stdout
    return run


def test_every_example_is_tested():
    mine = open(__file__, encoding="utf-8").read()
    for example in EXAMPLES.glob("*.py"):
        assert f'run("{example.stem}"' in mine, example


def test_first_capture(run, tmp_path):
    told = run("first_capture", "--simulate")
    assert told.startswith("Spectrum, 0 to 70 g")
    assert len(re.findall(r"^[XYZ] .* g RMS, largest", told, re.M)) == 3
    assert (tmp_path / "first_capture.uff").stat().st_size > 10000


def test_sweep(run, tmp_path):
    assert "12 captures, 36 rows" in run("sweep", "--simulate", "--averages", 1)
    with open(tmp_path / "sweep.csv", encoding="utf-8") as file:
        rows = list(csv.DictReader(file))
    assert {(row["range_g"], row["window"]) for row in rows} == {
        (g, window) for g in ("1", "5", "20", "70")
        for window in ("rectangular", "hanning", "flattop")}
    assert all(float(row["rms_g"]) > 0 for row in rows)


def test_noise_floor(run):
    told = run("noise_floor", "--simulate", "--captures", 5)
    densities = [float(each) for each in re.findall(r"^[XYZ] +([0-9.]+) µg/√Hz$", told, re.M)]
    assert densities == pytest.approx([200, 150, 250], rel=0.1)  # as it is simulated


def test_long_watch_and_archive_to_pandas(run, tmp_path):
    told = run("long_watch", "--simulate", "--count", 3, "--interval", 0.5, "--machine", "pump")
    assert told.count("Spectrum") == 3 and "3 records in watch.db" in told
    assert (tmp_path / "watch.png").read_bytes().startswith(b"\x89PNG")
    told = run("archive_to_pandas", "--archive", "watch.db", "--machine", "pump")
    assert "pump" in told and "spectrum" in told
    with open(tmp_path / "levels.csv", encoding="utf-8") as file:
        rows = list(csv.DictReader(file))
    assert len(rows) == 3 and all(float(row["rms_z"]) > 0 for row in rows)
    assert all("+00:00" in row["taken"] for row in rows)


def test_a_long_watch_ends_with_ctrl_c_between_two_captures(tmp_path):
    process = subprocess.Popen([sys.executable, "-u", EXAMPLES / "long_watch.py", "--simulate",
                                "--interval", "600"], cwd=tmp_path, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=True)
    assert process.stdout.readline().startswith("Spectrum")
    time.sleep(0.5)
    process.send_signal(signal.SIGINT)
    out, errors = process.communicate(timeout=60)
    assert (out, errors, process.returncode) == ("ended\n1 records in watch.db\n", "", 0)


def test_two_sensors(run):
    told = run("two_sensors", "--simulate", "--captures", 2)
    assert len(re.findall(r"^[XYZ] +[0-9.]+ and [0-9.]+ g RMS, [+-]", told, re.M)) == 3


def test_universal_file(run):
    told = run("universal_file", "--simulate")
    assert told.count("256 values") == 3 and told.count("equal to the record") == 3
    assert "NOT" not in told


SENSORLESS = [each.stem for each in EXAMPLES.glob("*.py") if each.stem != "archive_to_pandas"]


@pytest.mark.parametrize("name", sorted(SENSORLESS))
def test_without_a_sensor_it_is_said_in_a_calm_line(name, tmp_path):
    try:
        kestrel.open().close()
        pytest.skip("a sensor is attached")
    except kestrel.SensorLost:
        pass
    done = subprocess.run([sys.executable, EXAMPLES / f"{name}.py"], cwd=tmp_path,
                          capture_output=True, text=True, timeout=120)
    assert (done.returncode, done.stdout) == (1, "")
    assert "Traceback" not in done.stderr and len(done.stderr.splitlines()) == 1
    assert "Please Verify Setup" in done.stderr


def test_without_an_archive_that_is_said_in_a_calm_line(tmp_path):
    done = subprocess.run([sys.executable, EXAMPLES / "archive_to_pandas.py", "--archive",
                           "none.db"], cwd=tmp_path, capture_output=True, text=True, timeout=120)
    assert (done.returncode, done.stdout) == (1, "")
    assert "Traceback" not in done.stderr and "none.db" in done.stderr
