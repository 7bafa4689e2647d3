// clWaveFormat: the format record of a WAVE file, checked, and what follows from it.
//
// Two kinds of data are told apart. Plain samples (integer, float, A-law, mu-law) have frames of one size
// that the record must agree with. Coded data of any other tag come in blocks of nBlockAlign bytes and are
// handed on as they stand, with the record beside them.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"
#include "quavermill/types.h"

class clWaveFormat {
  public:
    static constexpr std::uint16_t kMostChannels = 64;

    // From the `size` bytes of a fmt chunk of which `bytes` holds the first 40 or all. From a record.
    // Empty when it is good; otherwise why not, to stand behind a file's name.
    XString TakeChunk(const std::uint8_t* bytes, std::uint64_t size);
    XString TakeRecord(const QvFormatExtensible& record);

    const QvFormatExtensible& Record() const { return mRecord; }
    const QvFormat& Head() const { return mRecord.Format; }
    std::uint32_t RecordBytes() const { return sizeof(QvFormat) + std::uint32_t{Head().cbSize}; }

    // A QV_FORMAT value or any other tag, looked up in the SubFormat of an extensible record.
    std::uint32_t SampleType() const { return mType; }
    bool IsPlain() const;
    bool IsExtensible() const { return Head().wFormatTag == QV_FORMAT_EXTENSIBLE; }

    // Frames that one block decodes to: 1 for plain samples, 0 when the record doesn't tell.
    std::uint32_t FramesPerBlock() const { return mFramesPerBlock; }
    // For coded data without that number both go by the average byte rate.
    std::uint64_t FramesIn(std::uint64_t bytes) const;
    std::uint64_t BytePositionOf(std::uint64_t frame) const;  // the beginning of a block

    XString CodecName() const;

  private:
    XString Settle();
    std::uint32_t TellFramesPerBlock() const;
    XString Refusal() const;
    XString PlainRefusal() const;

    QvFormatExtensible mRecord{};
    std::uint32_t mType = 0;
    std::uint32_t mFramesPerBlock = 0;
};
