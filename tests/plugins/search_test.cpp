// The road from a file's name to a decoder: what the wrapper holds, what the cache names, what the folder
// has.
#include <filesystem>
#include <thread>

#include "modules/module_home.h"
#include "platform/file.h"
#include "platform/names.h"
#include "plugins/cache.h"
#include "plugins/codec_handler.h"
#include "support/wide_text.h"

namespace {

using Names = std::vector<std::u16string>;

class Search : public testing::Test {
  protected:
    // A decoder of this test's extension.
    PlacedModule Place(std::u16string_view name, const std::string& more = {}) const {
        return mHome.Place(u"decoder/" + std::u16string(name), "scripted_decoder",
                           "decodes|" + mExtension + "|A test\n" + more);
    }
    bool Load(const std::u16string& file, clQvDecoder& decoder) const {
        return clQvCodecHandler::LoadDecoderForFile(file.c_str(), decoder, kNoLog, mHome.Self());
    }
    bool Load(clQvDecoder& decoder) const { return Load(File(), decoder); }
    bool Load() {
        mDecoder.Unload();
        return Load(mDecoder);
    }
    std::u16string File() const { return u"song" + Wide(mExtension); }
    std::u16string Remembered() { return Units(mDecoder.RememberedPath()); }

    const std::string mExtension = NewExtension();
    const TempFolder mElsewhere;
    const ModuleHome mHome;
    clQvDecoder mDecoder;  // goes before the files of what it holds
};

TEST_F(Search, A_cold_look_up_scans_the_folder_and_remembers_what_it_found) {
    const PlacedModule module = Place(u"abc");
    EXPECT_TRUE(Load());
    EXPECT_NE(mDecoder.Instance(), 0u);
    EXPECT_EQ(Remembered(), module.Path());
    EXPECT_EQ(Units(mDecoder.RememberedExtension()), Wide(mExtension));
    EXPECT_EQ(Cached(mExtension), module.Path());
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\n");
}

TEST_F(Search, The_cached_value_is_a_text_counted_with_its_end) {
    const PlacedModule module = Place(u"abc");
    Faulty<platform::RegSetValueExW> writes;
    std::uint32_t written = 0, kind = 0;
    writes.Replace(
        [&](platform::Handle, const char16_t*, std::uint32_t type, const void*, std::uint32_t size) {
            kind = type;
            written = size;
            return 0u;
        });
    EXPECT_TRUE(Load());
    EXPECT_EQ(kind, platform::kRegString);
    EXPECT_EQ(written, module.Path().size() * 2 + 2);
}

TEST_F(Search, A_cached_look_up_is_one_read_one_load_and_one_write) {
    const PlacedModule module = Place(u"abc");
    for (const char16_t* name : {u"one", u"two", u"three"})
        mHome.Place(u"decoder/" + std::u16string(name), "whole_decoder");
    ASSERT_TRUE(Load());
    mDecoder.Unload();
    const Costs costs;
    EXPECT_TRUE(Load(mDecoder));
    EXPECT_EQ(costs.read, Names{Wide(mExtension)});
    EXPECT_EQ(costs.loaded, Names{module.Path()});
    EXPECT_EQ(costs.written, Names{Wide(mExtension)});
}

TEST_F(Search, A_cold_look_up_reads_and_writes_once_and_loads_up_to_the_first_that_fits) {
    Place(u"abc");
    mHome.Place(u"decoder/other", "whole_decoder");
    mHome.Place(u"decoder/third", "whole_decoder");
    const Names order = mHome.Listed(u"decoder");
    const Costs costs;
    EXPECT_TRUE(Load());
    EXPECT_EQ(costs.read, Names{Wide(mExtension)});
    EXPECT_EQ(costs.written, Names{Wide(mExtension)});
    const auto own = std::find(order.begin(), order.end(), Remembered());
    ASSERT_NE(own, order.end());
    EXPECT_EQ(costs.loaded, Names(order.begin(), own + 1));
}

TEST_F(Search, The_first_of_the_folders_listing_wins) {
    for (const char16_t* name : {u"b", u"c", u"a"}) Place(name);
    EXPECT_TRUE(Load());
    EXPECT_EQ(Remembered(), mHome.Listed(u"decoder").front());
}

TEST_F(Search, A_wrapper_that_served_the_extension_serves_the_next_file_at_no_cost) {
    const PlacedModule module = Place(u"abc");
    ASSERT_TRUE(Load());
    module.TakeJournal();
    const Costs costs;
    EXPECT_TRUE(Load(File(), mDecoder));
    EXPECT_TRUE(Load(u"another" + Wide(mExtension), mDecoder));
    EXPECT_TRUE(costs.read.empty() && costs.written.empty() && costs.loaded.empty());
    EXPECT_EQ(module.TakeJournal(), "Destroy\nCreate\nDestroy\nCreate\n");
}

TEST_F(Search, Spellings_that_differ_in_ASCII_case_share_a_wrapper_and_a_cached_value) {
    const PlacedModule module = Place(u"abc");
    const std::u16string upper = u"SONG" + Units(XString(Wide(mExtension).c_str()).ToUpper());
    ASSERT_TRUE(Load());
    {
        const Costs costs;
        EXPECT_TRUE(Load(upper, mDecoder));
        EXPECT_TRUE(costs.read.empty() && costs.loaded.empty());
    }
    mDecoder.Unload();
    mHome.Place(u"decoder/other", "whole_decoder");
    const Costs costs;
    EXPECT_TRUE(Load(upper, mDecoder));
    EXPECT_EQ(costs.loaded, Names{module.Path()});
}

TEST_F(Search, Letters_beyond_ASCII_are_not_folded) {
    // The script is 8-bit text of the system's code page, so the letter itself stays out of it.
    const PlacedModule module = Place(u"abc");
    ASSERT_TRUE(Load());
    mDecoder.Remember(u".\x00E4", module.Path().c_str());
    EXPECT_FALSE(Load(u"song.\x00C4", mDecoder));
    EXPECT_FALSE(mDecoder.HasModule());
}

TEST_F(Search, A_wrapper_that_makes_no_instance_is_not_searched_for_another_module) {
    const PlacedModule module = Place(u"abc");
    const PlacedModule other = Place(u"other");
    ASSERT_TRUE(Load());
    const PlacedModule& held = Remembered() == module.Path() ? module : other;
    held.SetScript("create|0\n");
    held.TakeJournal();
    const Costs costs;
    EXPECT_FALSE(Load(File(), mDecoder));
    EXPECT_TRUE(costs.read.empty() && costs.written.empty() && costs.loaded.empty());
    EXPECT_TRUE(mDecoder.HasModule());
    EXPECT_EQ(mDecoder.Instance(), 0u);
    EXPECT_EQ(held.TakeJournal(), "Destroy\nCreate\n");
}

TEST_F(Search, A_file_of_another_extension_replaces_the_module) {
    const std::string second = NewExtension();
    const PlacedModule module = Place(u"abc", "decodes|" + second + "|Another\n");
    ASSERT_TRUE(Load());
    EXPECT_TRUE(Load(u"song" + Wide(second), mDecoder));
    EXPECT_EQ(Units(mDecoder.RememberedExtension()), Wide(second));
    EXPECT_EQ(Cached(second), module.Path());
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nDestroy\nCreate\nGet Decodes 0\nGet Decodes 1\n");
}

TEST_F(Search, The_extension_is_what_stands_behind_the_last_dot_of_the_files_own_name) {
    const std::u16string separator(1, platform::kPathSeparator);
    const struct {
        std::u16string file, asked;
    } rows[] = {
        {u"song", u"."},
        {u"", u"."},
        {u"folder.old" + separator + u"song", u"."},
        {u"folder.old" + separator + u"song.QxA", u".QxA"},
        {u"a.b.qxc", u".qxc"},
        {u"song.", u"."},
        {u".qxd", u".qxd"},
        {u"song.q x", u".q x"},
    };
    for (const auto& row : rows) {
        clQvDecoder decoder;
        const Costs costs;
        EXPECT_FALSE(Load(row.file, decoder)) << InJournal(row.file);
        EXPECT_EQ(costs.read, Names{row.asked}) << InJournal(row.file);
        EXPECT_TRUE(costs.written.empty());
    }
}

TEST_F(Search, A_file_without_an_extension_takes_the_same_road) {
    const PlacedModule module = mHome.Place(u"decoder/dot", "scripted_decoder", "decodes|.|No extension\n");
    EXPECT_TRUE(Load(u"song", mDecoder));
    EXPECT_EQ(Cached("."), module.Path());
    SetCached(".", u"");
}

TEST_F(Search, A_cached_module_that_works_is_taken_whatever_else_there_is) {
    const PlacedModule cached(mElsewhere, u"abc", "scripted_decoder", "decodes|" + mExtension + "|Cached\n");
    const PlacedModule placed = Place(u"abc");
    SetCached(mExtension, cached.Path());
    EXPECT_TRUE(Load());
    EXPECT_EQ(Remembered(), cached.Path());
    EXPECT_EQ(placed.TakeJournal(), "");
}

TEST_F(Search, A_cached_module_that_no_longer_serves_makes_room_for_a_search) {
    const struct {
        const char *module, *script;
    } rows[] = {
        {"text_file", ""},
        {"empty_file", ""},
        {"whole_encoder", ""},
        {"decoder_without_Create", ""},
        {"decoder_without_DeleteATag", ""},
        {"scripted_decoder", "create|0\n"},
        {"scripted_decoder", ""},
        {"scripted_decoder", "decodes|.another|Another\n"},
    };
    const PlacedModule module = Place(u"abc");
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.module) + ": " + row.script);
        const PlacedModule stale(mElsewhere, u"stale", row.module, row.script);
        SetCached(mExtension, stale.Path());
        EXPECT_TRUE(Load());
        EXPECT_EQ(Remembered(), module.Path());
        EXPECT_EQ(Cached(mExtension), module.Path());
    }
}

TEST_F(Search, A_cached_path_that_names_no_file_makes_room_for_a_search) {
    const PlacedModule module = Place(u"abc");
    for (const std::u16string& path :
         {mHome.Folder() / u"deleted", mHome.Folder().Path(), std::u16string(5000, u'x')}) {
        SetCached(mExtension, path);
        EXPECT_TRUE(Load());
        EXPECT_EQ(Cached(mExtension), module.Path());
    }
}

TEST_F(Search, A_search_without_a_result_leaves_the_cached_path_to_be_tried_again) {
    mHome.Place(u"decoder/other", "whole_decoder");
    const std::u16string dead = mHome.Folder() / u"dead";
    SetCached(mExtension, dead);
    for (int round = 0; round < 2; ++round) {
        const Costs costs;
        EXPECT_FALSE(Load());
        ASSERT_EQ(costs.loaded.size(), 2u);
        EXPECT_EQ(costs.loaded[0], dead);
        EXPECT_TRUE(costs.written.empty());
    }
    EXPECT_EQ(Cached(mExtension), dead);
    EXPECT_FALSE(mDecoder.HasModule());
}

TEST_F(Search, Candidates_that_are_no_decoders_cost_nothing_but_their_load) {
    const char* const zoo[] = {"text_file",
                               "empty_file",
                               "whole_encoder",
                               "whole_effect",
                               "decoder_without_Create",
                               "decoder_without_Destroy",
                               "decoder_without_Get",
                               "decoder_without_Set",
                               "decoder_without_Open",
                               "decoder_without_Close",
                               "decoder_without_DecodeBlock",
                               "decoder_without_SetPosition",
                               "decoder_without_DeleteATag"};
    for (const char* module : zoo) mHome.Place(u"decoder/" + Wide(module), module);
    EXPECT_FALSE(Load(u"song.whole", mDecoder));
    EXPECT_FALSE(mDecoder.HasModule());
    mHome.Place(u"decoder/refuses", "scripted_decoder", "create|0\ndecodes|" + mExtension + "|A test\n");
    mHome.Place(u"decoder/silent", "scripted_decoder", "decodes\ndecodes|" + mExtension + "|A test\n");
    const Costs costs;
    EXPECT_FALSE(Load());
    EXPECT_EQ(costs.loaded.size(), std::size(zoo) + 2);
    const PlacedModule module = Place(u"proper");
    EXPECT_TRUE(Load());
    EXPECT_EQ(Remembered(), module.Path());
}

TEST_F(Search, Folders_and_files_of_other_names_are_no_candidates) {
    mHome.Folder().MakeFolder(u"decoder/folder" + std::u16string(platform::kModuleExtension));
    const PlacedModule module = Place(u"abc");
    std::filesystem::rename(module.Path(), module.Path() + u".bak");
    std::filesystem::create_directories(std::filesystem::path(mHome.Folder() / u"decoder/deeper"));
    std::filesystem::copy_file(
        module.Path() + u".bak",
        mHome.Folder() / (u"decoder/deeper/abc" + std::u16string(platform::kModuleExtension)));
    const Costs costs;
    EXPECT_FALSE(Load());
    EXPECT_TRUE(costs.loaded.empty());
}

TEST_F(Search, A_hidden_extension_is_found_by_a_file_that_has_it) {
    const PlacedModule module =
        mHome.Place(u"decoder/hidden", "scripted_decoder",
                    "decodes|" + mExtension + "x.IGNORE|Hidden\ndecodes|.IGNORE|Too\n");
    EXPECT_TRUE(Load(u"song.IGNORE", mDecoder));
    EXPECT_EQ(Remembered(), module.Path());
    EXPECT_FALSE(Load()) << "the file's extension ends at its last dot, so it is another one";
}

TEST_F(Search, A_row_without_a_description_counts) {
    mHome.Place(u"decoder/terse", "scripted_decoder", "decodes|.first\ndecodes|" + mExtension + "\n");
    EXPECT_TRUE(Load());
}

TEST_F(Search, A_list_of_rows_is_followed_however_long) {
    const PlacedModule module = mHome.Place(u"decoder/long", "scripted_decoder", "more|3000\n");
    EXPECT_FALSE(Load());
    EXPECT_TRUE(module.TakeJournal().ends_with("Get Decodes 2999\nGet Decodes 3000\nDestroy\n"));
}

TEST_F(Search, An_empty_folder_or_none_gives_nothing_and_keeps_the_module_without_an_instance) {
    EXPECT_FALSE(Load());
    mHome.Folder().MakeFolder(u"decoder");
    EXPECT_FALSE(Load());
    ASSERT_TRUE(clQvCodecHandler::OpenDecoderFile(mDecoder, BuiltModule("whole_decoder").c_str(), u".whole"));
    ASSERT_TRUE(clQvCodecHandler::CreateInstance(mDecoder, kNoLog));
    EXPECT_FALSE(Load(File(), mDecoder));
    EXPECT_TRUE(mDecoder.HasModule());
    EXPECT_EQ(mDecoder.Instance(), 0u);
    EXPECT_TRUE(Load(u"song.whole", mDecoder)) << "it still serves its own extension";
}

TEST_F(Search, A_library_that_cannot_tell_its_own_place_searches_nowhere) {
    Place(u"abc");
    Faulty<platform::GetModuleFileNameW> places;
    places.FailAlways();
    Faulty<platform::FindFirstFileW> walks;
    const Costs costs;
    EXPECT_FALSE(Load());
    EXPECT_FALSE(clQvCodecHandler::FindDecoder(Wide(mExtension).c_str(), mDecoder, kNoLog, mHome.Self()));
    EXPECT_EQ(walks.Calls(), 0);
    EXPECT_TRUE(costs.loaded.empty());
}

TEST_F(Search, Settings_that_can_be_neither_read_nor_written_cost_a_search_each_time) {
    const PlacedModule module = Place(u"abc");
    SetCached(mExtension, u"never read");
    Faulty<platform::RegQueryValueExW> reads;
    Faulty<platform::RegSetValueExW> writes;
    reads.FailAlways(5u);
    writes.FailAlways(5u);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(Load());
        EXPECT_EQ(Remembered(), module.Path());
        EXPECT_EQ(writes.Calls(), round + 1);
    }
}

TEST_F(Search, A_search_of_the_folder_alone_does_not_touch_the_settings) {
    const PlacedModule module = Place(u"abc");
    Faulty<platform::RegCreateKeyExW> keys;
    EXPECT_TRUE(clQvCodecHandler::FindDecoder(Wide(mExtension).c_str(), mDecoder, kNoLog, mHome.Self()));
    EXPECT_EQ(Remembered(), module.Path());
    EXPECT_EQ(keys.Calls(), 0);
}

TEST_F(Search, Nothing_is_written_to_the_log_but_what_the_modules_say) {
    Place(u"abc", "say|Create|error|words of the module\n");
    Channel errors, information, trace;
    XLog log;
    log.mErrorOut = errors.WriteEnd();
    log.mInfoOut = information.WriteEnd();
    log.mTraceOut = trace.WriteEnd();
    EXPECT_FALSE(clQvCodecHandler::LoadDecoderForFile(u"song.absent", mDecoder, log, mHome.Self()));
    EXPECT_EQ(errors.Text(), u"words of the module\r\n");
    EXPECT_EQ(information.Text() + trace.Text(), u"");
}

TEST_F(Search, Several_threads_find_the_same_decoder) {
    const PlacedModule module = Place(u"abc");
    std::atomic<int> good = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                clQvDecoder decoder;
                if (Load(decoder) && Units(decoder.RememberedPath()) == module.Path()) ++good;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, 80);
    EXPECT_EQ(Cached(mExtension), module.Path());
}

}  // namespace
