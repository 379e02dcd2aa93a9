#!/usr/bin/env python3
"""Fails when a C or C++ source of the tree is not named exactly once in the CMakeLists.txt of its
folder or of the nearest folder above it: the build lists its sources by hand, so a new file must
be added to a list, and a stray one never slips into a target."""
import pathlib
import re
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent


def sources():
    listing = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.c", "*.cpp"],
        cwd=root, check=True, capture_output=True, text=True).stdout
    return [root / name for name in listing.split() if (root / name).exists()]


def owning_list(source):
    folder = source.parent
    while not (folder / "CMakeLists.txt").exists():
        folder = folder.parent
    return folder / "CMakeLists.txt"


def uncommented(cmake_file):
    return "\n".join(line.split("#", 1)[0] for line in cmake_file.read_text().splitlines())


def main():
    faults = []
    for source in sources():
        cmake_file = owning_list(source)
        name = source.relative_to(cmake_file.parent).as_posix()
        count = len(re.findall(r"(?<![\w/.-])" + re.escape(name) + r"(?![\w/.-])", uncommented(cmake_file)))
        if count != 1:
            faults.append(f"{source.relative_to(root)}: named {count} times in {cmake_file.relative_to(root)}")
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
