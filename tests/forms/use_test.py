"""Both forms, panels and the drop list, used with mouse and keys; after each use the result, both texts and what is stored."""
import shutil

import stage
from on_stage import (CANCEL, EFFECT_FORM, EFFECTS, ENCODER_FORM, ENCODERS, HOST, LIST, OK, PANEL, OnStage, Session)


class EncoderForm(OnStage):
    def setUp(self):
        super().setUp()
        self.home.with_product()
        self.home.keep(ENCODERS)

    def change_level(self):
        """From 3 to 4, and the box ticked, by keys alone."""
        self.stage.keys("alt+p", "Down", "alt+v")
        self.stage.wait_for(ENCODER_FORM, PANEL, lambda level: level.value == 4)
        self.stage.wait_for(ENCODER_FORM, PANEL + 2, lambda verify: verify.value == 1)

    def test_enter_takes_what_was_changed_in_the_panel_and_stores_it(self):
        host = self.show("encoder", "FLAC", "-compression-level=3")
        self.change_level()
        self.stage.keys("Return")
        text = "-compression-level=4 -verify=yes"
        self.assertEqual(self.answer(host), ["encoder", "1", "FLAC", text])
        self.assertEqual(self.home.stored("FLAC"), {"FLAC": text})

    def test_an_empty_text_begins_with_what_is_stored(self):
        host = self.show("encoder", "FLAC", "")
        self.stage.wait_for(ENCODER_FORM, PANEL, lambda level: level.value == 1)
        self.press(ENCODER_FORM, OK)
        self.assertEqual(self.answer(host), ["encoder", "1", "FLAC", "-compression-level=1"])

    def test_cancel_escape_and_the_close_box_leave_nothing_and_what_is_stored_stays(self):
        for name, leave in self.ways_to_leave(ENCODER_FORM).items():
            with self.subTest(name):
                host = self.show("encoder", "FLAC", "-compression-level=3")
                self.change_level()
                leave()
                self.assertEqual(self.answer(host), ["encoder", "1", "", ""])
                self.assertEqual(self.home.stored("FLAC"), {"FLAC": "-compression-level=1"})

    def test_each_encoder_shows_its_panel_with_its_stored_text_and_keeps_it(self):
        host = self.show("encoder", "FLAC", "")
        for name in [*reversed(ENCODERS), "FLAC"]:
            self.stage.pick(ENCODER_FORM, LIST, name)
            self.stage.wait_for(ENCODER_FORM, PANEL if name != "AIFF" else 1000)
        self.stage.pick(ENCODER_FORM, LIST, "Opus")
        self.stage.wait_for(ENCODER_FORM, PANEL, lambda rate: rate.text == "96")
        self.press(ENCODER_FORM, OK)
        self.assertEqual(self.answer(host), ["encoder", "1", "Opus", "-bitrate=96"])
        self.assertEqual(self.home.stored(*ENCODERS), ENCODERS)

    def test_what_was_changed_is_stored_once_the_user_goes_to_another_encoder_also_if_it_is_cancelled(self):
        host = self.show("encoder", "FLAC", "-compression-level=3")
        self.change_level()
        self.stage.pick(ENCODER_FORM, LIST, "Wave")
        self.press(ENCODER_FORM, CANCEL)
        self.assertEqual(self.answer(host), ["encoder", "1", "", ""])
        self.assertEqual(self.home.stored("FLAC", "Wave"),
                         {"FLAC": "-compression-level=4 -verify=yes", "Wave": ENCODERS["Wave"]})

    def test_letters_and_arrows_pick_on_the_list_and_tab_goes_on_into_the_panel(self):
        host = self.show("encoder", "FLAC", "")
        self.stage.click(self.stage.see(ENCODER_FORM).get(LIST))
        self.stage.keys("Return")  # the list is shut again, and has the focus
        for key, name in (("m", "MP3"), ("o", "Ogg Vorbis"), ("o", "Opus"), ("Down", "Wave"), ("Home", "AIFF"), ("f", "FLAC")):
            self.stage.keys(key)
            self.stage.wait_for(ENCODER_FORM, LIST, lambda its: its.text == name)
        self.stage.wait_for(ENCODER_FORM, PANEL)
        self.stage.keys("Tab")
        self.stage.wait_for(ENCODER_FORM, PANEL, lambda level: level.focused)
        self.stage.keys("Tab", "Tab", "Tab")
        self.stage.wait_for(ENCODER_FORM, OK, lambda button: button.focused)
        self.stage.keys("space")
        self.assertEqual(self.answer(host), ["encoder", "1", "FLAC", "-compression-level=1"])

    def test_an_encoder_that_is_not_there_shows_nothing(self):
        self.assertEqual(self.answer(self.home.run("encoder", "Nobody", "-text")), ["encoder", "0", "", ""])


class EffectForm(OnStage):
    def setUp(self):
        super().setUp()
        self.home.with_product()
        self.home.keep({name: "" for name in EFFECTS})

    def test_what_is_typed_into_the_panel_comes_with_ok_and_is_not_stored(self):
        host = self.show("effect", "Volume", "-gain=-6")
        self.stage.keys("alt+g")
        self.stage.type("-7.5")
        self.stage.wait_for(EFFECT_FORM, PANEL, lambda gain: gain.text == "-7.5")
        self.press(EFFECT_FORM, OK)
        self.assertEqual(self.answer(host), ["effect", "1", "Volume", "-gain=-7.5"])
        self.assertEqual(self.home.stored("Volume"), {"Volume": ""})

    def test_cancel_escape_and_the_close_box_leave_nothing(self):
        for name, leave in self.ways_to_leave(EFFECT_FORM).items():
            with self.subTest(name):
                host = self.show("effect", "Volume", "-gain=-6")
                leave()
                self.assertEqual(self.answer(host), ["effect", "1", "", ""])

    def test_each_effect_that_is_picked_begins_anew_the_first_one_too(self):
        host = self.show("effect", "Volume", "-gain=-6")
        for name in EFFECTS:
            self.stage.pick(EFFECT_FORM, LIST, name)
            self.stage.wait_for(EFFECT_FORM, PANEL)
        self.stage.wait_for(EFFECT_FORM, PANEL, lambda gain: gain.text == "0")
        self.press(EFFECT_FORM, OK)
        self.assertEqual(self.answer(host), ["effect", "1", "Volume", ""])
        self.assertEqual(self.home.stored(*EFFECTS), {name: "" for name in EFFECTS})

    def test_a_file_that_is_no_effect_is_listed_and_leaves_the_form_without_a_panel(self):
        shutil.copy(Session.build / "tests/modules/text_file.dll", self.home.path / "DSPs/Broken.dll")
        host = self.show("effect", "Volume", "-gain=-6")
        self.stage.pick(EFFECT_FORM, LIST, "Broken")
        self.assertIsNone(self.stage.see(EFFECT_FORM).get(PANEL))
        self.stage.pick(EFFECT_FORM, LIST, "Fade")
        self.stage.wait_for(EFFECT_FORM, PANEL)
        self.stage.pick(EFFECT_FORM, LIST, "Broken")
        self.press(EFFECT_FORM, OK)
        self.assertEqual(self.answer(host), ["effect", "1", "Broken", ""])


class Completion(OnStage):
    TITLE, FIELD = "Completion", 1002

    def begin(self):
        self.host = self.home.run("complete", "Wave|FLAC|Flute|Ogg Vorbis")
        self.stage.wait_for(self.TITLE, LIST, stage.Window.has_focus)

    def expect(self, text):
        self.stage.wait_for(self.TITLE, LIST, lambda its: its.text == text)

    def test_what_is_typed_is_completed_and_enter_accepts_it_before_it_goes_on(self):
        self.begin()
        self.stage.type("fl")
        self.expect("flAC")
        self.stage.type("u")
        self.expect("flute")
        self.stage.keys("Return")
        self.stage.type("s")  # behind the end: what was completed is accepted, and the focus is where it was
        self.expect("flutes")
        self.stage.keys("Return")
        self.stage.wait_for(self.TITLE, self.FIELD, lambda field: field.focused)
        self.press(self.TITLE, OK)
        self.assertEqual(self.answer(self.host), ["complete", "flutes"])

    def test_a_completion_that_nobody_accepts_goes_with_the_focus(self):
        self.begin()
        self.stage.type("og")
        self.expect("ogg Vorbis")
        self.stage.keys("Tab")
        self.expect("og")
        self.press(self.TITLE, OK)
        self.assertEqual(self.answer(self.host), ["complete", "og"])


class PanelOnAHostsWindow(OnStage):
    ENCODER, EFFECT, SHOW, REMOVE, REPORT = range(100, 105)

    def setUp(self):
        super().setUp()
        self.home.with_product()
        self.home.keep(ENCODERS)
        self.host = self.stage.host(self.home.path / "settings_host.exe")

    def press_button(self, button, report):
        self.stage.click(self.stage.wait_for(HOST, button))
        self.stage.wait_for(HOST, self.REPORT, lambda its: its.text == report)

    def test_it_is_shown_used_moved_with_its_window_removed_and_shown_again(self):
        self.press_button(self.SHOW, "Panel: 1 [FLAC] []")
        level = self.stage.wait_for(HOST, PANEL, lambda its: its.value == 1)
        before = self.stage.see(HOST)
        self.stage.drag(before, 150, 90)
        after = self.stage.wait_for(HOST, that=lambda its: its.left >= before.left + 100)
        moved = after.get(PANEL)
        self.assertEqual((moved.left - after.left, moved.top - after.top), (level.left - before.left, level.top - before.top))
        self.stage.keys("alt+p", "Down")
        self.stage.wait_for(HOST, PANEL, lambda its: its.value == 2)
        self.press_button(self.REMOVE, "Removed: 1 [FLAC] [-compression-level=2]")
        self.assertIsNone(self.stage.see(HOST).get(PANEL))
        self.assertEqual(self.home.stored("FLAC"), {"FLAC": "-compression-level=2"})
        self.press_button(self.SHOW, "Panel: 1 [FLAC] [-compression-level=2]")
        self.stage.wait_for(HOST, PANEL, lambda its: its.value == 2)
        self.stage.close_box(self.stage.see(HOST))
        self.host.lines()

    def test_the_form_of_encoders_takes_the_panel_off_first_and_no_encoder_gets_the_text_of_another(self):
        """The panel's text is stored when the panel goes, and that is before the form has another encoder picked."""
        for leave, level, report in ((OK, 2, "Encoder: 1 [Opus] [-bitrate=96]"), (CANCEL, 3, "Encoder: 1 [] []")):
            self.home.keep({"FLAC": f"-compression-level={level - 1}", "Opus": ENCODERS["Opus"]})
            host = self.host if leave == OK else self.stage.host(self.home.path / "settings_host.exe")
            self.press_button(self.SHOW, "Panel: 1 [FLAC] []")
            self.stage.wait_for(HOST, PANEL, lambda its: its.value == level - 1)
            self.stage.keys("alt+p", "Down")
            self.stage.wait_for(HOST, PANEL, lambda its: its.value == level)
            self.stage.click(self.stage.see(HOST).get(self.ENCODER))
            self.stage.wait_for(ENCODER_FORM, PANEL, lambda its: its.value == level)
            self.assertIsNone(self.stage.see(HOST).get(PANEL))
            expected = {"FLAC": f"-compression-level={level}", "Opus": ENCODERS["Opus"]}
            self.assertEqual(self.home.stored("FLAC", "Opus"), expected)
            self.stage.pick(ENCODER_FORM, LIST, "Opus")
            self.press(ENCODER_FORM, leave)
            self.stage.wait_for(HOST, self.REPORT, lambda its: its.text == report)
            self.stage.close_box(self.stage.see(HOST))
            host.lines()
            self.assertEqual(self.home.stored("FLAC", "Opus"), expected)

    def test_the_example_shows_both_forms_and_reads_the_texts(self):
        self.stage.click(self.stage.wait_for(HOST, self.ENCODER))
        self.stage.wait_for(ENCODER_FORM, PANEL)
        self.stage.pick(ENCODER_FORM, LIST, "Opus")
        self.press(ENCODER_FORM, OK)
        self.stage.wait_for(HOST, self.REPORT, lambda its: its.text == "Encoder: 1 [Opus] [-bitrate=96]")
        self.stage.click(self.stage.wait_for(HOST, self.EFFECT))
        self.stage.wait_for(EFFECT_FORM, PANEL)
        self.press(EFFECT_FORM, CANCEL)
        self.stage.wait_for(HOST, self.REPORT, lambda its: its.text == "Effect: 1 [] []")
        self.stage.close_box(self.stage.see(HOST))
        self.host.lines()


class Leaks(OnStage):
    def test_opened_500_times_a_form_leaves_no_object_and_no_window_behind(self):
        self.home.with_product()
        for kind, name in (("encoder", "FLAC"), ("effect", "Volume")):
            with self.subTest(kind):
                _, shown, drawing, user, windows = map(self.number, self.answer(self.home.run("cycles", kind, name, "500")))
                self.assertEqual((shown, windows), (500, 0))
                self.assertLessEqual(drawing, 0)
                self.assertLess(user, 50)  # these are counted for all programs of the screen

    @staticmethod
    def number(text):
        return int(text) if text.lstrip("-").isdigit() else text
