#include "converter/source.h"

#include <algorithm>
#include <cstring>

#include "audio/format_record.h"
#include "converter/module_search.h"
#include "foundation/qv_text.h"
#include "plugins/codec_handler.h"

namespace {

// A decoder is asked again at once when it gave no block, or an empty one; one that gives nothing else must
// not hold us for ever.
constexpr int kFruitlessCalls = 1000;

// What a module may report without being asked for all of it.
constexpr std::uint32_t kLargestTagData = 1000000;

}  // namespace

Source::Source(std::u16string file, Reporter& reporter) : mFile(std::move(file)), mErrors(reporter) {
    mLog.mErrorOut = mErrors.Channel();
    mLog.mInfoOut = mTagLog.mErrorOut = mTagLog.mInfoOut = reporter.InformationStream();
}

bool Source::FindDecoder() {
    return LoadDecoderFor(XString(mFile.c_str()), mDecoder, mLog);
}

bool Source::Open() {
    mBytes = 0;
    mRecord = {};
    mRecord.file = ToQvText(mFile.c_str());
    mRecord.request = QV_OPEN_DECODING;
    mOpen = mDecoder.Open(&mRecord);
    clFormatHolder format;
    TakeFormat(format, mRecord.format);
    GiveFormat(format, mRecord.format);
    return mOpen;
}

bool Source::OpenAgain() {
    const AudioForm before = Form();
    CloseFile();
    return clQvCodecHandler::CreateInstance(mDecoder, mLog) && Open() && Form().format == before.format;
}

AudioForm Source::Form() const {
    AudioForm form;
    std::memcpy(form.format.data(), mRecord.format, sizeof mRecord.format);
    form.lengthMs = mRecord.lengthMs;
    return form;
}

// An instance serves one purpose: each request for tags gets one of its own, and the decoding a fresh one. A module
// that doesn't know the first request may refuse it or leave it unanswered.
void Source::ReadTags(clIDTagList& tags) {
    if (!ReadTags(QV_OPEN_ALL_TAGS, tags)) ReadTags(QV_OPEN_TAGS, tags);
    clQvCodecHandler::CreateInstance(mDecoder, mLog);
}

bool Source::ReadTags(std::uint32_t request, clIDTagList& tags) {
    clQvCodecHandler::CreateInstance(mDecoder, mTagLog);
    clOpenFileRec record = {};
    record.file = ToQvText(mFile.c_str());
    record.request = request;
    if (!mDecoder.Open(&record) || !record.tagData || record.tagDataSize == 0) return false;
    const bool isTooMuch = request == QV_OPEN_TAGS && record.tagDataSize >= kLargestTagData;
    if (!isTooMuch) tags.Deserialise(record.tagData, record.tagDataSize);
    return true;
}

bool Source::NextBlock(clBlockRec& block) {
    for (int call = 0; call < kFruitlessCalls; ++call) {
        block = {};
        if (!mDecoder.DecodeBlock(&block) || (block.bytes == 0 && block.finished == 0)) continue;
        if (block.bytes > 0 && !block.data) return false;
        mBytes += block.bytes;
        return true;
    }
    return false;
}

bool Source::Close() {
    CloseFile();
    mDecoder.Unload();
    return mErrors.Close() == 0;
}

void Source::CloseFile() {
    clEncoderSessionRec session = {};  // modules may expect the record, though nothing in it is for decoders
    if (mOpen) mDecoder.Close(&session);
    mOpen = false;
}

int Source::Percent() const {
    QvFormat format;
    std::memcpy(&format, mRecord.format, sizeof(format));
    if (mRecord.lengthMs == 0 || format.nAvgBytesPerSec == 0) return 0;
    const double decodedMs = static_cast<double>(mBytes) * 1000.0 / format.nAvgBytesPerSec;
    return std::min(
        99, static_cast<int>(std::min(1.0, decodedMs / static_cast<double>(mRecord.lengthMs)) * 100.0));
}
