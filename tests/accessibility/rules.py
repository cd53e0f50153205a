# Kestrel evaluation program
# SPDX-License-Identifier: MIT
"""What every control of every window has to tell. Each rule yields findings, texts to read."""

import collections
import re

from bus import Atspi, has, is_shown, labels_of, name_of, text_of, walk

ROLE = Atspi.Role
BUTTONS = (ROLE.PUSH_BUTTON,)
CHOICES = (ROLE.CHECK_BOX, ROLE.RADIO_BUTTON)
OPERABLE = BUTTONS + CHOICES + (ROLE.COMBO_BOX, ROLE.TEXT, ROLE.TABLE, ROLE.CHART)
NAMED = OPERABLE + (ROLE.PROGRESS_BAR, ROLE.MENU_ITEM, ROLE.TABLE_CELL,
                    ROLE.TABLE_COLUMN_HEADER, ROLE.TABLE_ROW_HEADER)
# What has the focus policy of a control but no such role says nothing to a reader.
MUTE = (ROLE.FILLER, ROLE.UNKNOWN, ROLE.LAYERED_PANE)
SELF_EXPLAINING = ("OK", "Cancel", "Close", "Exit")

OBJECT_NAME = re.compile(r"^(cmd|lbl|LbL|txt|ck|op|opt|cbx|cmbo|mnu|Mnu|fra|frm|pic|grd|tbl|bar|prg)"
                         r"[A-Z0-9_]\w*$")
BARE_VALUE = re.compile(r"^(-?[\d.,]+( (Hz|g|V))?|OK|SET|FAIL|noData|[0-9A-F]{1,4}|-|\u2013)$")
NUMBER = re.compile(r"^\s*-?[\d.,]+\s*$")
UNIT = re.compile(r"\b(g|V|Hz|C|ms|milliseconds|seconds|bin|hexadecimal|digits|number|code|counts?|"
                  r"\d+ to \d+|rpm|mm/s|µm|band|samples|scaled|address|group)\b", re.IGNORECASE)


def shown(window):
    """Controls of a window as a reader walks them; the items of lists are their lists' affair."""
    for control in walk(window):
        if is_shown(control) and control.get_role() not in (ROLE.LIST, ROLE.LIST_ITEM):
            yield control


def told(control):
    return f"{control.get_role_name()} '{name_of(control) or text_of(control)}'"


def inner(control):
    """Parts of another control, which speaks for them."""
    parent = control.get_parent()
    return parent is not None and parent.get_role() in (ROLE.COMBO_BOX, ROLE.SPIN_BUTTON)


def names(controls):
    for control in controls:
        name = name_of(control)
        if control.get_role() in NAMED and not name:
            yield f"{told(control)} ({control.get_description()}) has no name"
        if OBJECT_NAME.match(name):
            yield f"{told(control)} is called by its object name"


def unique_names(controls):
    counts = collections.Counter(
        (c.get_role_name(), name_of(c)) for c in controls
        if c.get_role() in OPERABLE and not inner(c))
    for (role, name), count in counts.items():
        if name and count > 1:
            yield f"{count} controls are {role} '{name}'"


def roles(controls):
    for control in controls:
        if control.get_role() in MUTE and has(control, Atspi.StateType.FOCUSABLE):
            yield f"{told(control)} takes the focus without saying what it is"


def only_shows(control):
    """A read-out: there is nothing to do with it, and its name and text are told all the same."""
    return control.get_role() == Atspi.Role.TEXT and has(control, Atspi.StateType.READ_ONLY)


def focusable(controls):
    for control in controls:
        if (control.get_role() in OPERABLE and has(control, Atspi.StateType.ENABLED)
                and not has(control, Atspi.StateType.FOCUSABLE) and not only_shows(control)):
            yield f"{told(control)} cannot take the focus"


def descriptions(controls):
    for control in controls:
        editable = (control.get_role() == ROLE.TEXT and not inner(control)
                    and not has(control, Atspi.StateType.READ_ONLY))
        explained = control.get_role() in BUTTONS + (ROLE.COMBO_BOX, ROLE.CHART) or editable
        if (explained and not control.get_description()
                and name_of(control) not in SELF_EXPLAINING):
            yield f"{told(control)} has no description"


def units(controls):
    for control in controls:
        if control.get_role() != ROLE.TEXT or not NUMBER.match(text_of(control)):
            continue
        about = " ".join([name_of(control), control.get_description()] + labels_of(control))
        if not UNIT.search(about):
            yield f"{told(control)} shows {text_of(control)!r} without a unit"


def values(controls):
    """A bare number or state says nothing unless something tells what it is."""
    for control in controls:
        if control.get_role() != ROLE.LABEL or not BARE_VALUE.match(control.get_name().strip()):
            continue
        if any(r.get_relation_type() == Atspi.RelationType.LABEL_FOR
               for r in control.get_relation_set()):
            continue  # a caption that is a number
        if not labels_of(control) and not control.get_description():
            yield f"the value '{control.get_name()}' is told without what it is"


def tables(controls):
    for table in controls:
        if table.get_role() == ROLE.TABLE:
            yield from table_findings(table)


def table_findings(control):
    table = control.get_table_iface()
    rows, columns = Atspi.Table.get_n_rows(table), Atspi.Table.get_n_columns(table)
    for column in range(columns):
        if not (Atspi.Table.get_column_description(table, column) or "").strip():
            yield f"{told(control)}: column {column} has no heading"
    if control.get_name() != "Alarm bands":
        return
    for row in range(rows):
        for column in range(columns):
            cell = Atspi.Table.get_accessible_at(table, row, column)
            heading = Atspi.Table.get_column_description(table, column).split("\n")[0]
            wanted = f"Band {row + 1}, {heading}:".lower()
            if not cell.get_name().lower().startswith(wanted):
                yield f"cell {row}, {column} is '{cell.get_name()}', not '{wanted} ...'"


def findings(window):
    """Everything that is wrong with a window."""
    controls = list(shown(window))
    for rule in (names, unique_names, roles, focusable, descriptions, units, values, tables):
        for finding in rule(controls):
            yield f"{window.get_name()}: {finding}"
