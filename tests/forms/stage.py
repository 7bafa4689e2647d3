"""A screen of the tests' own with a window manager and Windows programs on it, and a user with mouse and keys.

What the user sees comes from window_watch, which tells all windows with their texts and places. The mouse and the keys
are those of the display, so they take the way of real ones. The user never waits for a time, only for what is to be
seen; a thing that does not come to be seen within PATIENCE seconds is a failure."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import time
from dataclasses import dataclass

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PATIENCE = 60
SLOW_TO_GO = -9  # what Wine does to a process that has ended by itself and isn't gone at once
TOOLS = {"Xvfb": "xvfb", "openbox": "openbox", "xdotool": "xdotool", "xprop": "x11-utils", "import": "imagemagick",
         "compare": "imagemagick"}
WINE = shutil.which("wine64") or shutil.which("wine") or "/usr/lib/wine/wine64"


def require_tools():
    missing = [f"{tool} (Debian package {package})" for tool, package in TOOLS.items() if not shutil.which(tool)]
    if missing:
        raise SystemExit("the forms can't be tested without " + ", ".join(missing))


@dataclass
class Window:
    depth: int
    handle: int
    kind: str
    id: int
    left: int
    top: int
    right: int
    bottom: int
    visible: bool
    enabled: bool
    focused: bool
    value: int
    needed: int  # by its text, in width
    text: str
    children: list

    def all(self):
        yield self
        for child in self.children:
            yield from child.all()

    def has_focus(self):
        """Or one of its parts has: a list with an edit field gives it to that."""
        return any(window.focused for window in self.all())

    def get(self, id):
        """The control with this number, however deep; None for none."""
        return next((window for window in self.all() if window.id == id and window is not self), None)


class Host:
    """A program that runs on the stage. Its output is whole once it has ended. One that speaks says "ended" last."""

    def __init__(self, stage, program, arguments, speaks):
        self.speaks = speaks
        self.output = tempfile.TemporaryFile()
        self.process = stage.start([WINE, str(program), *arguments], stdout=self.output, cwd=program.parent)

    def end(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.output.close()

    def lines(self):
        """What it has said, each line as its fields, once it has ended well."""
        code = self.process.wait(PATIENCE * 5)
        self.output.seek(0)
        text = self.output.read().decode()
        lines = [line.split("\t") for line in text.splitlines()]
        if code not in (0, SLOW_TO_GO) or self.speaks and (not lines or lines.pop() != ["ended"]):
            raise AssertionError(f"the host ended with {code}: {text}")
        return lines


class Stage:
    def __init__(self, build, dpi):
        self.build = pathlib.Path(build).resolve()
        self.processes, self.hosts = [], []
        self.environment = dict(os.environ, WINEPREFIX=str(self.build / "wine-forms"), WINEARCH="win64", WINEDEBUG="-all",
                                WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d",
                                FONTCONFIG_FILE=str(ROOT / "script/wine-fonts.conf"), DISPLAY="")
        self.environment["DISPLAY"] = self.start_screen()
        self.start(["openbox", "--sm-disable"])
        self.wait(lambda: "no such atom" not in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "a window manager")
        wine = str(ROOT / "script/wine")
        self.run(wine, "reg", "add", r"HKCU\Control Panel\Desktop", "/v", "LogPixels", "/t", "REG_DWORD", "/d", str(dpi), "/f")
        self.run(wine, "--end", check=False)  # the figure is read when the first program starts
        self.watcher = self.start([WINE, str(self.build / "tests/forms/window_watch.exe")], stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE)
        self.windows()
        if self.dpi != dpi:
            raise AssertionError(f"the screen has {self.dpi} dots per inch, not {dpi}")

    def start(self, command, **more):
        options = dict(env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        process = subprocess.Popen(command, **{**options, **more})
        self.processes.append(process)
        return process

    def run(self, *command, check=True):
        return subprocess.run(command, env=self.environment, check=check, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              stdin=subprocess.DEVNULL, timeout=PATIENCE * 4).stdout.decode()

    def start_screen(self):
        """Its display number is whichever is free. It goes with this process, however that ends, and with it all that is
        on it. It doesn't begin anew when its last program has gone: that can be one that has only had a look."""
        reader, writer = os.pipe()
        self.start(["setpriv", "--pdeathsig", "KILL", "Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x900x24",
                    "-noreset", "-nolisten", "tcp"], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as number:
            return ":" + number.readline().strip()

    def close(self):
        self.run(str(ROOT / "script/wine"), "--end", check=False)
        for process in reversed(self.processes):
            process.terminate()
            process.wait(PATIENCE)

    def host(self, program, *arguments, speaks=False):
        self.hosts.append(Host(self, program, arguments, speaks))
        return self.hosts[-1]

    def end_hosts(self):
        """Those that still run: a test that failed leaves them."""
        for host in self.hosts:
            host.end()
        self.hosts.clear()

    # ---- Eyes

    def windows(self):
        """All windows of the top, each with its children."""
        self.watcher.stdin.write(b"\n")
        self.watcher.stdin.flush()
        tops, road = [], []
        for line in iter(self.watcher.stdout.readline, b""):
            fields = line.decode().rstrip("\r\n").split("\t")
            if fields[0] == "end":
                self.dpi = int(fields[1])
                return tops
            numbers = [int(field) for field in fields[3:13]]
            window = Window(int(fields[0]), int(fields[1]), fields[2], *numbers[:5], *map(bool, numbers[5:8]), *numbers[8:],
                            fields[13], [])
            del road[window.depth:]
            (road[-1].children if road else tops).append(window)
            road.append(window)
        raise AssertionError("window_watch has ended")

    def see(self, title):
        return next((window for window in self.windows() if window.text == title), None)

    def wait(self, condition, what):
        """What the condition gives once that is true."""
        end = time.monotonic() + PATIENCE
        while True:
            found = condition()
            if found:
                return found
            if time.monotonic() > end:
                raise AssertionError(f"waited in vain for {what}")
            time.sleep(0.02)

    def wait_for(self, title, id=None, that=lambda window: True):
        """The window of this title or a control in it, once it is there, visible, and as wanted. It must look the same
        twice: a new window is still moved by the window manager."""
        last = None

        def look():
            nonlocal last
            window, before = self.see(title), last
            last = window
            found = window and (window.get(id) if id is not None else window)
            return found if found and found.visible and window == before and that(found) else None
        return self.wait(look, f"{title!r}" + (f" to show {id} as wanted" if id is not None else ""))

    def wait_gone(self, title):
        self.wait(lambda: self.see(title) is None, f"{title!r} to go")

    def picture(self, window, file):
        """Its inside, and what may hang out of that. The pointer is not on it."""
        self.run("xdotool", "mousemove", "1279", "899")
        width, height = window.right - window.left, window.bottom - window.top
        self.run("import", "-window", "root", "-crop", f"{width}x{height}+{window.left}+{window.top}", "+repage", "-strip",
                 str(file))

    # ---- Hands

    def click_at(self, x, y):
        self.run("xdotool", "mousemove", str(x), str(y), "click", "1")

    def click(self, window):
        self.click_at((window.left + window.right) // 2, (window.top + window.bottom) // 2)

    def keys(self, *names):
        self.run("xdotool", "key", "--clearmodifiers", *names)

    def type(self, text):
        self.run("xdotool", "type", "--", text)

    def drag(self, window, dx, dy):
        """By its caption, which is the window manager's."""
        x, y = window.left + 60, window.top - 8
        self.run("xdotool", "mousemove", "--sync", str(x), str(y))
        self.run("xdotool", "mousedown", "1")
        for part in (1, 2, 3):
            self.run("xdotool", "mousemove", "--sync", str(x + dx * part // 3), str(y + dy * part // 3))
        self.run("xdotool", "mouseup", "1")

    def close_box(self, window):
        """The rightmost button of the caption."""
        self.click_at(window.right - 9, window.top - 10)

    def dropped_list(self):
        return next((window for window in self.windows() if window.kind == "ComboLBox" and window.text), None)

    def pick(self, title, id, row):
        """Drops a list down and clicks the row with this text."""
        before = self.wait_for(title, id)
        self.click(before)
        rows = self.wait(self.dropped_list, "a list to drop down")
        names = rows.text.rstrip("|").split("|")
        index = names.index(row)
        height = (rows.bottom - rows.top) / len(names)
        self.click_at((rows.left + rows.right) // 2, int(rows.top + height * (index + 0.5)))
        self.wait(lambda: not self.dropped_list(), "the list to close")
        self.wait_for(title, id, lambda window: window.text == row)


def difference(one, other, cut=""):
    """How many points of two pictures of one size, or of one area of both, differ by more than a shade, and of how many."""
    done = subprocess.run(["compare", "-metric", "AE", "-fuzz", "12%", f"{one}{cut}", f"{other}{cut}", "null:"],
                          stderr=subprocess.PIPE, check=False)
    if done.returncode > 1:
        raise AssertionError(done.stderr.decode())
    size = subprocess.run(["identify", "-format", "%w %h", f"{one}{cut}"], stdout=subprocess.PIPE, check=True).stdout.split()
    return float(done.stderr.split()[0]), int(size[0]) * int(size[1])
