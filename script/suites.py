# SPDX-License-Identifier: MIT
"""The library's test programs on the virtual platform."""

import pathlib
import re

FOLDERS = "protocol serial session identify media workout legacy field".split()


def programs(root=pathlib.Path()):
    """Their names, as their folders' CMakeLists.txt have them."""
    lists = [(root / f"tests/{folder}/CMakeLists.txt").read_text(encoding="utf-8") for folder in FOLDERS]
    return [name for text in lists for name in re.findall(r"ipodcomm_add_virtual_tests\(\s*(\w+)", text)]
