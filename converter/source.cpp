#include "converter/source.h"

#include <algorithm>
#include <cstring>

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
    mLog.mInfoOut = reporter.InformationStream();
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
    return mOpen;
}

bool Source::OpenAgain() {
    const AudioForm before = Form();
    mDecoder.Close(nullptr);
    mOpen = false;
    return clQvCodecHandler::CreateInstance(mDecoder, mLog) && Open() && Form().format == before.format;
}

AudioForm Source::Form() const {
    AudioForm form;
    std::memcpy(form.format.data(), mRecord.format, sizeof mRecord.format);
    form.lengthMs = mRecord.lengthMs;
    return form;
}

// An instance serves one purpose: each request for tags gets one of its own, and the decoding a fresh one.
void Source::ReadTags(clIDTagList& tags) {
    if (!ReadTags(QV_OPEN_ALL_TAGS, tags)) ReadTags(QV_OPEN_TAGS, tags);
    clQvCodecHandler::CreateInstance(mDecoder, mLog);
}

bool Source::ReadTags(std::uint32_t request, clIDTagList& tags) {
    XLog log = mLog;
    log.mErrorOut = log.mInfoOut;
    clQvCodecHandler::CreateInstance(mDecoder, log);
    clOpenFileRec record = {};
    record.file = ToQvText(mFile.c_str());
    record.request = request;
    if (!mDecoder.Open(&record)) return false;
    const bool isTooMuch = request == QV_OPEN_TAGS && record.tagDataSize >= kLargestTagData;
    if (record.tagData && !isTooMuch) tags.Deserialise(record.tagData, record.tagDataSize);
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
    if (mOpen) mDecoder.Close(nullptr);
    mOpen = false;
    mDecoder.Unload();
    return mErrors.Close() == 0;
}

int Source::Percent() const {
    QvFormat format;
    std::memcpy(&format, mRecord.format, sizeof(format));
    if (mRecord.lengthMs == 0 || format.nAvgBytesPerSec == 0) return 0;
    const double decodedMs = static_cast<double>(mBytes) * 1000.0 / format.nAvgBytesPerSec;
    return std::min(
        99, static_cast<int>(std::min(1.0, decodedMs / static_cast<double>(mRecord.lengthMs)) * 100.0));
}
