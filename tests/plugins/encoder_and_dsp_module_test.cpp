#include <cstring>

#include "foundation/qv_text.h"
#include "plugins/dsp_module.h"
#include "plugins/encoder_module.h"
#include "plugins/wrappers.h"

namespace {

class EncoderModule : public testing::Test {
  protected:
    bool Start(std::string_view script) {
        mModule.SetScript(script);
        return mEncoder.Load(mModule.Path().c_str()) && mEncoder.Create(kNoLog);
    }

    const TempFolder mFolder;
    const PlacedModule mModule{mFolder, u"encoder/abc", "scripted_encoder"};
    clQvEncoder mEncoder;
};

// A session as direct encoding makes it: CD audio into out.abc.
struct Session : clEncoderSessionRec {
    Session() : clEncoderSessionRec{} {
        QvFormat cd = {};
        cd.wFormatTag = QV_FORMAT_PCM;
        cd.nChannels = 2;
        cd.nSamplesPerSec = 44100;
        cd.wBitsPerSample = 16;
        std::memcpy(format, &cd, sizeof cd);
        formatPointer = format;
        file = ToQvText(u"out.abc");
        settings = ToQvText(u"q=5");
    }
};

TEST_F(EncoderModule, An_encoding_reaches_the_module_whole) {
    ASSERT_TRUE(Start("extension|.abc\n"));
    clCodecQueryRec query = {};
    EXPECT_TRUE(mEncoder.Get(u"Extension", &query));
    EXPECT_EQ(std::u16string(FromQvText(query.text)), u".abc");
    Session session;
    EXPECT_TRUE(mEncoder.BeginConversion(&session));
    const std::uint8_t samples[] = {1, 2, 3, 4};
    clBlockRec block = {};
    std::memcpy(block.format, session.format, sizeof block.format);
    block.data = samples;
    block.bytes = 4;
    EXPECT_TRUE(mEncoder.EncodeBlock(&block));
    block.data = nullptr;
    block.bytes = 0;
    block.finished = 1;
    EXPECT_TRUE(mEncoder.EncodeBlock(&block));  // an empty last block still reaches it
    EXPECT_TRUE(mEncoder.EndConversion(&session));
    mEncoder.Unload();
    EXPECT_EQ(
        mModule.TakeJournal(),
        "ENC_Create\nENC_Get Extension\nENC_BeginConversion out.abc 'q=5' format 1/2/44100/16 without rates\n"
        "ENC_EncodeBlock 4 sum 10 finished 0 format 1/2/44100/16 without rates\n"
        "ENC_EncodeBlock 0 sum 0 finished 1 format 1/2/44100/16 without rates\nENC_EndConversion "
        "0\nENC_Destroy\n");
}

TEST_F(EncoderModule, Refusals_come_back_as_false) {
    ASSERT_TRUE(Start("get|0\nset|0\nbegin|0\nblock|0\nend|0\n"));
    clCodecQueryRec query = {};
    clBlockRec block = {};
    Session session;
    EXPECT_FALSE(mEncoder.Get(u"Extension", &query));
    EXPECT_FALSE(mEncoder.Set(u"Anything", &query));
    EXPECT_FALSE(mEncoder.BeginConversion(&session));
    EXPECT_FALSE(mEncoder.EncodeBlock(&block));
    EXPECT_FALSE(mEncoder.EndConversion(&session));
}

TEST_F(EncoderModule, Settings_go_in_at_the_panel_and_come_back) {
    ASSERT_TRUE(Start(""));
    mEncoder.ShowConfigBit(4711, 17, -30, u"q=5");
    EXPECT_EQ(std::u16string(mEncoder.RemoveConfigBit(4711)), u"q=5");
    EXPECT_EQ(mModule.TakeJournal(),
              "ENC_Create\nENC_ShowConfigBit 4711 at 17,-30 'q=5'\nENC_RemoveConfigBit 4711\n");
}

TEST_F(EncoderModule, A_panel_may_answer_null) {
    ASSERT_TRUE(Start("panel\n"));
    EXPECT_EQ(mEncoder.RemoveConfigBit(4711), nullptr);
}

TEST_F(EncoderModule, Without_an_instance_no_call_reaches_the_module) {
    ASSERT_TRUE(mEncoder.Load(mModule.Path().c_str()));
    clCodecQueryRec query = {};
    clBlockRec block = {};
    Session session;
    EXPECT_FALSE(mEncoder.Get(u"Extension", &query));
    EXPECT_FALSE(mEncoder.Set(u"Anything", &query));
    EXPECT_FALSE(mEncoder.BeginConversion(&session));
    EXPECT_FALSE(mEncoder.EncodeBlock(&block));
    EXPECT_FALSE(mEncoder.EndConversion(&session));
    mEncoder.ShowConfigBit(1, 0, 0, u"");
    EXPECT_EQ(mEncoder.RemoveConfigBit(1), nullptr);
    EXPECT_EQ(mModule.TakeJournal(), "");
}

TEST(EffectModule, Settings_go_in_at_the_panel_and_come_back) {
    const TempFolder folder;
    const PlacedModule module(folder, u"DSPs/echo", "scripted_effect", "panel|louder\n");
    clQvDSP effect;
    ASSERT_TRUE(effect.Load(module.Path().c_str()));
    effect.ShowConfigBit(1, 0, 0, u"too early");
    EXPECT_EQ(effect.RemoveConfigBit(1), nullptr);
    ASSERT_TRUE(effect.Create(kNoLog));
    effect.ShowConfigBit(9, 1, 2, u"loud");
    EXPECT_EQ(std::u16string(effect.RemoveConfigBit(9)), u"louder");
    effect.Unload();
    EXPECT_EQ(module.TakeJournal(),
              "DSP_Create\nDSP_ShowConfigBit 9 at 1,2 'loud'\nDSP_RemoveConfigBit 9\nDSP_Destroy\n");
}

TEST(EffectModule, Every_entry_gets_what_it_is_called_with) {
    const TempFolder folder;
    const PlacedModule module(folder, u"DSPs/echo", "scripted_effect", "length|5\nset|0\nafter|0\n");
    clQvDSP effect;
    clCodecQueryRec query = {};
    clEffectSessionRec session = {};
    clBlockRec block = {}, out = {};
    session.settings = ToQvText(u"wet");
    block.finished = 1;
    EXPECT_FALSE(effect.BeginConversion(&session) ||
                 effect.PassAudioBlock(&block, &out));  // nothing is there
    ASSERT_TRUE(effect.Load(module.Path().c_str()) && effect.Create(kNoLog));
    EXPECT_TRUE(effect.Get(u"a", &query));
    EXPECT_FALSE(effect.Set(u"b", &query));
    EXPECT_TRUE(effect.BeginConversion(&session));
    EXPECT_EQ(std::uint64_t{session.lengthMs}, 5u);
    EXPECT_TRUE(effect.PassNonLive(&block));
    EXPECT_TRUE(effect.PassAudioBlock(&block, &out));
    EXPECT_EQ(std::uint32_t{out.finished}, 1u);
    EXPECT_TRUE(effect.EndConversion(&session));
    EXPECT_FALSE(effect.AfterConversion(u"file"));
    effect.Unload();
    EXPECT_EQ(module.TakeJournal(),
              "DSP_Create\nDSP_Get a\nDSP_Set b\nDSP_BeginConversion 'wet' format 0/0/0/0 length 0 wants 0\n"
              "DSP_PassNonLive 0 sum 0 finished 1 format 0/0/0/0\n"
              "DSP_PassAudioBlock 0 sum 0 finished 1 format 0/0/0/0\n"
              "DSP_EndConversion\nDSP_AfterConversion file\nDSP_Destroy\n");
}

}  // namespace
