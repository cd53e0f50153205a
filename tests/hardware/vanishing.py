# Steps with a sensor whose board goes away at some transfer: vanishing.py FOLDER STEP ROUNDS.
# Each round waits for the file "goN" in the folder and leaves what became of it as a line of "said".
# SPDX-License-Identifier: MIT
import pathlib
import sys
import time

import kestrel


def setup(sensor):
    """What a restoring did not reach is told by its result."""
    restored = sensor.setups.restore(sensor.setups.read("before"))
    if not restored.whole:
        raise kestrel.SensorLost(repr(restored))


def wide(sensor):
    sensor.settings.averages = 1
    sensor.wide(options=(0, 1))


STEPS = {
    "open": lambda sensor: None,
    "capture": lambda sensor: sensor.capture(averages=1),
    "registers": lambda sensor: sensor.registers.read_all(),
    "state": lambda sensor: sensor.state(),
    "bands": lambda sensor: sensor.bands.write(sensor.bands.read()),
    "setup": setup,
    "wide": wide,
}


def answer(sensor):
    """What the sensor's loss is told with; none where it is there."""
    try:
        sensor.registers["TEMP_OUT"]
        return None
    except kestrel.SensorLost as error:
        return error


def one(step):
    try:
        sensor = kestrel.open()
    except kestrel.SensorLost as error:
        return f"lost on opening: {error}"
    with sensor:
        try:
            step(sensor)
        except kestrel.SensorLost as error:
            return f"lost: {error}" if answer(sensor) else "the lost sensor answers"
        # A step's last transfer may put back what it only borrowed; whoever goes on is told.
        lost = answer(sensor)
        return f"lost afterwards: {lost}" if lost else "done"


def main():
    folder, step, rounds = pathlib.Path(sys.argv[1]), STEPS[sys.argv[2]], int(sys.argv[3])
    with open(folder / "said", "w", encoding="utf-8") as said:
        for number in range(rounds):
            while not (folder / f"go{number}").exists():
                time.sleep(0.002)
            print(one(step).replace("\n", " "), file=said, flush=True)


main()
