#include "plugins/decoder_module.h"

#include "foundation/id_tag_list.h"
#include "foundation/qv_text.h"
#include "plugins/wrappers.h"
#include "support/wide_text.h"

namespace {

class DecoderModule : public testing::Test {
  protected:
    bool Start(std::string_view script) {
        mModule.SetScript(script);
        return mDecoder.Load(mModule.Path().c_str()) && mDecoder.Create(kNoLog);
    }

    const TempFolder mFolder;
    const PlacedModule mModule{mFolder, u"decoder/abc", "scripted_decoder"};
    clQvDecoder mDecoder;
};

TEST_F(DecoderModule, Every_call_reaches_the_module_in_order) {
    ASSERT_TRUE(Start("decodes|.abc|A test\nformat|1|1|8000|8\nblock|1|4|77|0\n"));
    clCodecQueryRec query = {};
    EXPECT_TRUE(mDecoder.Get(u"Decodes", &query));
    EXPECT_EQ(std::u16string(FromQvText(query.text)), u".abc");
    EXPECT_EQ(std::u16string(FromQvText(query.description)), u"A test");
    query.index = 1;
    EXPECT_FALSE(mDecoder.Get(u"Decodes", &query));
    clOpenFileRec file = {};
    file.file = ToQvText(u"song.abc");
    file.request = QV_OPEN_DECODING;
    EXPECT_TRUE(mDecoder.Open(&file));
    EXPECT_EQ(reinterpret_cast<const QvFormat*>(file.format)->nSamplesPerSec, 8000u);
    mDecoder.SetPosition(-1000);
    clBlockRec block = {};
    EXPECT_TRUE(mDecoder.DecodeBlock(&block));
    EXPECT_EQ(+block.bytes, 4u);
    EXPECT_EQ(block.data[0], static_cast<std::uint8_t>(-1000));
    EXPECT_EQ(+block.timecode, 77u);
    EXPECT_EQ(+block.finished, 0u);
    EXPECT_TRUE(mDecoder.DecodeBlock(&block));
    EXPECT_EQ(+block.finished, 1u);
    mDecoder.Close(nullptr);
    mDecoder.Unload();
    EXPECT_EQ(
        mModule.TakeJournal(),
        "Create\nGet Decodes 0\nGet Decodes 1\nOpen 1 song.abc\nSetPosition -1000\nDecodeBlock\nDecodeBlock\n"
        "Close\nDestroy\n");
}

TEST_F(DecoderModule, Tags_go_in_and_out_in_their_flat_form) {
    ASSERT_TRUE(Start("tag|TITLE|A song|0\ntag|COVER||3\n"));
    clOpenFileRec file = {};
    file.file = ToQvText(u"song.abc");
    file.request = QV_OPEN_TAGS;
    ASSERT_TRUE(mDecoder.Open(&file));
    clIDTagList tags;
    tags.Deserialise(file.tagData, file.tagDataSize);
    ASSERT_EQ(tags.Count(), 2);
    EXPECT_EQ(Units(tags.At(0).value), u"A song");
    EXPECT_EQ(tags.At(1).art.Size(), 3u);

    clCodecQueryRec order = {};
    order.text = ToQvText(u"song.abc");
    order.data = file.tagData;
    order.dataSize = file.tagDataSize;
    EXPECT_TRUE(mDecoder.Set(u"IDTags", &order));
    EXPECT_TRUE(mDecoder.DeleteATag(u"song.abc", u"TITLE"));
    EXPECT_TRUE(mDecoder.DeleteATag(u"song.abc", nullptr));
    EXPECT_EQ(mModule.TakeJournal(),
              "Create\nOpen 8 song.abc\nSet IDTags song.abc\nSet row TITLE|A song|0\nSet row COVER||3\nSet "
              "art A7A7A7\n"
              "DeleteATag song.abc TITLE\nDeleteATag song.abc (null)\n");
}

TEST_F(DecoderModule, Refusals_come_back_as_false) {
    ASSERT_TRUE(Start("open|4|0\nset|0\ndelete|0\nblock|0\n"));
    clOpenFileRec file = {};
    file.file = ToQvText(u"song.abc");
    file.request = QV_OPEN_PROPERTIES;
    clBlockRec block = {};
    clCodecQueryRec query = {};
    EXPECT_FALSE(mDecoder.Open(&file));
    EXPECT_FALSE(mDecoder.DecodeBlock(&block));
    EXPECT_FALSE(mDecoder.Get(u"Decodes", &query));
    EXPECT_FALSE(mDecoder.Set(u"IDTags", &query));
    EXPECT_FALSE(mDecoder.DeleteATag(u"song.abc", u""));
}

TEST_F(DecoderModule, A_module_may_report_nothing_but_null_pointers) {
    ASSERT_TRUE(Start("decodes\nnulls\ntag|A|B|5\nblock|1|100|0|1\n"));
    clCodecQueryRec query = {};
    EXPECT_TRUE(mDecoder.Get(u"Decodes", &query));
    EXPECT_EQ(+query.text, nullptr);
    EXPECT_EQ(+query.description, nullptr);
    clOpenFileRec file = {};
    file.request = QV_OPEN_TAGS;
    EXPECT_TRUE(mDecoder.Open(&file));
    EXPECT_EQ(+file.tagData, nullptr);
    EXPECT_GT(+file.tagDataSize, 0u);
    clBlockRec block = {};
    EXPECT_TRUE(mDecoder.DecodeBlock(&block));
    EXPECT_EQ(+block.data, nullptr);
    EXPECT_EQ(+block.bytes, 100u);
}

TEST_F(DecoderModule, Without_an_instance_no_call_reaches_the_module) {
    ASSERT_TRUE(mDecoder.Load(mModule.Path().c_str()));
    clCodecQueryRec query = {};
    clOpenFileRec file = {};
    clBlockRec block = {};
    EXPECT_FALSE(mDecoder.Get(u"Decodes", &query));
    EXPECT_FALSE(mDecoder.Set(u"IDTags", &query));
    EXPECT_FALSE(mDecoder.Open(&file));
    EXPECT_FALSE(mDecoder.DecodeBlock(&block));
    EXPECT_FALSE(mDecoder.DeleteATag(u"song.abc", u""));
    mDecoder.Close(nullptr);
    mDecoder.SetPosition(0);
    mDecoder.Destroy();
    EXPECT_EQ(mModule.TakeJournal(), "");
}

TEST_F(DecoderModule, Create_that_gives_0_leaves_no_instance) {
    EXPECT_FALSE(Start("create|0\n"));
    EXPECT_TRUE(mDecoder.EntriesGood());
    EXPECT_EQ(mDecoder.Instance(), 0u);
    mDecoder.Unload();
    EXPECT_EQ(mModule.TakeJournal(), "Create\n");
}

TEST_F(DecoderModule, A_module_writes_to_the_channels_of_the_log_it_was_given) {
    Channel error, info;
    XLog log;
    log.mErrorOut = error.WriteEnd();
    log.mInfoOut = info.WriteEnd();
    mModule.SetScript("say|Create|info|Here I am\nsay|Close|error|No!\nsay|Close|info|Bye\n");
    ASSERT_TRUE(mDecoder.Load(mModule.Path().c_str()));
    ASSERT_TRUE(mDecoder.Create(log));
    EXPECT_EQ(info.Text(), u"Here I am\r\n");
    EXPECT_EQ(error.Text(), u"");
    log.mErrorOut = log.mInfoOut = platform::kNullHandle;  // the module has a copy
    mDecoder.Close(nullptr);
    EXPECT_EQ(info.Text(), u"Bye\r\n");
    EXPECT_EQ(error.Text(), u"No!\r\n");
}

TEST_F(DecoderModule, What_it_was_loaded_for_is_known_while_a_module_is_held) {
    EXPECT_TRUE(mDecoder.RememberedExtension().IsEmpty());
    mDecoder.Remember(u".abc", u"somewhere");
    EXPECT_TRUE(mDecoder.RememberedPath().IsEmpty());  // nothing is held yet: forgotten
    ASSERT_TRUE(Start(""));
    EXPECT_TRUE(mDecoder.RememberedPath().IsEmpty());
    EXPECT_EQ(Units(mDecoder.RememberedExtension()), u".abc");  // nobody had asked for it meanwhile
    mDecoder.Remember(u".abc", u"somewhere");
    EXPECT_EQ(Units(mDecoder.RememberedPath()), u"somewhere");
    mDecoder.Unload();
    EXPECT_TRUE(mDecoder.RememberedExtension().IsEmpty());
    EXPECT_TRUE(mDecoder.RememberedPath().IsEmpty());
}

TEST_F(DecoderModule, Unload_of_an_empty_one_forgets_what_it_was_to_be_loaded_for) {
    mDecoder.Remember(u".abc", u"somewhere");
    mDecoder.Unload();
    mDecoder.Unload();
    ASSERT_TRUE(Start(""));  // while a module is held, what is remembered shows
    EXPECT_TRUE(mDecoder.RememberedExtension().IsEmpty());
    EXPECT_TRUE(mDecoder.RememberedPath().IsEmpty());
}

TEST_F(DecoderModule, Unload_ends_the_instance_before_the_module_goes) {
    ASSERT_TRUE(Start(""));
    std::string before;
    Faulty<platform::FreeLibrary> frees;
    frees.Replace([&](platform::ModuleHandle module) {
        before = mModule.TakeJournal();
        return Faulty<platform::FreeLibrary>::Native(module);
    });
    mDecoder.Unload();
    EXPECT_EQ(before, "Create\nDestroy\n");
}

TEST_F(DecoderModule, Two_instances_of_one_module_live_side_by_side) {
    ASSERT_TRUE(Start("block|1|2|0|0\nblock|1|2|0|0\n"));
    clQvDecoder other;
    ASSERT_TRUE(other.Load(mModule.Path().c_str()));
    ASSERT_TRUE(other.Create(kNoLog));
    clBlockRec block = {};
    mDecoder.DecodeBlock(&block);
    EXPECT_EQ(block.data[0], 0);
    other.DecodeBlock(&block);
    EXPECT_EQ(block.data[0], 0);
    other.Unload();
    mDecoder.DecodeBlock(&block);
    EXPECT_EQ(block.data[0], 2);
}

}  // namespace
