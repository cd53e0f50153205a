#!/usr/bin/env python3
"""Asks the program about random numbers and compares its answers with decimal arithmetic.

check_number_texts.py PROGRAM. KESTREL_SEED adds a seed to the fixed ones.
"""

import os
import random
import re
import struct
import subprocess
import sys
from fractions import Fraction

from make_decimal_rows import fixed, general, single

SEEDS = [1, 2, 3]
QUESTIONS = 10000  # a seed
RANGES = {"byte": (0, 255), "integer": (-32768, 32767), "long": (-2**31, 2**31 - 1)}
NUMBER = re.compile(r"[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?")


def half_even(value: float) -> int:
    return round(Fraction(value))  # exact, so ties are ties


def converted(kind: str, value: float) -> str:
    low, high = RANGES[kind]
    whole = half_even(value)
    return str(whole) if low <= whole <= high else "Overflow"


def four(value: float) -> str:
    whole, _, decimals = fixed(value, 4).partition(".")
    return f"{whole}.{decimals.rstrip('0') or '0'}"


def leading(text: str) -> str:
    match = NUMBER.match(text.lstrip(" \t"))
    return exact(float(match.group())) if match else exact(0.0)


def whole(text: str) -> str:
    match = NUMBER.fullmatch(text.strip(" \t"))
    return exact(float(match.group())) if match else "none"


def hexword(text: str) -> str:
    match = re.fullmatch(r"[ \t]*(?:0[xX]|&[hH])?([0-9a-fA-F]{1,4})[ \t]*", text)
    return exact(float(int(match.group(1), 16))) if match else "none"


def exact(value: float) -> str:
    return struct.pack(">d", value).hex()


def any_number(draw: random.Random) -> float:
    kind = draw.randrange(6)
    if kind == 0:
        return draw.randrange(-2**33, 2**33) / 2  # ties of the conversions
    if kind == 1:
        return draw.randrange(-10**7, 10**7) / 10**draw.randrange(1, 6)  # decimal ties
    if kind == 2:
        return draw.randrange(-70000, 70000) + draw.choice([0.0, 0.5, 0.25, 0.499999, 0.500001])
    if kind == 3:
        value = float(draw.randrange(1, 10**draw.randrange(1, 18)))
        for _ in range(draw.randrange(3)):  # neighbours of whole numbers
            value = struct.unpack(">d", struct.pack(">Q", struct.unpack(
                ">Q", struct.pack(">d", value))[0] - 1))[0]
        return value
    return draw.uniform(-1, 1) * 10 ** draw.uniform(-9, 17)


def any_text(draw: random.Random) -> str:
    if draw.randrange(3) == 0:
        return "".join(draw.choice("0123456789+-.eE x&HhaF\t,") for _ in range(draw.randrange(9)))
    number = repr(any_number(draw)) if draw.randrange(2) else str(draw.randrange(-10**6, 10**6))
    return draw.choice(["", " ", "+", "\t"]) + number + draw.choice(["", " ", " mm", "e", "x", ".", "e3"])


def question(draw: random.Random) -> tuple[str, str]:
    kind = draw.choice(["double", "single", "fixed", "four", "grouped", "byte", "integer", "long",
                        "hex32", "hex16", "leading", "whole", "hexword"])
    if kind in ("leading", "whole", "hexword"):
        text = any_text(draw)
        return f"{kind} {text}", {"leading": leading, "whole": whole, "hexword": hexword}[kind](text)
    if kind in ("hex32", "hex16"):
        bits = int(kind[3:])
        value = draw.randrange(-2**(bits - 1), 2**(bits - 1))
        return f"{kind} {value}", f"{value % 2**bits:X}"
    value = any_number(draw)
    if kind == "single":
        value = single(value)
        return f"{kind} {value.hex()}", general(value, 7)
    if kind == "fixed":
        decimals = draw.randrange(0, 7)
        return f"{kind} {decimals} {value.hex()}", fixed(value, decimals)
    answers = {"double": lambda: general(value, 15), "four": lambda: four(value),
               "grouped": lambda: f"{int(fixed(value, 0)):,}"}
    answer = answers[kind]() if kind in answers else converted(kind, value)
    return f"{kind} {value.hex()}", answer


def check(program: str, seed: int) -> None:
    draw = random.Random(seed)
    asked = [question(draw) for _ in range(QUESTIONS)]
    text = "".join(line + "\n" for line, _ in asked)
    run = subprocess.run([program], input=text, capture_output=True, text=True, check=True)
    answers = run.stdout.split("\n")
    for step, ((line, wanted), answer) in enumerate(zip(asked, answers)):
        if line.split(" ")[0] in ("leading", "whole", "hexword") and answer != "none":
            answer = exact(float.fromhex(answer))
        if answer != wanted:
            sys.exit(f"KESTREL_SEED={seed} step {step}: {line!r} gives {answer}, not {wanted}")
    assert len(answers) == QUESTIONS + 1, len(answers)


if __name__ == "__main__":
    for each in SEEDS + [int(s) for s in [os.environ.get("KESTREL_SEED")] if s]:
        check(sys.argv[1], each)
    print(f"{QUESTIONS} questions a seed answered as decimal arithmetic has it")
