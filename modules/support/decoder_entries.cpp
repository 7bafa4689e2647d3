// The nine entries of a decoder module, for any clModuleDecoder.
#define QV_DECODER_MODULE
#include <cstring>

#include "foundation/joined.h"
#include "foundation/qv_text.h"
#include "modules/support/entry_guard.h"
#include "modules/support/module_decoder.h"

namespace {

// What an instance number stands for: the decoder, and the block that it last handed out.
struct Instance {
    std::unique_ptr<clModuleDecoder> decoder;
    clByteStore flat;
};

Instance& At(QvInstance instance) {
    return *reinterpret_cast<Instance*>(instance);
}

template <class Result, class Entry>
Result Serve(QvInstance instance, Result failed, Entry entry) {
    if (instance == 0) return failed;
    return Guarded(At(instance).decoder->Log(), failed, [&] { return entry(At(instance)); });
}

// Tags of this size and more are not taken by the library.
constexpr std::uint32_t kTagLimit = 1000000;

bool Flatten(Instance& self, const clIDTagList& list) {
    if (list.Serialise(self.flat)) return true;
    self.decoder->Log().ErrorLine(u"not enough memory\r\n");
    return false;
}

IDTagRow* LargestArt(const clIDTagList& tags, std::int32_t* index) {
    IDTagRow* largest = nullptr;
    for (std::int32_t i = 0; i < tags.Count(); ++i) {
        IDTagRow& row = tags.At(i);
        if (row.art.Size() == 0 || (largest && row.art.Size() <= largest->art.Size())) continue;
        largest = &row;
        *index = i;
    }
    return largest;
}

// Text always goes; of the art, what makes the block too large stays behind, the largest first.
bool FlattenBelowLimit(Instance& self, clIDTagList& tags, const char16_t* file) {
    if (!Flatten(self, tags)) return false;
    std::uint64_t size = self.flat.Size();
    if (size < kTagLimit) return true;
    for (std::int32_t index = 0; size >= kTagLimit;) {
        const IDTagRow* row = LargestArt(tags, &index);
        if (!row) {
            self.decoder->Log().Error(file, u"its tags are larger than can be handed on");
            return false;
        }
        self.decoder->Log().Information(
            file, Joined({row->name.Text(), u" of ", XString::FromUInt64(row->art.Size()).Text(),
                          u" bytes is left out: its tags are larger than can be handed on"})
                      .Text());
        size -= row->art.Size();
        tags.RemoveAt(index);
    }
    return Flatten(self, tags);
}

bool Tags(Instance& self, clOpenFileRec& record) {
    clIDTagList tags;
    record.tagData = nullptr;
    record.tagDataSize = 0;
    const char16_t* file = FromQvText(record.file);
    if (!self.decoder->ReadTags(file, tags)) return false;
    if (tags.Count() == 0) return true;
    const bool all = record.request == QV_OPEN_ALL_TAGS;
    if (!(all ? Flatten(self, tags) : FlattenBelowLimit(self, tags, file))) return false;
    if (tags.Count() == 0) return true;
    record.tagData = self.flat.Data();
    record.tagDataSize = self.flat.Size();
    return true;
}

bool PropertyRows(Instance& self, clOpenFileRec& record) {
    clIDTagList rows;
    record.propertyData = nullptr;
    record.propertyDataSize = 0;
    if (!self.decoder->ReadPropertyRows(FromQvText(record.file), rows) || !Flatten(self, rows)) return false;
    record.propertyData = self.flat.Data();
    record.propertyDataSize = self.flat.Size();
    return true;
}

bool Audio(Instance& self, clOpenFileRec& record) {
    static_assert(sizeof(QvFormatExtensible) == sizeof(record.format));
    clAudioInformation information;
    const char16_t* file = FromQvText(record.file);
    const bool good = record.request == QV_OPEN_DECODING ? self.decoder->OpenForDecoding(file, information)
                                                         : self.decoder->ReadInformation(file, information);
    std::memcpy(record.format, &information.format, sizeof record.format);
    record.property = information.property;
    record.lengthMs = information.lengthMs;
    record.fileSize = information.fileSize;
    return good;
}

bool Dispatch(Instance& self, clOpenFileRec& record) {
    switch (record.request) {
        case QV_OPEN_DECODING:
        case QV_OPEN_PROPERTIES:
            return Audio(self, record);
        case QV_OPEN_TAGS:
        case QV_OPEN_ALL_TAGS:
            return Tags(self, record);
        case QV_OPEN_PROPERTY_ROWS:
            return PropertyRows(self, record);
        default:
            self.decoder->Log().Error(FromQvText(record.file), u"opened for something that is not known");
            return false;
    }
}

bool IsKey(const QvChar* key, const char16_t* name) {
    return key && XString(name) == FromQvText(key);
}

bool HandOut(Instance& self, clBlockRec& block) {
    const clDecodedBlock decoded = self.decoder->DecodeBlock();
    block.data = decoded.data;
    block.bytes = decoded.bytes;
    block.timecode = decoded.timecode;
    block.finished = decoded.finished;
    return true;
}

}  // namespace

QvInstance QV_CALL Create(const QvLog* record) {
    const clModuleLog log(record);
    return Guarded(log, QvInstance{}, [&] {
        auto instance = std::make_unique<Instance>();
        instance->decoder = MakeDecoder(log);
        return instance->decoder ? reinterpret_cast<QvInstance>(instance.release()) : QvInstance{};
    });
}

void QV_CALL Destroy(QvInstance instance) {
    if (instance != 0) delete &At(instance);
}

int32_t QV_CALL Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query) {
    return Serve(instance, 0, [&](Instance& self) {
        const std::span<const clFileType> types = self.decoder->FileTypes();
        if (!query || !IsKey(key, u"Decodes") || query->index >= types.size()) return 0;
        query->text = ToQvText(types[query->index].extension);
        query->description = ToQvText(types[query->index].description);
        return 1;
    });
}

int32_t QV_CALL Set(QvInstance instance, const QvChar* key, const clCodecQueryRec* query) {
    return Serve(instance, 0, [&](Instance& self) {
        if (!query || !query->text || !IsKey(key, u"IDTags")) return 0;
        clIDTagList tags;
        if (query->data) tags.Deserialise(query->data, query->dataSize);
        return self.decoder->WriteTags(FromQvText(query->text), tags) ? 1 : 0;
    });
}

int32_t QV_CALL Open(QvInstance instance, clOpenFileRec* record) {
    return Serve(instance, 0,
                 [&](Instance& self) { return record && record->file && Dispatch(self, *record) ? 1 : 0; });
}

void QV_CALL Close(QvInstance instance, void*) {
    Serve(instance, 0, [](Instance& self) { return self.decoder->Close(), 0; });
}

int32_t QV_CALL DecodeBlock(QvInstance instance, clBlockRec* block) {
    if (!block) return 0;
    block->data = nullptr;
    block->bytes = 0;
    block->timecode = 0;
    block->finished = 1;  // what stands if the decoder raises: the stream ends
    Serve(instance, false, [&](Instance& self) { return HandOut(self, *block); });
    return 1;
}

void QV_CALL SetPosition(QvInstance instance, int64_t frame) {
    Serve(instance, 0, [&](Instance& self) { return self.decoder->SetPosition(frame), 0; });
}

int32_t QV_CALL DeleteATag(QvInstance instance, const QvChar* file, const QvChar* name) {
    return Serve(instance, 0, [&](Instance& self) {
        const char16_t* tag = name ? FromQvText(name) : u"";
        return file && self.decoder->DeleteTags(FromQvText(file), tag) ? 1 : 0;
    });
}
