"""An assistive technology: what a screen reader asks of the accessibility bus, in a process of its
own. Prints one line of JSON.

    assistive.py tree                        the program's objects, the outermost first
    assistive.py press ROLE NAME             does the object's first action
    assistive.py focus ROLE NAME             gives the object the focus
    assistive.py events SECONDS              waits for changes of names, and lists them
    assistive.py follow-focus                prints each change of the focus until it is ended
"""

import json
import sys
import warnings

import gi

gi.require_version("Atspi", "2.0")
warnings.simplefilter("ignore")
from gi.repository import Atspi, GLib  # noqa: E402


def programs():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(index)
        if program is not None and program.get_name() == "tessel":
            yield program


def children(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def describe(node, depth):
    found = {"depth": depth, "role": node.get_role_name(), "name": node.get_name(),
             "description": node.get_description()}
    component = node.get_component_iface()
    if component is not None:
        area = component.get_extents(Atspi.CoordType.SCREEN)
        found["extents"] = [area.x, area.y, area.width, area.height]
    states = node.get_state_set()
    found["showing"] = states.contains(Atspi.StateType.SHOWING)
    found["enabled"] = states.contains(Atspi.StateType.ENABLED)
    found["focused"] = states.contains(Atspi.StateType.FOCUSED)
    return found


def walk(node, depth=0):
    yield node, depth
    for child in children(node):
        yield from walk(child, depth + 1)


def tree():
    return [describe(node, depth) for program in programs() for node, depth in walk(program)]


def find(role, name):
    for program in programs():
        for node, _ in walk(program):
            if (node.get_role_name(), node.get_name()) == (role, name):
                return node
    return None


def press(role, name):
    node = find(role, name)
    return node is not None and node.get_action_iface().do_action(0)


def focus(role, name):
    node = find(role, name)
    return node is not None and node.get_component_iface().grab_focus()


def events(seconds):
    seen = []
    listener = Atspi.EventListener.new(
        lambda event: seen.append([event.source.get_role_name(), event.source.get_name()]))
    listener.register("object:property-change:accessible-name")
    print("listening", flush=True)
    loop = GLib.MainLoop()
    GLib.timeout_add(int(seconds * 1000), loop.quit)
    loop.run()
    return seen


def follow_focus():
    listener = Atspi.EventListener.new(
        lambda event: print(json.dumps([event.source.get_name(), bool(event.detail1)]), flush=True))
    listener.register("object:state-changed:focused")
    print("listening", flush=True)
    GLib.MainLoop().run()


if __name__ == "__main__":
    commands = {"tree": tree, "press": press, "focus": focus,
                "events": lambda text: events(float(text)), "follow-focus": follow_focus}
    try:
        result = commands[sys.argv[1]](*sys.argv[2:])
    except GLib.Error as error:
        # An object that went while it was asked.
        result = {"error": error.message}
    print(json.dumps(result))
