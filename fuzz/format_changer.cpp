// A stream of any bytes in any format, cut anywhere, changed into any other: format records as modules and
// hosts could hand them over, and codecs that answer what they like.
//
// The first bytes of the input are the records and the manager's mood, the rest is the audio. A change answers
// yes or no and stays within what it was given; what it takes for equal comes back as it was; the same input
// gives the same output; and a yes is never larger than the rates and depths can make it.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "audio/format_changer.h"
#include "platform/acm.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

void Require(bool holds) {
    if (!holds) std::abort();
}

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : mAt(data), mLeft(size) {}

    // Bytes that are missing are 0.
    template <class Value>
    Value Next() {
        Value value = {};
        const std::size_t count = std::min(sizeof value, mLeft);
        std::memcpy(&value, mAt, count);
        mAt += count;
        mLeft -= count;
        return value;
    }
    Bytes Rest() const { return Bytes(mAt, mAt + mLeft); }

  private:
    const std::uint8_t* mAt;
    std::size_t mLeft;
};

struct Case {
    QvFormatExtensible from, to;
    std::uint32_t mood;  // of the manager
    std::uint8_t cut;    // the size of blocks; 0 for all at once
    Bytes audio;
};

// The next answer of a manager with a mood: a number below `bound`.
std::uint32_t gMood = 0;
std::uint32_t Answer(std::uint32_t bound) {
    gMood = gMood * 1664525 + 1013904223;
    return (gMood >> 8) % bound;
}

std::uint32_t Open(platform::AcmStream* stream, const QvFormat* from, const QvFormat* to, std::uint32_t) {
    static std::uint8_t place;
    Require(std::size_t{from->cbSize} + to->cbSize < 0x20000);
    *stream = &place;
    return Answer(4) == 0 ? platform::kAcmErrorNotPossible : 0;
}
std::uint32_t Close(platform::AcmStream stream) {
    Require(stream != nullptr);
    return Answer(2);
}
std::uint32_t Size(platform::AcmStream, std::uint32_t bytes, std::uint32_t* suggested, std::uint32_t) {
    constexpr std::uint32_t kMost = 100000;
    *suggested = Answer(8) == 0 ? 0 : Answer(std::min(bytes, kMost) * 3 + 1);
    return Answer(8) == 0;
}
std::uint32_t Prepare(platform::AcmStream, platform::AcmStreamHeader* header) {
    return header->cbDstLength == 0 || Answer(16) == 0;
}
std::uint32_t Unprepare(platform::AcmStream, platform::AcmStreamHeader*) {
    return Answer(2);
}

// Reads all of its source and writes all of its destination, and says something about it.
std::uint32_t Convert(platform::AcmStream, platform::AcmStreamHeader* header, std::uint32_t flags) {
    std::uint8_t sum = static_cast<std::uint8_t>(flags);
    for (std::uint32_t at = 0; at < header->cbSrcLength; ++at)
        sum = static_cast<std::uint8_t>(sum + header->pbSrc[at]);
    std::memset(header->pbDst, sum, header->cbDstLength);
    header->cbSrcLengthUsed = Answer(8) == 0 ? UINT32_MAX - Answer(9) : Answer(header->cbSrcLength + 2);
    header->cbDstLengthUsed = Answer(8) == 0 ? UINT32_MAX - Answer(9) : Answer(header->cbDstLength + 2);
    return Answer(16) == 0;
}

void TakeOverManager() {
    platform::acmStreamOpen.Substitute(&Open);
    platform::acmStreamClose.Substitute(&Close);
    platform::acmStreamSize.Substitute(&Size);
    platform::acmStreamPrepareHeader.Substitute(&Prepare);
    platform::acmStreamUnprepareHeader.Substitute(&Unprepare);
    platform::acmStreamConvert.Substitute(&Convert);
}

// Rates so far apart that a few frames are minutes of output, and filters that take seconds to make, are left
// to the tests.
bool IsCheap(const QvFormat& from, const QvFormat& to) {
    constexpr std::uint64_t kLeast = 4000, kMost = 200000;
    if (from.nSamplesPerSec == to.nSamplesPerSec) return true;
    return std::min(from.nSamplesPerSec, to.nSamplesPerSec) >= kLeast &&
           std::max(from.nSamplesPerSec, to.nSamplesPerSec) <= kMost && to.nChannels <= 8;
}

struct Outcome {
    Bytes audio;
    std::uint32_t refusals = 0;
};

Outcome Run(const Case& input) {
    gMood = input.mood;
    Outcome outcome;
    clFormatHolder from, to;
    from.setFormat(&input.from, sizeof input.from);
    to.setFormat(&input.to, sizeof input.to);
    clFormatChanger changer;
    const std::size_t step = input.cut == 0 ? std::max<std::size_t>(input.audio.size(), 1) : input.cut;
    for (std::size_t done = 0; done == 0 || done < input.audio.size(); done += step) {
        const std::size_t count = std::min(step, input.audio.size() - done);
        Bytes passing(count);
        std::copy_n(input.audio.data() + done, count, passing.data());
        clAudioBlock in;
        in.setData(passing.data(), static_cast<std::uint32_t>(count), from.format, true);
        const bool last = done + step >= input.audio.size();
        if (!changer.ChangeFormat(in, to, last)) {
            ++outcome.refusals;
            continue;
        }
        const clAudioBlock& result = changer.result;
        Require(result.adopted == 0 && result.bytes <= result.capacity && result.offset == 0);
        outcome.audio.insert(outcome.audio.end(), result.data, result.data + result.bytes);
    }
    return outcome;
}

bool Agree(const clFormatHolder& a, const clFormatHolder& b) {
    return a.sampleType() == b.sampleType() && a.format->wBitsPerSample == b.format->wBitsPerSample &&
           a.format->nSamplesPerSec == b.format->nSamplesPerSec && a.format->nChannels == b.format->nChannels;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TakeOverManager();
    Input reader(data, size);
    Case input;
    input.from = reader.Next<QvFormatExtensible>();
    input.to = reader.Next<QvFormatExtensible>();
    input.mood = reader.Next<std::uint32_t>();
    input.cut = reader.Next<std::uint8_t>();
    input.audio = reader.Rest();
    if (!IsCheap(input.from.Format, input.to.Format)) return 0;
    const Outcome outcome = Run(input), again = Run(input);
    Require(outcome.audio == again.audio && outcome.refusals == again.refusals);
    clFormatHolder from, to;
    from.setFormat(&input.from, sizeof input.from);
    to.setFormat(&input.to, sizeof input.to);
    if (Agree(from, to)) Require(outcome.refusals == 0 && outcome.audio == input.audio);
    return 0;
}
