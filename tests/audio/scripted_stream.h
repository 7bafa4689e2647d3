// A stream through the system's codecs, with a manager that does what the test says. What the system's own makes of
// it stands in tests/platform.
#pragma once

#include "audio/acm_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "audio/format_records.h"
#include "audio/scripted_manager.h"

using Bytes = std::vector<std::uint8_t>;

inline const QvFormat kMono8 = Plain(1, 1, 8000, 8), kMono16 = Plain(1, 1, 8000, 16),
                      kMono24 = Plain(1, 1, 8000, 24), kFloat32 = Plain(3, 1, 8000, 32),
                      kALaw = Plain(6, 1, 8000, 8), kStereoALaw = Plain(6, 2, 8000, 8);

// Coded blocks of this many bytes.
inline QvFormat Coded(std::uint16_t blockAlign, std::uint16_t bits = 4) {
    QvFormat format = Plain(17, 1, 8000, bits);
    format.nBlockAlign = blockAlign;
    format.nAvgBytesPerSec = 4000;
    return format;
}

inline Bytes Counted(std::size_t count, int first = 0) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(first));
    return bytes;
}

inline Bytes PlusOne(Bytes bytes) {
    for (std::uint8_t& byte : bytes) ++byte;
    return bytes;
}

class ScriptedStream : public testing::Test {
  public:
    // From a block that is overwritten and gone when the call is over.
    std::optional<Bytes> Convert(const QvFormat& from, const QvFormat& to, const Bytes& bytes,
                                 bool final = false) {
        const auto samples = std::make_unique<std::uint8_t[]>(bytes.size() + 1);
        std::copy(bytes.begin(), bytes.end(), samples.get());
        clAudioBlock in;
        in.setData(samples.get(), static_cast<std::uint32_t>(bytes.size()), &from, true);
        const bool done = stream.Convert(in, clFormatHolder(&to), final);
        std::fill_n(samples.get(), bytes.size(), std::uint8_t{0xEE});
        EXPECT_EQ(stream.carry.adopted, 0) << "the block is about to go";
        EXPECT_LE(stream.output.bytes, stream.output.capacity);
        if (!done) return std::nullopt;
        return Bytes(stream.output.data, stream.output.data + stream.output.bytes);
    }
    std::string Journal() { return manager.TakeJournal(); }

    ScriptedManager manager;
    clAcmStream stream;
};
