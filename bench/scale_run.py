#!/usr/bin/env python3
"""scale_run.py SMODEL [SUBJECTS ...]

Makes documents of all kinds of objects (560 subjects are about 10 MB, 5600 about 100 MB, 56000 about 1 GB; the first two when none is
named), lets the command check, format, split and join each, and prints the time and the most memory that each took, beside the
document's size. What is joined is compared with what is formatted.
"""
import filecmp
import os
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))


def run(words):
    start = time.monotonic()
    child = subprocess.Popen(words, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    if status != 0:
        sys.exit("scale_run: failed: " + " ".join(words))
    return time.monotonic() - start, usage.ru_maxrss * 1024


def measure(smodel, subjects, directory):
    path = lambda name: os.path.join(directory, name)
    document = path("model.xml")
    run([sys.executable, os.path.join(HERE, "scale.py"), str(subjects), "20", "--out", document])
    size = os.path.getsize(document)
    for name, words in (
        ("ls", ["ls", document]),
        ("check", ["check", document]),
        ("fmt", ["fmt", document, "-o", path("fmt.xml")]),
        ("split", ["split", document, "-d", path("parts")]),
        ("join", ["join", path("parts/main.xml"), "-o", path("joined.xml")]),
    ):
        seconds, memory = run([smodel] + words)
        print("%12d %9.1f  %-6s %9.2f %8.1f %9.1f %8.2f" % (subjects, size / 1e6, name, seconds, seconds / size * 1e9, memory / 1e6, memory / size), flush=True)
    if not filecmp.cmp(path("fmt.xml"), path("joined.xml"), shallow=False):
        sys.exit("scale_run: what is joined is not what is formatted")


def main():
    print("%12s %9s  %-6s %9s %8s %9s %8s" % ("subjects", "MB", "", "s", "ns/byte", "peak MB", "of size"))
    for subjects in [int(word) for word in sys.argv[2:]] or [560, 5600]:
        directory = tempfile.mkdtemp(prefix="smodel-scale-")
        try:
            measure(sys.argv[1], subjects, directory)
        finally:
            shutil.rmtree(directory)


main()
