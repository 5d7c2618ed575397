# SPDX-License-Identifier: MIT
"""The library's test programs on the virtual platform."""

import pathlib
import re

FOLDERS = "protocol serial session identify media workout legacy field".split()


def folders_of_programs(root=pathlib.Path()):
    """The folder of each program, as the folders' CMakeLists.txt have them."""
    found = {}
    for folder in FOLDERS:
        text = (root / f"tests/{folder}/CMakeLists.txt").read_text(encoding="utf-8")
        found.update(dict.fromkeys(re.findall(r"ipodcomm_add_virtual_tests\(\s*(\w+)", text), folder))
    return found


def programs(root=pathlib.Path()):
    return list(folders_of_programs(root))
