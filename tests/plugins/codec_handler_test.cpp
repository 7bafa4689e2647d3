#include "plugins/codec_handler.h"

#include "modules/module_home.h"
#include "platform/names.h"
#include "plugins/wrappers.h"
#include "support/wide_text.h"

namespace {

class CodecHandler : public testing::Test {
  protected:
    bool Try(const PlacedModule& module, const char16_t* extension) {
        return clQvCodecHandler::TryDecoderFile(module.Path().c_str(), extension, mDecoder, kNoLog);
    }
    PlacedModule Decoder(std::string_view script) const {
        return PlacedModule(mFolder, u"decoder/abc", "scripted_decoder", script);
    }

    const TempFolder mFolder;
    clQvDecoder mDecoder;
};

TEST_F(CodecHandler, OpenDecoderFile_remembers_what_it_loaded) {
    const PlacedModule module = Decoder("");
    EXPECT_TRUE(clQvCodecHandler::OpenDecoderFile(mDecoder, module.Path().c_str(), u".abc"));
    EXPECT_EQ(Units(mDecoder.RememberedExtension()), u".abc");
    EXPECT_EQ(Units(mDecoder.RememberedPath()), module.Path());
    EXPECT_EQ(mDecoder.Instance(), 0u);
}

TEST_F(CodecHandler, OpenDecoderFile_replaces_the_module_before) {
    const PlacedModule first = Decoder("");
    const PlacedModule second(mFolder, u"decoder/def", "scripted_decoder", "");
    ASSERT_TRUE(clQvCodecHandler::OpenDecoderFile(mDecoder, first.Path().c_str(), u".abc"));
    ASSERT_TRUE(clQvCodecHandler::CreateInstance(mDecoder, kNoLog));
    EXPECT_TRUE(clQvCodecHandler::OpenDecoderFile(mDecoder, second.Path().c_str(), u".def"));
    EXPECT_EQ(first.TakeJournal(), "Create\nDestroy\n");
    EXPECT_EQ(Units(mDecoder.RememberedPath()), second.Path());
}

TEST_F(CodecHandler, OpenDecoderFile_takes_what_the_wrapper_remembers) {
    const PlacedModule module = Decoder("");
    ASSERT_TRUE(clQvCodecHandler::OpenDecoderFile(mDecoder, module.Path().c_str(), u".abc"));
    EXPECT_TRUE(clQvCodecHandler::OpenDecoderFile(mDecoder, mDecoder.RememberedPath(),
                                                  mDecoder.RememberedExtension()));
    EXPECT_EQ(Units(mDecoder.RememberedExtension()), u".abc");
    EXPECT_EQ(Units(mDecoder.RememberedPath()), module.Path());
}

TEST_F(CodecHandler, OpenDecoderFile_that_fails_remembers_nothing) {
    for (const char* module : {"text_file", "empty_file", "decoder_without_DeleteATag", "whole_encoder"}) {
        SCOPED_TRACE(module);
        ASSERT_TRUE(
            clQvCodecHandler::OpenDecoderFile(mDecoder, BuiltModule("whole_decoder").c_str(), u".whole"));
        EXPECT_FALSE(clQvCodecHandler::OpenDecoderFile(mDecoder, BuiltModule(module).c_str(), u".abc"));
        EXPECT_TRUE(mDecoder.RememberedExtension().IsEmpty());
        EXPECT_TRUE(mDecoder.RememberedPath().IsEmpty());
    }
}

TEST_F(CodecHandler, CreateInstance_ends_the_one_before) {
    const PlacedModule module = Decoder("");
    EXPECT_FALSE(clQvCodecHandler::CreateInstance(mDecoder, kNoLog));
    ASSERT_TRUE(clQvCodecHandler::OpenDecoderFile(mDecoder, module.Path().c_str(), u".abc"));
    EXPECT_TRUE(clQvCodecHandler::CreateInstance(mDecoder, kNoLog));
    EXPECT_TRUE(clQvCodecHandler::CreateInstance(mDecoder, kNoLog));
    clQvCodecHandler::DestroyInstance(mDecoder);
    clQvCodecHandler::DestroyInstance(mDecoder);
    EXPECT_TRUE(mDecoder.HasModule());
    EXPECT_EQ(module.TakeJournal(), "Create\nDestroy\nCreate\nDestroy\n");
}

TEST_F(CodecHandler, TryDecoderFile_asks_row_by_row_and_stays_live_on_a_match) {
    const PlacedModule module = Decoder("decodes|.one|One\ndecodes|.two\ndecodes|.three|Three\n");
    EXPECT_TRUE(Try(module, u".two"));  // a row without a description counts
    EXPECT_NE(mDecoder.Instance(), 0u);
    EXPECT_EQ(Units(mDecoder.RememberedExtension()), u".two");
    EXPECT_EQ(Units(mDecoder.RememberedPath()), module.Path());
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nGet Decodes 1\n");
}

TEST_F(CodecHandler, TryDecoderFile_folds_ASCII_letters_only) {
    const struct {
        const char* listed;
        const char16_t* sought;
        bool matches;
    } rows[] = {
        {".ABC", u".abc", true},       {".abc", u".AbC", true}, {".abc", u".ab", false},
        {".ab", u".abc", false},       {".", u".", true},       {".a[", u".a{", false},
        {".IGNORE", u".ignore", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.listed);
        const PlacedModule module = Decoder(std::string("decodes|") + row.listed + "|A test\n");
        EXPECT_EQ(Try(module, row.sought), row.matches);
        mDecoder.Unload();
    }
}

TEST_F(CodecHandler, TryDecoderFile_unloads_what_does_not_match) {
    const PlacedModule module = Decoder("decodes|.one|One\ndecodes|.two|Two\n");
    EXPECT_FALSE(Try(module, u".abc"));
    EXPECT_FALSE(mDecoder.HasModule());
    EXPECT_TRUE(mDecoder.RememberedExtension().IsEmpty());
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nGet Decodes 1\nGet Decodes 2\nDestroy\n");
}

TEST_F(CodecHandler, A_row_without_text_ends_the_list) {
    const PlacedModule module = Decoder("decodes|.one|One\ndecodes\ndecodes|.abc|Behind it\n");
    EXPECT_FALSE(Try(module, u".abc"));
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nGet Decodes 1\nDestroy\n");
}

TEST_F(CodecHandler, TryDecoderFile_passes_over_a_module_that_makes_no_instance) {
    const PlacedModule module = Decoder("create|0\ndecodes|.abc|A test\n");
    EXPECT_FALSE(Try(module, u".abc"));
    EXPECT_FALSE(mDecoder.HasModule());
    EXPECT_EQ(module.TakeJournal(), "Create\n");
}

TEST_F(CodecHandler, TryDecoderFile_passes_over_what_is_no_decoder) {
    for (const char* module : {"text_file", "empty_file", "decoder_without_Close", "whole_effect"}) {
        const XString path = BuiltModule(module).c_str();
        EXPECT_FALSE(clQvCodecHandler::TryDecoderFile(path, u".whole", mDecoder, kNoLog)) << module;
        EXPECT_FALSE(mDecoder.HasModule()) << module;
    }
}

class LoadByName : public testing::Test {
  protected:
    std::u16string PathByName(std::u16string_view place) const {
        return (mHome.Folder() / place) + platform::kNamedModuleExtension;
    }
    std::u16string Trace(bool loaded, bool (*load)(const XLog& log, platform::ModuleHandle self)) {
        Channel channel;
        XLog log;
        log.mTraceOut = channel.WriteEnd();
        XLog::Write(u"start", log, nullptr, true, nullptr);  // whatever line stood open is ended
        EXPECT_EQ(load(log, mHome.Self()), loaded);
        return channel.Text();
    }

    const ModuleHome mHome;
};

TEST_F(LoadByName, The_folder_of_the_kind_beside_the_library_is_taken) {
    const PlacedModule encoder = mHome.Place(u"encoder/same name", "scripted_encoder");
    const PlacedModule effect = mHome.Place(u"DSPs/same name", "scripted_effect");
    clQvEncoder loadedEncoder;
    clQvDSP loadedEffect;
    EXPECT_TRUE(clQvCodecHandler::LoadEncoder(u"same name", loadedEncoder, kNoLog, mHome.Self()));
    EXPECT_TRUE(clQvCodecHandler::LoadDSP(u"same name", loadedEffect, kNoLog, mHome.Self()));
    clQvCodecHandler::DestroyInstance(loadedEncoder);
    EXPECT_EQ(loadedEncoder.Instance(), 0u);
    EXPECT_EQ(encoder.TakeJournal(), "ENC_Create\nENC_Destroy\n");
    EXPECT_EQ(effect.TakeJournal(), "DSP_Create\n");
}

TEST_F(LoadByName, A_load_replaces_what_was_held_before_it_looks_for_the_next) {
    const PlacedModule encoder = mHome.Place(u"encoder/one", "scripted_encoder");
    clQvEncoder loaded;
    ASSERT_TRUE(clQvCodecHandler::LoadEncoder(u"one", loaded, kNoLog, mHome.Self()));
    EXPECT_FALSE(clQvCodecHandler::LoadEncoder(u"none", loaded, kNoLog, mHome.Self()));
    EXPECT_FALSE(loaded.HasModule());
    EXPECT_EQ(encoder.TakeJournal(), "ENC_Create\nENC_Destroy\n");
}

TEST_F(LoadByName, A_module_that_lacks_an_entry_stays_with_the_wrapper_until_the_next_load) {
    const PlacedModule lacking = mHome.Place(u"encoder/lacking", "encoder_without_ENC_Set");
    const PlacedModule encoder = mHome.Place(u"encoder/one", "scripted_encoder");
    clQvEncoder loaded;
    EXPECT_FALSE(clQvCodecHandler::LoadEncoder(u"lacking", loaded, kNoLog, mHome.Self()));
    EXPECT_TRUE(loaded.HasModule());
    EXPECT_EQ(loaded.Instance(), 0u);
    EXPECT_TRUE(clQvCodecHandler::LoadEncoder(u"one", loaded, kNoLog, mHome.Self()));
}

TEST_F(LoadByName, A_module_that_makes_no_instance_is_not_live) {
    const PlacedModule effect = mHome.Place(u"DSPs/echo", "scripted_effect", "create|0\n");
    clQvDSP loaded;
    EXPECT_FALSE(clQvCodecHandler::LoadDSP(u"echo", loaded, kNoLog, mHome.Self()));
    EXPECT_TRUE(loaded.EntriesGood());
    EXPECT_EQ(effect.TakeJournal(), "DSP_Create\n");
}

TEST_F(LoadByName, A_library_that_cannot_tell_its_own_place_loads_nothing_from_the_current_folder) {
    const PlacedModule encoder = mHome.Place(u"encoder/one", "scripted_encoder");
    clQvEncoder loadedEncoder;
    clQvDSP loadedEffect;
    ASSERT_TRUE(clQvCodecHandler::LoadEncoder(u"one", loadedEncoder, kNoLog, mHome.Self()));
    Faulty<platform::GetModuleFileNameW> places;
    Faulty<platform::LoadLibraryW> loads;
    places.FailAlways();
    EXPECT_FALSE(clQvCodecHandler::LoadEncoder(u"one", loadedEncoder, kNoLog, mHome.Self()));
    EXPECT_FALSE(clQvCodecHandler::LoadDSP(u"echo", loadedEffect, kNoLog, mHome.Self()));
    EXPECT_EQ(loads.Calls(), 0);
    EXPECT_FALSE(loadedEncoder.HasModule());  // what was held is gone all the same
    EXPECT_EQ(encoder.TakeJournal(), "ENC_Create\nENC_Destroy\n");
}

TEST_F(LoadByName, The_trace_says_which_file_is_loaded) {
    const PlacedModule encoder = mHome.Place(u"encoder/one", "scripted_encoder");
    EXPECT_EQ(Trace(true,
                    [](const XLog& log, platform::ModuleHandle self) {
                        clQvEncoder loaded;
                        return clQvCodecHandler::LoadEncoder(u"one", loaded, log, self);
                    }),
              u"start\r\n->->  [clQvCodecHandler::LoadEncoder]\r\n  Loading Encoder '" +
                  PathByName(u"encoder/one") + u"'\r\n<-<-  [clQvCodecHandler::LoadEncoder]\r\n");
    const PlacedModule effect = mHome.Place(u"DSPs/echo", "scripted_effect", "create|0\n");
    EXPECT_EQ(Trace(false,
                    [](const XLog& log, platform::ModuleHandle self) {
                        clQvDSP loaded;
                        return clQvCodecHandler::LoadDSP(u"echo", loaded, log, self);
                    }),
              u"start\r\n->->  [clQvCodecHandler::LoadDSP]\r\n  Loading DSP '" + PathByName(u"DSPs/echo") +
                  u"'\r\n<-<-  [clQvCodecHandler::LoadDSP]\r\n");
}

}  // namespace
