"""Tab and mnemonics, on both forms and with a panel on a host's own window."""
import re

from on_stage import (CANCEL, EFFECT_FORM, EFFECTS, ENCODER_FORM, ENCODERS, HOST, LIST, OK, PANEL, OnStage)
from stage import Window

# The rows of each panel that can be used, with their letters, as the panel comes up.
ROWS = {"AIFF": {}, "FLAC": {0: "p", 1: "f", 2: "v"}, "MP3": {0: "p", 1: "m", 2: "q", 4: "c", 5: "a"},
        "Ogg Vorbis": {0: "m", 1: "q"}, "Opus": {0: "b", 1: "m", 2: "p", 3: "s"}, "Wave": {0: "d", 1: "h"},
        "Channels": {0: "n"}, "Depth": {0: "d", 1: "t"}, "Fade": {0: "i", 1: "o", 2: "s"}, "Resample": {0: "s"},
        "Volume": {0: "g"}}


class Keys(OnStage):
    def setUp(self):
        super().setUp()
        self.home.with_product()
        self.home.keep(ENCODERS)

    def expect_focus(self, title, id):
        self.stage.wait_for(title, id, Window.has_focus)

    def walk(self, title, ids, key):
        for id in ids:
            self.stage.keys(key)
            self.expect_focus(title, id)

    def walk_round(self, title, ids):
        """From the last one round to it again, and the same way back."""
        self.walk(title, ids, "Tab")
        self.walk(title, [*reversed(ids[:-1]), ids[-1]], "shift+Tab")

    def follow_letters(self, title, letters):
        for row, letter in letters.items():
            self.stage.keys(f"alt+{letter}")
            self.expect_focus(title, PANEL + row)

    def use_form(self, title, kind, names):
        host = self.show(kind, names[-1], "", LIST)
        self.expect_focus(title, OK)
        self.walk(title, [CANCEL, LIST], "Tab")
        for name in names:
            with self.subTest(name):
                self.stage.pick(title, LIST, name)
                self.expect_focus(title, LIST)
                self.walk_round(title, [*(PANEL + row for row in ROWS[name]), OK, CANCEL, LIST])
                self.follow_letters(title, ROWS[name])
        self.stage.keys("Escape")
        self.assertEqual(self.answer(host), [kind, "1", "", ""])

    def test_on_the_form_of_encoders(self):
        self.use_form(ENCODER_FORM, "encoder", list(ENCODERS))

    def test_on_the_form_of_effects(self):
        self.use_form(EFFECT_FORM, "effect", EFFECTS)

    def test_a_letter_ticks_a_box_and_leaves_the_row_above_it_as_it_was(self):
        host = self.show("encoder", "FLAC", "")
        self.stage.keys("alt+v")
        self.stage.wait_for(ENCODER_FORM, PANEL + 2, lambda verify: verify.value == 1 and verify.has_focus())
        self.stage.keys("alt+v", "Return")
        self.assertEqual(self.answer(host), ["encoder", "1", "FLAC", ENCODERS["FLAC"]])

    def test_a_row_that_does_not_count_is_stepped_over_until_it_does(self):
        host = self.show("encoder", "Ogg Vorbis", "")
        self.stage.keys("alt+m", "Down")
        self.stage.wait_for(ENCODER_FORM, PANEL + 2, lambda rate: rate.enabled)
        self.walk_round(ENCODER_FORM, [PANEL + 2, OK, CANCEL, LIST, PANEL])
        self.stage.keys("alt+b")
        self.expect_focus(ENCODER_FORM, PANEL + 2)
        self.stage.keys("alt+m", "Up")
        self.stage.wait_for(ENCODER_FORM, PANEL + 1, lambda quality: quality.enabled)
        self.walk_round(ENCODER_FORM, [PANEL + 1, OK, CANCEL, LIST, PANEL])
        self.stage.keys("Return")
        self.assertEqual(self.answer(host), ["encoder", "1", "Ogg Vorbis", ENCODERS["Ogg Vorbis"]])

    def test_on_a_hosts_window(self):
        """The panel comes behind the host's own buttons, as it was made after them. Theirs are letters that no panel
        has."""
        first, second, show, remove = range(100, 104)
        host = self.stage.host(self.home.path / "settings_host.exe")
        self.stage.click(self.stage.wait_for(HOST, show))
        self.stage.wait_for(HOST, PANEL)
        self.expect_focus(HOST, show)
        self.walk_round(HOST, [remove, *(PANEL + row for row in ROWS["FLAC"]), first, second, show])
        self.follow_letters(HOST, ROWS["FLAC"])
        window = self.stage.see(HOST)
        letters = re.findall("&(.)", " ".join(window.get(button).text.lower() for button in range(first, remove + 1)))
        self.assertEqual(len(set(letters)), 4)
        self.assertFalse(set(letters) & {letter for name in ENCODERS for letter in ROWS[name].values()})
        self.stage.keys(f"alt+{letters[-1]}")
        self.stage.wait(lambda: not self.stage.see(HOST).get(PANEL), "the panel to go")
        self.stage.close_box(window)
        host.lines()
