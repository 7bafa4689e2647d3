#include "info.h"

#include "decimal.h"
#include "host.h"
#include "json.h"
#include "reading.h"
#include "tally.h"

namespace {

struct FileInfo {
    std::u16string file;
    Reading reading;
    AudioNumbers numbers;
    std::vector<TextRow> properties;
};

// A handle of its own for every file, see Host::ReadProperties.
FileInfo Read(const std::u16string& file) {
    Host host;
    FileInfo info{file, {}, {}, {}};
    const bool good = host.ReadNumbers(file, info.numbers) && host.ReadProperties(file, info.properties);
    info.reading =
        Conclude(good, host.TakeAllErrors(), u"'" + file + u"' can't be read: its decoder does not work.");
    return info;
}

// The numbers, for a module that has no rows for display.
std::vector<TextRow> RowsOf(const AudioNumbers& numbers) {
    return {{u"Format tag", Decimal(numbers.format.wFormatTag), {}},
            {u"Channels", Decimal(numbers.format.nChannels), {}},
            {u"Sample rate", Decimal(numbers.format.nSamplesPerSec) + u" Hz", {}},
            {u"Bits per sample", Decimal(numbers.format.wBitsPerSample), {}},
            {u"Length", Decimal(numbers.lengthMs) + u" ms", {}},
            {u"File size", Decimal(numbers.fileSize) + u" bytes", {}}};
}

std::u16string Plain(const FileInfo& info) {
    constexpr std::size_t kNames = 18;
    std::u16string text = info.file + u"\n";
    for (const TextRow& row : info.properties.empty() ? RowsOf(info.numbers) : info.properties) {
        const std::size_t gap = row.name.size() < kNames ? kNames - row.name.size() : 1;
        text += u"  " + row.name + std::u16string(gap, u' ') + row.value + u"\n";
    }
    return text;
}

void WriteNumbers(JsonWriter& json, const AudioNumbers& numbers) {
    json.Key(u"format").BeginObject();
    json.Key(u"tag").Number(numbers.format.wFormatTag);
    json.Key(u"channels").Number(numbers.format.nChannels);
    json.Key(u"sampleRate").Number(numbers.format.nSamplesPerSec);
    json.Key(u"bytesPerSecond").Number(numbers.format.nAvgBytesPerSec);
    json.Key(u"bytesPerFrame").Number(numbers.format.nBlockAlign);
    json.Key(u"bitsPerSample").Number(numbers.format.wBitsPerSample);
    json.EndObject();
    json.Key(u"lengthMs").Number(static_cast<std::int64_t>(numbers.lengthMs));
    json.Key(u"fileSize").Number(static_cast<std::int64_t>(numbers.fileSize));
    json.Key(u"property").Number(numbers.property);
}

void Write(JsonWriter& json, const FileInfo& info) {
    json.BeginObject().Key(u"file").Text(info.file);
    if (info.reading.good) {
        WriteNumbers(json, info.numbers);
        json.Key(u"properties").BeginArray();
        for (const TextRow& row : info.properties)
            json.BeginObject().Key(u"name").Text(row.name).Key(u"value").Text(row.value).EndObject();
        json.EndArray();
    }
    if (!info.reading.errors.empty()) json.Key(u"error").Text(info.reading.errors);
    json.EndObject();
}

}  // namespace

ExitCode RunInfo(const InfoOptions& options) {
    Tally tally;
    JsonWriter json;
    bool said = true;
    json.BeginObject().Key(u"files").BeginArray();
    for (const std::u16string& file : options.files) {
        const FileInfo info = Read(file);
        tally.Count(info.reading.Code());
        if (options.json) {
            Write(json, info);
        } else if (info.reading.good) {
            said = Say(Plain(info)) && said;
        }
    }
    json.EndArray().EndObject();
    if (options.json) said = Say(json.Document());
    return Concluded(tally.Result(), said);
}
