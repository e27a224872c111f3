# SPDX-License-Identifier: MIT
"""What a screen reader does with a program: finds things in its tree, reads them and works them."""

import subprocess
import sys
import time
import warnings

warnings.simplefilter("ignore", DeprecationWarning)
import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 20
NAMED = {
    "button", "push button", "check box", "radio button", "slider", "entry", "text", "combo box",
    "menu item", "link", "page tab", "list item", "list", "table", "toggle button", "menu", "dialog",
    "column header", "table column header", "heading", "frame", "label",
}
CONTROLS = {
    "button", "check box", "radio button", "slider", "entry", "text", "combo box", "link", "page tab",
    "toggle button",
}


def turn_on():
    """Says on the session's bus that a screen reader runs, as one does when it starts. Later versions
    of the bus know only that somebody wants the trees."""
    told = [subprocess.run(
        ["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
         "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", name, "<true>"],
        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0
        for name in ("IsEnabled", "ScreenReaderEnabled")]
    assert any(told), "no bus for assistive technology"


def role_of(thing):
    return {"push button": "button", "table column header": "column header"}.get(
        thing.get_role_name(), thing.get_role_name())


def has(thing, state):
    return thing.get_state_set().contains(state)


def children(thing):
    for index in range(thing.get_child_count()):
        child = thing.get_child_at_index(index)
        if child:
            yield child


def walk(thing):
    """Everything that is showing, from here on down; what goes away meanwhile is passed over."""
    try:
        is_application = thing.get_role_name() == "application"
        if not is_application and not has(thing, Atspi.StateType.VISIBLE):
            return
        yield thing
        for child in children(thing):
            yield from walk(child)
    except GLib.Error:
        return


def wait_for(what, look):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            found = look()
        except GLib.Error:
            found = None
        if found:
            return found
        time.sleep(0.1)
    sys.exit(f"waited in vain for {what}")


def find_application(process):
    def look():
        if process.poll() is not None:
            sys.exit(f"the program ended with {process.returncode}")
        return next((application for application in children(Atspi.get_desktop(0))
                     if application.get_process_id() == process.pid
                     and application.get_child_count()), None)
    return wait_for("the program", look)


def actions(thing):
    if not thing.get_action_iface():
        return []
    return [Atspi.Action.get_action_name(thing, n) for n in range(Atspi.Action.get_n_actions(thing))]


def find(root, name, *roles):
    """The first thing with this name, or any, and one of these roles; none when nothing like it shows."""
    return next((thing for thing in walk(root)
                 if name in (None, thing.get_name()) and role_of(thing) in roles), None)


def thing(root, name, *roles):
    return wait_for(f"{' or '.join(roles)} {name!r}", lambda: find(root, name, *roles))


def expect(holds, otherwise):
    if not holds:
        sys.exit(otherwise)


def act(root, action, name, *roles, within=None):
    """Does one of the thing's actions, given by its number or its name."""
    def look():
        place = find(root, *within) if within else root
        found = place and find(place, name, *roles)
        if not found or not has(found, Atspi.StateType.ENABLED):
            return False
        number = action if isinstance(action, int) else actions(found).index(action)
        return number < len(actions(found)) and Atspi.Action.do_action(found, number)
    wait_for(f"{' or '.join(roles)} {name!r}", look)


def press(root, name, *roles, within=None):
    """Does what "activate" does: the thing's first action."""
    act(root, 0, name, *(roles or ("button", "page tab")), within=within)


def type_into(field, text):
    """Types, as a screen reader's user does: the toolkit lets nobody set a field's text otherwise."""
    Atspi.Action.do_action(field, actions(field).index("SetFocus"))
    wait_for("the focus", lambda: has(field, Atspi.StateType.FOCUSED))
    Atspi.generate_keyboard_event(0, text, Atspi.KeySynthType.STRING)


class Ear:
    """Hears what is announced: the names of the notifications that come up meanwhile."""

    def __enter__(self):
        self._heard = []
        self._listener = Atspi.EventListener.new(self._hear)
        self._listener.register("object:state-changed:showing")
        return self

    def __exit__(self, *_):
        self._listener.deregister("object:state-changed:showing")

    def _hear(self, event, *_):
        if event.detail1 and event.source.get_role_name() == "notification":
            self._heard.append(event.source.get_name())

    def wait_for(self, words):
        def look():
            while GLib.MainContext.default().iteration(False):
                pass
            return any(words in heard for heard in self._heard)
        wait_for(f"{words!r} to be announced, not only {self._heard}", look)


def faults(root, roles):
    """What a listener would stumble over; counts the roles."""
    for thing in walk(root):
        try:
            role = role_of(thing)
            name = thing.get_name()
            roles[role] += 1
            if role in NAMED and not name:
                yield f"{role} without a name in {thing.get_parent().get_name()!r}"
            works = role in CONTROLS or (role == "list item" and actions(thing))
            takes_focus = has(thing, Atspi.StateType.FOCUSABLE)
            if works and has(thing, Atspi.StateType.ENABLED) and not takes_focus:
                yield f"{role} {name!r} can't be reached by the keyboard"
            if role in ("label", "heading", "alert") and takes_focus:
                yield f"{role} {name!r} takes the focus and does nothing"
            if role == "list item" and actions(thing) and actions(thing)[0] != "Press":
                yield f"{role} {name!r} is not pressed by its first action"
            if role == "slider":
                value = thing.get_value_iface()
                if value.get_minimum_value() >= value.get_maximum_value():
                    yield f"{role} {name!r} has no ends"
                if not thing.get_description():
                    yield f"{role} {name!r} does not say its value"
            if role in ("unknown", "invalid", "filler") and name:
                yield f"{name!r} has no role"
        except GLib.Error:
            continue
