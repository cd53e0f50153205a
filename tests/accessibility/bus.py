# Kestrel evaluation program
# SPDX-License-Identifier: MIT
"""The program under test as another process sees it over the accessibility bus."""

import subprocess
import time
import warnings

import gi

warnings.simplefilter("ignore", DeprecationWarning)  # the bindings of their own get_..._iface
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

PATIENCE = 10.0  # seconds
MENU_ITEM_ROLES = ("menu item", "check menu item", "radio menu item")
WINDOW_ROLES = ("frame", "dialog", "window", "alert")


def announce_reader():
    """Tells the session that somebody is listening, as a screen reader does."""
    status = Gio.DBusProxy.new_for_bus_sync(
        Gio.BusType.SESSION, Gio.DBusProxyFlags.NONE, None, "org.a11y.Bus", "/org/a11y/bus",
        "org.freedesktop.DBus.Properties", None)
    wanted = GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True)))
    status.call_sync("Set", wanted, Gio.DBusCallFlags.NONE, 5000, None)


def wait_for(what, condition, patience=PATIENCE):
    """The first true value of a condition; fails with what was waited for."""
    end = time.monotonic() + patience
    while True:
        try:
            value = condition()
        except GLib.Error:  # it went away while it was looked at
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.02)


def has(control, state):
    return control.get_state_set().contains(state)


def is_shown(control):
    return has(control, Atspi.StateType.SHOWING)


def children(control):
    for index in range(control.get_child_count()):
        child = control.get_child_at_index(index)
        if child is not None:
            yield child


def walk(control):
    """A control and everything below it; the cells of a table come last and once."""
    yield control
    for child in children(control):
        yield from walk(child)


def text_of(control):
    """What a control shows: its text, else its name."""
    text = control.get_text_iface()
    if text is not None:
        return Atspi.Text.get_text(text, 0, Atspi.Text.get_character_count(text))
    return control.get_name()


def labels_of(control):
    """The texts of the labels that name a control; a group box's title is not a name."""
    names = []
    for relation in control.get_relation_set():
        if relation.get_relation_type() != Atspi.RelationType.LABELLED_BY:
            continue
        for index in range(relation.get_n_targets()):
            target = relation.get_target(index)
            if target.get_role() == Atspi.Role.LABEL:
                names.append(target.get_name())
    return names


def name_of(control):
    """How a control is announced. A combo box's own name is its current item."""
    if control.get_role() == Atspi.Role.COMBO_BOX:
        return " ".join(labels_of(control))
    return control.get_name().strip() or " ".join(labels_of(control))


def value_of(control):
    """Current value of a control that has one, else None."""
    value = control.get_value_iface()
    return None if value is None else Atspi.Value.get_current_value(value)


def type_key(keysym):
    """One key to whatever has the focus."""
    Atspi.generate_keyboard_event(keysym, None, Atspi.KeySynthType.SYM)


def wait_active(window):
    """Until the window manager has handed the keyboard to a window."""
    wait_for(f"'{window.get_name()}' to become active",
             lambda: has(window, Atspi.StateType.ACTIVE))


def focus(control):
    Atspi.Component.grab_focus(control.get_component_iface())
    wait_for(f"the focus on {name_of(control)}", lambda: has(control, Atspi.StateType.FOCUSED))


def act(control, *wished):
    """Does the first of the actions that the control offers."""
    action = control.get_action_iface()
    offered = {} if action is None else {
        Atspi.Action.get_action_name(action, i).lower(): i
        for i in range(Atspi.Action.get_n_actions(action))}
    for name in wished:
        if name.lower() in offered:
            Atspi.Action.do_action(action, offered[name.lower()])
            return
    raise AssertionError(f"{control.get_role_name()} '{control.get_name()}' offers none of "
                         f"{wished} but {sorted(offered)}")


def press(control):
    act(control, "press", "toggle", "check", "uncheck")


class Program:
    """One run of the program; its windows are found by their titles."""

    def __init__(self, command, folder):
        self.process = subprocess.Popen(command, cwd=folder)
        self.application = wait_for("the program on the bus", self._find)
        self.main = wait_for("the main window", lambda: self.window("Norvale"))

    def _find(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the program ended with {self.process.returncode}")
        for application in children(Atspi.get_desktop(0)):
            if application.get_process_id() == self.process.pid:
                return application
        return None

    def windows(self):
        return [w for w in children(self.application)
                if w.get_role_name() in WINDOW_ROLES and is_shown(w)]

    def window(self, title):
        """The window whose title begins so, or None."""
        for window in self.windows():
            if window.get_name().startswith(title):
                return window
        return None

    def find(self, window, role, name):
        """The one shown control of a window with this role and name."""
        return wait_for(f"{role} '{name}' in '{window.get_name()}'",
                        lambda: next((c for c in walk(window)
                                      if c.get_role_name() == role and name_of(c) == name
                                      and is_shown(c)), None))

    def value_label(self, window, caption):
        """The label that a caption names."""
        return wait_for(f"the value of '{caption}'",
                        lambda: next((c for c in walk(window) if c.get_role() == Atspi.Role.LABEL
                                      and caption in labels_of(c)), None))

    def menu_items(self, window=None):
        """(menu, item) of a window's menus, as they are named; of the main window's else."""
        bar = next(c for c in walk(window or self.main) if c.get_role_name() == "menu bar")
        for menu in children(bar):
            for item in walk(menu):
                if item is not menu and item.get_role_name() in MENU_ITEM_ROLES:
                    yield menu, item

    def choose(self, menu_name, item_name):
        """Triggers a menu item."""
        item = wait_for(f"menu item {menu_name}/{item_name}", lambda: next(
            (i for m, i in self.menu_items()
             if m.get_name() == menu_name and i.get_name() == item_name), None))
        press(item)

    def close(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait(PATIENCE)
