#include "plugins/dsp_module.h"

#include "foundation/qv_text.h"

namespace {

enum Slot {
    kCreate,
    kDestroy,
    kGet,
    kSet,
    kShowConfigBit,
    kRemoveConfigBit,
    kBeginConversion,
    kEndConversion,
    kPassAudioBlock,
    kPassNonLive,
    kAfterConversion
};

}  // namespace

const char* const clQvDSP::kEntryNames[kEntryCount] = {"DSP_Create",
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

bool clQvDSP::Load(const char16_t* path) {
    return LoadEntries(path, kEntryNames, mEntries.Slots());
}

void clQvDSP::Unload() {
    mEntries.Destroy();
    FreeModule();
    Load(nullptr);
}

void clQvDSP::ShowConfigBit(std::uint64_t parent, std::int32_t x, std::int32_t y,
                            const char16_t* settings) const {
    mEntries.Call<QvEffectShowConfigBit>(kShowConfigBit, parent, x, y, ToQvText(settings));
}

const char16_t* clQvDSP::RemoveConfigBit(std::uint64_t parent) const {
    return FromQvText(mEntries.Call<QvEffectRemoveConfigBit>(kRemoveConfigBit, parent));
}

bool clQvDSP::Get(const char16_t* key, clCodecQueryRec* query) const {
    return mEntries.Call<QvEffectGet>(kGet, ToQvText(key), query) != 0;
}

bool clQvDSP::Set(const char16_t* key, const clCodecQueryRec* query) const {
    return mEntries.Call<QvEffectSet>(kSet, ToQvText(key), query) != 0;
}

bool clQvDSP::BeginConversion(clEffectSessionRec* session) const {
    return mEntries.Call<QvEffectBeginConversion>(kBeginConversion, session) != 0;
}

bool clQvDSP::EndConversion(clEffectSessionRec* session) const {
    return mEntries.Call<QvEffectEndConversion>(kEndConversion, session) != 0;
}

bool clQvDSP::PassAudioBlock(const clBlockRec* in, clBlockRec* out) const {
    return mEntries.Call<QvEffectPassAudioBlock>(kPassAudioBlock, in, out) != 0;
}

bool clQvDSP::PassNonLive(const clBlockRec* in) const {
    return mEntries.Call<QvEffectPassNonLive>(kPassNonLive, in) != 0;
}

bool clQvDSP::AfterConversion(const char16_t* file) const {
    return mEntries.Call<QvEffectAfterConversion>(kAfterConversion, ToQvText(file)) != 0;
}
