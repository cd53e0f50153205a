#!/usr/bin/python3
"""Reads the files of exchange_files with scipy, numpy, sox and Python's own modules, universal files
column by column as their definition has it, and waveforms with a logic analyser's decoder; every value
has to be the one that was written."""

import csv
import io
import json
import pathlib
import subprocess
import sys
import tempfile
import warnings

import numpy as np
from scipy.io import loadmat, wavfile

AXES = "XYZ"
MACHINE = "Pump 3 \u2013 K\u00fchlwasser"
NOTE = "after \"alignment\",\nsecond line\t'; DROP TABLE records; --\\ \U0001f527"
FACTS = {"machine": MACHINE, "note": NOTE, "speed_rpm": 1480.5, "point": "DE bearing",
         "time": "2024-03-14T08:26:53.250Z", "rec_ctrl": 0x0F02, "status": 0x80, "unit": "g",
         "alarm_y_peak": 1234, "interface": "Ezusb-0"}

warnings.simplefilter("error")  # a reader that is not content is a fault


def same(found, wanted, what):
    found, wanted = np.asarray(found, dtype=np.float64), np.asarray(wanted, dtype=np.float64)
    if found.shape != wanted.shape or found.tobytes() != wanted.tobytes():
        raise AssertionError(f"{what}: {found.ravel()[:3]} of {found.shape} is not {wanted.ravel()[:3]}"
                             f" of {wanted.shape}")


def equal(found, wanted, what):
    if found != wanted:
        raise AssertionError(f"{what}: {found!r} is not {wanted!r}")


def expected(path):
    """The records that were written: a dictionary each."""
    records = []
    for line in path.read_text().splitlines():
        name, number, *values = line.split()
        if name == "kind":
            records.append({"kind": values[0]})
            continue
        values = np.array([float.fromhex(value) for value in values])
        records[int(number)][name] = values[0] if name in ("step", "lsb") else values
    return records


# Universal files: the FORTRAN formats of the definition, column by column.

def columns(line, *widths):
    """The fields of a line; what lies behind it has to be empty."""
    fields, at = [], 0
    for width in widths:
        fields.append(line[at:at + width])
        at += width
    equal(line[at:].strip(), "", f"rest of {line!r}")
    return fields


def read_header(lines):
    """Records 1 to 11 of a dataset 58."""
    for line in lines:
        if len(line.encode()) > 80:
            raise AssertionError(f"longer than 80 columns: {line!r}")
    dof = columns(lines[5], 5, 10, 5, 10, 1, 10, 10, 4, 1, 10, 10, 4)
    form = columns(lines[6], 10, 10, 10, 13, 13, 13)
    axes = [columns(line, 10, 5, 5, 5, 1, 20, 1, 20) for line in lines[7:11]]
    return {"title": lines[0], "note": lines[1], "date": lines[2], "settings": lines[3],
            "function": int(dof[0]), "node": int(dof[6]), "direction": int(dof[7]),
            "type": int(form[0]), "count": int(form[1]), "even": int(form[2]),
            "first": float(form[3]), "step": float(form[4]),
            "axes": [(int(axis[0]), axis[5].strip(), axis[7].strip()) for axis in axes]}


def read_uff(data):
    """All datasets of a file; nothing may lie between them."""
    sets, at = [], 0

    def line():
        nonlocal at
        end = data.index(b"\n", at)
        text, at = data[at:end], end + 1
        return text.decode()

    while at < len(data):
        equal(line(), "    -1", "beginning of a dataset")
        kind = line()
        if kind[6:7] == "b":
            number, mark, order, real, ascii_lines, count, *zeros = columns(
                kind, 6, 1, 6, 6, 12, 12, 6, 6, 12, 12)
            equal((number, int(order), int(real), int(ascii_lines), [int(z) for z in zeros]),
                  ("    58", 1, 2, 11, [0, 0, 0, 0]), "line of a binary dataset")
            found = read_header([line() for _ in range(11)])
            found["values"] = np.frombuffer(data[at:at + int(count)], "<f8")
            at += int(count)
        else:
            equal(kind, "    58", "line of a dataset")
            found = read_header([line() for _ in range(11)])
            values = []
            while len(values) < found["count"]:
                text = line()
                values += [float(text[i:i + 20]) for i in range(0, len(text), 20)]
            found["values"] = np.array(values)
        equal(len(found["values"]), found["count"], "number of values")
        equal(line(), "    -1", "end of a dataset")
        sets.append(found)
    return sets


def check_uff(path, records, binary):
    sets = read_uff(path.read_bytes())
    equal(len(sets), 3 * len(records), "datasets")
    for number, found in enumerate(sets):
        record, axis = records[number // 3], number % 3
        is_time = record["kind"] == "time"
        wanted = record[AXES[axis] + "_data"]
        if not binary:
            wanted = [float(f"{value:.12E}") for value in wanted]
            words = np.round(found["values"] / record["lsb"])
            same(words, record[AXES[axis] + "_raw"], f"{path.name}: words from 13 digits")
        same(found["values"], wanted, path.name)
        equal(found["function"], 1 if is_time else 12, "function type")
        equal((found["node"], found["direction"]), (number // 3 + 1, axis + 1), "node and direction")
        equal((found["type"], found["even"], found["first"]), (4, 1, 0.0), "form")
        equal(found["step"], float(f"{record['step']:.5E}"), "step")
        equal(found["axes"][0], (17, "Time", "s") if is_time else (18, "Frequency", "Hz"), "abscissa")
        equal(found["axes"][1], (12, "Acceleration", "g"), "ordinate")
        settings = dict(word.split("=") for word in found["settings"].split()[1:])
        equal(float(settings["STEP"]), record["step"], "whole step")
        equal(float(settings["LSB"]), record["lsb"], "LSB")


# Readers that others wrote.

def check_mat(path, records):
    loaded = loadmat(path, squeeze_me=True, struct_as_record=True)
    equal(sorted(name for name in loaded if not name.startswith("__")),
          sorted(f"record{i + 1}" for i in range(len(records))), "structs")
    for i, record in enumerate(records):
        found = loaded[f"record{i + 1}"]
        for axis, letter in enumerate(AXES):
            same(found["data_g"].item()[:, axis], record[letter + "_data"], path.name)
            same(found["raw"].item()[:, axis], record[letter + "_raw"], path.name)
        place = "time_s" if record["kind"] == "time" else "frequency_hz"
        equal(len(found[place].item()), len(record["X_data"]), place)
        equal(found["lsb_weight_g"].item(), record["lsb"], "LSB")
        equal(float(np.float32(found["supply_v"].item())), float(np.float32(3.2999)), "supply")
        if np.size(found["machine"].item()):
            for name, value in FACTS.items():
                equal(found[name].item(), value, f"{path.name}: {name}")
            equal(list(found["tags"].item()), ["good", "baseline"], "tags")


def check_wav(path, record):
    rate, samples = wavfile.read(path)
    equal((samples.dtype, samples.shape), (np.dtype("float32"), (512, 3)), path.name)
    equal(rate, round(1 / record["step"]), "rate")
    wanted = np.array([record[letter + "_raw"] for letter in AXES]).T / 32768
    same(samples, wanted, path.name)
    scale = 32768 * record["lsb"]
    same(samples.astype(float) * scale, np.array([record[a + "_data"] for a in AXES]).T, "values in g")
    # A program that calculates in whole numbers gets every word too, and cuts none off.
    read = subprocess.run(["sox", path, "-t", "f64", "-"], check=True, capture_output=True)
    if b"clip" in read.stderr:
        raise AssertionError(read.stderr.decode())
    same(np.frombuffer(read.stdout, "<f8").reshape(512, 3), wanted, "sox")
    told = dict(line.split(": ", 1) for line in wav_comment(path.read_bytes()).splitlines()[1:])
    equal(float(told["g_per_unit"]), scale, "scale")
    equal(1 / float(told["true_rate_hz"]), record["step"], "true rate")
    if "machine" in told:
        equal((told["machine"], told["note"]), (MACHINE, NOTE.replace("\n", " ").replace("\t", " ")), "texts")


def wav_comment(data):
    """The text of the chunk LIST INFO ICMT."""
    at = 12
    while at < len(data):
        name, size = data[at:at + 4], int.from_bytes(data[at + 4:at + 8], "little")
        if name == b"LIST" and data[at + 8:at + 16] == b"INFOICMT":
            length = int.from_bytes(data[at + 16:at + 20], "little")
            return data[at + 20:at + 20 + length].split(b"\0")[0].decode()
        at += 8 + size + size % 2
    raise AssertionError("no comment")


def check_csv(path, records):
    text = path.read_bytes().decode()
    lines = text.split("\r\n")
    equal(lines[-1], "", "last line")
    table = [line for line in lines if not line.startswith("#")]
    rows = list(csv.DictReader(io.StringIO("\n".join(table))))
    for i, record in enumerate(records):
        mine = [row for row in rows if row["record"] == str(i + 1)]
        place = "time_s" if record["kind"] == "time" else "frequency_hz"
        equal([row["point"] for row in mine], [str(p) for p in range(len(record["X_data"]))], "points")
        same(float(mine[1][place]), record["step"], "step")
        for letter in AXES:
            same([float(row[letter.lower() + "_g"]) for row in mine], record[letter + "_data"], path.name)
            same([float(row[letter.lower() + "_raw"]) for row in mine], record[letter + "_raw"], path.name)
        facts = dict(line.split(", ", 1)[1].split(":", 1) for line in lines
                     if line.startswith(f"# record {i + 1}, "))
        equal(float(facts["lsb_weight_g"]), record["lsb"], "LSB")
        if facts["machine"]:
            note = NOTE.replace("\\", "\\\\").replace("\n", "\\n")
            equal((facts["machine"], facts["note"]), (" " + MACHINE, " " + note), "texts")
    if len(records) == 1:
        whole = np.genfromtxt(io.StringIO(text), delimiter=",", comments="#")[1:]
        same(whole[:, 3], records[0]["X_data"], "genfromtxt")


def check_json(path, records):
    found = json.loads(path.read_text())["records"]
    equal(len(found), len(records), "records")
    for mine, record in zip(found, records):
        equal(mine["type"], record["kind"], "type")
        for letter in AXES:
            same(mine["axes"][letter]["data_g"], record[letter + "_data"], path.name)
            same(mine["axes"][letter]["raw"], record[letter + "_raw"], path.name)
        equal(mine["lsb_weight_g"], record["lsb"], "LSB")
        equal(mine["supply_v"], 3.2999, "supply")
        if mine["machine"]:
            for name, value in FACTS.items():
                equal(mine[name], value, name)


def check_wire(path):
    """The words of both lines as a logic analyser's SPI decoder tells them."""
    wanted = [[int(word) for word in line.split()]
              for line in path.with_suffix(".words").read_text().splitlines()]
    for column, name in enumerate(("mosi", "miso")):
        told = subprocess.run(
            ["sigrok-cli", "-I", "vcd", "-i", path, "-P",
             "spi:clk=sclk:mosi=mosi:miso=miso:cs=cs:cpol=1:cpha=1:wordsize=16",
             "-A", f"spi={name}-data"], check=True, capture_output=True, text=True).stdout
        words = [int(line.split(":")[1], 16) for line in told.splitlines()]
        equal(words, [word[column] for word in wanted], f"{name} of {path.name}")


def main(program):
    checked = 1
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        subprocess.run([program, folder], check=True)
        check_wire(folder / "wire.vcd")
        for path in sorted(folder.glob("*.expected")):
            records = expected(path)
            check_uff(path.with_suffix(".uff58"), records, False)
            check_uff(path.with_suffix(".uff58b"), records, True)
            check_mat(path.with_suffix(".mat"), records)
            check_csv(path.with_suffix(".csv"), records)
            check_json(path.with_suffix(".json"), records)
            wav = path.with_suffix(".wav")
            may_be = len(records) == 1 and records[0]["kind"] == "time"
            if wav.exists():
                equal(may_be, True, f"{wav.name} exists")
                check_wav(wav, records[0])
            elif may_be and "--no-wav" not in sys.argv:
                raise AssertionError(f"{wav.name} was not written")
            checked += 5 + wav.exists()
    if checked < 50:
        raise AssertionError(f"only {checked} files were checked")
    print(f"{checked} files read back to the last bit")


main(sys.argv[1])
