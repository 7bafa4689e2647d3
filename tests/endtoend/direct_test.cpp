// A stream through the modules that came with the library: out of a file block by block, and into another one.
#include <cstring>
#include <vector>

#include "endtoend/recordings.h"
#include "endtoend/stage.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const QvChar* In(const std::u16string& text) {
    return reinterpret_cast<const QvChar*>(text.c_str());
}

class DirectHost : public Stage {
  protected:
    void SetUp() override {
        Stage::SetUp();
        converter = library.QACCreate();
    }
    void TearDown() override {
        library.QACDestroy(converter);
        Stage::TearDown();
    }

    bool Open(QvFormatExtensible& format) {
        return library.QADOpenFile(converter, In(file), &format, &lengthMs) == QV_DONE;
    }
    // The next audio, no more than `wanted` bytes; empty at the end.
    Bytes Next(std::uint32_t wanted) {
        Bytes buffer(wanted);
        std::uint32_t bytes = wanted, finished = 0;
        library.QADDecodeBlock(converter, buffer.data(), &bytes, &finished, &positionMs);
        const bool nothing = finished == 0 && positionMs == 0;
        buffer.resize(nothing ? 0 : bytes);
        return buffer;
    }
    Bytes Rest(std::uint32_t wanted) {
        Bytes all;
        for (Bytes next = Next(wanted); !next.empty(); next = Next(wanted))
            all.insert(all.end(), next.begin(), next.end());
        return all;
    }
    std::int32_t Encode(const Bytes& block, std::uint32_t finished) {
        const auto bytes = static_cast<std::uint32_t>(block.size());
        return library.QAEEncodeBlock(converter, block.data(), &bytes, &finished);
    }

    QvConverter* converter = nullptr;
    std::uint64_t lengthMs = 0, positionMs = 0;
    const std::string recording = Recording(4000000);
    const std::u16string file = files.Write(u"song.wav", recording);
    const std::u16string copy = files / u"copy.wav";
};

}  // namespace

TEST_F(DirectHost, Decodes_a_file_and_encodes_it_again_to_the_same_audio) {
    QvFormatExtensible format = {};
    ASSERT_TRUE(Open(format));
    EXPECT_EQ(format.Format.nAvgBytesPerSec, 176400u);
    EXPECT_EQ(lengthMs, 22675u);
    const std::u16string encoder = u"Wave", settings;
    ASSERT_EQ(library.QAEOpenFile(converter, In(copy), In(encoder), In(settings), &format), QV_DONE);
    for (Bytes block = Next(10000); !block.empty(); block = Next(10000)) Encode(block, 0);
    Encode({}, 1);
    EXPECT_EQ(library.QAECloseFile(converter), QV_DONE);
    EXPECT_EQ(library.QADCloseFile(converter), QV_DONE);
    EXPECT_TRUE(HaveSameAudio(file, copy));
}

TEST_F(DirectHost, Seeks_to_the_frame) {
    QvFormatExtensible format = {};
    ASSERT_TRUE(Open(format));
    const Bytes all = Next(300000);
    for (const std::int64_t ms : {1000, 0, 1500}) {
        ASSERT_EQ(library.QADSetPosition(converter, ms), QV_DONE);
        const Bytes there = Next(20000);
        ASSERT_EQ(there.size(), 20000u);
        EXPECT_EQ(std::memcmp(there.data(), all.data() + ms * 44100 / 1000 * 4, there.size()), 0) << ms;
    }
}

TEST_F(DirectHost, Walks_to_the_last_byte_in_whatever_steps) {
    for (const std::uint32_t wanted : {1000u, 4096u, 65536u, 4000000u, 5000000u}) {
        QvFormatExtensible format = {};
        ASSERT_TRUE(Open(format));
        const Bytes all = Rest(wanted);
        ASSERT_EQ(all.size(), 4000000u) << wanted;
        EXPECT_NE(recording.find(std::string(all.begin(), all.end())), std::string::npos);
    }
}
