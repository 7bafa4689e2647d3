// A decoder that does as its script says (script.h). Its directives, each optional:
//
//     decodes|.ext|DESCRIPTION          a row of Get "Decodes", in order; fields that are missing are null
//     more|N                            N rows behind those, of extension and description .more
//     open|REQUEST|0                    Open refuses this request
//     silent|REQUEST                    Open succeeds and fills nothing, for this request or for any
//     format|TAG|CHANNELS|RATE|BITS|CBSIZE   what Open reports; PCM, 2 channels, 44100 Hz, 16 bits, 0 otherwise
//     norates                           the format has no block alignment and no byte rate
//     closes                            the journal names the file in the record that Close is given
//     length|MS    size|BYTES    property|N
//     tag|NAME|VALUE|BYTES              a row of requests 8 and 32, with so many bytes of art
//     row|NAME|VALUE                    a row of request 16
//     cut|N                             the rows of requests 8, 16 and 32 end so many bytes early
//     nulls                             every pointer that Open and DecodeBlock report is null, sizes stay
//     block|RESULT|BYTES|TIMECODE|FINISHED    one answer of DecodeBlock each; behind the last comes an empty
//     last block set|0    delete|0                 Set, DeleteATag fail
//
// What a caller should have cleared and has not shows in the journal, as a "dirty" behind the call.
//
// A block's bytes are the low bytes of their own position in the stream, so that whoever gets them can tell
// where they are from, also behind a SetPosition.
#define QV_DECODER_MODULE
#include "modules/script.h"

#include <cstring>

#include "foundation/id_tag_list.h"

namespace {

using script::Script;

// A list of rows in the flat form, with the texts and art that a script's lines name.
void Flatten(const std::vector<Script::Fields>& rows, clByteStore& flat) {
    clIDTagList list;
    for (const Script::Fields& row : rows) {
        const XString name(row.at(0).c_str()), value(row.at(1).c_str());
        const std::vector<std::uint8_t> art(row.size() > 2 ? std::stoul(row[2]) : 0, std::uint8_t{0xA7});
        list.AddBinary(name.Text(), value.Text(), art.data(), static_cast<std::uint32_t>(art.size()));
    }
    list.Serialise(flat);
}

struct Decoder : script::Instance {
    using Instance::Instance;

    const QvChar* Keep(const Script::Fields& row, std::size_t field, std::basic_string<QvChar>& home) const {
        if (field >= row.size() || row[field].empty()) return nullptr;
        home = script::Wide(row[field]);
        return home.c_str();
    }
    std::uint16_t BlockAlign() const {
        return static_cast<std::uint16_t>(script.Number("format", 1, 2) * script.Number("format", 3, 16) / 8);
    }
    void DescribeFormat(std::uint8_t (&record)[40]) const;
    void DescribeFile(clOpenFileRec& record) const;
    void DescribeRows(clOpenFileRec& record);

    std::basic_string<QvChar> text, description;
    clByteStore tags, properties;
    std::vector<std::uint8_t> data;
    std::size_t nextBlock = 0;
    std::int64_t position = 0;  // bytes
};

void Decoder::DescribeFormat(std::uint8_t (&record)[40]) const {
    QvFormat format = {};
    format.wFormatTag = static_cast<std::uint16_t>(script.Number("format", 0, QV_FORMAT_PCM));
    format.nChannels = static_cast<std::uint16_t>(script.Number("format", 1, 2));
    format.nSamplesPerSec = static_cast<std::uint32_t>(script.Number("format", 2, 44100));
    format.wBitsPerSample = static_cast<std::uint16_t>(script.Number("format", 3, 16));
    format.nBlockAlign = BlockAlign();
    format.nAvgBytesPerSec = format.nBlockAlign * format.nSamplesPerSec;
    if (script.Has("norates")) format.nAvgBytesPerSec = format.nBlockAlign = 0;
    format.cbSize = static_cast<std::uint16_t>(script.Number("format", 4, 0));
    std::memset(record, 0, sizeof record);
    std::memcpy(record, &format, sizeof format);
}

void Decoder::DescribeFile(clOpenFileRec& record) const {
    DescribeFormat(record.format);
    record.property = static_cast<std::int32_t>(script.Number("property", 0, 0));
    record.lengthMs = static_cast<std::uint64_t>(script.Number("length", 0, 0));
    record.fileSize = static_cast<std::uint64_t>(script.Number("size", 0, 0));
}

void Decoder::DescribeRows(clOpenFileRec& record) {
    const bool asksForTags = record.request != QV_OPEN_PROPERTY_ROWS;
    clByteStore& flat = asksForTags ? tags : properties;
    Flatten(script.Rows(asksForTags ? "tag" : "row"), flat);
    const std::uint8_t* reported = script.Has("nulls") ? nullptr : flat.Data();
    const auto size = static_cast<std::uint32_t>(flat.Size() - script.Number("cut", 0, 0));
    if (asksForTags) {
        record.tagData = reported;
        record.tagDataSize = size;
    } else {
        record.propertyData = reported;
        record.propertyDataSize = size;
    }
}

// " dirty" unless the record holds nothing but what `clean` does.
template <class Record>
const char* Dirt(const Record& record, const Record& clean) {
    return std::memcmp(&record, &clean, sizeof record) == 0 ? "" : " dirty";
}

// The bytes of a row's art, as far as a journal's line bears them.
std::string Hex(const clByteStore& art) {
    std::string text;
    for (std::uint32_t i = 0; i < art.Size() && i < 16; ++i) {
        constexpr char kDigits[] = "0123456789ABCDEF";
        text += {kDigits[art.Data()[i] >> 4], kDigits[art.Data()[i] & 15]};
    }
    return text;
}

std::int64_t FieldOf(const Script::Fields& row, std::size_t field, std::int64_t otherwise) {
    return field < row.size() ? std::stoll(row[field]) : otherwise;
}

}  // namespace

QvInstance Create(const QvLog* log) {
    return script::Make<Decoder>(log, "Create");
}

void Destroy(QvInstance instance) {
    script::End<Decoder>(instance, "Destroy");
}

int32_t Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query) {
    const std::string details = script::Narrow(key) + " " + std::to_string(query->index);
    Decoder& decoder = script::Enter<Decoder>(instance, "Get", details);
    const std::vector<Script::Fields> rows = decoder.script.Rows("decodes");
    if (query->index >= rows.size()) {
        decoder.text = script::Wide(".more");
        query->text = query->description = decoder.text.c_str();
        return query->index < rows.size() + static_cast<std::uint64_t>(decoder.script.Number("more", 0, 0));
    }
    query->text = decoder.Keep(rows[query->index], 0, decoder.text);
    query->description = decoder.Keep(rows[query->index], 1, decoder.description);
    return 1;
}

int32_t Set(QvInstance instance, const QvChar* key, const clCodecQueryRec* query) {
    clCodecQueryRec clean = {};
    clean.text = query->text;
    clean.data = query->data;
    clean.dataSize = query->dataSize;
    const std::string details = script::Narrow(key) + " " + script::Narrow(query->text) + Dirt(*query, clean);
    Decoder& decoder = script::Enter<Decoder>(instance, "Set", details);
    clIDTagList list;
    list.Deserialise(query->data, query->dataSize);
    for (std::int32_t i = 0; i < list.Count(); ++i) {
        IDTagRow& row = list.At(i);
        decoder.Called("Set row", std::string(row.name.ToNarrow()) + "|" + row.value.ToNarrow() + "|" +
                                      std::to_string(row.art.Size()));
        if (row.art.Size() > 0) decoder.Called("Set art", Hex(row.art));
    }
    return decoder.script.Result("set");
}

int32_t Open(QvInstance instance, clOpenFileRec* record) {
    clOpenFileRec clean = {};
    clean.file = record->file;
    clean.request = record->request;
    const std::string details =
        std::to_string(record->request) + " " + script::Narrow(record->file) + Dirt(*record, clean);
    Decoder& decoder = script::Enter<Decoder>(instance, "Open", details);
    for (const Script::Fields& refusal : decoder.script.Rows("open")) {
        if (FieldOf(refusal, 0, 0) == record->request) return static_cast<int32_t>(FieldOf(refusal, 1, 1));
    }
    if (decoder.script.Has("silent") &&
        decoder.script.Number("silent", 0, record->request) == record->request)
        return 1;
    if (record->request == QV_OPEN_DECODING || record->request == QV_OPEN_PROPERTIES) {
        decoder.DescribeFile(*record);
    } else {
        decoder.DescribeRows(*record);
    }
    return 1;
}

void Close(QvInstance instance, void* record) {
    const bool looks = reinterpret_cast<Decoder*>(instance)->script.Has("closes");
    script::Enter<Decoder>(instance, "Close",
                           looks ? script::Narrow(static_cast<clEncoderSessionRec*>(record)->file) : "");
}

int32_t DecodeBlock(QvInstance instance, clBlockRec* block) {
    Decoder& decoder = script::Enter<Decoder>(instance, "DecodeBlock");
    const std::vector<Script::Fields> blocks = decoder.script.Rows("block");
    const bool past = decoder.nextBlock >= blocks.size();
    const Script::Fields row = past ? Script::Fields{"1", "0", "0", "1"} : blocks[decoder.nextBlock++];
    if (FieldOf(row, 0, 1) == 0) return 0;
    decoder.data.resize(static_cast<std::size_t>(FieldOf(row, 1, 0)));
    for (std::uint8_t& byte : decoder.data) byte = static_cast<std::uint8_t>(decoder.position++);
    block->data = decoder.script.Has("nulls") ? nullptr : decoder.data.data();
    block->bytes = static_cast<std::uint32_t>(decoder.data.size());
    block->timecode = static_cast<std::uint64_t>(FieldOf(row, 2, 0));
    block->finished = static_cast<std::uint32_t>(FieldOf(row, 3, 0));
    return 1;
}

void SetPosition(QvInstance instance, int64_t frame) {
    Decoder& decoder = script::Enter<Decoder>(instance, "SetPosition", std::to_string(frame));
    decoder.position = frame * decoder.BlockAlign();
}

int32_t DeleteATag(QvInstance instance, const QvChar* file, const QvChar* name) {
    const std::string details = script::Narrow(file) + " " + script::Narrow(name);
    return script::Enter<Decoder>(instance, "DeleteATag", details).script.Result("delete");
}
