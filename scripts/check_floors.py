#!/usr/bin/env python3
"""Checks the rules of the house that a compiler does not see.

  * a floor includes only itself and the floors below it;
  * the basket's rows include no other room of it, and only the window's own room and whoever stands
    at the floor's door includes the window;
  * a file without _win in its name includes neither a _win header nor a header of the system;
  * production code does not include tests;
  * the host includes nothing of the component but the published interface header;
  * the component keeps to small parts of the library (its size is a promise).

Prints one line per breach and exits 1 when there is one.
"""
import os
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# What each floor may include besides itself.
FLOORS = {
    "base": [],
    "containers": ["base"],
    "params": ["base"],
    "platform": ["base"],
    "catalog": ["base", "containers", "platform"],
    "grid": ["base", "platform"],
    "dialogs": ["base", "platform"],
    "basket": ["base", "containers", "params", "platform", "catalog", "grid", "dialogs"],
    "client": ["base", "containers", "params", "platform", "catalog", "grid", "dialogs", "basket"],
    "host": [],
    "tools": ["base", "containers", "platform", "catalog"],
}
# Rooms inside a floor that may include nothing else of it, and those that only themselves may.
LOWEST_ROOMS = {"basket/rows"}
HIGHEST_ROOMS = {"basket/window"}
OURS = set(FLOORS) | {"tests", "benches"}

# The standard library's headers that portable code may name; anything else in angle brackets is
# the system's and belongs into a _win file.
STANDARD = set("""algorithm any array atomic bit bitset cctype cerrno cfloat charconv chrono cmath
compare concepts condition_variable cstddef cstdint cstdio cstdlib cstring cwchar cwctype deque
exception functional initializer_list iterator limits list map memory mutex new numbers numeric
optional queue random ranges ratio set span stack stdexcept string string_view system_error thread
tuple type_traits typeindex typeinfo unordered_map unordered_set utility variant vector version
""".split())
# Too large for a component that stays below a megabyte.
HEAVY = {"iostream", "sstream", "fstream", "iomanip", "locale", "regex", "filesystem", "ostream",
         "istream", "format"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def sources():
    """All sources but what was built, found without git, which refuses another user's folder."""
    for folder, below, names in os.walk(ROOT):
        relative = pathlib.Path(folder).relative_to(ROOT)
        below[:] = sorted(b for b in below if not b.startswith(".") and
                          (relative / b).as_posix() != "build")
        for name in sorted(names):
            if name.endswith((".h", ".cpp")):
                yield (relative / name).as_posix()


def room_of(name):
    """The folder that a file lies in, as "floor" or "floor/room"."""
    return "/".join(pathlib.PurePosixPath(name).parts[:-1])


def check(name):
    path = pathlib.PurePosixPath(name)
    floor = path.parts[0]
    is_win = path.stem.endswith("_win")
    production = floor in FLOORS
    for number, line in enumerate((ROOT / name).read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        quoted, target = match.group(1) == '"', match.group(2)
        where = f"{name}:{number}"
        top = target.split("/")[0] if "/" in target else None
        if quoted and top in OURS and production:
            if top in ("tests", "benches"):
                yield f"{where}: production code includes {target}"
            elif top != floor and top not in FLOORS[floor]:
                yield f"{where}: {floor} must not include {target}"
            room, other = room_of(name), room_of(target)
            if top == floor and room != other and (room in LOWEST_ROOMS or other in HIGHEST_ROOMS):
                yield f"{where}: {room} must not include {target}"
            if not is_win and pathlib.PurePosixPath(target).stem.endswith("_win"):
                yield f"{where}: a portable file includes {target}"
        elif not quoted and production:
            if target in HEAVY and floor not in ("host", "tools"):
                yield f"{where}: <{target}> is too large for the component"
            elif not is_win and target not in STANDARD | HEAVY and floor not in ("host", "tools"):
                yield f"{where}: a portable file includes the system's <{target}>"


def main():
    names = list(sources())
    if not names:
        sys.exit("floors: no sources found")
    breaches = [b for name in names for b in check(name)]
    print("\n".join(breaches) if breaches else "floors: all includes keep to the house")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
