#!/usr/bin/env python3
"""Asks the program what it shows of random words of the sensor and works the same out exactly.

check_code_texts.py PROGRAM. Registers are scaled in single precision, one rounding an operation;
everything else is double precision. Data-log files are read as a spreadsheet does. KESTREL_SEED
adds a seed to the fixed ones.
"""

import csv
import os
import pathlib
import random
import struct
import subprocess
import sys
from fractions import Fraction

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "numeric"))
from make_decimal_rows import fixed, general  # noqa: E402

LAST_BIN = 255  # of a spectrum
SEEDS = [1, 2]
REGISTERS = 2000  # questions a seed
OTHERS = 1000  # of each kind
LOGS = 8


def rounded(exact: Fraction) -> Fraction:
    """To the nearest number of 24 bits, ties to the even one."""
    if exact == 0:
        return exact
    exponent = 0
    while abs(exact) >= 2**24 * Fraction(2)**exponent:
        exponent += 1
    while abs(exact) < 2**23 * Fraction(2)**exponent:
        exponent -= 1
    return round(exact / Fraction(2)**exponent) * Fraction(2)**exponent


def from_bits(bits: int) -> Fraction:
    return Fraction(struct.unpack(">f", struct.pack(">I", bits))[0])


# Signed, scale, offset.
SHAPES = {
    "X_NULL": (True, from_bits(0x3B9C4001), 0), "Y_NULL": (True, from_bits(0x3B9C4001), 0),
    "Z_NULL": (True, from_bits(0x3B9C4001), 0), "SUPPLY_OUT": (True, from_bits(0x3A9FFFFF), 0),
    "TEMP_OUT": (True, rounded(Fraction(-47, 100)), 625), "FFT_AVG": (True, Fraction(1), 0),
    "REC_CNT": (False, Fraction(1), 0), "ALM_S_MAG": (False, Fraction(1), 0)}
G_PER_LSB = [0.0000153, 0.0000763, 0.0003052, 0.0011921]


def signed(word: int) -> int:
    return word - 0x10000 if word >= 0x8000 else word


def scaled(name: str, word: int) -> tuple[int, float]:
    is_signed, scale, offset = SHAPES[name]
    value = signed(word) if is_signed else word
    return value, float(rounded(rounded(rounded(Fraction(value)) * scale) + offset))


def four(value: float) -> str:
    whole, _, decimals = fixed(value, 4).partition(".")
    return f"{whole}.{decimals.rstrip('0') or '0'}"


def register(draw: random.Random) -> tuple[str, str]:
    name, word = draw.choice(list(SHAPES)), draw.randrange(0x10000)
    value, number = scaled(name, word)
    return (f"register {name} {word}",
            f"{value} {general(number, 7)} {four(number)} {fixed(number, 4)}\n")


def cursor(draw: random.Random) -> tuple[str, str]:
    option, place = draw.randrange(4), draw.uniform(0, 511)
    g = draw.choice([draw.uniform(-80, 80), draw.randrange(-2000, 2000) / 1000 + 0.0005])
    bin_ = float(round(place))
    hertz = bin_ * (100189.9 / 8.0**option / 512)
    frequency = f"{int(fixed(hertz, 0)):,} Hz" if bin_ <= LAST_BIN else ""
    return f"cursor {option} {place!r} {g!r}", f"{fixed(bin_, 0)} {frequency} {fixed(g, 3)}\n"


def peak(draw: random.Random) -> tuple[str, str]:
    range_, mode, code = draw.randrange(4), draw.randrange(3), draw.randrange(0x10000)
    g_per_lsb = [0.015259, 0.0763, 0.3052, 1.1921][range_] / 1000 * (2 if mode == 2 else 1)
    return f"peak {range_ << 4 | mode} {code}", f" {fixed(code * g_per_lsb, 3)}\n"


class Log:
    """One capture that is logged, and the check of its file."""

    def __init__(self, draw: random.Random):
        self.mark, self.raw, self.time = draw.choice(".,"), draw.randrange(2), draw.randrange(2)
        self.range, self.averages = draw.randrange(4), draw.randrange(1, 256)
        self.supply, self.temperature = draw.randrange(0x10000), draw.randrange(0x10000)
        self.status, self.seed = draw.randrange(0x8000), draw.randrange(10**6)
        self.question = (f"log {self.mark} {self.raw} {self.time} {self.range} {self.averages} "
                         f"{self.supply} {self.temperature} {self.status} {self.seed}")

    def number(self, text: str) -> str:
        return text.replace(".", self.mark)

    def points(self):
        weight = G_PER_LSB[self.range] * (2 if self.time else 1)
        for point in range(512 if self.time else 256):
            words = [(self.seed + axis * 20011 + point * 25717) & 0xFFFF for axis in range(3)]
            values = [signed(w) if self.time else w for w in words]
            yield [str(point)] + [
                self.number(general(float(v) if self.raw else v * weight, 15)) for v in values]

    def check(self, shown: str, lines: list[str]) -> None:
        supply = scaled("SUPPLY_OUT", self.supply)[1]
        temperature = scaled("TEMP_OUT", self.temperature)[1]
        same(shown, f"{four(supply)} {four(temperature)}\n")
        assert all(line.endswith("\r\n") for line in lines)
        rows = list(csv.reader(lines, delimiter="\t" if self.mark == "," else ","))
        same(rows[3], ["AVG_Cnt", str(self.averages)])
        same(rows[4], ["Capt_Supply", self.number(general(supply, 7))])
        same(rows[5], ["Capt_Temp 'C", self.number(general(temperature, 7))])
        same([text != "OK" for text in reversed(rows[9])],
             [bool(self.status >> bit & 1) for bit in range(15)])
        for row, wanted in zip(rows[12:], self.points(), strict=True):
            same(row, wanted)


def same(found, wanted) -> None:
    if found != wanted:
        raise AssertionError(f"{found!r}, not {wanted!r}")


def check(program: str, seed: int) -> None:
    draw = random.Random(seed)
    asked = ([register(draw) for _ in range(REGISTERS)] +
             [kind(draw) for kind in (cursor, peak) for _ in range(OTHERS)])
    logs = [Log(draw) for _ in range(LOGS)]
    questions = [line for line, _ in asked] + [log.question for log in logs]
    run = subprocess.run([program], input="\n".join(questions).encode() + b"\n",
                         capture_output=True, check=True)
    lines = run.stdout.decode().splitlines(keepends=True)
    for step, question in enumerate(questions):
        try:
            if step < len(asked):
                same(lines.pop(0), asked[step][1])
            else:
                end = lines.index("end\n")
                logs[step - len(asked)].check(lines[0], lines[1:end])
                del lines[:end + 1]
        except (AssertionError, ValueError) as error:
            sys.exit(f"KESTREL_SEED={seed} step {step}, {question!r}: {error}")
    same(lines, [])


if __name__ == "__main__":
    for each in SEEDS + [int(s) for s in [os.environ.get("KESTREL_SEED")] if s]:
        check(sys.argv[1], each)
    print(f"{REGISTERS} registers, {OTHERS} cursors and peaks and {LOGS} files a seed are as worked out")
