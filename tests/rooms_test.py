"""Reads the #include "..." lines of all sources and names those that point the wrong way."""
import pathlib
import re
import sys

# A room sees itself and the rows above its own; rooms of one row do not see each other. "." is the
# files of the part itself.
ROWS = {
    "module": [["core"], ["pixels"], ["raster"],
               ["primitives", "triangles", "textures", "lines", "tiling"], ["."]],
    "apps": [["common"], ["load", "files"], ["scene"], ["draw"], ["commands"], ["view"], ["."]],
}
# What a part sees beside itself.
OTHER_PARTS = {
    "host": [],
    "stand_in": ["host"],
    "module": ["host"],
    "apps": ["host"],
    "bench": ["host", "stand_in", "module", "apps", "tests"],
    "tests": ["host", "stand_in", "module", "apps", "tests/differential"],
    "tests/differential": ["host"],
}
# Strip edges are polylines, and a line of one point is a dot.
EXCEPTIONS = [
    ("module/triangles", "module/lines/strip_edges.h"),
    ("module/textures", "module/lines/strip_edges.h"),
    ("module/lines", "module/primitives/dots.h"),
]


def part_and_room(path):
    names = path.split("/")
    if path.startswith("tests/differential/"):
        return "tests/differential", "."
    return names[0], names[1] if len(names) > 2 and names[0] in ROWS else "."


def is_above(part, room, its_room):
    """Whether `its_room` is in a row above that of `room`; a room that no row names is in none."""
    row = {name: n for n, rooms in enumerate(ROWS[part]) for name in rooms}
    return room in row and its_room in row and row[its_room] < row[room]


def is_allowed(source, target):
    part, room = part_and_room(source)
    its_part, its_room = part_and_room(target)
    if (f"{part}/{room}", target) in EXCEPTIONS:
        return True
    if part != its_part:
        return its_part in OTHER_PARTS[part]
    if part not in ROWS or room == its_room:
        return True
    return is_above(part, room, its_room)


def name_of(path):
    part, room = part_and_room(path)
    return part if room == "." else f"{part}/{room}"


def main(root):
    wrong = seen = 0
    for part in dict.fromkeys(name.split("/")[0] for name in OTHER_PARTS):
        for path in sorted((root / part).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            source = path.relative_to(root).as_posix()
            for number, line in enumerate(path.read_text().splitlines(), 1):
                match = re.match(r'\s*#\s*include\s*"(.*)"', line)
                if not match:
                    continue
                target = match[1]
                seen += 1
                if not (root / target).is_file():
                    print(f"{source}:{number}: {target} is not named from the root")
                elif is_allowed(source, target):
                    continue
                else:
                    print(f"{source}:{number}: {name_of(source)} -> {name_of(target)}: {target}")
                wrong += 1
    print(f"{seen} includes, {wrong} of them the wrong way")
    return 1 if wrong or not seen else 0


sys.exit(main(pathlib.Path(sys.argv[1])))
