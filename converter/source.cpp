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
    mRecord = {};
    mRecord.file = ToQvText(mFile.c_str());
    mRecord.request = QV_OPEN_DECODING;
    mOpen = mDecoder.Open(&mRecord);
    return mOpen;
}

// An instance serves one purpose: the tags get one of their own, and the decoding a fresh one.
void Source::ReadTags(clIDTagList& tags) {
    XLog log = mLog;
    log.mErrorOut = log.mInfoOut;
    clQvCodecHandler::CreateInstance(mDecoder, log);
    clOpenFileRec record = {};
    record.file = ToQvText(mFile.c_str());
    record.request = QV_OPEN_TAGS;
    if (mDecoder.Open(&record) && record.tagData && record.tagDataSize > 0 &&
        record.tagDataSize < kLargestTagData) {
        tags.Deserialise(record.tagData, record.tagDataSize);
    }
    clQvCodecHandler::CreateInstance(mDecoder, mLog);
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
