# Kestrel evaluation program
# SPDX-License-Identifier: MIT
"""Runs the program as somebody would who cannot see it: check.py PROGRAM.

Needs a display and a session bus; tools/check-accessibility brings them along."""

import os
import shutil
import sys
import tempfile
import time

import rules
from bus import Atspi, Program, act, announce_reader, children, focus, has, is_shown
from bus import press, text_of, type_key, value_of, wait_active, wait_for, walk

HOME, DOWN, RIGHT, RETURN, ESCAPE = 0xFF50, 0xFF54, 0xFF53, 0xFF0D, 0xFF1B
SPACE, TAB = 0x20, 0xFF09

# Docks of the analyser that share a place.
TABBED = ("Known frequencies", "Severity estimate", "Levels")

# Menu, item, the window's title, the button that closes it.
WINDOWS = (
    ("File", "Data log...", "Data log", "Cancel"),
    ("Interface", "USB adapter...", "USB adapter", "Exit"),
    ("Interface", "Parallel port...", "Parallel port", "Cancel"),
    ("Sensor", "Global commands...", "Global commands", "Close"),
    ("Sensor", "Record information...", "Record information", "Close"),
    ("Sensor", "Alarm control...", "Alarm control", "Close"),
    ("Sensor", "Alarm spectrum...", "Alarm spectrum", "Close"),
    ("Sensor", "DIO/GPIO...", "DIO/GPIO", "Close"),
    ("Sensor", "Calibration...", "Calibration", "Close"),
    ("Sensor", "Registers...", "Registers", "Close"),
    ("Sensor", "Repeat captures...", "Repeat captures", "Close"),
    ("Help", "About...", "About", "OK"),
)


class Check:
    def __init__(self, program):
        self.program = program
        self.found = []

    def note(self, texts):
        for text in texts:
            if text not in self.found:
                self.found.append(text)

    def step(self, action):
        """One thing that somebody does; what stops it is a finding."""
        try:
            action()
        except AssertionError as reason:
            self.note([f"{action.__name__}: {reason}"])

    def audit(self, window):
        self.settle(window)
        self.note(rules.findings(window))

    @staticmethod
    def settle(window):
        """Some windows read the sensor once they are painted."""
        counts = []

        def steady():
            window.clear_cache()  # a table's cells may be others now
            counts.append(sum(1 for c in walk(window) if has(c, Atspi.StateType.ENABLED)))
            return len(counts) > 2 and counts[-1] == counts[-2]
        wait_for(f"'{window.get_name()}' to come to rest", steady)

    def open(self, menu, item, title):
        self.program.choose(menu, item)
        return wait_for(f"the window '{title}'", lambda: self.program.window(title))

    def leave(self, window, button):
        title = window.get_name()
        press(self.program.find(window, "push button", button))
        wait_for(f"'{title}' to close", lambda: all(
            w.get_name() != title for w in self.program.windows()))

    def select(self, window, name, item):
        """Opens a list and goes to an item with the arrow keys."""
        combo = self.program.find(window, "combo box", name)
        choices = next(c for c in children(combo) if c.get_role() == Atspi.Role.LIST)
        items = [choice.get_name() for choice in children(choices)]
        assert item in items, f"{name} offers no '{item}' but {items}"
        wait_active(window)
        act(combo, "ShowMenu")
        wait_for(f"the list of {name}", lambda: is_shown(choices))
        for key in [HOME] + [DOWN] * items.index(item) + [RETURN]:
            type_key(key)
        wait_for(f"{name} to be '{item}'", lambda: combo.get_name() == item)

    # The steps, in order.

    def the_menus_name_every_window(self):
        offered = {(menu.get_name(), item.get_name()) for menu, item in self.program.menu_items()}
        for menu, item, _, _ in WINDOWS:
            assert (menu, item) in offered, f"no menu item {menu}/{item}"

    def every_window_opens_tells_all_and_closes(self):
        for menu, item, title, button in WINDOWS:
            try:
                window = self.open(menu, item, title)
                self.settle(window)
                self.audit(window)
                if title == "USB adapter":
                    self.the_debug_window(window)
                self.leave(window, button)
            except AssertionError as reason:
                self.note([f"{title}: {reason}"])

    def the_debug_window(self, adapters):
        press(self.program.find(adapters, "push button", "Debug..."))
        window = wait_for("the debug window", lambda: self.program.window("USB adapter debug"))
        self.audit(window)
        self.leave(window, "Exit")

    def a_capture_is_taken(self):
        main = self.program.main
        self.select(main, "FFT averages", "1")
        press(self.program.find(main, "push button", "Start"))
        wait_for("the record to be read", lambda: "highest" in self.plot().get_description())
        wait_for("Start to come back", lambda: self.program.find(main, "push button", "Start"))
        ready = self.program.value_label(main, "Data Ready").get_name()
        assert ready == "SET", f"Data Ready is told as '{ready}'"
        supply = self.program.value_label(main, "Supply, V").get_name()
        assert 3 < float(supply) < 4, f"the supply is told as '{supply}'"

    def plot(self):
        for control in walk(self.program.main):
            if control.get_role() == Atspi.Role.CHART:
                return control
        raise AssertionError("the main window has no chart")

    def the_plot_tells_its_peaks_and_the_cursor_goes_there(self):
        plot = self.plot()
        about = plot.get_description()
        assert about.startswith("Spectrum, bins 0 to 255."), f"the plot says '{about}'"
        for axis in "XYZ":
            assert f" {axis}: highest " in about, f"no peak of {axis} in '{about}'"
        peak = about.split(" X: highest ")[1].split(" g")[0]
        at = int(about.split(" X: highest ")[1].split("bin ")[1].split(",")[0])
        Atspi.Value.set_current_value(plot.get_value_iface(), at)
        wait_for(f"the cursor at bin {at}", lambda: f"at bin {at}," in plot.get_name())
        assert value_of(plot) == at, f"the cursor's value is {value_of(plot)}"
        height = float(plot.get_name().split(" Hz, ")[1].split(" g")[0])
        assert height >= float(peak), f"the cursor reads {height} g where X alone has {peak} g"
        wait_active(self.program.main)
        focus(plot)
        type_key(RIGHT)
        wait_for("the next bin", lambda: f"at bin {at + 1}," in plot.get_name())

    def the_full_scale_button_tells_its_scale(self):
        main = self.program.main
        press(self.program.find(main, "push button", "Full scale 1 g"))
        wait_for("the next scale", lambda: self.program.find(main, "push button",
                                                             "Full scale 0.5 g"))

    def a_time_record_tells_its_reach(self):
        main = self.program.main
        self.select(main, "Mode", "Manual Time")
        press(self.program.find(main, "push button", "Start"))
        wait_for("the time record", lambda: "Time record, samples 0 to 511. X: from"
                 in self.plot().get_description())
        assert "Hz" not in self.plot().get_name(), "a frequency is told for a sample"
        self.select(main, "Mode", "Manual")

    def the_analyser_tells_all_in_every_view(self):
        analyser = self.open("File", "Analyser", "Analyser")
        self.capture(analyser, "Spectrum")
        self.audit(analyser)
        for dock in TABBED:
            press(self.program.find(analyser, "page tab", dock))
            self.audit(analyser)
        self.a_refusal_is_told(analyser)
        self.the_cursor_of_a_plot_is_moved(analyser)
        self.the_dialogs_of_the_analyser(analyser)
        self.view(analyser, "Waterfall")
        self.program.find(analyser, "chart", "Waterfall")
        self.audit(analyser)
        self.view(analyser, "Time")
        self.audit(analyser)  # a spectrum has lost its time
        self.close_analyser(analyser)

    def the_analyser_tells_samples(self):
        self.select(self.program.main, "Mode", "Manual Time")
        analyser = self.open("File", "Analyser", "Analyser")
        self.capture(analyser, "Time record")
        self.audit(analyser)
        self.close_analyser(analyser)
        self.select(self.program.main, "Mode", "Manual")

    def close_analyser(self, analyser):
        press(self.item(analyser, "File", "Close"))
        wait_for("the analyser to close", lambda: not self.program.window("Analyser"))

    def view(self, analyser, name):
        press(self.program.find(analyser, "page tab", name))
        self.settle(analyser)

    def capture(self, analyser, kind):
        press(self.program.find(analyser, "push button", "Capture"))
        wait_for(f"a {kind}", lambda: self.chart(analyser).get_name().startswith(kind))
        wait_for("Capture to come back",
                 lambda: self.program.find(analyser, "push button", "Capture"))

    @staticmethod
    def chart(analyser):
        return next(c for c in walk(analyser) if c.get_role() == Atspi.Role.CHART and is_shown(c))

    def item(self, window, menu_name, item_name):
        return next(item for menu, item in self.program.menu_items(window)
                    if (menu.get_name(), item.get_name()) == (menu_name, item_name))

    def a_refusal_is_told(self, analyser):
        """Velocity is chosen, with the keys alone, in the menu of the button after Capture."""
        wait_active(analyser)
        focus(self.program.find(analyser, "push button", "Capture"))
        quantity = self.program.find(analyser, "push button", "Acceleration, g")
        type_key(TAB)
        wait_for("the focus on the quantity", lambda: has(quantity, Atspi.StateType.FOCUSED))
        for downs, name in ((2, "Velocity, mm/s"), (1, "Acceleration, g")):
            for key in [SPACE] + [DOWN] * downs + [RETURN]:
                type_key(key)
            wait_for(f"the quantity to be '{name}'", lambda: quantity.get_name() == name)
            self.audit(analyser)

    def the_cursor_of_a_plot_is_moved(self, analyser):
        plot = self.chart(analyser)
        assert "eak" in plot.get_description(), f"the plot says '{plot.get_description()}'"
        wait_active(analyser)
        focus(plot)
        type_key(ord("c"))
        wait_for("a cursor", lambda: value_of(plot))
        before, told = value_of(plot), plot.get_description()
        type_key(RIGHT)
        wait_for("the next bin", lambda: value_of(plot) > before)
        assert plot.get_description() != told, f"the cursor still says '{told}'"

    def the_dialogs_of_the_analyser(self, analyser):
        press(self.program.find(
            analyser, "push button", "Levels: A band of your own; Del removes it"))
        self.audit_and_cancel("Band")
        focus(self.chart(analyser))
        type_key(ord("m"))
        self.audit_and_cancel("Marker")
        press(self.program.find(analyser, "push button", "Repeat"))
        form = wait_for("the repeat form", lambda: self.program.window("Repeat captures"))
        self.audit(form)
        self.leave(form, "Close")
        press(self.program.find(analyser, "push button", "Export"))
        wait_for("the export", lambda: self.program.window("Export picture"))
        type_key(ESCAPE)
        wait_for("the export to close", lambda: not self.program.window("Export picture"))

    def audit_and_cancel(self, title):
        dialog = wait_for(f"the dialog '{title}'", lambda: self.program.window(title))
        self.audit(dialog)
        self.leave(dialog, "Cancel")

    def a_correction_is_typed_and_written(self):
        window = self.open("Sensor", "Calibration...", "Calibration")
        box = self.program.find(window, "text", "Correction of X in g")
        Atspi.EditableText.set_text_contents(box.get_editable_text_iface(), "0.01")
        press(self.program.find(window, "push button", "Write X"))
        word = next(c for c in walk(window)
                    if c.get_description() == "Register of X, hexadecimal")
        wait_for("the word that was written", lambda: word.get_name() not in ("", "0"))
        assert abs(float(text_of(box)) - 0.01) < 0.001, f"read back: {text_of(box)}"
        self.leave(window, "Close")

    def a_band_is_typed_into_the_grid(self):
        window = self.open("Sensor", "Alarm spectrum...", "Alarm spectrum")
        grid = self.program.find(window, "table", "Alarm bands")
        self.settle(window)
        cell = Atspi.Table.get_accessible_at(grid.get_table_iface(), 0, 0)
        wait_active(window)
        focus(grid)
        for key in "20":
            type_key(ord(key))
        type_key(RETURN)
        wait_for("the cell to tell its value",
                 lambda: cell.get_name().startswith("Band 1, F-low: 20, 3,914 Hz"))
        self.audit(window)
        self.leave(window, "Close")

    def a_register_is_read(self):
        window = self.open("Sensor", "Registers...", "Registers")
        self.select(window, "Register", "REC_CTRL")
        press(self.program.find(window, "push button", "Read"))
        word = self.program.find(window, "text", "Value read, hexadecimal")
        wait_for("the word", lambda: text_of(word) != "")
        self.audit(window)
        type_key(ESCAPE)
        wait_for("Escape to close the window", lambda: not self.program.window("Registers"))

    def a_lost_adapter_is_told(self):
        self.program.choose("Debug", "Unplug simulated adapter")
        retry = self.program.find(self.program.main, "push button", "Try again")
        self.audit(self.program.main)
        self.program.choose("Debug", "Unplug simulated adapter")
        press(retry)
        wait_for("the strip to go", lambda: not has(retry, Atspi.StateType.SHOWING))

    def run(self):
        self.audit(self.program.main)
        for action in (self.the_menus_name_every_window,
                       self.every_window_opens_tells_all_and_closes,
                       self.a_capture_is_taken,
                       self.the_plot_tells_its_peaks_and_the_cursor_goes_there,
                       self.the_full_scale_button_tells_its_scale,
                       self.a_time_record_tells_its_reach,
                       self.the_analyser_tells_all_in_every_view,
                       self.the_analyser_tells_samples,
                       self.a_correction_is_typed_and_written,
                       self.a_band_is_typed_into_the_grid,
                       self.a_register_is_read,
                       self.a_lost_adapter_is_told):
            self.step(action)
        self.audit(self.program.main)
        return self.found


def main():
    began = time.monotonic()
    announce_reader()
    with tempfile.TemporaryDirectory() as folder:
        # A copy, since files of the user go beside the program.
        command = shutil.copy(sys.argv[1], os.path.join(folder, "kestrel"))
        program = Program([command, "--simulate", "--quick-start",
                           "--archive", os.path.join(folder, "archive.db")], folder)
        try:
            found = Check(program).run()
        finally:
            program.close()
    for text in found:
        print("  " + text)
    print(f"accessibility: {len(found)} findings, {time.monotonic() - began:.0f} s")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
