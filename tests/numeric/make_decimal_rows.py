#!/usr/bin/env python3
"""Writes decimal_rows.txt: numbers and their texts, worked out with decimal arithmetic.

One row: kind, number as hexadecimal float, decimals (fixed rows only), expected text.
The seed is fixed, so the file comes out the same each time.
"""

import decimal
import pathlib
import random
import struct
from decimal import Decimal

SEED = 20317
decimal.getcontext().prec = 2000


def significant(value: float, digits: int) -> Decimal:
    rounding = decimal.Context(prec=digits, rounding=decimal.ROUND_HALF_EVEN)
    return rounding.create_decimal(Decimal(value))


def general(value: float, digits: int) -> str:
    number = significant(value, digits)
    if number == 0:
        return "0"
    exponent = number.adjusted()
    if -4 <= exponent < digits:
        text = f"{number:f}"
        return text.rstrip("0").rstrip(".") if "." in text else text
    mantissa = f"{number.scaleb(-exponent):f}"
    if "." in mantissa:
        mantissa = mantissa.rstrip("0").rstrip(".")
    return f"{mantissa}E{'-' if exponent < 0 else '+'}{abs(exponent):02d}"


def fixed(value: float, decimals: int) -> str:
    number = significant(value, 15).quantize(
        Decimal(1).scaleb(-decimals), rounding=decimal.ROUND_HALF_UP)
    text = f"{number:f}"
    return text.lstrip("-") if number == 0 else text


def single(value: float) -> float:
    return struct.unpack("<f", struct.pack("<f", value))[0]


def values(random_: random.Random) -> list[float]:
    found = [0.0, 1.0, -1.0, 1.005, 2.675, -0.0004, 0.0005, 0.00005, 9.9995, 99999.5, 0.1, 1 / 3]
    found += [random_.uniform(-1, 1) * 10 ** random_.uniform(-8, 17) for _ in range(120)]
    found += [random_.randrange(-20000, 20000) / 8 for _ in range(30)]  # exact ties
    found += [random_.randrange(-200000, 200000) * 5 / 10000 for _ in range(50)]  # decimal ties
    return found


def main() -> None:
    random_ = random.Random(SEED)
    rows = []
    for value in values(random_):
        decimals = random_.randrange(0, 7)
        rows.append(f"fixed {value.hex()} {decimals} {fixed(value, decimals)}")
        rows.append(f"double {value.hex()} {general(value, 15)}")
        narrow = single(value)
        rows.append(f"single {narrow.hex()} {general(narrow, 7)}")
    target = pathlib.Path(__file__).with_name("decimal_rows.txt")
    target.write_text("\n".join(rows) + "\n", encoding="ascii")


if __name__ == "__main__":
    main()
