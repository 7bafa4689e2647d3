#include "plugins/dsp_module.h"

#include "foundation/qv_text.h"

namespace {

enum Slot { kCreate, kDestroy, kGet, kSet, kShowConfigBit, kRemoveConfigBit };

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
