"""quaver settings: the form at the command line, the words on both streams and the exit code."""
from on_stage import EFFECT_FORM, ENCODER_FORM, ENCODERS, LIST, OK, PANEL, OnStage


class QuaverSettings(OnStage):
    def setUp(self):
        super().setUp()
        self.home.with_product()
        self.home.keep({**ENCODERS, "Volume": ""})

    def expect(self, host, code, output, errors):
        self.assertEqual([line for fields in host.lines() for line in fields], [*output, str(code)])
        self.assertEqual((self.home.path / "errors").read_text().splitlines(), errors)

    def show_quaver(self, form, *arguments):
        host = self.home.quaver("settings", *arguments)
        self.stage.wait_for(form, PANEL)
        return host

    def test_ok_prints_what_was_changed_and_stores_it(self):
        host = self.show_quaver(ENCODER_FORM, "flac")
        self.stage.keys("alt+p", "Down", "alt+v")
        self.stage.wait_for(ENCODER_FORM, PANEL, lambda level: level.value == 2)
        self.stage.wait_for(ENCODER_FORM, PANEL + 2, lambda verify: verify.value == 1)
        self.press(ENCODER_FORM, OK)
        text = "-compression-level=2 -verify=yes"
        self.expect(host, 0, [text], [])
        self.assertEqual(self.home.stored("FLAC"), {"FLAC": text})

    def test_another_encoder_is_named_before_its_text(self):
        host = self.show_quaver(ENCODER_FORM, "FLAC", "--start", "-compression-level=3")
        self.stage.wait_for(ENCODER_FORM, PANEL, lambda level: level.value == 3)
        self.stage.pick(ENCODER_FORM, LIST, "Opus")
        self.stage.wait_for(ENCODER_FORM, PANEL, lambda rate: rate.text == "96")
        self.press(ENCODER_FORM, OK)
        self.expect(host, 0, ["-bitrate=96"], ["Settings of 'Opus':"])

    def test_a_form_that_is_left_without_ok_prints_nothing_and_says_so(self):
        for name, leave in self.ways_to_leave(ENCODER_FORM).items():
            with self.subTest(name):
                host = self.show_quaver(ENCODER_FORM, "FLAC")
                self.stage.keys("alt+p", "Down")
                self.stage.wait_for(ENCODER_FORM, PANEL, lambda level: level.value == 2)
                leave()
                self.expect(host, 4, [], ["Cancelled."])
                self.assertEqual(self.home.stored("FLAC"), {"FLAC": ENCODERS["FLAC"]})

    def test_dsp_shows_the_form_of_effects_and_nothing_is_stored(self):
        host = self.show_quaver(EFFECT_FORM, "--dsp", "Volume", "--start", "-gain=-6")
        self.stage.wait_for(EFFECT_FORM, PANEL, lambda gain: gain.text == "-6")
        self.stage.keys("alt+g", "Up")
        self.stage.wait_for(EFFECT_FORM, PANEL, lambda gain: gain.text == "-5.5")
        self.press(EFFECT_FORM, OK)
        self.expect(host, 0, ["-gain=-5.5"], [])
        self.assertEqual(self.home.stored("Volume"), {"Volume": ""})

    def test_another_effect_is_named_too_and_escape_cancels(self):
        host = self.show_quaver(EFFECT_FORM, "--dsp", "Volume")
        self.stage.pick(EFFECT_FORM, LIST, "Fade")
        self.stage.keys("alt+s", "Down")
        self.stage.wait_for(EFFECT_FORM, PANEL + 2, lambda shape: shape.value == 1)
        self.press(EFFECT_FORM, OK)
        self.expect(host, 0, ["-shape=cosine"], ["Settings of 'Fade':"])
        host = self.show_quaver(EFFECT_FORM, "--dsp", "Volume")
        self.stage.keys("Escape")
        self.expect(host, 4, [], ["Cancelled."])
