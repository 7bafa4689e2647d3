"""run.py BUILD [--pictures] [unittest's own words]: uses the forms and panels of a Windows build as a user does. With
--pictures what is seen becomes what the next runs compare with, docs/pictures/forms."""
import pathlib
import sys
import unittest

import stage
from keys_test import Keys  # noqa: F401, what is here is run
from misbehaving_test import MisbehavingEffects, MisbehavingEncoders  # noqa: F401
from on_stage import Session
from pictures_test import LayoutAt120, LayoutAt192, Pictures, PicturesAt144  # noqa: F401
from quaver_test import QuaverSettings  # noqa: F401
from use_test import Completion, EffectForm, EncoderForm, Leaks, PanelOnAHostsWindow  # noqa: F401


def main():
    stage.require_tools()
    words = sys.argv[2:]
    Session.build = pathlib.Path(sys.argv[1]).resolve()
    Session.renew = "--pictures" in words
    try:
        chosen = ["forms", *[word for word in words if word != "--pictures"]]
        program = unittest.main(argv=chosen, exit=False, warnings="ignore")
    finally:
        Session.close()
    result = program.result
    print(f"{max(0, result.testsRun - len(result.failures) - len(result.errors))} tests passed")
    sys.exit(0 if result.wasSuccessful() and result.testsRun and not result.skipped else 1)


main()
