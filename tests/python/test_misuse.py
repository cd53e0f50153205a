# Misuse of the package ends in a clear error, never in a crash.
# SPDX-License-Identifier: MIT
import gc
import os
import signal
import subprocess
import sys
import threading
import time

import pytest

import kestrel

SLOW = {"averages": 255, "option": 3}  # a capture of minutes


def started(text):
    """A process that has said "ready"."""
    process = subprocess.Popen([sys.executable, "-u", "-c", text], stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "ready\n"
    return process


def in_thread(sensor, ends):
    """A capture that takes long, in a thread of its own; what ended it is appended."""
    def work():
        try:
            ends.append(sensor.capture(**SLOW))
        except BaseException as error:
            ends.append(error)
    thread = threading.Thread(target=work)
    thread.start()
    while not sensor._core.is_busy:
        time.sleep(0.001)
    time.sleep(0.5)
    return thread


def test_ctrl_c_ends_a_capture_as_stop_does():
    process = started(f"""
import kestrel, threading
with kestrel.open(simulate=True) as sensor:
    sensor.settings.update(**{SLOW})
    threading.Timer(0.5, print, ["ready"]).start()
    try:
        sensor.capture()
    except kestrel.Interrupted as error:
        assert isinstance(error, KeyboardInterrupt) and "stopped" in error.text
        assert not error.record.is_new and error.record.stopped
    record = sensor.capture(averages=1, option=0)  # and goes on
    assert record.is_new
    print("went on")
""")
    start = time.monotonic()
    process.send_signal(signal.SIGINT)
    out, errors = process.communicate(timeout=30)
    assert "went on" in out and process.returncode == 0, errors
    assert time.monotonic() - start < 5


def test_ctrl_c_that_nobody_knows_ends_the_script():
    process = started(f"""
import kestrel, threading
with kestrel.open(simulate=True) as sensor:
    sensor.settings.update(**{SLOW})
    threading.Timer(0.5, print, ["ready"]).start()
    sensor.capture()
""")
    process.send_signal(signal.SIGINT)
    _, errors = process.communicate(timeout=30)
    assert process.returncode != 0
    assert "kestrel.errors.Interrupted: The capture was stopped." in errors


def test_stop_ends_a_capture_from_another_thread(sensor):
    ends = []
    thread = in_thread(sensor, ends)
    sensor.stop()
    thread.join(10)
    assert isinstance(ends[0], kestrel.Stopped) and not ends[0].record.is_new
    assert sensor.capture(averages=1, option=0).is_new


def test_two_threads_at_once_get_a_clear_error(sensor):
    ends = []
    thread = in_thread(sensor, ends)
    for misuse in (sensor.capture, sensor.state, sensor.close, lambda: sensor.registers["STATUS"]):
        with pytest.raises(kestrel.BusyError, match="from one thread at a time"):
            misuse()
    sensor.stop()
    thread.join(10)
    assert sensor.state().supply > 3  # one after the other is allowed


def test_other_threads_run_during_a_capture(sensor):
    counted = []
    end = threading.Event()

    def count():
        while not end.is_set():
            counted.append(1)
            time.sleep(0.001)
    thread = threading.Thread(target=count)
    thread.start()
    sensor.capture(averages=8, option=0)
    during = len(counted)
    end.set()
    thread.join()
    assert during > 50


def test_a_second_sensor_is_refused_until_the_first_is_closed(sensor):
    with pytest.raises(kestrel.BusyError, match="Another sensor is open"):
        kestrel.open(simulate=True)
    assert sensor.capture().is_new
    sensor.close()
    with kestrel.open(simulate=True) as second:
        assert second.capture().is_new


def test_a_sensor_that_is_forgotten_is_let_go():
    kestrel.open(simulate=True)
    gc.collect()
    with kestrel.open(simulate=True):
        pass


def test_an_exception_of_a_callback_ends_the_step_and_comes_out(sensor):
    def callback(*_):
        raise ZeroDivisionError("in the callback")
    sensor.on_progress(callback)
    for step in (lambda: sensor.capture(averages=1), sensor.bands.read,
                 lambda: sensor.setups.read("name")):
        with pytest.raises(ZeroDivisionError, match="in the callback"):
            step()
    sensor.on_progress(None)
    assert sensor.capture(averages=1, option=0).is_new


def test_a_callback_that_uses_its_sensor_is_told_so(sensor):
    sensor.on_progress(lambda *_: sensor.state())
    with pytest.raises(kestrel.BusyError, match="the callback of a step that still runs"):
        sensor.capture()
    sensor.on_progress(lambda *_: sensor.close())
    with pytest.raises(kestrel.BusyError):
        sensor.capture()
    with pytest.raises(TypeError, match="progress is 1; it must be a function"):
        sensor.on_progress(1)


def test_a_fork_leaves_the_sensor_to_its_parent(sensor):
    record = sensor.capture(averages=1)
    reader, writer = os.pipe()
    child = os.fork()
    if child == 0:
        told = "nothing"
        try:
            sensor.capture()
        except kestrel.ClosedError as error:
            told = str(error)
        try:
            assert record.x[1] >= 0 and not sensor.is_open
            sensor.close()
            with kestrel.open(simulate=True) as own:
                assert own.capture(averages=1).is_new
        except BaseException as error:
            told = repr(error)
        os.write(writer, told.encode())
        os._exit(0)
    assert os.waitpid(child, 0)[1] == 0
    assert "belongs to the parent process" in os.read(reader, 1000).decode()
    assert sensor.capture(averages=1).is_new


def test_an_archive_is_not_used_after_a_fork(archive, record):
    archive.write(record)
    child = os.fork()
    if child == 0:
        try:
            archive.search()
        except kestrel.ClosedError:
            os._exit(7)
        os._exit(1)
    assert os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 7
    assert len(archive) == 1


@pytest.mark.parametrize("ending", ["pass", "sys.exit(3)", "raise ValueError('at the end')",
                                    "threading.Timer(0.2, sys.exit).start()"])
def test_the_interpreter_ends_in_the_middle_of_a_capture(script, ending):
    start = time.monotonic()
    done = script(f"""
import kestrel, sys, threading, time
sensor = kestrel.open(simulate=True)
sensor.settings.update(**{SLOW})
def work():
    while True:
        try:
            sensor.capture()
        except kestrel.Stopped:
            pass
threading.Thread(target=work, daemon=True).start()
time.sleep(0.5)
assert sensor._core.is_busy
{ending}
""")
    expected = 3 if "exit(3)" in ending else 1 if "raise" in ending else 0
    assert done.returncode == expected, done.stderr
    assert "terminate" not in done.stderr and "Fatal" not in done.stderr
    assert time.monotonic() - start < 20


@pytest.mark.parametrize("work", [
    "archive.search()", "archive.read(1).record.x.sum()", "archive.trend()", "record.peaks('x')",
    "kestrel.save(f'{threading.get_ident()}.uff', record)", "kestrel.open_archive('a.db').close()"])
def test_the_interpreter_ends_in_the_middle_of_whatever_threads_do(script, tmp_path, work):
    """Also the first arrays of a process, made by several threads at once."""
    for _ in range(3):
        done = script(f"""
import kestrel, threading, time
with kestrel.open(simulate=True) as sensor:
    record = sensor.capture(averages=1)
archive = kestrel.open_archive("a.db")
archive.write_all([record] * 50)
def work():
    while True:
        try:
            {work}
        except kestrel.BusyError:
            pass
        except kestrel.ClosedError:
            return
for _ in range(4):
    threading.Thread(target=work, daemon=True).start()
time.sleep(0.3)
""", cwd=tmp_path)
        assert (done.returncode, done.stderr) == (0, "")


def test_an_archive_is_closed_before_the_interpreter_ends(script, tmp_path):
    done = script("""
import atexit
archive = []
atexit.register(lambda: print(archive[0].is_open))  # runs after the package's own
import kestrel
archive.append(kestrel.open_archive("a.db"))
""", cwd=tmp_path)
    assert (done.returncode, done.stdout, done.stderr) == (0, "False\n", "")


def test_what_is_open_at_the_end_of_the_interpreter_is_closed(script):
    done = script("""
import kestrel, builtins
builtins.kept = kestrel.open(simulate=True)
kept.capture()
""")
    assert (done.returncode, done.stderr) == (0, "")


def test_arrays_without_numpy_say_what_is_missing(script):
    done = script("""
import sys
sys.modules["numpy"] = None
import kestrel
with kestrel.open(simulate=True) as sensor:
    record = sensor.capture()
    print(record.levels("x").rms > 0)
    record.x
""")
    assert "True" in done.stdout
    assert "numpy" in done.stderr.splitlines()[-1] and "Error" in done.stderr


@pytest.mark.parametrize("call", [
    "kestrel._kestrel.Record()", "kestrel.Record(None).x", "kestrel.Record(1).levels('x')",
    "kestrel.Sensor(None).capture()", "kestrel.Archive(None, '').search()",
    "kestrel.join([1])", "kestrel.join(None)", "record.values(None)", "record.values(3)",
    "record.peaks('x', most='many')", "record.spectrum('x', 'loudness')",
    "record.spectrum('x', 'velocity', lowest='a')", "record.save(None)", "record.wide(1)",
    "kestrel._kestrel.record_of_state(())", "kestrel._kestrel.record_of_state((1,))",
    "kestrel._kestrel.record_of_state((2,) * 12)", "kestrel._kestrel.record_of_state((1,) * 12)",
    "record._core.values(7)", "record._core.values('x')",
    "kestrel.BandTable.of_rows([[9, 9, 9, 9, 9, 9, 9, 9, 9, 9]])",
    "kestrel.BandTable.of_rows([[0]])", "kestrel.Setup(None).name",
    "kestrel._kestrel.band_file_text([[9] * 10])", "kestrel._kestrel.setup_of_text('f', b'\\xff')",
    "kestrel.load('/')", "kestrel.load('/dev/null')",
])
def test_wrong_arguments_are_errors(record, call):
    with pytest.raises((kestrel.Error, TypeError, IndexError)):
        eval(call, {"kestrel": kestrel, "record": record})
