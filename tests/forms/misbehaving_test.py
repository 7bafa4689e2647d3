"""Modules that do what they should not, on both forms."""
from on_stage import EFFECT_FORM, ENCODER_FORM, LIST, OK, OnStage


class MisbehavingEncoders(OnStage):
    KIND, FORM, FOLDER = "encoder", ENCODER_FORM, "encoder"
    PICKED_AGAIN = "text"  # what one begins with whose text was "text" when the user left it
    LONG, BUTTON = "x" * 100_000, 5000

    def setUp(self):
        super().setUp()
        scripts = {"Echo": "extension|.e\n", "Long": f"extension|.l\npanel|{self.LONG}\n", "Null": "extension|.n\npanel\n",
                   "Refusing": "extension|.r\n"}
        for name, script in scripts.items():
            self.home.place(name, f"modules/scripted_{self.KIND}.dll", script, self.FOLDER)
        self.home.place("Gone", f"forms/gone_panel_{self.KIND}.dll", folder=self.FOLDER)
        self.old = {name: "old" for name in (*scripts, "Gone")}
        self.home.keep(self.old)

    def refuse(self):
        """What is no encoder from the beginning would not be listed."""
        (self.home.path / self.FOLDER / "Refusing.script").write_text("create|0\n")

    def show(self, name, control=OK):
        return super().show(self.KIND, name, "text", control)

    def expect(self, host, name, text, **stored):
        self.press(self.FORM, OK)
        self.assertEqual(self.answer(host), [self.KIND, "1", name, text])
        self.check_stored({name: text, **stored})

    def check_stored(self, stored):
        self.assertEqual(self.home.stored(*self.old), {**self.old, **stored})

    def test_a_null_text_is_an_empty_one(self):
        self.expect(self.show("Null"), "Null", "")

    def test_a_text_of_any_length_is_handed_on(self):
        self.expect(self.show("Long"), "Long", self.LONG)

    def test_one_that_does_not_load_once_it_is_picked_leaves_the_form_without_a_panel(self):
        host = self.show("Echo")
        self.refuse()
        self.stage.pick(self.FORM, LIST, "Refusing")
        self.expect(host, "Refusing", "", Echo="text")

    def test_a_panel_that_destroys_its_own_window_takes_nothing_with_it(self):
        for clicked, text in ((True, "gone"), (False, "stood")):
            host = self.show("Gone", self.BUTTON)
            if clicked:
                self.stage.click(self.stage.see(self.FORM).get(self.BUTTON))
                self.stage.wait(lambda: not self.stage.see(self.FORM).get(self.BUTTON), "the panel to go")
            self.expect(host, "Gone", text)

    def test_they_follow_one_another(self):
        host = self.show("Echo")
        self.refuse()
        for name in ("Long", "Null", "Gone", "Refusing", "Gone", "Long", "Echo"):
            self.stage.pick(self.FORM, LIST, name)
        self.expect(host, "Echo", self.PICKED_AGAIN, Long=self.LONG, Null="", Gone="stood", Refusing="")


class MisbehavingEffects(MisbehavingEncoders):
    """Nothing of an effect is stored, and one that is picked begins with an empty text."""
    KIND, FORM, FOLDER = "effect", EFFECT_FORM, "DSPs"
    PICKED_AGAIN = ""

    def check_stored(self, stored):
        super().check_stored({})
