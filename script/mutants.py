# SPDX-License-Identifier: MIT
"""The small mistakes that script/mutate plants in a source."""

import collections
import pathlib
import re
import sys

# Line and column from 0, what stands there, and what takes its place.
Mutant = collections.namedtuple("Mutant", "file line column old new")

NUMBER = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f]+|\d+)(?![\w.'])")
# Room for one more changes nothing that a test could notice; a buffer that is one short does.
ARRAY_SIZE = re.compile(r"^\s*[\w: ]+ \w+\[(\d+)\](?= = \{|;)")
SWAPS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "<": "<=", ">": ">=", "&&": "||", "||": "&&",
         "+": "-", "-": "+", "++": "--", "--": "++", "+=": "-=", "-=": "+=", "true": "false", "false": "true"}
# Spaces tell an operator of two sides from a template's brackets, a sign or a pointer.
BETWEEN = re.compile(r"(?<= )(==|!=|<=|>=|<|>|&&|\|\||\+|-|\+=|-=)(?= )")
ALONE = re.compile(r"\+\+|--|\btrue\b|\bfalse\b")
NOT = re.compile(r"!(?=[\w(])")
# A condition that is one name or one call: one with an operator has mutants of that.
PLAIN_CONDITION = re.compile(r"\b(?:if|while) \((?=[\w.:>\[\]-]+(\([^()]*\))*\))")
CALL = re.compile(r"\s+[\w.:>\[\]-]+\([^=]*\);$")
TEXT = re.compile(r'"([A-Za-z])')


def without_comment(line):
    return line.split("//")[0].rstrip()


def mutants_of(name, text):
    """All mutants of a source."""
    for number, line in enumerate(text.splitlines()):
        code = without_comment(line)
        if not code or code.lstrip().startswith(("#", "*", "static_assert", "using", "namespace")):
            continue
        if CALL.fullmatch(code) and not code.lstrip().startswith("return"):
            column = len(code) - len(code.lstrip())
            yield Mutant(name, number, column, code.lstrip(), ";")
        for found in TEXT.finditer(code):
            yield Mutant(name, number, found.start(1), found[1], "z" if found[1] != "z" else "y")
        quiet = re.sub(r"(\"(\\.|[^\"])*\"|'(\\.|[^'])*')", lambda quoted: "_" * len(quoted[0]), code)
        for pattern in (BETWEEN, ALONE):
            for found in pattern.finditer(quiet):
                yield Mutant(name, number, found.start(), found[0], SWAPS[found[0]])
        for found in PLAIN_CONDITION.finditer(quiet):
            yield Mutant(name, number, found.end(), "", "!")
        for found in NOT.finditer(quiet):
            yield Mutant(name, number, found.start(), "!", "")
        size = ARRAY_SIZE.match(quiet)
        for found in NUMBER.finditer(quiet):
            is_size = size is not None and size.start(1) == found.start()
            if is_size and found[0] == "1":
                continue
            yield Mutant(name, number, found.start(), found[0],
                         str(int(found[0], 0) + (-1 if is_size else 1)))


def mutated(text, mutant):
    lines = text.splitlines(keepends=True)
    line = lines[mutant.line]
    end = mutant.column + len(mutant.old)
    assert line[mutant.column:end] == mutant.old
    lines[mutant.line] = line[:mutant.column] + mutant.new + line[end:]
    return "".join(lines)


def shown(mutant, text):
    before = text.splitlines()[mutant.line].strip()
    after = mutated(text, mutant).splitlines()[mutant.line].strip()
    return f"{mutant.file} `{before}` -> `{after}`"


def collect(folders):
    """The sources and headers of the folders of src/, and all their mutants."""
    for folder in folders:
        if not pathlib.Path("src", folder).is_dir():
            sys.exit(f"script/mutate: there is no folder src/{folder}")
    # Headers last: a mutant of theirs is compiled several times.
    files = [file for kind in ("*.cpp", "*.h") for folder in folders
             for file in sorted(pathlib.Path("src", folder).glob(kind))]
    texts = {str(file): file.read_text(encoding="utf-8") for file in files}
    return texts, [mutant for name, text in texts.items() for mutant in mutants_of(name, text)]
