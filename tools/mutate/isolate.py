# SPDX-License-Identifier: MIT
"""Isolates changed programs from the machine.

A faulty fwpipe that ran as root once replaced /dev/null. So the whole run has its own view of the file system, in which
only its scratch folder and temporary files can be written. Each command has its own process numbers: it cannot send
signals to other processes, and the processes that it started end with it.
"""
import os
import shutil
import subprocess
import sys
from pathlib import Path

_MARK = "FWLIB_MUTATE_ISOLATED"
_KEPT = ("proc", "devpts", "mqueue")  # without files that could be replaced


def _alone(options):
    """The beginning of a command with its own process numbers, whose processes end with it. The first process is a shell,
    since the system does not deliver unhandled signals to the first one."""
    return ["unshare", *options, "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "--",
            "sh", "-c", '"$@"; exit $?', "sh"]  # fmt: skip


def _mounts():
    """The mounted file systems (path, type), the outermost first."""
    for line in Path("/proc/self/mountinfo").read_text().splitlines():
        before, after = line.split(" - ")
        yield before.split()[4].encode().decode("unicode_escape"), after.split()[0]


def _mount(*words):
    return subprocess.run(["mount", *words], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def _protect(scratch):
    temporary = scratch / "tmp"
    shutil.rmtree(temporary, ignore_errors=True)
    temporary.mkdir(parents=True)
    _mount("--make-rprivate", "/")
    _mount("--bind", str(scratch), str(scratch))
    for place, kind in list(_mounts()):
        if kind not in _KEPT and place != str(scratch):
            protected = _mount("-o", "remount,bind,ro", place)
            if not protected and place in ("/", "/dev") and os.geteuid() == 0:
                sys.exit(f"mutate: {place} cannot be protected")
    for place in ("/tmp", "/var/tmp"):
        if Path(place) not in scratch.parents:
            _mount("--bind", str(temporary), place)
    _mount("-t", "tmpfs", "tmpfs", "/dev/shm")
    os.environ.update(TMPDIR=str(temporary), HOME=str(temporary))


def isolate(scratch):
    """Restarts this program in its own view of the file system. As root, it never continues without one."""
    scratch.mkdir(parents=True, exist_ok=True)
    if os.environ.get(_MARK) == "1":
        _protect(scratch)
        return
    if _MARK in os.environ:
        return
    alone = _alone([] if os.geteuid() == 0 else ["--map-root-user"])
    able = shutil.which("unshare") and subprocess.run([*alone, "true"], stderr=subprocess.DEVNULL).returncode == 0
    if not able and os.geteuid() == 0:
        sys.exit("mutate: no mount namespace, and changed programs do not run as root without one; run this as another user")
    os.environ[_MARK] = "1" if able else "0"
    if able:
        os.execvp(alone[0], [*alone, sys.executable, *sys.argv])


def alone(command):
    """The command with its own process numbers."""
    return [*_alone([]), *command] if os.environ.get(_MARK) == "1" else command
