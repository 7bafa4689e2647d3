"""What every test of the forms stands on: a stage, and a folder with hosts and modules."""
import pathlib
import shutil
import tempfile
import unittest

import stage

ENCODER_FORM, EFFECT_FORM, HOST = "Codec settings", "DSP settings", "A host of settings"
OK, CANCEL, LIST, PANEL = 1, 2, 1001, 2000
ENCODERS = {"AIFF": "", "FLAC": "-compression-level=1", "MP3": "-quality=4", "Ogg Vorbis": "-quality=3", "Opus": "-bitrate=96",
            "Wave": "-bits=24"}
EFFECTS = ["Channels", "Depth", "Fade", "Resample", "Volume"]


class Session:
    """What all tests share: a stage, and a folder of programs with all modules beside them."""
    build, renew, stage, dpi = None, False, None, 0

    @classmethod
    def at(cls, dpi):
        if cls.dpi != dpi:
            cls.close()
            cls.stage, cls.dpi = stage.Stage(cls.build, dpi), dpi
        return cls.stage

    @classmethod
    def close(cls):
        if cls.stage:
            cls.stage.close()
        cls.stage, cls.dpi = None, 0


class Home:
    """A folder with the hosts, for whom modules stand in it."""

    def __init__(self, stage):
        self.stage = stage
        self.folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.folder.name)
        for program in ("tests/forms/forms_host.exe", "examples/settings_host.exe", "tree/Quavermill.dll",
                        "tree/quaver.exe"):
            shutil.copy(Session.build / program, self.path)

    def with_product(self):
        for kind in ("encoder", "DSPs"):
            shutil.copytree(Session.build / "tree" / kind, self.path / kind)
        return self

    def place(self, name, module, script=None, folder="encoder"):
        folder = self.path / folder
        folder.mkdir(exist_ok=True)
        shutil.copy(Session.build / "tests" / module, folder / f"{name}.dll")
        if script is not None:
            (folder / f"{name}.script").write_text(script)

    def run(self, *steps):
        return self.stage.host(self.path / "forms_host.exe", *steps, speaks=True)

    def quaver(self, *arguments):
        """It prints its exit code behind the rest: Wine's own is not always that of the program. What it says on the
        other stream stands in the file errors."""
        (self.path / "quaver.cmd").write_text("@quaver.exe %* 2>errors\r\n@echo %errorlevel%\r\n@exit 0\r\n")
        return self.stage.host(self.path / "quaver.cmd", *arguments)

    def stored(self, *names):
        steps = [word for name in names for word in ("stored", name)]
        return {fields[1]: "".join(fields[2:]) for fields in self.run(*steps).lines()}

    def keep(self, texts):
        self.run(*[word for name, text in texts.items() for word in ("keep", name, text)]).lines()


class OnStage(unittest.TestCase):
    DPI = 96

    def setUp(self):
        self.stage = Session.at(self.DPI)
        self.home = Home(self.stage)
        self.addCleanup(self.home.folder.cleanup)
        self.addCleanup(self.stage.end_hosts)

    def answer(self, host):
        lines = host.lines()
        self.assertEqual(len(lines), 1)
        return lines[0]

    def show(self, kind, name, text, control=PANEL):
        """The host that has the form open, and its panel up."""
        host = self.home.run(kind, name, text)
        self.stage.wait_for(ENCODER_FORM if kind == "encoder" else EFFECT_FORM, control)
        return host

    def ways_to_leave(self, title):
        """All but OK."""
        return {"Cancel": lambda: self.press(title, CANCEL),
                "Escape": lambda: self.stage.keys("Escape"),
                "the close box": lambda: self.stage.close_box(self.stage.see(title))}

    def press(self, title, button):
        self.stage.click(self.stage.wait_for(title, button))
        self.stage.wait_gone(title)
