// What holds for all three wrappers alike: which names a module must have, and what loading and unloading do.
#include "plugins/decoder_module.h"
#include "plugins/dsp_module.h"
#include "plugins/encoder_module.h"
#include "plugins/wrappers.h"

namespace {

using Names = std::vector<std::string>;

struct DecoderKind {
    using Wrapper = clQvDecoder;
    static constexpr const char* kName = "decoder";
    static Names Entries() {
        return {"Create", "Destroy",     "Get",         "Set",       "Open",
                "Close",  "DecodeBlock", "SetPosition", "DeleteATag"};
    }
};

struct EncoderKind {
    using Wrapper = clQvEncoder;
    static constexpr const char* kName = "encoder";
    static Names Entries() {
        return {"ENC_Create",
                "ENC_Destroy",
                "ENC_Get",
                "ENC_Set",
                "ENC_ShowConfigBit",
                "ENC_RemoveConfigBit",
                "ENC_BeginConversion",
                "ENC_EndConversion",
                "ENC_EncodeBlock"};
    }
};

struct EffectKind {
    using Wrapper = clQvDSP;
    static constexpr const char* kName = "effect";
    static Names Entries() {
        return {"DSP_Create",
                "DSP_Destroy",
                "DSP_Get",
                "DSP_Set",
                "DSP_ShowConfigBit",
                "DSP_RemoveConfigBit",
                "DSP_BeginConversion",
                "DSP_EndConversion",
                "DSP_PassAudioBlock",
                "DSP_PassNonLive",
                "DSP_AfterConversion"};
    }
};

template <class Kind>
class Loading : public testing::Test {
  protected:
    static std::u16string Whole() { return BuiltModule(std::string("whole_") + Kind::kName); }
    static std::u16string Without(const std::string& entry) {
        return BuiltModule(std::string(Kind::kName) + "_without_" + entry);
    }
    typename Kind::Wrapper mWrapper;
};

class KindNames {
  public:
    template <class Kind>
    static std::string GetName(int) {
        return Kind::kName;
    }
};
using Kinds = testing::Types<DecoderKind, EncoderKind, EffectKind>;
TYPED_TEST_SUITE(Loading, Kinds, KindNames);

TYPED_TEST(Loading, Load_of_null_gives_false_and_does_not_touch_the_loader) {
    Faulty<platform::LoadLibraryW> loads;
    Faulty<platform::GetProcAddress> lookUps;
    Faulty<platform::FreeLibrary> frees;
    EXPECT_FALSE(this->mWrapper.Load(nullptr));
    EXPECT_FALSE(this->mWrapper.Create(kNoLog));
    this->mWrapper.Unload();
    EXPECT_FALSE(this->mWrapper.HasModule());
    EXPECT_EQ(loads.Calls() + lookUps.Calls() + frees.Calls(), 0);
}

TYPED_TEST(Loading, A_whole_module_is_good_and_its_names_are_looked_up_in_order) {
    LookUps lookUps;
    EXPECT_TRUE(this->mWrapper.Load(this->Whole().c_str()));
    EXPECT_TRUE(this->mWrapper.EntriesGood());
    EXPECT_EQ(lookUps.Names(), TypeParam::Entries());
    EXPECT_EQ(this->mWrapper.Instance(), 0u);
    EXPECT_TRUE(this->mWrapper.Create(kNoLog));
    EXPECT_NE(this->mWrapper.Instance(), 0u);
}

TYPED_TEST(Loading, A_module_that_lacks_any_entry_is_not_good_but_stays_held) {
    for (const std::string& entry : TypeParam::Entries()) {
        SCOPED_TRACE(entry);
        typename TypeParam::Wrapper wrapper;
        LookUps lookUps;
        EXPECT_FALSE(wrapper.Load(this->Without(entry).c_str()));
        EXPECT_FALSE(wrapper.EntriesGood());
        EXPECT_TRUE(wrapper.HasModule());
        EXPECT_EQ(wrapper.Instance(), 0u);
        EXPECT_EQ(lookUps.Names(), TypeParam::Entries());  // also those behind the missing one
        EXPECT_FALSE(wrapper.Load(this->Whole().c_str()));
        wrapper.Unload();
        EXPECT_TRUE(wrapper.Load(this->Whole().c_str()));
    }
}

TYPED_TEST(Loading, The_entries_that_a_partly_loaded_module_has_can_be_called) {
    const Names entries = TypeParam::Entries();
    for (const std::string& entry : entries) {
        SCOPED_TRACE(entry);
        typename TypeParam::Wrapper wrapper;
        wrapper.Load(this->Without(entry).c_str());
        EXPECT_EQ(wrapper.Create(kNoLog), entry != entries[0]);
        wrapper.Destroy();
        EXPECT_EQ(wrapper.Instance(), 0u);
    }
}

TYPED_TEST(Loading, A_look_up_that_fails_fails_the_load_wherever_it_stands) {
    const int count = static_cast<int>(TypeParam::Entries().size());
    for (int call = 1; call <= count; ++call) {
        typename TypeParam::Wrapper wrapper;
        Faulty<platform::GetProcAddress> lookUps;
        lookUps.FailCall(call);
        EXPECT_FALSE(wrapper.Load(this->Whole().c_str())) << call;
        EXPECT_EQ(lookUps.Calls(), count);
    }
}

TYPED_TEST(Loading, What_is_no_module_loads_nothing) {
    const TempFolder folder;
    const std::u16string paths[] = {u"", folder / u"absent", folder.Path(), BuiltModule("text_file"),
                                    BuiltModule("empty_file")};
    for (const std::u16string& path : paths) {
        SCOPED_TRACE(InJournal(path));
        LookUps lookUps;
        EXPECT_FALSE(this->mWrapper.Load(path.c_str()));
        EXPECT_FALSE(this->mWrapper.HasModule());
        EXPECT_FALSE(this->mWrapper.Create(kNoLog));
        EXPECT_TRUE(lookUps.Names().empty());
    }
    EXPECT_TRUE(this->mWrapper.Load(this->Whole().c_str()));
}

TYPED_TEST(Loading, A_loader_that_fails_leaves_the_wrapper_empty) {
    Faulty<platform::LoadLibraryW> loads;
    loads.FailCall(1);
    EXPECT_FALSE(this->mWrapper.Load(this->Whole().c_str()));
    EXPECT_FALSE(this->mWrapper.HasModule());
    EXPECT_TRUE(this->mWrapper.Load(this->Whole().c_str()));
}

TYPED_TEST(Loading, A_second_Load_keeps_the_module_and_its_answer) {
    ASSERT_TRUE(this->mWrapper.Load(this->Whole().c_str()));
    Faulty<platform::LoadLibraryW> loads;
    Faulty<platform::GetProcAddress> lookUps;
    EXPECT_TRUE(this->mWrapper.Load(BuiltModule("text_file").c_str()));
    EXPECT_TRUE(this->mWrapper.Load(nullptr));
    EXPECT_EQ(loads.Calls() + lookUps.Calls(), 0);
    EXPECT_TRUE(this->mWrapper.Create(kNoLog));
}

TYPED_TEST(Loading, Unload_lets_the_module_go_once_and_can_be_repeated) {
    ASSERT_TRUE(this->mWrapper.Load(this->Whole().c_str()));
    ASSERT_TRUE(this->mWrapper.Create(kNoLog));
    Faulty<platform::FreeLibrary> frees;
    this->mWrapper.Unload();
    this->mWrapper.Unload();
    EXPECT_EQ(frees.Calls(), 1);
    EXPECT_FALSE(this->mWrapper.HasModule());
    EXPECT_FALSE(this->mWrapper.EntriesGood());
    EXPECT_EQ(this->mWrapper.Instance(), 0u);
    EXPECT_FALSE(this->mWrapper.Create(kNoLog));
}

TYPED_TEST(Loading, The_end_of_a_wrapper_lets_its_module_go_even_when_that_fails) {
    Faulty<platform::FreeLibrary> frees;
    {
        typename TypeParam::Wrapper wrapper;
        wrapper.Load(this->Without(TypeParam::Entries().back()).c_str());
    }
    EXPECT_EQ(frees.Calls(), 1);
    this->mWrapper.Load(this->Whole().c_str());
    platform::ModuleHandle held = nullptr;
    frees.Replace([&](platform::ModuleHandle module) {
        held = module;
        return false;
    });
    this->mWrapper.Unload();
    EXPECT_FALSE(this->mWrapper.HasModule());
    EXPECT_TRUE(Faulty<platform::FreeLibrary>::Native(held));
}

}  // namespace
