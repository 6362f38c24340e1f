#!/usr/bin/python3
"""What Ravlin does behind its user's back, as the kernel sees it: nothing. While it is used, strace records every file
it writes and every socket it opens.

    private-desktop --window-manager -- privacy.py PROGRAM [unittest's arguments]
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
import ravlin_desktop as desktop  # noqa: E402
from ravlin_desktop import eventually  # noqa: E402

PROGRAM = sys.argv.pop(1)
TRANSFORMS = [
    "Clean URL", "Strip formatting", "Remove invisible characters", "Strip HTML → plain text", "HTML → Markdown",
    "Markdown → HTML", "JSON Pretty", "UPPERCASE", "Title Case", "camelCase", "Slugify", "Bullet list", "Sort lines A→Z",
    "Remove duplicate lines", "Smart quotes", "Reverse characters", "Base64 encode", "URL encode", "SHA-256", "JWT decode"]
TEXT = "https://example.org/?utm_source=x and <b>more</b> of it"
TRACE = ["strace", "-f", "-qq", "-y", "-s", "4096", "-e", "trace=%file,%network", "-o"]
SKIPPED = 77  # for ctest

CALL = re.compile(r"\d+ +(\w+)\((.*)")
PATH = re.compile(r'"((?:[^"\\]|\\.)*)"')
FOLDER = re.compile(r"\d+<([^>]*)>, \"")
# Calls that change what is on a disk, whatever their arguments.
CHANGES = {"creat", "mkdir", "mkdirat", "mknod", "mknodat", "link", "linkat", "symlink", "symlinkat", "rename", "renameat",
           "renameat2", "unlink", "unlinkat", "rmdir", "truncate", "chmod", "fchmodat", "chown", "lchown", "fchownat",
           "utime", "utimes", "utimensat", "futimesat", "setxattr", "lsetxattr"}
OPENS = {"open", "openat", "openat2"}
OPENED_TO_WRITE = re.compile(r"O_(WRONLY|RDWR|CREAT|TRUNC|APPEND|TMPFILE)")
PIPE = re.compile(r"= \d+<pipe:\[\d+\]>$")  # opened once more, which is no file
DEVICES = re.compile(r"/dev/(?!shm/).*")


def whole_lines(trace):
    """A line for each call, also for those that strace has torn apart since another thread came between."""
    begun = {}
    for line in trace.splitlines():
        thread, _, rest = line.partition(" ")
        if line.endswith(" <unfinished ...>"):
            begun[thread] = line.removesuffix(" <unfinished ...>")
        elif resumed := re.match(r" *<\.\.\. \w+ resumed>(.*)", rest):
            yield begun.pop(thread, "") + resumed[1]
        else:
            yield line
    yield from begun.values()


def calls_in(trace):
    """The calls that worked, or may have: their names and the rest of their lines."""
    for line in whole_lines(trace):
        call = CALL.match(line)
        if call and not re.search(r"= -1 E\w+ \(.*\)$", line):
            yield call[1], call[2]


def networks_in(trace):
    """The families of sockets that reach beyond this machine's own programs."""
    families = {rest.split(",")[0] for name, rest in calls_in(trace) if name in ("socket", "socketpair")}
    return families - {"AF_UNIX", "AF_LOCAL"}


def changed_files_in(trace, folder):
    """The files that a program started in `folder` wrote or changed, except devices and pipes."""
    changed = set()
    for name, rest in calls_in(trace):
        if PIPE.search(rest):
            continue
        if name in CHANGES or (name in OPENS and OPENED_TO_WRITE.search(rest)):
            at = FOLDER.match(rest)
            changed |= {os.path.normpath(os.path.join(at[1] if at else folder, path)) for path in PATH.findall(rest)}
    return {path for path in changed if not DEVICES.fullmatch(path)}


class TracedRavlin(desktop.Ravlin):
    def __init__(self, program, log, **environment):
        self.program = program
        environment["LSAN_OPTIONS"] = "detect_leaks=0"  # impossible while the program is traced
        self.process = subprocess.Popen([*TRACE, log, program], env=dict(os.environ, **environment),
                                        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                        text=True)


class Privacy(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.home = self.folder / "home"
        self.home.mkdir()
        self.log = self.folder / "trace"

    def use(self):
        """An ordinary day: openings, searches, transforms, and Quit."""
        for name in TRANSFORMS:
            with desktop.copied(TEXT):
                desktop.activate_by_name()
                eventually(desktop.search_field, "the panel is open")
                desktop.search_for(name)
                desktop.press(name)
                eventually(lambda: desktop.find_accessible(lambda each: f"{name} — ready" in (each.get_name() or "")),
                           f"{name} tells its result")
        desktop.press("Quit")

    def test_sockets_and_files_are_noticed(self):
        subprocess.run([*TRACE, self.log, sys.executable, "-c",
                        "import os, socket; socket.socket(socket.AF_INET); open('written', 'w');"
                        "os.rename('written', 'renamed'); os.mkdir('folder')"], cwd=self.home, check=True)
        trace = self.log.read_text()
        self.assertEqual(networks_in(trace), {"AF_INET"})
        self.assertEqual(changed_files_in(trace, self.home), {str(self.home / name) for name in ("written", "renamed", "folder")})

    def test_nothing_is_sent_and_nothing_is_stored(self):
        below_home = {name: str(self.home / name) for name in
                      ("XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME")}
        ravlin = TracedRavlin(PROGRAM, self.log, HOME=str(self.home), **below_home)
        self.addCleanup(ravlin.close)
        eventually(lambda: desktop.is_on_bus("org.ravlin.ravlin"), "the program runs")
        self.use()
        with desktop.copied("the next text"):  # so that nothing of Ravlin remains
            self.assertEqual(ravlin.wait_for_end(), 0)
        trace = self.log.read_text()
        self.assertIn("socket(AF_UNIX", trace)
        self.assertEqual(networks_in(trace), set())
        runtime = os.environ["XDG_RUNTIME_DIR"] + "/"
        self.assertEqual({path for path in changed_files_in(trace, os.getcwd()) if not path.startswith(runtime)}, set())
        self.assertEqual(list(self.home.rglob("*")), [])


if __name__ == "__main__":
    if subprocess.run([*TRACE, "/dev/null", "true"], capture_output=True).returncode != 0:
        print("processes may not be traced here")
        sys.exit(SKIPPED)
    desktop.adopt_orphans()
    unittest.main()
