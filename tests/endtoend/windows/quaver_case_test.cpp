// File names know no case here.
#include "endtoend/program.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"

using QuaverOnWindows = Stage;

TEST_F(QuaverOnWindows, Refuses_a_destination_that_is_the_source_but_for_its_case) {
    const std::string content = Recording(5000);
    const std::u16string source = files.Write(u"in.wav", content);
    Quaver quaver({u"convert", u"-f", source, files / u"IN.WAV"});
    EXPECT_EQ(quaver.Finish(), 3u);
    EXPECT_NE(quaver.Errors().find("Source and destination are the same file."), std::string::npos)
        << quaver.Errors();
    EXPECT_EQ(files.Read(u"in.wav"), content);
}

TEST_F(QuaverOnWindows, Knows_an_extension_in_capitals) {
    const std::u16string source = files.Write(u"in.WAV", Recording(5000));
    Quaver quaver({u"convert", source, files / u"OUT.Wav"});
    EXPECT_EQ(quaver.Finish(), 0u) << quaver.Errors();
    EXPECT_TRUE(HaveSameAudio(source, files / u"OUT.Wav"));
}
