// quaver settings without a form: what is stored for an encoder, read and
// written.
#include "endtoend/quaver_run.h"

namespace {

// On Windows quaver has the user's own store: what stood there stands there
// again in the end.
class QuaverSettings : public QuaverRun {
  protected:
    QuaverSettings() : mFormer(Printed()) {}
    ~QuaverSettings() override { Quaver({u"settings", u"Wave", u"--set", mFormer}).Finish(); }

    static std::u16string Printed() {
        Quaver quaver({u"settings", u"Wave", u"--print"});
        EXPECT_EQ(quaver.Finish(), kDone);
        const std::string line = quaver.Output();
        EXPECT_TRUE(line.ends_with("\n")) << line;
        return std::u16string(line.begin(), line.end() - 1);
    }

  private:
    const std::u16string mFormer;
};

}  // namespace

TEST_F(QuaverSettings, Are_stored_and_printed) {
    for (const char16_t* text : {u"bits=24", u"", u"a \"quoted\" = text; with 'all' that", u"bits=16"}) {
        Expect({u"settings", u"Wave", u"--set", text}, kDone);
        EXPECT_EQ(output, std::string(text, text + std::char_traits<char16_t>::length(text)) + "\n");
        EXPECT_EQ(errors, "");
        EXPECT_EQ(Printed(), text);
    }
}

TEST_F(QuaverSettings, Are_those_of_an_encoder_however_its_name_is_written) {
    Expect({u"settings", u"WAVE", u"-s", u"bits=8"}, kDone);
    EXPECT_EQ(Printed(), u"bits=8");
    Expect({u"settings", u"wave", u"-p"}, kDone);
    EXPECT_EQ(output, "bits=8\n");
}

TEST_F(QuaverSettings, Of_nobody_are_refused) {
    for (const Arguments& arguments : {Arguments{u"settings", u"Nobody"},
                                       {u"settings", u"Nobody", u"--set", u"a"},
                                       {u"settings", u"Nobody", u"--print"}})
        Expect(arguments, kFailed, "There is no encoder 'Nobody'.");
    Expect({u"settings", u"--dsp", u"Nobody"}, kFailed, "There is no effect 'Nobody'.");
    EXPECT_EQ(output, "");
}
