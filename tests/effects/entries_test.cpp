// What the entries of every effect of ours do, whatever the effect.
#define QV_DSP_MODULE
#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <stdexcept>

#include "effects/effect_run.h"
#include "foundation/qv_text.h"
#include "modules/support/module_effect.h"
#include "support/codec/codec_modules.h"

namespace {

enum class Trouble { none, memory, other, refusal };
Trouble gTrouble = Trouble::none;

bool Act() {
    if (gTrouble == Trouble::memory) throw std::bad_alloc();
    if (gTrouble == Trouble::other) throw std::runtime_error("anything");
    return gTrouble == Trouble::none;
}

// Makes its audio mono and twice as long, and wants all of it first unless it has had that.
class TroubledEffect : public clModuleEffect {
  public:
    explicit TroubledEffect(const clModuleLog& log) : clModuleEffect(log, u"Troubled") {}
    bool AfterConversion(const char16_t* file) override { return Act() && XString(u"f") == file; }

  private:
    XString Plan(clSettings&, clEffectAudio& audio) override {
        if (!Act()) return XString(u"not today");
        audio.format.Format.nChannels = 1;
        audio.lengthMs *= 2;
        audio.wantsAllFirst = !audio.hadAllFirst;
        return XString();
    }
    bool Look(const clEffectBlock&) override { return Act(); }
    bool Change(const clEffectBlock& in, clEffectBlock* out) override { return *out = in, Act(); }
    bool Complete() override { return Act(); }
};

class Entries : public testing::Test {
  protected:
    Entries() {
        session.settings = ToQvText(u"");
        session.lengthMs = 7;
        const QvFormatExtensible format = SampleFormat(16, false);
        std::memcpy(session.format, &format, sizeof session.format);
    }
    ~Entries() override { gTrouble = Trouble::none; }

    int Begin(QvInstance instance) {
        clEffectSessionRec copy = session;
        return DSP_BeginConversion(instance, &copy);
    }
    int Pass(QvInstance instance) {
        clBlockRec in{}, out{};
        return DSP_PassAudioBlock(instance, &in, &out);
    }
    int Look(QvInstance instance) {
        clBlockRec in{};
        return DSP_PassNonLive(instance, &in);
    }

    // Runs `call` with each kind of exception, which must come out as 0 and one line.
    template <class Call>
    void ExpectCaught(const char* what, Call call) {
        const std::pair<Trouble, std::u16string> rows[] = {
            {Trouble::memory, u"not enough memory\r\n"},
            {Trouble::other, u"an unexpected failure inside the module\r\n"}};
        for (const auto& [trouble, line] : rows) {
            gTrouble = trouble;
            EXPECT_EQ(call(), 0) << what;
            gTrouble = Trouble::none;
            EXPECT_EQ(log.TakeErrors(), line) << what;
        }
    }

    LogFiles log;
    const QvLog record = log.Record();
    clEffectSessionRec session{};
};

}  // namespace

std::unique_ptr<clModuleEffect> MakeEffect(const clModuleLog& log) {
    return Act() ? std::make_unique<TroubledEffect>(log) : nullptr;
}

TEST_F(Entries, of_an_effect_hand_the_session_through) {
    const QvInstance instance = DSP_Create(&record);
    ASSERT_EQ(DSP_BeginConversion(instance, &session), 1);
    QvFormat answered;
    std::memcpy(&answered, session.format, sizeof answered);
    EXPECT_EQ(answered.nChannels, 1);
    EXPECT_EQ(ValueOf(session.lengthMs), 14u);
    EXPECT_EQ(ValueOf(session.wants), std::uint32_t{QV_EFFECT_WANTS_ALL_FIRST});
    EXPECT_EQ(Look(instance), 1);
    EXPECT_EQ(DSP_EndConversion(instance, &session), 1);
    session.wants = QV_EFFECT_HAD_ALL_FIRST;
    ASSERT_EQ(DSP_BeginConversion(instance, &session), 1);
    EXPECT_EQ(ValueOf(session.wants), 0u);
    EXPECT_EQ(DSP_AfterConversion(instance, ToQvText(u"f")), 1);
    EXPECT_EQ(DSP_AfterConversion(instance, ToQvText(u"g")), 0);
    DSP_Destroy(instance);
}

TEST_F(Entries, of_an_effect_let_no_exception_out_and_fail_the_run) {
    ExpectCaught("Create", [&] { return static_cast<int>(DSP_Create(&record)); });
    const QvInstance instance = DSP_Create(&record);
    ExpectCaught("Begin", [&] { return Begin(instance); });
    EXPECT_EQ(DSP_EndConversion(instance, &session), 0);
    const auto fails = [&](const char* what, auto call) {
        ExpectCaught(what, [&] {
            const Trouble trouble = gTrouble;
            gTrouble = Trouble::none;
            EXPECT_EQ(Begin(instance), 1);
            gTrouble = trouble;
            EXPECT_EQ(call(), 0) << what;
            gTrouble = Trouble::none;
            return DSP_EndConversion(instance, &session);
        });
    };
    fails("Pass", [&] { return Pass(instance); });
    fails("Look", [&] { return Look(instance); });
    fails("End", [&] { return DSP_EndConversion(instance, &session); });
    ExpectCaught("After", [&] { return DSP_AfterConversion(instance, ToQvText(u"f")); });
    DSP_Destroy(instance);
}

TEST_F(Entries, of_an_effect_refuse_what_makes_no_sense) {
    const QvInstance instance = DSP_Create(&record);
    EXPECT_EQ(Pass(instance), 0);
    EXPECT_EQ(Look(instance), 0);
    EXPECT_EQ(DSP_EndConversion(instance, &session), 0);
    EXPECT_EQ(DSP_BeginConversion(instance, nullptr), 0);
    ASSERT_EQ(Begin(instance), 1);
    clBlockRec block{};
    EXPECT_EQ(DSP_PassAudioBlock(instance, &block, nullptr), 0);
    EXPECT_EQ(DSP_PassAudioBlock(instance, nullptr, &block), 0);
    EXPECT_EQ(DSP_PassNonLive(instance, nullptr), 0);
    EXPECT_EQ(DSP_AfterConversion(instance, nullptr), 0);
    clCodecQueryRec query{};
    EXPECT_EQ(DSP_Get(instance, ToQvText(u"Extension"), &query), 0);
    EXPECT_EQ(DSP_Set(instance, ToQvText(u"IDTags"), &query), 0);
    EXPECT_EQ(DSP_RemoveConfigBit(instance, 0), nullptr);
    DSP_ShowConfigBit(instance, 0, 0, 0, nullptr);
    EXPECT_TRUE(XString(u"") == FromQvText(DSP_RemoveConfigBit(instance, 0)));
    EXPECT_EQ(DSP_RemoveConfigBit(instance, 0), nullptr);
    DSP_ShowConfigBit(0, 0, 0, 0, nullptr);
    EXPECT_EQ(DSP_RemoveConfigBit(0, 0), nullptr);
    DSP_Destroy(instance);
    DSP_Destroy(0);
    EXPECT_EQ(Begin(0) + Pass(0) + Look(0) + DSP_EndConversion(0, &session), 0);
    EXPECT_EQ(log.TakeErrors(), u"");
}

TEST_F(Entries, of_an_effect_report_a_refusal_under_its_name) {
    const QvInstance instance = DSP_Create(&record);
    gTrouble = Trouble::refusal;
    EXPECT_EQ(Begin(instance), 0);
    EXPECT_EQ(log.TakeErrors(), u"Troubled: not today\r\n");
    DSP_Destroy(instance);
}
