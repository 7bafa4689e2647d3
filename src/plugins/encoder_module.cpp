#include "plugins/encoder_module.h"

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
    kEncodeBlock
};

}  // namespace

const char* const clQvEncoder::kEntryNames[kEntryCount] = {
    "ENC_Create",          "ENC_Destroy",         "ENC_Get",           "ENC_Set",        "ENC_ShowConfigBit",
    "ENC_RemoveConfigBit", "ENC_BeginConversion", "ENC_EndConversion", "ENC_EncodeBlock"};

bool clQvEncoder::Load(const char16_t* path) {
    return LoadEntries(path, kEntryNames, mEntries.Slots());
}

void clQvEncoder::Unload() {
    mEntries.Destroy();
    FreeModule();
    Load(nullptr);
}

bool clQvEncoder::Get(const char16_t* key, clCodecQueryRec* query) const {
    return mEntries.Call<QvEncoderGet>(kGet, ToQvText(key), query) != 0;
}

bool clQvEncoder::Set(const char16_t* key, const clCodecQueryRec* query) const {
    return mEntries.Call<QvEncoderSet>(kSet, ToQvText(key), query) != 0;
}

void clQvEncoder::ShowConfigBit(std::uint64_t parent, std::int32_t x, std::int32_t y,
                                const char16_t* settings) const {
    mEntries.Call<QvEncoderShowConfigBit>(kShowConfigBit, parent, x, y, ToQvText(settings));
}

const char16_t* clQvEncoder::RemoveConfigBit(std::uint64_t parent) const {
    return FromQvText(mEntries.Call<QvEncoderRemoveConfigBit>(kRemoveConfigBit, parent));
}

bool clQvEncoder::BeginConversion(clEncoderSessionRec* session) const {
    return mEntries.Call<QvEncoderBeginConversion>(kBeginConversion, session) != 0;
}

bool clQvEncoder::EndConversion(clEncoderSessionRec* session) const {
    std::uint32_t reserved = 0;
    return mEntries.Call<QvEncoderEndConversion>(kEndConversion, session, &reserved) != 0;
}

bool clQvEncoder::EncodeBlock(const clBlockRec* block) const {
    return mEntries.Call<QvEncoderEncodeBlock>(kEncodeBlock, block) != 0;
}
