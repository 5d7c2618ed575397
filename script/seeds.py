# SPDX-License-Identifier: MIT
"""Which of a fuzzer's inputs are worth keeping: for script/fuzz."""

import hashlib
import pathlib
import subprocess
import sys
import tempfile

MOST_INPUTS = 40  # of a fuzzer: they are kept in the repository, and each is a test
MOST_BYTES = 3000  # of an input


def features(control):
    """The inputs that libFuzzer looked at, and which edges each covers."""
    lines = control.read_text().splitlines()
    count = int(lines[0])
    names = [pathlib.Path(line) for line in lines[2:2 + count]]
    covered = {}
    for line in lines[2 + count:]:
        kind, *numbers = line.split()
        if kind == "FT":
            covered[names[int(numbers[0])]] = set(numbers[1:])
    return covered


def main():
    program, seeds, corpus, *flags = sys.argv[1:]
    with tempfile.TemporaryDirectory() as work:
        control = pathlib.Path(work) / "control"
        merged = pathlib.Path(work) / "merged"
        merged.mkdir()
        subprocess.run([program, "-set_cover_merge=1", "-use_counters=0", "-close_fd_mask=3", *flags,
                        f"-merge_control_file={control}", merged, seeds, corpus],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        covered = features(control)
    kept = pathlib.Path(seeds)
    known = set().union(*(edges for name, edges in covered.items() if name.parent == kept))
    before, inputs = len(known), len(list(kept.iterdir()))
    found = {name: edges for name, edges in covered.items()
             if name.parent != kept and name.stat().st_size <= MOST_BYTES}
    while inputs < MOST_INPUTS and found:
        best = max(found, key=lambda name: (len(found[name] - known), -name.stat().st_size))
        if not found[best] - known:
            break
        content = best.read_bytes()
        (kept / hashlib.sha1(content).hexdigest()[:12]).write_bytes(content)
        known |= found.pop(best)
        inputs += 1
    every = len(set().union(*covered.values()))
    print(f"{seeds}: {inputs} inputs cover {len(known)} of the {every} edges that are reached; it was {before}")


main()
