#include "host.h"

#include <algorithm>

#include "platform/clock.h"

namespace {

constexpr std::size_t kLongestText = 4 << 20;
constexpr std::u16string_view kNotOffered = u".IGNORE";

// A block of tags is below 1000000 bytes, and art is delivered into a buffer that is larger than it.
constexpr std::size_t kLargestArt = 1000000;

// The error that the library reports for a file without a name. Nothing else ever asks it for one.
constexpr std::u16string_view kMark = u"Error reading audio info, file does not exist ''";
constexpr std::uint32_t kLongestWaitMs = 5000;

bool Precedes(const ModuleRow& one, const ModuleRow& other) {
    return one.name < other.name;
}

std::vector<ModuleRow> Offered(std::vector<ModuleRow> rows) {
    std::erase_if(
        rows, [](const ModuleRow& row) { return row.extension.find(kNotOffered) != std::u16string::npos; });
    std::stable_sort(rows.begin(), rows.end(), &Precedes);
    return rows;
}

// What the library says of its own calls.
bool IsOfLibrary(std::u16string_view line) {
    constexpr std::u16string_view kBeginnings[] = {u"Reading ", u"Writing ID tag", u"Deleting ",
                                                   u"Finished "};
    return std::any_of(std::begin(kBeginnings), std::end(kBeginnings),
                       [&](std::u16string_view beginning) { return line.starts_with(beginning); });
}

// Cuts the line that holds the mark out of the text. False when there is none.
bool CutMark(std::u16string& text) {
    const std::size_t at = text.rfind(kMark);
    if (at == std::u16string::npos) return false;
    const std::size_t end = text.find(u'\n', at);
    if (end == std::u16string::npos) return false;
    text.erase(at, end + 1 - at);
    return true;
}

}  // namespace

// The memory is untouched until a text needs it.
Host::Host() : mConverter(QACCreate()) {
    for (auto& buffer : mBuffers) {
        buffer = std::make_unique_for_overwrite<QvChar[]>(kLongestText);
        buffer[0] = 0;
    }
}

std::u16string Host::Take(int32_t(QV_CALL* get)(QvConverter*, QvChar*)) {
    if (get(mConverter, Buffer(0)) != QV_DONE) return {};
    return Text(0);
}

// Errors travel through one channel in their order, but take a moment. So an error is provoked that can be told
// from all others: once it is there, everything before it is.
std::u16string Host::TakeAllErrors() {
    AudioNumbers none;
    ReadNumbers(u"", none);
    std::u16string errors;
    const std::uint32_t start = platform::GetTickCount();
    while (!CutMark(errors) && platform::GetTickCount() - start < kLongestWaitMs) {
        platform::Sleep(1);
        errors += TakeErrors();
    }
    return errors;
}

// Information has a channel of its own, which is emptied after that of the errors: what was there when the first of
// two marks came is there when the second has.
Reports Host::TakeReports() {
    Reports reports;
    reports.errors = TakeAllErrors();
    reports.errors += TakeAllErrors();
    const std::u16string information = TakeInformation();
    for (std::size_t at = 0; at < information.size();) {
        const std::size_t end = std::min(information.find(u'\n', at), information.size() - 1) + 1;
        const std::u16string line = information.substr(at, end - at);
        if (!IsOfLibrary(line)) reports.remarks += line;
        at = end;
    }
    return reports;
}

std::vector<ModuleRow> Host::Encoders() {
    std::vector<ModuleRow> rows;
    for (int32_t i = 0; QACGetEncoder(mConverter, i, Buffer(0), Buffer(1)) == QV_DONE; ++i)
        rows.push_back({Text(0), Text(1), {}});
    return Offered(std::move(rows));
}

std::vector<ModuleRow> Host::Decoders() {
    std::vector<ModuleRow> rows;
    for (int32_t i = 0; QACGetDecoder(mConverter, i, Buffer(0), Buffer(1), Buffer(2)) == QV_DONE; ++i)
        rows.push_back({Text(0), Text(1), Text(2)});
    return Offered(std::move(rows));
}

std::vector<ModuleRow> Host::Effects() {
    std::vector<ModuleRow> rows;
    for (int32_t i = 0; QACGetDSP(mConverter, i, Buffer(0)) == QV_DONE; ++i)
        rows.push_back({Text(0), {}, {}});
    return Offered(std::move(rows));
}

bool Host::ReadNumbers(const std::u16string& file, AudioNumbers& numbers) {
    return QACReadAudioProperties(mConverter, AsQvChar(file), &numbers.format, &numbers.lengthMs,
                                  &numbers.fileSize, &numbers.property) == QV_DONE;
}

// A module that has no rows leaves those of the file before in the handle; a handle is therefore asked for the
// properties of one file only. An answer of 1 whose first row has no name says that there are none.
bool Host::ReadProperties(const std::u16string& file, std::vector<TextRow>& rows) {
    for (int32_t i = 0;; ++i) {
        const int32_t result = QACReadAudioPropStrings(mConverter, AsQvChar(file), i, Buffer(0), Buffer(1));
        if (result < 0) return false;
        if (result == QV_NOTHING || (i == 0 && Text(0).empty())) return true;
        rows.push_back({Text(0), Text(1), {}});
    }
}

// A text answers 2, a picture 1; a first answer of 1 without a name says that there are neither.
bool Host::ReadTags(const std::u16string& file, std::vector<TextRow>& rows) {
    std::vector<std::uint8_t> art(kLargestArt);
    for (int32_t i = 0;; ++i) {
        std::uint64_t artSize = art.size();
        const int32_t result =
            QACReadIDTag(mConverter, AsQvChar(file), i, Buffer(0), Buffer(1), art.data(), &artSize);
        if (result < 0) return false;
        if (result == QV_NOTHING || (i == 0 && result == QV_DONE && Text(0).empty())) return true;
        rows.push_back({Text(0), Text(1), {art.begin(), art.begin() + static_cast<std::ptrdiff_t>(artSize)}});
    }
}

FormAnswer Host::ShowSettings(bool isEffect, const std::u16string& name, const std::u16string& text) {
    const auto show = isEffect ? QACShowDSPSettings : QACShowSettings;
    const bool cameUp = show(mConverter, AsQvChar(name), AsQvChar(text), Buffer(0), Buffer(1)) == QV_DONE;
    return {cameUp, Text(0), Text(1)};
}
