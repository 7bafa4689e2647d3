"""How both forms look with each panel, at several resolutions."""
import shutil

import stage
from on_stage import (CANCEL, EFFECT_FORM, EFFECTS, ENCODER_FORM, ENCODERS, HOST, LIST, PANEL, OnStage, Session)

PICTURES = stage.ROOT / "docs/pictures/forms"
SHOW = 102  # the example's button


class Pictures(OnStage):
    """What the forms look like with each panel, held against the pictures that somebody has looked at. Fonts are drawn a
    little otherwise elsewhere, so some points may differ."""
    WHOLE, FIELD, ROWS = 1 / 100, 1 / 30, 1 / 200  # of all points; in the latter two an icon less is more than that
    HAS_PICTURES = True

    def setUp(self):
        super().setUp()
        self.home.with_product()
        self.home.keep(ENCODERS)
        self.seen = self.home.path

    def compare(self, name, area=None, most=WHOLE):
        if not self.HAS_PICTURES:
            return
        file = f"{name}-{self.DPI}.png"
        if Session.renew:
            PICTURES.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.seen / file, PICTURES)
        cut = self.cut(area) if area else ""
        differing, points = stage.difference(PICTURES / file, self.seen / file, cut)
        self.assertLessEqual(differing, points * most, f"{file} {cut}")

    def cut(self, area):
        size, place = (area.right - area.left, area.bottom - area.top), (area.left - self.form.left, area.top - self.form.top)
        return "[{}x{}+{}+{}]".format(*size, *place)

    def check_layout(self, form):
        """Nothing lies outside of what holds it, over its neighbour, or is narrower than its text."""
        for parent in form.all():
            parts = [part for part in parent.children if part.visible and part.kind != "ComboLBox"]
            if parent.kind == "ComboBox":
                continue
            for i, part in enumerate(parts):
                self.assertTrue(self.holds(parent, part), f"{part} reaches out of {parent}")
                for other in parts[i + 1:]:
                    self.assertFalse(self.overlap(part, other), f"{part} lies over {other}")
                needed = part.needed + self.beside_text(part)
                self.assertLessEqual(needed, part.right - part.left, f"{part} is too narrow")

    @staticmethod
    def holds(parent, part):
        """Dialog units are rounded for each edge by itself: a pixel doesn't count."""
        return (parent.left <= part.left and part.right <= parent.right + 1 and parent.top <= part.top
                and part.bottom <= parent.bottom + 1)

    @staticmethod
    def overlap(one, other):
        if "msctls_updown32" in (one.kind, other.kind):
            return False  # stands within its field, as the system puts it
        return one.left < other.right and other.left < one.right and one.top < other.bottom and other.top < one.bottom

    @staticmethod
    def beside_text(part):
        height = part.bottom - part.top
        return {"ComboBox": height, "Button": height * 3 // 2}.get(part.kind, 0)

    def look_at(self, title, kind, names):
        host = self.show(kind, names[-1], "", LIST)
        for name in names:
            self.stage.pick(title, LIST, name)
            self.form = self.stage.wait_for(title, that=lambda form: form.get(LIST).focused)
            self.check_layout(self.form)
            picture = f"{kind}-{name.lower().replace(' ', '-')}"
            self.stage.picture(self.form, self.seen / f"{picture}-{self.DPI}.png")
            with self.subTest(picture):
                self.compare(picture)
                self.compare(picture, self.form.get(LIST), self.FIELD)
        self.press(title, CANCEL)
        host.lines()

    def test_the_form_of_encoders_with_each_panel(self):
        self.look_at(ENCODER_FORM, "encoder", list(ENCODERS))

    def test_the_form_of_effects_with_each_panel(self):
        self.look_at(EFFECT_FORM, "effect", EFFECTS)

    def test_the_dropped_list_with_its_icons(self):
        host = self.show("encoder", "FLAC", "")
        self.form = self.stage.see(ENCODER_FORM)
        self.stage.click(self.form.get(LIST))
        rows = self.stage.wait(self.stage.dropped_list, "a list to drop down")
        self.stage.picture(self.form, self.seen / f"encoder-list-{self.DPI}.png")
        self.compare("encoder-list")
        self.compare("encoder-list", rows, self.ROWS)
        self.stage.keys("Escape", "Escape")
        host.lines()

    def test_a_panel_on_a_hosts_window(self):
        host = self.stage.host(self.home.path / "settings_host.exe")
        self.stage.click(self.stage.wait_for(HOST, SHOW))
        self.stage.wait_for(HOST, PANEL)
        self.form = self.stage.see(HOST)
        self.stage.picture(self.form, self.seen / f"host-{self.DPI}.png")
        self.compare("host")
        self.stage.close_box(self.form)
        host.lines()


class PicturesAt144(Pictures):
    DPI = 144


class LayoutAt120(Pictures):
    DPI, HAS_PICTURES = 120, False


class LayoutAt192(Pictures):
    DPI, HAS_PICTURES = 192, False
