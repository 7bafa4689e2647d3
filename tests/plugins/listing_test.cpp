// What the module folders are said to hold.
#include "foundation/string_list.h"
#include "modules/module_home.h"
#include "platform/file.h"
#include "platform/names.h"
#include "plugins/cache.h"
#include "plugins/codec_handler.h"
#include "support/allocation_faults.h"
#include "support/wide_text.h"

namespace {

using Names = std::vector<std::u16string>;

Names Rows(const XStringList& list) {
    Names rows;
    for (std::int32_t index = 0; index < list.Count(); ++index) rows.push_back(Units(list.At(index)));
    return rows;
}

// A row that the listings have to take away.
void Litter(XStringList& list) {
    list.Add(u"of before");
}

class Listing : public testing::Test {
  protected:
    PlacedModule Decoder(std::u16string_view name, std::string_view script) const {
        return mHome.Place(u"decoder/" + std::u16string(name), "scripted_decoder", script);
    }
    PlacedModule Encoder(std::u16string_view name, std::string_view script) const {
        return mHome.Place(u"encoder/" + std::u16string(name), "scripted_encoder", script);
    }
    void ListDecoders(const XLog& log = kNoLog) {
        for (XStringList* list : {&mNames, &mExtensions, &mDescriptions}) Litter(*list);
        clQvCodecHandler::ListDecoders(mNames, mExtensions, mDescriptions, mHome.Self(), log);
    }
    void ListEncoders(const XLog& log = kNoLog) {
        for (XStringList* list : {&mNames, &mExtensions}) Litter(*list);
        clQvCodecHandler::ListEncoders(mNames, mExtensions, mHome.Self(), log);
    }
    Names ListDSPs() {
        Litter(mNames);
        clQvCodecHandler::ListDSPs(mNames, mHome.Self());
        return Rows(mNames);
    }

    const ModuleHome mHome;
    XStringList mNames, mExtensions, mDescriptions;
};

TEST_F(Listing, A_decoder_has_a_row_for_each_type_as_it_spells_it) {
    const PlacedModule module = Decoder(u"abc", "decodes|.Abc|An ABC file\ndecodes|.def|A DEF file\n");
    ListDecoders();
    EXPECT_EQ(Rows(mNames), (Names{module.Path(), module.Path()}));
    EXPECT_EQ(Rows(mExtensions), (Names{u".Abc", u".def"}));
    EXPECT_EQ(Rows(mDescriptions), (Names{u"An ABC file", u"A DEF file"}));
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nGet Decodes 1\nGet Decodes 2\nDestroy\n");
}

TEST_F(Listing, A_row_without_an_extension_or_a_description_ends_its_module_only) {
    for (const char* middle : {"decodes|.undescribed\n", "decodes\n"}) {
        const PlacedModule first =
            Decoder(u"abc", std::string("decodes|.one|One\n") + middle + "decodes|.two|Two\n");
        const PlacedModule second = Decoder(u"def", std::string("decodes|.one|One\n") + middle);
        ListDecoders();
        EXPECT_EQ(Rows(mNames), mHome.Listed(u"decoder"));
        EXPECT_EQ(Rows(mExtensions), (Names{u".one", u".one"}));
        EXPECT_EQ(Rows(mDescriptions), (Names{u"One", u"One"}));
    }
}

TEST_F(Listing, A_type_that_holds_IGNORE_in_capitals_is_hidden_and_those_behind_it_are_not) {
    Decoder(
        u"abc",
        "decodes|.IGNORE|Hidden\ndecodes|.ignore|Shown\ndecodes|.xIGNORE|Shown\ndecodes|.x.IGNOREy|Hidden\n"
        "decodes|.last|Last\n");
    ListDecoders();
    EXPECT_EQ(Rows(mExtensions), (Names{u".ignore", u".xIGNORE", u".last"}));
    EXPECT_EQ(Rows(mDescriptions), (Names{u"Shown", u"Shown", u"Last"}));
    EXPECT_EQ(mNames.Count(), 3);
}

TEST_F(Listing, Decoders_that_do_not_work_are_passed_over_in_silence) {
    for (const char* module : {"text_file", "empty_file", "whole_encoder", "decoder_without_Create",
                               "decoder_without_Get", "decoder_without_DeleteATag"})
        mHome.Place(u"decoder/" + Wide(module), module);
    Decoder(u"refuses", "create|0\ndecodes|.no|No\n");
    Decoder(u"nothing", "");
    const PlacedModule good = Decoder(u"good", "decodes|.yes|Yes\n");
    Channel errors, information, trace;
    XLog log;
    log.mErrorOut = errors.WriteEnd();
    log.mInfoOut = information.WriteEnd();
    log.mTraceOut = trace.WriteEnd();
    ListDecoders(log);
    EXPECT_EQ(Rows(mNames), Names{good.Path()});
    EXPECT_EQ(errors.Text() + information.Text() + trace.Text(), u"");
}

TEST_F(Listing, A_list_of_types_is_taken_however_long) {
    Decoder(u"long", "more|2000\n");
    ListDecoders();
    EXPECT_EQ(mNames.Count(), 2000);
    EXPECT_EQ(Units(mDescriptions.At(1999)), u".more");
}

TEST_F(Listing, Modules_are_given_the_log_and_are_gone_before_the_next_is_loaded) {
    Decoder(u"abc", "decodes|.one|One\nsay|Create|info|hello\n");
    Decoder(u"def", "decodes|.two|Two\nsay|Create|info|hello\n");
    Encoder(u"abc", "extension|.one\nsay|ENC_Create|info|hello\n");
    Encoder(u"def", "extension|.two\nsay|ENC_Create|info|hello\n");
    Channel information;
    XLog log;
    log.mInfoOut = information.WriteEnd();
    int held = 0, most = 0;
    Faulty<platform::LoadLibraryW> loads;
    Faulty<platform::FreeLibrary> frees;
    loads.Replace([&](const char16_t* path) {
        most = std::max(most, ++held);
        return loads.Native(path);
    });
    frees.Replace([&](platform::ModuleHandle module) {
        --held;
        return frees.Native(module);
    });
    ListDecoders(log);
    ListEncoders(log);
    EXPECT_EQ(loads.Calls(), 4);
    EXPECT_EQ(most, 1);
    EXPECT_EQ(held, 0);
    EXPECT_EQ(information.Text(), u"hello\r\nhello\r\nhello\r\nhello\r\n");
}

TEST_F(Listing, Listing_does_not_touch_the_cache) {
    Decoder(u"abc", "decodes|.one|One\n");
    Encoder(u"abc", "extension|.one\n");
    Faulty<platform::RegCreateKeyExW> keys;
    ListDecoders();
    ListEncoders();
    ListDSPs();
    EXPECT_EQ(keys.Calls(), 0);
}

TEST_F(Listing, An_encoder_has_one_row_with_its_extension_as_it_spells_it) {
    const PlacedModule module = Encoder(u"abc", "extension|.Abc\n");
    ListEncoders();
    EXPECT_EQ(Rows(mNames), Names{module.Path()});
    EXPECT_EQ(Rows(mExtensions), Names{u".Abc"});
    EXPECT_EQ(module.TakeJournal(), "ENC_Create\nENC_Get Extension\nENC_Destroy\n");
}

TEST_F(Listing, An_encoder_that_hides_itself_is_listed) {
    Encoder(u"abc", "extension|.IGNORE\n");
    ListEncoders();
    EXPECT_EQ(Rows(mExtensions), Names{u".IGNORE"});
}

TEST_F(Listing, Encoders_that_do_not_load_or_make_no_instance_are_passed_over) {
    for (const char* module : {"text_file", "empty_file", "whole_decoder", "encoder_without_ENC_Create",
                               "encoder_without_ENC_Destroy", "encoder_without_ENC_Get",
                               "encoder_without_ENC_Set", "encoder_without_ENC_EncodeBlock"})
        mHome.Place(u"encoder/" + Wide(module), module);
    Encoder(u"refuses", "create|0\nextension|.no\n");
    const PlacedModule good = Encoder(u"good", "extension|.yes\n");
    ListEncoders();
    EXPECT_EQ(Rows(mNames), Names{good.Path()});
}

TEST_F(Listing, An_encoder_that_cannot_say_its_extension_hides_every_one_behind_it) {
    for (const char* refusal : {"get|0\nextension|.abc\n", ""}) {
        std::vector<PlacedModule> modules;
        for (const char16_t* name : {u"a", u"b", u"c"}) modules.push_back(Encoder(name, "extension|.abc\n"));
        ListEncoders();  // the journals stand in the folder from now on
        const Names order = mHome.Listed(u"encoder");
        ASSERT_EQ(order.size(), 3u);
        EXPECT_EQ(Rows(mNames), order);
        for (const PlacedModule& module : modules) {
            module.TakeJournal();
            if (module.Path() == order[1]) module.SetScript(refusal);
        }
        ListEncoders();
        EXPECT_EQ(Rows(mNames), Names{order[0]});
        EXPECT_EQ(Rows(mExtensions), Names{u".abc"});
        for (const PlacedModule& module : modules) {
            EXPECT_EQ(module.TakeJournal(),
                      module.Path() == order[2] ? "" : "ENC_Create\nENC_Get Extension\nENC_Destroy\n");
        }
    }
}

TEST_F(Listing, Effects_are_listed_unseen_whether_or_not_they_work) {
    for (const char* module : {"whole_effect", "text_file", "empty_file", "effect_without_DSP_Get"})
        mHome.Place(u"DSPs/" + Wide(module), module);
    mHome.Folder().MakeFolder(u"DSPs/folder" + std::u16string(platform::kModuleExtension));
    mHome.Folder().Write(u"DSPs/text.txt");
    Faulty<platform::LoadLibraryW> loads;
    Names rows = ListDSPs(), expected = mHome.Listed(u"DSPs");
    std::erase(expected, mHome.Folder() / (u"DSPs/folder" + std::u16string(platform::kModuleExtension)));
    EXPECT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(loads.Calls(), 0);
}

TEST_F(Listing, Folders_among_the_modules_are_skipped) {
    for (const char16_t* kind : {u"decoder", u"encoder"})
        mHome.Folder().MakeFolder(std::u16string(kind) + u"/folder" + platform::kModuleExtension);
    Faulty<platform::LoadLibraryW> loads;
    ListDecoders();
    ListEncoders();
    EXPECT_EQ(mNames.Count() + mExtensions.Count(), 0);
    EXPECT_EQ(loads.Calls(), 0);
}

TEST_F(Listing, Empty_folders_none_and_a_place_that_cannot_be_told_give_empty_lists) {
    const auto expectNothing = [this] {
        ListDecoders();
        EXPECT_EQ(mNames.Count() + mExtensions.Count() + mDescriptions.Count(), 0);
        ListEncoders();
        EXPECT_EQ(mNames.Count() + mExtensions.Count(), 0);
        EXPECT_TRUE(ListDSPs().empty());
    };
    expectNothing();
    for (const char16_t* kind : {u"decoder", u"encoder", u"DSPs"}) mHome.Folder().MakeFolder(kind);
    expectNothing();
    Decoder(u"abc", "decodes|.one|One\n");
    Encoder(u"abc", "extension|.one\n");
    mHome.Place(u"DSPs/abc", "whole_effect");
    Faulty<platform::GetModuleFileNameW> places;
    places.FailAlways();
    Faulty<platform::FindFirstFileW> walks;
    expectNothing();
    EXPECT_EQ(walks.Calls(), 0);
}

TEST_F(Listing, Memory_that_ends_halfway_leaves_every_name_with_its_texts) {
    for (const char16_t* name : {u"a", u"b", u"c"})
        mHome.Place(u"decoder/" + std::u16string(name), "whole_decoder");
    mHome.Place(u"encoder/a", "whole_encoder");
    FailEachAllocation([this] {
        XStringList names, extensions, descriptions;
        try {
            clQvCodecHandler::ListDecoders(names, extensions, descriptions, mHome.Self(), kNoLog);
            clQvCodecHandler::ListEncoders(names, extensions, mHome.Self(), kNoLog);
        } catch (const std::bad_alloc&) {
            if (extensions.Count() < names.Count()) ADD_FAILURE();
            throw;
        }
        if (names.Count() != 1 || extensions.Count() != 1) ADD_FAILURE();
    });
}

}  // namespace
