#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Lets everything go wrong while velt-batch logs a fit in a project, which saves it.

    faults.py VELT_BATCH SAMPLES [--kills 200] [--seed 1]

Whatever happens, the old or the new project stands whole under its name, with its first fit as it was, and the user
is told: a failure has a status other than 0 and a sentence. A program that is killed can tell nothing. Tried are: a
SIGKILL at random moments, a disk that is full after n kilobytes, a folder that may not be written to, a project that
may not be read, that was removed or replaced by a folder, a link, a device without room.

The single calls of the system (open, write, sync, close, rename), each failing once, are tried in process by
ProjectFile_test: EverySingleCallThatFails...
"""
import argparse
import json
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time


class Bench:
    """A project with one fit in a folder, and the command that logs one more."""

    def __init__(self, program, samples, folder):
        self.program = program
        self.folder = pathlib.Path(folder)
        self.project = self.folder / "stock.vl3"
        self.table = str(pathlib.Path(samples) / "expected" / "schaefer30.txt")
        assert self.log("first").returncode == 0, "the project cannot be made"
        self.old = self.project.read_bytes()
        self.first = self.dump()["Fits"][0]["Body"]

    def words(self, name, project=None):
        return [self.program, "fit", "--data", self.table, "--time-column", "Year", "--columns",
                "Effort=Effort,Catch=Catch Wt,Total=Tot. Catch Wt", "--model", "schaefer", "--log-as", name,
                "--project", str(project or self.project)]

    def log(self, name, project=None, **more):
        return subprocess.run(self.words(name, project), capture_output=True, text=True, timeout=60, **more)

    def dump(self):
        shown = subprocess.run([self.program, "dump", "--json", str(self.project)], capture_output=True, text=True,
                               timeout=60, check=True)
        return json.loads(shown.stdout)

    def put_back(self):
        if self.project.is_dir() and not self.project.is_symlink():
            shutil.rmtree(self.project)
        elif self.project.exists() or self.project.is_symlink():
            self.project.unlink()
        self.project.write_bytes(self.old)

    def check_whole(self, where):
        """One whole project stands under the name. Returns whether it is the new one."""
        now = self.project.read_bytes()
        if now == self.old:
            return False
        fits = self.dump()["Fits"]
        if len(fits) != 2 or fits[0]["Body"] != self.first or "Body" not in fits[1]:
            sys.exit(f"faults: {where}: neither the old project nor the new one stands under the name")
        return True

    def check_told(self, done, where):
        if done.returncode == 0:
            sys.exit(f"faults: {where}: no failure was told")
        if not done.stderr.startswith("velt-batch: ") or done.returncode < 0:
            sys.exit(f"faults: {where}: status {done.returncode} and no sentence: {done.stderr!r}")


def kills(bench, number, rng):
    """SIGKILL at random moments, from before the start of the save to behind its end."""
    began = time.monotonic()
    bench.log("timing")
    whole = time.monotonic() - began
    bench.put_back()
    new = 0
    for i in range(number):
        process = subprocess.Popen(bench.words(f"fit {i}"), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(rng.uniform(0.0, 1.1 * whole))
        process.send_signal(signal.SIGKILL)
        process.wait()
        new += bench.check_whole(f"kill {i}")
        bench.put_back()
    return new


def is_root():
    return os.geteuid() == 0


def full_disk(bench, work):
    """A file system of its own that has room for the old project, and for the new one not at all, nearly or just."""
    mount = work / "small"
    mount.mkdir()
    tried = 0
    for kilobytes in (64, 72, 80, 88, 96, 104, 112, 128, 256):
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={kilobytes}k", "tmpfs", str(mount)],
                                 capture_output=True)
        if mounted.returncode != 0:
            return tried
        try:
            project = mount / "stock.vl3"
            project.write_bytes(bench.old)
            (mount / "ballast").write_bytes(b"x" * 28 * 1024)
            done = bench.log("second", project)
            now = project.read_bytes()
            left = [p.name for p in mount.iterdir() if p.name not in ("stock.vl3", "ballast")]
            if left:
                sys.exit(f"faults: full disk of {kilobytes} kB: {left} left behind")
            if done.returncode == 0:
                if now == bench.old:
                    sys.exit(f"faults: full disk of {kilobytes} kB: told as done, and nothing was written")
            else:
                bench.check_told(done, f"full disk of {kilobytes} kB")
                if now != bench.old:
                    sys.exit(f"faults: full disk of {kilobytes} kB: the old project has gone")
            tried += 1
        finally:
            subprocess.run(["umount", str(mount)], check=True)
    return tried


def targets(bench, work):
    """Targets that are not what they were."""
    tried = 0

    def refused(where, prepare, undo=lambda: None):
        nonlocal tried
        bench.put_back()
        prepare()
        try:
            bench.check_told(bench.log("second"), where)
        finally:
            undo()
        tried += 1

    def to_folder():
        bench.project.unlink()
        bench.project.mkdir()

    refused("a folder in place of the project", to_folder)
    refused("a project of no bytes", lambda: bench.project.write_bytes(b""))
    refused("a project cut off", lambda: bench.project.write_bytes(bench.old[:700]))
    bench.put_back()
    bench.check_told(bench.log("second", work / "none" / "stock.vl3"), "a folder that does not exist")
    tried += 1
    if not is_root():  # nothing is denied to root
        refused("a folder that may not be written to", lambda: os.chmod(bench.folder, 0o500),
                lambda: os.chmod(bench.folder, 0o700))
        refused("a project that may not be read", lambda: os.chmod(bench.project, 0o000),
                lambda: os.chmod(bench.project, 0o600))

    bench.put_back()  # removed in between: it is made anew
    bench.project.unlink()
    if bench.log("second").returncode != 0 or len(bench.dump()["Fits"]) != 1:
        sys.exit("faults: a removed project was not made anew")
    tried += 1

    bench.put_back()  # a link that leads nowhere gives its place to the project
    bench.project.unlink()
    bench.project.symlink_to(work / "none" / "at all.vl3")
    if bench.log("second").returncode != 0 or len(bench.dump()["Fits"]) != 1:
        sys.exit("faults: a link that leads nowhere was not replaced by the project")
    tried += 1

    bench.put_back()  # a link is followed, and stays a link
    real = work / "real.vl3"
    shutil.move(str(bench.project), str(real))
    bench.project.symlink_to(real)
    if bench.log("second").returncode != 0 or not bench.project.is_symlink() or len(bench.dump()["Fits"]) != 2:
        sys.exit("faults: a project behind a link was not saved where it is")
    bench.project.unlink()
    return tried + 1


def read_only_mount(bench, work):
    mount = work / "frozen"
    mount.mkdir()
    if subprocess.run(["mount", "-t", "tmpfs", "tmpfs", str(mount)], capture_output=True).returncode != 0:
        return 0
    try:
        (mount / "stock.vl3").write_bytes(bench.old)
        subprocess.run(["mount", "-o", "remount,ro", str(mount)], check=True)
        bench.check_told(bench.log("second", mount / "stock.vl3"), "a file system that may only be read")
        if (mount / "stock.vl3").read_bytes() != bench.old:
            sys.exit("faults: a file system that may only be read: the project has changed")
        return 1
    finally:
        subprocess.run(["umount", str(mount)], check=True)


def no_room_for_the_copy(bench, work):
    """The folder for working copies is full, or is not there."""
    missing = dict(os.environ, TMPDIR=str(work / "no such folder"))
    done = bench.log("second", env=missing)  # falls back to the system's own
    if done.returncode != 0:
        bench.check_told(done, "no folder for working copies")
    bench.put_back()
    return 1


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("samples")
    parser.add_argument("--kills", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as work, \
            tempfile.TemporaryDirectory() as copies:
        os.environ["TMPDIR"] = copies
        bench = Bench(options.program, options.samples, folder)
        new = kills(bench, options.kills, random.Random(options.seed))
        print(f"{options.kills} kills: {new} left the new project, {options.kills - new} the old one")
        print(f"{full_disk(bench, pathlib.Path(work))} full disks, {read_only_mount(bench, pathlib.Path(work))} "
              f"read-only, {targets(bench, pathlib.Path(work))} targets, "
              f"{no_room_for_the_copy(bench, pathlib.Path(work))} without a folder for copies")
        bench.put_back()
        if bench.log("last").returncode != 0:
            sys.exit("faults: after all of it nothing can be logged any more")


if __name__ == "__main__":
    main()
