// quaver settings where no form can come up.
#include "endtoend/quaver_run.h"

using QuaverWithoutForms = QuaverRun;

TEST_F(QuaverWithoutForms, Prints_what_is_stored_for_an_encoder_instead) {
    Expect({u"settings", u"Wave", u"--set", u"bits=24"}, kDone);
    Expect({u"settings", u"Wave"}, kDone);
    EXPECT_EQ(output, "bits=24\n");
    EXPECT_EQ(errors, "");
    Expect({u"settings", u"Wave", u"--start", u"bits=8"}, kDone);
    EXPECT_EQ(output, "bits=8\n");
    Expect({u"settings", u"Wave", u"--print"}, kDone);
    EXPECT_EQ(output, "bits=8\n");
}

TEST_F(QuaverWithoutForms, Has_no_settings_of_an_effect) {
    Expect({u"settings", u"--dsp", u"Fade"}, kFailed, "There are no forms here");
    EXPECT_EQ(output, "");
}
