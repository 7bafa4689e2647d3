// Beyond 4 GiB. The file stands nowhere: each frame is made when it is read.
#include <algorithm>
#include <cstring>

#include "flac/flac_file.h"
#include "modules/flac/flac_stream.h"
#include "modules/support/stream_decoder.h"
#include "platform/file.h"
#include "support/faults.h"

namespace {

constexpr std::uint32_t kBlock = 65535, kChannels = 4, kBlocks = 6900;
constexpr std::uint64_t kAllFrames = std::uint64_t{kBlock} * kBlocks - 5000;  // the last one is shorter
constexpr platform::Handle kFile = 7;

std::string Big(std::uint64_t number, unsigned bytes) {
    std::string text;
    while (bytes-- > 0) text += static_cast<char>(number >> (8 * bytes));
    return text;
}

std::uint32_t Crc(std::string_view bytes, unsigned bits, std::uint32_t polynomial) {
    std::uint32_t table[256], crc = 0;
    for (std::uint32_t i = 0; i < 256; ++i) {
        table[i] = i << (bits - 8);
        for (int bit = 0; bit < 8; ++bit)
            table[i] = table[i] << 1 ^ ((table[i] >> (bits - 1) & 1) != 0 ? polynomial : 0);
    }
    for (const char byte : bytes)
        crc = (crc << 8 ^ table[(crc >> (bits - 8) ^ static_cast<std::uint8_t>(byte)) & 0xFF]) &
              ((1u << bits) - 1);
    return crc;
}

// A number in the manner of UTF-8.
std::string Coded(std::uint32_t number) {
    if (number < 0x80) return Big(number, 1);
    if (number < 0x800) return Big((0xC0u | number >> 6) << 8 | 0x80u | (number & 0x3F), 2);
    return Big((0xE0u | number >> 12) << 16 | (0x80u | (number >> 6 & 0x3F)) << 8 | 0x80u | (number & 0x3F),
               3);
}

std::string Header() {
    const std::uint64_t shape = std::uint64_t{48000} << 44 | std::uint64_t{kChannels - 1} << 41 |
                                std::uint64_t{24 - 1} << 36 | kAllFrames;
    return "fLaC" + Big(0x80000022, 4) + Big(kBlock, 2) + Big(kBlock, 2) + Big(0, 6) + Big(shape, 8) +
           std::string(16, '\0');
}

// Its first sample is its number, all others are 0.
std::string Frame(std::uint32_t number) {
    const std::uint32_t frames = number + 1 == kBlocks ? kBlock - 5000 : kBlock;
    std::string frame = "\xFF\xF8\x70\x3C" + Coded(number) + Big(frames - 1, 2);
    frame += Big(Crc(frame, 8, 0x07), 1);
    for (std::uint32_t channel = 0; channel < kChannels; ++channel)
        frame += "\2" + Big(channel == 0 ? number : 0, 3) + std::string((frames - 1) * 3, '\0');
    return frame + Big(Crc(frame, 16, 0x8005), 2);
}

const std::size_t kFrameBytes = Frame(0).size();

// A frame's number takes one byte more from 128 on, and one more from 2048 on.
std::uint64_t PlaceOf(std::uint64_t number) {
    const auto beyond = [&](std::uint64_t limit) { return number > limit ? number - limit : 0; };
    return Header().size() + number * kFrameBytes + beyond(128) + beyond(2048);
}

class MadeFile {
  public:
    MadeFile() {
        mOpens.Replace([](auto...) { return kFile; });
        mCloses.Replace([](auto...) { return true; });
        mSizes.Replace([](platform::Handle, std::int64_t* size) {
            *size = static_cast<std::int64_t>(PlaceOf(kBlocks - 1) + Frame(kBlocks - 1).size());
            return true;
        });
        mSeeks.Replace([this](platform::Handle, std::int64_t position) {
            mPosition = static_cast<std::uint64_t>(position);
            return true;
        });
        mReads.Replace([this](platform::Handle, void* to, std::uint32_t count, std::uint32_t* got) {
            *got = Read(static_cast<char*>(to), count);
            return true;
        });
    }

  private:
    std::uint32_t Read(char* to, std::uint32_t count) {
        std::uint32_t got = 0;
        while (got < count && mPosition < PlaceOf(kBlocks)) {
            if (mPosition < mPieceBegin || mPosition >= mPieceBegin + mPiece.size()) Make();
            const std::uint64_t from = mPosition - mPieceBegin;
            if (from >= mPiece.size()) break;  // behind the last frame
            const auto some =
                static_cast<std::uint32_t>(std::min<std::uint64_t>(count - got, mPiece.size() - from));
            std::memcpy(to + got, mPiece.data() + from, some);
            got += some;
            mPosition += some;
        }
        return got;
    }

    void Make() {
        if (mPosition < PlaceOf(0)) {
            mPieceBegin = 0;
            mPiece = Header();
            return;
        }
        auto number = static_cast<std::uint32_t>((mPosition - PlaceOf(0)) / (kFrameBytes + 2));
        while (PlaceOf(number + 1) <= mPosition) ++number;
        mPieceBegin = PlaceOf(number);
        mPiece = Frame(number);
    }

    Faulty<platform::CreateFileW> mOpens;
    Faulty<platform::CloseHandle> mCloses;
    Faulty<platform::GetFileSizeEx> mSizes;
    Faulty<platform::SetFilePointerEx> mSeeks;
    Faulty<platform::ReadFile> mReads;
    std::uint64_t mPosition = 0;
    std::uint64_t mPieceBegin = 0;
    std::string mPiece;
};

}  // namespace

TEST(FlacLargeFile, Is_read_and_sought_beyond_4_GiB) {
    static constexpr clFileType kTypes[] = {{u".flac", u""}};
    static constexpr clStreamCodec kCodec = {kTypes, MakeStream<clFlacStream>, TagContainer::flac};
    const MadeFile file;
    clStreamDecoder decoder{clModuleLog(nullptr), kCodec};
    clAudioInformation information;
    ASSERT_TRUE(decoder.OpenForDecoding(u"made.flac", information));
    EXPECT_EQ(information.lengthMs, kAllFrames * 1000 / 48000);
    EXPECT_GT(information.fileSize, std::uint64_t{5} << 30);
    for (const std::uint32_t number : {0u, 6500u, 2047u, 3u, 6898u}) {
        decoder.SetPosition(std::int64_t{number} * kBlock - (number > 0 ? 2 : 0));
        if (number > 0) {  // the end of the frame before
            const clDecodedBlock before = decoder.DecodeBlock();
            EXPECT_EQ(before.bytes, 2 * kChannels * 3);
        }
        const clDecodedBlock block = decoder.DecodeBlock();
        ASSERT_EQ(block.bytes, kBlock * kChannels * 3);
        EXPECT_EQ(block.timecode, std::uint64_t{number} * kBlock);
        EXPECT_EQ(block.data[0] | block.data[1] << 8, static_cast<int>(number));
        EXPECT_EQ(block.data[3 * kChannels], 0);
    }
    EXPECT_EQ(decoder.DecodeBlock().bytes, (kBlock - 5000) * kChannels * 3);
    EXPECT_TRUE(decoder.DecodeBlock().finished);
}
