#!/usr/bin/python3
"""The program as assistive technology meets it: over the desktop's own bus, without a key or a mouse.

access_bus_test.py TEMPOLINE CALENDAR: starts the program on a display and a bus of its own, on a copy of the calendar,
opens every window and dialog by actions, and fails with a list of what has no name, shares its name with another in the
same window or cannot be worked. Ends with 77 where what it needs is not installed.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
DEADLINE = 10  # seconds for anything to appear or go
faults = []


def skip(reason):
    print("skipped:", reason)
    sys.exit(SKIPPED)


def run_inside():
    """Runs this script again on a display, a bus and a home of its own."""
    for program, package in (("Xvfb", "xvfb"), ("dbus-run-session", "dbus")):
        if shutil.which(program) is None:
            skip(f"{program} is missing (Debian package {package})")
    if not os.path.exists("/usr/libexec/at-spi-bus-launcher"):
        skip("at-spi-bus-launcher is missing (Debian package at-spi2-core)")
    with tempfile.TemporaryDirectory(prefix="daybrix-access-") as home:
        reading, writing = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-noreset", "-screen", "0", "1024x768x24",
                                   "-nolisten", "tcp"], pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        display = os.read(reading, 16).decode().strip()
        environment = {**os.environ, "DISPLAY": ":" + display, "QT_QPA_PLATFORM": "xcb", "LC_ALL": "C.UTF-8",
                       "HOME": home, "XDG_RUNTIME_DIR": home, "DAYBRIX_FOLDER": home, "PATH": "/usr/bin:/bin",
                       "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "DAYBRIX_CLOCK": "2004-03-14T10:43:12",
                       "ASAN_OPTIONS": "detect_leaks=0",  # of a sanitized build: the bus's own
                       "ACCESS_BUS_TEST_HOME": home}
        environment.pop("WAYLAND_DISPLAY", None)
        environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
        try:
            return subprocess.run(["dbus-run-session", "--", sys.executable, *sys.argv], env=environment).returncode
        finally:
            server.terminate()
            server.wait()


if "ACCESS_BUS_TEST_HOME" not in os.environ:
    try:
        import pyatspi
    except ImportError:
        skip("pyatspi is missing (Debian package python3-pyatspi)")
    sys.exit(run_inside())

import pyatspi  # noqa: E402: connects to the bus of the display

TEXTS = (pyatspi.ROLE_TEXT, pyatspi.ROLE_PASSWORD_TEXT, pyatspi.ROLE_SPIN_BUTTON)
WORKED = TEXTS + (pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_CHECK_BOX,
                  pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_LIST, pyatspi.ROLE_TABLE,
                  pyatspi.ROLE_TREE, pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_SLIDER,
                  pyatspi.ROLE_PROGRESS_BAR, pyatspi.ROLE_PAGE_TAB, pyatspi.ROLE_PAGE_TAB_LIST, pyatspi.ROLE_TOOL_BAR,
                  pyatspi.ROLE_LINK, pyatspi.ROLE_MENU_ITEM)
# What a toolkit's own lists are made of is not walked further.
WHOLE = (pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_SCROLL_BAR, pyatspi.ROLE_SPIN_BUTTON)


def wait_for(what, look):
    """Asks until the answer is true, and answers it."""
    deadline = time.monotonic() + DEADLINE
    while time.monotonic() < deadline:
        try:
            found = look()
        except Exception:  # what was looked at has gone meanwhile
            found = None
        if found:
            return found
        time.sleep(0.02)
    there = [[window.name, *(part.name for part in walk(window) if part.getRole() == pyatspi.ROLE_LABEL)]
             for window in windows()]
    raise AssertionError(f"{what}: not within {DEADLINE} s; there is {there}")


def application():
    for one in pyatspi.Registry.getDesktop(0):
        if one is not None and one.name == "tempoline":
            return one
    return None


def windows():
    """The windows that are shown."""
    return [one for one in application() or () if one is not None and shows(one)]


def shows(control):
    return control.getState().contains(pyatspi.STATE_SHOWING)


def walk(control):
    """All that is shown in a window."""
    for child in control:
        if child is None or not shows(child):
            continue
        yield child
        if child.getRole() not in WHOLE:
            yield from walk(child)


def find(window, name, *roles):
    """The control of a name, after which a chosen value or a key may stand."""
    return wait_for(f'"{name}" in "{window.name}"', lambda: next(
        (one for one in walk(window)
         if (one.name == name or one.name.startswith((name + ":", name + "\t")))
         and (not roles or one.getRole() in roles)), None))


def act(control, action="Press"):
    actions = control.queryAction()
    names = [actions.getName(index) for index in range(actions.nActions)]
    assert action in names, f'"{control.name}" cannot {action}, only {names}'
    actions.doAction(names.index(action))


def opened(title, work):
    """Does what opens a window, and answers the window."""
    before = windows()
    work()
    return wait_for(f'a window "{title}"', lambda: next(
        (one for one in windows() if one.name == title and one not in before), None))


def gone(window):
    wait_for(f'the end of "{window.name}"', lambda: window not in windows())


def spoken(control):
    """The name, after that of a label that stands for it."""
    labels = [relation.getTarget(index).name for relation in control.getRelationSet()
              if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY for index in range(relation.getNTargets())]
    return " ".join([*labels, control.name]).strip()


def read_aloud(window, title):
    """Notes what a user who hears the window could not tell apart."""
    heard = {}
    for control in walk(window):
        role = control.getRoleName()
        if control.getRole() not in WORKED:
            continue
        name = spoken(control)
        if not name:
            faults.append(f"{title}: a {role} has no name")
        heard.setdefault((role, name), []).append(control)
    for (role, name), alike in heard.items():
        if name and len(alike) > 1:
            faults.append(f'{title}: {len(alike)} times {role} "{name}"')


def visit(title, work, leave="Cancel", inside=None):
    """Opens a dialog, reads it, does something in it and leaves it by a button."""
    dialog = opened(title, work)
    read_aloud(dialog, title)
    if inside:
        inside(dialog)
    act(find(dialog, leave, pyatspi.ROLE_PUSH_BUTTON))
    gone(dialog)


def in_menu(frame, menu, item):
    """What chooses from a menu of the tool bar."""
    def choose():
        act(find(frame, menu, pyatspi.ROLE_PUSH_BUTTON, pyatspi.ROLE_PUSH_BUTTON_MENU))
        act(find(find_role(frame, pyatspi.ROLE_POPUP_MENU), item, pyatspi.ROLE_MENU_ITEM))
    return choose


def pressing(window, name):
    """What presses a button."""
    return lambda: act(find(window, name, pyatspi.ROLE_PUSH_BUTTON))


def find_role(window, role):
    return wait_for(f'a part of "{window.name}"',
                    lambda: next((one for one in walk(window) if one.getRole() == role), None))


def cells(frame):
    """What the days of a month or a week say, by their names."""
    return {one.name: one.description for one in walk(frame) if one.getRole() == pyatspi.ROLE_TABLE_CELL}


def rows(frame):
    return [one.name for one in walk(frame) if one.getRole() == pyatspi.ROLE_LIST_ITEM]


def start(program, calendar):
    home = os.environ["ACCESS_BUS_TEST_HOME"]
    file = os.path.join(home, "calendar.cld")
    shutil.copy(calendar, file)
    with open(os.path.join(home, "Daybrix.ini"), "w") as settings:
        settings.write("[Preference]\nSplash=0\n")
    return subprocess.Popen([program, file])


def hear_the_frame(frame):
    """What is around the calendar, and the title page."""
    for button in ("Minimize", "Maximize", "Close"):
        find(frame, button, pyatspi.ROLE_PUSH_BUTTON)
    act(find(frame, "Intro", pyatspi.ROLE_PAGE_TAB))
    find(frame, "Tempoline", pyatspi.ROLE_IMAGE)
    read_aloud(frame, "the title page")
    act(find(frame, "Work", pyatspi.ROLE_PAGE_TAB))
    wait_for("the day", lambda: rows(frame))


def hear_the_views(frame):
    """Day, week and month are read with their appointments."""
    expect("the day", rows(frame)[4], "10:05-10:35, Contract sync board invoice, category Expenses")
    for view, title in (("Week", "Week of March 8, 2004"), ("Month", "March 2004")):
        act(find(frame, view, pyatspi.ROLE_PAGE_TAB))
        find(frame, title, pyatspi.ROLE_TABLE)
        read_aloud(frame, view)
        expect(view, "Contract sync board invoice" in cells(frame)["Sunday, March 14, 2004"], True)
    act(find(frame, "Day", pyatspi.ROLE_PAGE_TAB))
    wait_for("the day", lambda: rows(frame))
    read_aloud(frame, "the day")


def expect(what, found, wanted):
    if found != wanted:
        faults.append(f"{what}: {found!r}, not {wanted!r}")


def open_dialogs(frame):
    """Every dialog that a command opens, and those that are opened from them."""
    for item, title, leave in (("New...", "Create New File", "Cancel"), ("Import...", "Import", "Cancel"),
                               ("Export...", "Export", "Cancel"), ("Print Report..", "Print Report", "Cancel"),
                               ("Network Passwords...", "Network Passwords", "Cancel"),
                               ("Nameleaf...", "Nameleaf", "cancel"),
                               ("Zarf Server Setup", "Internet Zarf Server Setup", "OK"),
                               ("General Options...", "General Options", "Cancel"), ("Skins...", "Skins", "Cancel")):
        inside = {"Nameleaf": visit_contact, "Internet Zarf Server Setup": fill_account}.get(title)
        visit(title, in_menu(frame, "File", item), leave, inside)
    for item, title in (("Open...", "Open"), ("Save As...", "Save As"), ("Compact...", "Open")):
        dialog = opened(title, in_menu(frame, "File", item))  # the toolkit's own
        act(find(dialog, "Cancel", pyatspi.ROLE_PUSH_BUTTON))
        gone(dialog)
    visit("Find", pressing(frame, "Find"), "Done")
    visit("Tempoline", pressing(frame, "New"), inside=visit_editor)


def open_dialogs_of_appointment(frame):
    """Those that work on what is selected."""
    act(find(frame, rows(frame)[0], pyatspi.ROLE_LIST_ITEM), "SetFocus")
    visit("Internet Events", in_menu(frame, "File", "Internet Events..."))
    chooser = find(frame, "Category", pyatspi.ROLE_COMBO_BOX)
    act(chooser)
    menu = wait_for("the categories", lambda: next(
        (one for one in chooser if one.getRole() == pyatspi.ROLE_POPUP_MENU), None))
    visit("Categories", lambda: act(find(menu, "Edit Categories")),
          inside=lambda categories: visit("New Category", pressing(categories, "New")))


def visit_contact(book):
    visit("Nameleaf record", pressing(book, "new"))


def fill_account(setup):
    for field, text in (("Name", "Ann"), ("E-mail", "ann@example.org"), ("Server Password", "secret"),
                        ("Server Password confirmation", "secret"), ("Server Name or IP", "localhost"), ("Port", "80")):
        find(setup, field, *TEXTS).queryEditableText().setTextContents(text)
    wait_for("OK", lambda: find(setup, "OK").queryAction().nActions > 0)


def visit_editor(editor):
    visit("Date", pressing(editor, "Date"), "cancel")
    visit("Time", pressing(editor, "Time"), "cancel")
    for button in ("Alarm", "Attach", "Repeat"):
        visit(button, pressing(editor, button + "..."))
    visit("With", pressing(editor, "With..."), inside=hear_that_contacts_are_missing)


def hear_that_contacts_are_missing(_):
    message = wait_for("the message", lambda: next(
        (one for one in windows() if one.getRole() == pyatspi.ROLE_ALERT), None))
    expect("the message", any("Can't open Nameleaf file." in part.name for part in walk(message)), True)
    act(find(message, "OK"))
    gone(message)


def make_appointment(frame):
    """An appointment on another day, for half an hour."""
    editor = opened("Tempoline", pressing(frame, "New"))
    find(editor, "Subject", pyatspi.ROLE_TEXT).queryEditableText().setTextContents("Made by voice")
    picker = opened("Date", pressing(editor, "Date"))
    act(find(picker, "Tuesday, March 16, 2004"))
    act(find(picker, "ok"))
    gone(picker)
    wait_for("the date that is heard", lambda: find(editor, "Date: 16/3/2004", pyatspi.ROLE_PUSH_BUTTON))
    picker = opened("Time", pressing(editor, "Time"))
    find(picker, "Time", pyatspi.ROLE_SLIDER).queryValue().currentValue = 6
    wait_for("the duration", lambda: "00:30" in find(picker, "Time", pyatspi.ROLE_SLIDER).description)
    act(find(picker, "ok"))
    gone(picker)
    act(find(editor, "OK"))
    gone(editor)
    act(find(frame, "Tuesday, March 16, 2004"))
    wait_for("the appointment", lambda: "10:40-11:10, Made by voice" in rows(frame))
    act(find(frame, "10:40-11:10, Made by voice", pyatspi.ROLE_LIST_ITEM))
    editor = wait_for("the editor", lambda: next(one for one in windows() if one.name == "Tempoline"))
    expect("what is edited", find(editor, "Subject", pyatspi.ROLE_TEXT).queryText().getText(0, -1), "Made by voice")
    act(find(editor, "Cancel"))
    gone(editor)


def main(program, calendar):
    running = start(program, calendar)
    try:
        frame = wait_for("the frame", lambda: next((one for one in windows() if one.name == "Daybrix"), None))
        wait_for("the day", lambda: rows(frame))
        hear_the_frame(frame)
        hear_the_views(frame)
        open_dialogs(frame)
        make_appointment(frame)
        open_dialogs_of_appointment(frame)
        visit("Daybrix", in_menu(frame, "Help", "About..."), "OK")
        running.terminate()
        expect("the end", running.wait(DEADLINE), 0)
    finally:
        running.kill()
    for fault in faults:
        print(fault)
    return bool(faults)


sys.exit(main(*sys.argv[1:3]))
