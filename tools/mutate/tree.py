# SPDX-License-Identifier: MIT
"""A copy of the tree with its own builds and tests. The tests that most likely find a fault run first."""
import json
import os
import resource
import shutil
import signal
import subprocess
import time
from dataclasses import dataclass

from isolate import alone

COPIED = ("CMakeLists.txt", "cmake", "docs", "examples", "fuzz", "packaging", "source", "tests", "tools")
SKIPPED = 77
DETERMINISTIC = ("fwlib_", "pipes.", "examples/", "docs.", "failures.EachCall", "failures.DiskFull")
OF_FLAGS = ("package.hardening",)  # checks how the release is built
# Allows the block sizes of the tests, and leaves signals to the program.
CHECKER = "max_allocation_size_mb=4000:use_sigaltstack=0:" + ":".join(
    f"handle_{signal}=0" for signal in ("segv", "sigbus", "abort", "sigfpe", "sigill"))  # fmt: skip

SANITIZER_FLAGS = "-O1 -g -DFWLIB_WATCH -fno-omit-frame-pointer "
RACES = ("ThreadSanitizer", "tsan", SANITIZER_FLAGS + "-fsanitize=thread")
MEMORY = ("AddressSanitizer", "asan",
          SANITIZER_FLAGS + "-fsanitize=address,undefined -fno-sanitize-recover=all -Wno-maybe-uninitialized")  # fmt: skip


@dataclass(frozen=True)
class Test:
    name: str
    command: tuple
    folder: str
    environment: tuple

    def uses(self, program):
        return any(str(program) == word for word in self.command)


def note(found, file, by):
    """Counts what found a fault: later faults are tried first with the tests that found most."""
    name = by.removesuffix(" (time)")
    if name not in ("", "compiler"):
        found[name] += 1
        found[file, name] += 1


def _limit():
    os.setsid()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def _run(command, folder, seconds, environment=()):
    """The exit status of a command; None when it takes too long. Then its processes are killed."""
    child = subprocess.Popen(
        command, cwd=folder, env=dict(os.environ, **dict(environment)), preexec_fn=_limit,
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
    )  # fmt: skip
    try:
        return child.wait(seconds)
    except subprocess.TimeoutExpired:
        return None
    finally:
        try:
            os.killpg(child.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        child.wait()


class Tree:
    def __init__(self, root, scratch, number, flags, found):
        self.original, self.root = root, scratch / str(number)
        self.build = self.root / "build" / "release"
        self.cache = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        self.environment = {"CCACHE_DIR": str(scratch / "ccache"), "CCACHE_BASEDIR": str(self.root),
                            "CCACHE_NOHASHDIR": "1"}  # fmt: skip
        self.stale = False
        self.seconds = {}  # of each test without a fault
        self.found = found  # of all workers
        self._copy()
        self._configure(self.build, flags)
        for _, folder, sanitizer in (RACES, MEMORY):
            self._configure(self.root / "build" / folder, sanitizer)
        if not self._make(self.build):
            raise RuntimeError(f"does not build: cmake --build {self.build}")
        self.tests = self._tests()
        # Programs that contain the library's objects must be linked again; the others use the shared library.
        self.linked, self.of_tool = self._programs("/fwlib_objects.dir/"), self._programs("/__/tools/fwpipe/")

    def _copy(self):
        """Updates the copy from the tree; files that did not change keep their times."""
        wanted = set()
        for name in COPIED:
            found = self.original / name
            for path in [found] if found.is_file() else sorted(p for p in found.rglob("*") if p.is_file()):
                target = self.root / path.relative_to(self.original)
                wanted.add(target)
                if not target.exists() or target.read_bytes() != path.read_bytes():
                    target.parent.mkdir(parents=True, exist_ok=True)
                    shutil.copy(path, target)
        for name in COPIED:
            for path in (self.root / name).rglob("*"):
                if path.is_file() and path not in wanted:
                    path.unlink()

    def _configure(self, build, flags):
        subprocess.run(
            ["cmake", "-S", self.root, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None", f"-DCMAKE_CXX_FLAGS={flags}",
             "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", *self.cache],
            check=True, stdout=subprocess.DEVNULL, env=dict(os.environ, **self.environment),
        )  # fmt: skip

    def _make(self, build, *targets):
        which = ["--target", *targets] if targets else []
        return _run(["cmake", "--build", str(build), "-j", "1", *which], self.root, 1800, self.environment) == 0

    def _programs(self, objects):
        """The programs that are linked from objects in such a folder."""
        return [self.build / line.split(":")[0][len("build ") :]
                for line in (self.build / "build.ninja").read_text().splitlines()
                if line.startswith("build ") and "_EXECUTABLE_LINKER" in line and objects in line]  # fmt: skip

    def _tests(self):
        """All tests but those of the installed tree, which hardly depend on the code and take long to build."""
        listed = subprocess.run(["ctest", "--test-dir", self.build, "--show-only=json-v1"], check=True, capture_output=True)
        tests = []
        for test in json.loads(listed.stdout)["tests"]:
            given = {entry["name"]: entry["value"] for entry in test["properties"]}
            if test["name"] not in OF_FLAGS and "FIXTURES_REQUIRED" not in given and "FIXTURES_SETUP" not in given:
                environment = tuple(tuple(pair.split("=", 1)) for pair in given.get("ENVIRONMENT", []))
                tests.append(Test(test["name"], tuple(test["command"]), given["WORKING_DIRECTORY"], environment))
        return tests

    def _passes(self, test, seconds, tries=2):
        """Whether it passes, and whether it takes too long. Those of fwpipe are tried twice, as some depend on the time."""
        environment = (("GTEST_FAIL_FAST", "1"), ("GTEST_BRIEF", "1"), ("LSAN_OPTIONS", CHECKER), *test.environment)
        status = _run(alone(test.command), test.folder, seconds, environment)
        if status in (0, SKIPPED, None) or tries == 1 or test.name.startswith(DETERMINISTIC):
            return status in (0, SKIPPED), status is None
        return self._passes(test, seconds, tries - 1)

    def measure(self, quick):
        """Runs all tests without a fault. Returns the names of those that fail."""
        failing = []
        for test in self.tests:
            begun = time.monotonic()
            if not self._passes(test, 900)[0]:
                failing.append(test.name)
            self.seconds[test.name] = time.monotonic() - begun
        for name, folder, _ in () if quick else (RACES, MEMORY):
            begun = time.monotonic()
            failing += [name] if self._sanitized(name, folder) != "" else []
            self.seconds[name] = time.monotonic() - begun
        return failing

    def _first(self, file):
        """The key for sorting tests: first those that found faults, above all in this file, and that are fast."""
        return lambda test: -(self.found[file, test.name] + 0.1 * self.found[test.name] + 0.02) / (
            self.seconds[test.name] + 0.05)  # fmt: skip

    def _found_by(self, tests, fault):
        file, tries = fault.file, 1 if fault.kind == "guard" else 2  # races occur at random
        for test in sorted(tests, key=self._first(file)):
            passes, late = self._passes(test, 15 + 6 * self.seconds[test.name], tries)
            if not passes:
                note(self.found, file, test.name)
                return test.name + (" (time)" if late else "")
        return ""

    def put(self, fault, text):
        (self.root / fault.file).write_text(text[: fault.begin] + fault.by + text[fault.end :])

    def restore(self, fault, text):
        (self.root / fault.file).write_text(text)
        if self.stale:  # test programs contain the fault of a header
            self._make(self.build)
            self.stale = False

    def tried(self, fault, quick=False):
        """The test that finds the fault in the copy, "" if none does, or None if it does not compile. If quick, without
        what takes longest: the sanitizers, and building the test programs again for a header."""
        header, tool = fault.file.endswith(".h"), fault.file.startswith("tools/")
        programs = [self.build / "fwpipe", *self.of_tool]
        tests = [test for test in self.tests if not tool or any(test.uses(program) for program in programs)]
        linked = [test for test in tests if not tool and any(test.uses(program) for program in self.linked)]
        # Test programs that were built before the header changed also find most faults, and building them takes long.
        made = [str(program.relative_to(self.build)) for program in programs]
        if not self._make(self.build, "fwlib", *made):  # all, as one may contain the previous fault
            return None
        found = self._sanitized(*RACES[:2]) if fault.kind == "guard" and not tool else ""
        found = found or self._found_by([test for test in tests if test not in linked], fault)
        if not found and not tool and not (quick and header):
            self.stale = header
            if not self._make(self.build):
                return None
            found = self._found_by(tests if header else linked, fault)
        if not found and not tool and not quick and fault.kind != "guard":
            found = self._sanitized(*MEMORY[:2])
        return found

    def _sanitized(self, name, folder):
        """The name if the unit tests under this sanitizer find the fault, as ./dev ci runs them."""
        build = self.root / "build" / folder
        if not self._make(build, "fwlib_tests"):
            return None
        for chosen in ("Threads.*", "-Threads.*:*DeathTest*"):  # those that most likely find a race first
            command = (str(build / "tests" / "fwlib_tests"), "--gtest_filter=" + chosen)
            if not self._passes(Test(name, command, str(self.root), ()), 15 + 6 * self.seconds.get(name, 150))[0]:
                return name
        return ""
