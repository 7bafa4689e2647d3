#include "plugins/decoder_module.h"

#include "foundation/qv_text.h"

namespace {

enum Slot { kCreate, kDestroy, kGet, kSet, kOpen, kClose, kDecodeBlock, kSetPosition, kDeleteATag };

}  // namespace

const char* const clQvDecoder::kEntryNames[kEntryCount] = {
    "Create", "Destroy", "Get", "Set", "Open", "Close", "DecodeBlock", "SetPosition", "DeleteATag"};

bool clQvDecoder::Load(const char16_t* path) {
    return LoadEntries(path, kEntryNames, mEntries.Slots());
}

void clQvDecoder::Unload() {
    mEntries.Destroy();
    FreeModule();
    Load(nullptr);
    Remember(u"", u"");
}

const XString& clQvDecoder::RememberedExtension() {
    if (!HasModule()) mExtension = u"";
    return mExtension;
}

const XString& clQvDecoder::RememberedPath() {
    if (!HasModule()) mPath = u"";
    return mPath;
}

void clQvDecoder::Remember(const XString& extension, const XString& path) {
    mExtension = extension;
    mPath = path;
}

bool clQvDecoder::Get(const char16_t* key, clCodecQueryRec* query) const {
    return mEntries.Call<QvDecoderGet>(kGet, ToQvText(key), query) != 0;
}

bool clQvDecoder::GetDecodesRow(std::uint32_t index, clCodecQueryRec* row) const {
    *row = {};
    row->index = index;
    return Get(u"Decodes", row) && row->text;
}

bool clQvDecoder::Set(const char16_t* key, const clCodecQueryRec* query) const {
    return mEntries.Call<QvDecoderSet>(kSet, ToQvText(key), query) != 0;
}

bool clQvDecoder::Open(clOpenFileRec* record) const {
    return mEntries.Call<QvDecoderOpen>(kOpen, record) != 0;
}

void clQvDecoder::Close(void* record) const {
    mEntries.Call<QvDecoderClose>(kClose, record);
}

bool clQvDecoder::DecodeBlock(clBlockRec* block) const {
    return mEntries.Call<QvDecoderDecodeBlock>(kDecodeBlock, block) != 0;
}

void clQvDecoder::SetPosition(std::int64_t frame) const {
    mEntries.Call<QvDecoderSetPosition>(kSetPosition, frame);
}

bool clQvDecoder::DeleteATag(const char16_t* file, const char16_t* name) const {
    return mEntries.Call<QvDecoderDeleteATag>(kDeleteATag, ToQvText(file), ToQvText(name)) != 0;
}
