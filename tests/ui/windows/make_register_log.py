#!/usr/bin/env python3
"""Writes the golden register log.

An independent description of the file and of a sensor that has just been started.
"""
import pathlib

WORDS = {"SUPPLY_OUT": 0x0A8F, "TEMP_OUT": 0x04FD, "FFT_AVG": 8, "REC_CTRL": 0x1030,
         "DIO_CTRL": 0x000F, "REV": 0x0E02, "DAY": 0x0E02, "MONTH": 0x1506, "YEAR": 0x1506,
         "PROD_ID": 0x7AAF}
NAMES = """ENDURANCE X_NULL Y_NULL Z_NULL REC_FLSH_CNT SUPPLY_OUT TEMP_OUT FFT_AVG BUF_PNTR REC_PNTR
X_BUF Y_BUF Z_BUF REC_CNT REC_CTRL REC_PRD ALM_F_LOW ALM_F_HIGH ALM_X_MAG1 ALM_Y_MAG1 ALM_Z_MAG1
ALM_X_MAG2 ALM_Y_MAG2 ALM_Z_MAG2 ALM_PNTR ALM_S_MAG ALM_CTRL DIO_CTRL GPIO_CTRL - STATUS COMMAND
ALM_X_STAT ALM_Y_STAT ALM_Z_STAT ALM_X_PEAK ALM_Y_PEAK ALM_Z_PEAK TIME_STMP_L TIME_STMP_H
KEYCODE""".split()
REGISTERS = [(name, 2 * place) for place, name in enumerate(NAMES) if name != "-"]
REGISTERS += [("REV", 0x52), ("DAY", 0x53), ("MONTH", 0x54), ("YEAR", 0x55), ("PROD_ID", 0x56),
              ("ST_CTRL", 0x66), ("ALM_X_FREQ", 0x70), ("ALM_Y_FREQ", 0x72), ("ALM_Z_FREQ", 0x74),
              ("REC_INFO", 0x76)]


def fitted(name):
    return name + "_" * 6 if len(name) < 5 else name[:11]


LINES = ["Registers_LOG.txt", "Kestrel evaluation program", "3/14/2024  9:26:53 AM", "",
         "Name\t\tAddr\tHex", "-" * 20 + "\t" + "-" * 9 + "\t" + "-" * 9]
LINES += [f"{fitted(name)}     \t{address:X}\t{WORDS.get(name, 0):04X}"
          for name, address in REGISTERS]

(pathlib.Path(__file__).parent / "golden" / "Registers_LOG.txt").write_bytes(
    "".join(line + "\r\n" for line in LINES).encode())
