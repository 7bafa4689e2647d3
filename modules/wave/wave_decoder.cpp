#include "modules/wave/wave_decoder.h"

#include <algorithm>
#include <limits>

#include "foundation/joined.h"
#include "modules/tags/tag_file.h"
#include "modules/wave/property_rows.h"

namespace {

constexpr clFileType kFileTypes[] = {
    {u".wav", u"WAVE audio"},
    {u".wave", u"WAVE audio"},
    {u".rf64", u"RF64 audio"},
    {u".bwf", u"Broadcast Wave audio"},
};

clAudioInformation Describe(const clWaveFile& file) {
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();
    clAudioInformation information;
    information.format = file.Format().Record();
    information.property = static_cast<std::int32_t>(
        std::min(std::uint64_t{file.Format().Head().nAvgBytesPerSec} * 8, kLargest));
    information.lengthMs = file.LengthMs();
    information.fileSize = file.Size();
    return information;
}

XString Number(std::uint64_t number) {
    return XString::FromUInt64(number);
}

}  // namespace

std::span<const clFileType> clWaveDecoder::FileTypes() const {
    return kFileTypes;
}

bool clWaveDecoder::ReadInformation(const char16_t* path, clAudioInformation& information) {
    clWaveFile file;
    if (!file.Open(path, mLog)) return false;
    information = Describe(file);
    return true;
}

bool clWaveDecoder::ReadTags(const char16_t* path, clIDTagList& tags) {
    clWaveFile file;
    return file.Open(path, mLog) && ReadFileTags(TagContainer::wave, path, tags, mLog);
}

bool clWaveDecoder::ReadPropertyRows(const char16_t* path, clIDTagList& rows) {
    clWaveFile file;
    if (!file.Open(path, mLog)) return false;
    AddPropertyRows(file, rows);
    return true;
}

bool clWaveDecoder::WriteTags(const char16_t* path, const clIDTagList& tags) {
    return WriteFileTags(TagContainer::wave, path, tags, mLog);
}

bool clWaveDecoder::DeleteTags(const char16_t* path, const char16_t* name) {
    return DeleteFileTags(TagContainer::wave, path, name, mLog);
}

bool clWaveDecoder::OpenForDecoding(const char16_t* path, clAudioInformation& information) {
    Close();
    if (!mFile.Open(path, mLog)) return false;
    information = Describe(mFile);
    const std::uint32_t align = mFile.Format().Head().nBlockAlign;
    mBlockBytes = kBlockBytes / align * align;
    if (!mBuffer) mBuffer = std::make_unique_for_overwrite<std::uint8_t[]>(kBlockBytes);
    mEnd = mFile.AudioBytes();
    if (mFile.LengthIsOpen()) {
        mLog.Information(path, Joined({u"its header leaves the length open, ", Number(mEnd).Text(),
                                       u" bytes up to the end of the file are taken as audio"})
                                   .Text());
    }
    return true;
}

void clWaveDecoder::Close() {
    mFile.Close();
    mPosition = mEnd = 0;
    mEndReported = false;
}

clDecodedBlock clWaveDecoder::DecodeBlock() {
    clDecodedBlock block;
    if (!mFile.IsOpen()) {
        mLog.Error(nullptr, u"no WAVE file is open for decoding");
        block.finished = true;
        return block;
    }
    block.timecode = mFile.Format().FramesIn(mPosition);
    if (mPosition < mEnd) ReadNext(block);
    block.finished = mPosition >= mEnd;
    if (block.finished) Finish();
    return block;
}

void clWaveDecoder::ReadNext(clDecodedBlock& block) {
    const auto wanted = static_cast<std::uint32_t>(std::min<std::uint64_t>(mBlockBytes, mEnd - mPosition));
    std::uint32_t got = 0;
    const bool good = mFile.Reader().Read(mFile.AudioPosition() + mPosition, mBuffer.get(), wanted, &got);
    const std::uint64_t lost = mEnd - mPosition - got;
    if (got < wanted) got -= got % mFile.Format().Head().nBlockAlign;
    block.data = mBuffer.get();
    block.bytes = got;
    mPosition += got;
    if (!good) {
        Cut(Joined({u"can't be read (error ", Number(mFile.Reader().Error()).Text(), u")"}).Text());
    } else if (got < wanted) {  // the file has become shorter since it was opened
        ReportMissing(mFile.MissingBytes() + lost);
        mPosition = mEnd;
    }
}

// The stream ends here for good reason: what follows can't be had.
void clWaveDecoder::Cut(const char16_t* trouble) {
    mLog.Error(mFile.Path().Text(), trouble);
    mEndReported = true;
    mPosition = mEnd;
}

void clWaveDecoder::ReportMissing(std::uint64_t missing) {
    Cut(Joined({Number(missing).Text(), u" of ", Number(mFile.ClaimedBytes()).Text(),
                u" bytes of audio are missing"})
            .Text());
}

void clWaveDecoder::Finish() {
    if (mEndReported) return;
    mEndReported = true;
    if (mFile.MissingBytes() > 0) return ReportMissing(mFile.MissingBytes());
    const std::uint64_t rest = mFile.ClaimedBytes() - mEnd;
    if (rest == 0) return;
    mLog.Information(
        mFile.Path().Text(),
        Joined({u"its last ", Number(rest).Text(), u" bytes make no whole frame and are left out"}).Text());
}

void clWaveDecoder::SetPosition(std::int64_t frame) {
    if (!mFile.IsOpen()) return;
    const std::uint64_t target = frame > 0 ? static_cast<std::uint64_t>(frame) : 0;
    const bool isBehind = target > 0 && target >= mFile.Frames();
    mPosition = isBehind ? mEnd : std::min(mFile.Format().BytePositionOf(target), mEnd);
}
