// Nothing but the audio itself says whether a format could be delivered: a block that can't be brought into it is
// dropped without a word. So no audio out of a file that has some means that the format was out of reach.
#include "decode.h"

#include <algorithm>

#include "decimal.h"
#include "destination.h"
#include "host.h"
#include "interruption.h"
#include "output_stream.h"
#include "platform/program.h"
#include "terminal.h"
#include "wave_header.h"

namespace {

constexpr std::uint32_t kUsualBlock = 256 << 10;

// Whole frames, and several milliseconds of them: a block that was delivered has a position above 0.
std::uint32_t BlockBytes(const QvFormat& format) {
    const std::uint32_t frame = std::max<std::uint32_t>(format.nBlockAlign, 1);
    const std::uint32_t bytes = std::max(kUsualBlock, format.nAvgBytesPerSec / 250);
    return bytes / frame * frame + frame;
}

// The open file of a handle, block by block.
class Blocks {
  public:
    Blocks(Host& host, const QvFormat& format) : mHost(host), mBuffer(BlockBytes(format)) {}

    // The next audio; empty at the end. A stream whose tail fills the last request exactly ends without a word:
    // the call behind it leaves the buffer alone and has a position of 0.
    std::string_view Next() {
        if (mFinished != 0) return {};
        auto bytes = static_cast<std::uint32_t>(mBuffer.size());
        std::uint64_t positionMs = 0;
        QADDecodeBlock(mHost.Handle(), mBuffer.data(), &bytes, &mFinished, &positionMs);
        if (mFinished == 0 && positionMs == 0) return {};
        return {reinterpret_cast<const char*>(mBuffer.data()), bytes};
    }

  private:
    Host& mHost;
    std::vector<std::uint8_t> mBuffer;
    std::uint32_t mFinished = 0;
};

// One file with a handle of its own: what a handle's stages hold of one stream would come out with the next.
class Decoding {
  public:
    explicit Decoding(const DecodeOptions& options) : mOptions(options), mOutput(options.output) {}

    ExitCode Run() {
        if (!Open()) return ExitCode::kFailed;
        const ExitCode code = Deliverable() ? Deliver() : ExitCode::kFailed;
        QADCloseFile(mHost.Handle());
        mErrors += mHost.TakeAllErrors();
        TellErrors(mErrors);
        return code == ExitCode::kDone ? Conclude() : code;
    }

  private:
    bool Open();
    bool Deliverable() const;
    bool HasAudio() const;
    ExitCode Deliver();
    ExitCode Conclude();
    bool WriteEnd();
    ExitCode OutputFailed() const;
    void TellOutOfReach() const;
    bool WriteHeader();

    const DecodeOptions& mOptions;
    Host mHost;
    OutputStream mOutput;
    QvFormatExtensible mFormat = {};
    std::uint64_t mLengthMs = 0, mAudioBytes = 0;
    std::u16string mErrors;
};

bool Decoding::Open() {
    mFormat.Format.nChannels = mOptions.wanted.channels;
    mFormat.Format.wBitsPerSample = mOptions.wanted.bits;
    mFormat.Format.nSamplesPerSec = mOptions.wanted.rate;
    if (QADOpenFile(mHost.Handle(), AsQvChar(mOptions.file), &mFormat, &mLengthMs) == QV_DONE) return true;
    mErrors = mHost.TakeAllErrors();
    if (mErrors.empty()) mErrors = u"'" + mOptions.file + u"' can't be opened: its decoder does not work.\n";
    TellErrors(mErrors);
    return false;
}

bool Decoding::Deliverable() const {
    if (WaveHeader::CanDescribe(mFormat)) return true;
    const std::uint32_t type = SampleType(mFormat);
    const bool plain = type == QV_FORMAT_PCM || type == QV_FORMAT_FLOAT;
    if (plain) {
        TellOutOfReach();
    } else if (!mOptions.raw) {
        Tell(u"'" + mOptions.file + u"' holds coded audio (format tag " + Decimal(type) +
             u"); --raw passes it on as it stands.");
    }
    return !plain && mOptions.raw;
}

// Whether the file, read as it stands, holds as much as a frame at the rate that is delivered.
bool Decoding::HasAudio() const {
    Host host;
    QvFormatExtensible own = {};
    std::uint64_t lengthMs = 0;
    if (QADOpenFile(host.Handle(), AsQvChar(mOptions.file), &own, &lengthMs) != QV_DONE) return false;
    const std::uint64_t bytes = Blocks(host, own.Format).Next().size();
    QADCloseFile(host.Handle());
    const std::uint64_t frames = bytes / std::max<std::uint32_t>(own.Format.nBlockAlign, 1);
    return frames * mFormat.Format.nSamplesPerSec >= own.Format.nSamplesPerSec && frames > 0;
}

void Decoding::TellOutOfReach() const {
    const QvFormat& format = mFormat.Format;
    Tell(u"'" + mOptions.file + u"' can't be delivered in that format: " + Decimal(format.nSamplesPerSec) +
         u" Hz, " + Decimal(format.nChannels) + u" channel(s), " + Decimal(format.wBitsPerSample) +
         (SampleType(mFormat) == QV_FORMAT_FLOAT ? u" bits of float." : u" bits."));
}

ExitCode Decoding::Deliver() {
    if (!mOutput.Open()) return OutputFailed();
    Blocks blocks(mHost, mFormat.Format);
    for (std::string_view audio = blocks.Next(); !audio.empty(); audio = blocks.Next()) {
        if (mAudioBytes == 0 && !WriteHeader()) return OutputFailed();
        if (!mOutput.Write(audio)) return OutputFailed();
        mAudioBytes += audio.size();
        mErrors += mHost.TakeErrors();
        mHost.TakeInformation();
        if (interruption::Raised()) {
            Tell(mOutput.IsFile() ? u"Cancelled; nothing was written." : u"Cancelled.");
            return ExitCode::kCancelled;
        }
    }
    return ExitCode::kDone;
}

ExitCode Decoding::Conclude() {
    if (mAudioBytes == 0 && mErrors.empty() && HasAudio()) {
        TellOutOfReach();
        return ExitCode::kFailed;
    }
    if (!WriteEnd() || !mOutput.Commit()) return OutputFailed();
    if (!mErrors.empty()) {
        Tell(u"'" + mOptions.file + u"' is damaged; what could be read of it was written.");
        return ExitCode::kDamaged;
    }
    if (mOutput.IsFile() && !mOptions.quiet)
        Tell(u"Decoded '" + mOptions.file + u"' to '" + mOptions.output + u"'");
    return ExitCode::kDone;
}

// Only once there is audio, or surely none: a format that is out of reach leaves standard output untouched.
bool Decoding::WriteHeader() {
    return mOptions.raw || mOutput.Write(WaveHeader(mFormat).Open());
}

// The padding byte, and in a file the lengths that are known now.
bool Decoding::WriteEnd() {
    if (mAudioBytes == 0 && !WriteHeader()) return false;
    if (mOptions.raw) return true;
    if (mAudioBytes % 2 == 1 && !mOutput.Write(std::string_view("\0", 1))) return false;
    return !mOutput.IsFile() || mOutput.Rewrite(WaveHeader(mFormat).Closed(mAudioBytes));
}

ExitCode Decoding::OutputFailed() const {
    Tell(mOutput.IsFile() ? u"'" + mOptions.output + u"' can't be written."
                          : u"Standard output can't be written.");
    return ExitCode::kOutput;
}

std::u16string Objection(const DecodeOptions& options) {
    if (!options.output.empty()) return ObjectionTo(options.file, options.output, options.overwrite);
    const bool terminal = platform::GetConsoleWidth(platform::GetStdHandle(platform::kStdOutput)) > 0;
    return terminal ? u"Audio is not written to a terminal; --output names a file." : u"";
}

}  // namespace

ExitCode RunDecode(const DecodeOptions& options) {
    if (const std::u16string objection = Objection(options); !objection.empty()) {
        Tell(objection);
        return ExitCode::kRefused;
    }
    interruption::Watch();
    return Decoding(options).Run();
}
