#!/usr/bin/env python3
"""Writes the golden data-log files, or with --check reads them with the csv module.

An independent description of the file format: numbers by Python's own formatting.
"""
import csv
import pathlib
import sys

FOLDER = pathlib.Path(__file__).parent / "golden"
NAMES = ["System Alarm Flag", "Z-Axis Spectral Alarm 2", "Y-Axis Spectral Alarm 2 ",
         "X-Axis Spectral Alarm 2 ", "Z-Axis Spectral Alarm 1", "Y-Axis Spectral Alarm 1",
         "X-Axis Spectral Alarm 1", "DR", "FMF", "STD", "Recording Escape ", "SPI", "FUF", "VsH",
         "VsL"]
FLAGS = ["OK"] * 7 + ["SET", "OK", "OK", "FAIL", "OK", "OK", "OK", "OK"]
FILES = {
    "spectrum_point.csv": dict(width=255, lsb=0.0000153, comma=False, raw=False, base="DATALOG",
                               date="11/21/26", axes=["X axis", "Y Axis.", "Z axis."]),
    "time_comma.txt": dict(width=511, lsb=0.0023842, comma=True, raw=False, base="Messung",
                           date="21.11.26", axes=["X Acc.", "Y Acc.", "Z Acc."]),
    "time_lsb.csv": dict(width=511, lsb=0.0023842, comma=False, raw=True, base="DATALOG",
                         date="11/21/26", axes=["X Acc.", "Y Acc.", "Z Acc."]),
}


def words(i):
    return [i * 257 % 65536, i * i % 40000, 255 - i]


def number(value, digits=15):
    return "0" if value == 0 else f"{value:.{digits}G}"


def text(f):
    sep = "\t" if f["comma"] else ","
    mark = (lambda s: s.replace(".", ",")) if f["comma"] else (lambda s: s)
    ext = ".txt" if f["comma"] else ".csv"
    lines = [f"File Name,{f['base']}{ext}", f"Date{sep}{f['date']}", f"Time{sep}10:20:30",
             f"AVG_Cnt{sep}8", f"Capt_Supply{sep}{mark('3.29956')}",
             f"Capt_Temp 'C{sep}{mark('24.81')}", " ", "Staus  Register", sep.join(NAMES),
             sep.join(FLAGS), " ", "Sample #" + sep + "".join(a + sep for a in f["axes"])]
    for i in range(f["width"] + 1):
        values = [w if f["raw"] else w * f["lsb"] for w in words(i)]
        lines.append(sep.join([str(i)] + [mark(number(v)) for v in values]))
    return "".join(line + "\r\n" for line in lines)


def check(name, f):
    """The csv module gives back the numbers to 15 digits."""
    with open(FOLDER / name, newline="") as file:
        rows = list(csv.reader(file, delimiter="\t" if f["comma"] else ","))
    assert rows[11][0] == "Sample #", rows[11]
    data = rows[12:]
    assert len(data) == f["width"] + 1, len(data)
    for i, row in enumerate(data):
        assert int(row[0]) == i and len(row) == 4, row
        for cell, word in zip(row[1:], words(i)):
            read = float(cell.replace(",", "."))
            wanted = word if f["raw"] else word * f["lsb"]
            assert abs(read - wanted) <= 1e-14 * abs(wanted), (name, i, cell, wanted)


if __name__ == "__main__":
    for file_name, description in FILES.items():
        if sys.argv[1:] == ["--check"]:
            check(file_name, description)
        else:
            (FOLDER / file_name).write_bytes(text(description).encode())
