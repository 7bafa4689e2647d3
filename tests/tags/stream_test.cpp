// The piece table against a string that is cut and joined.
#include "modules/tags/tag_stream.h"

#include <gtest/gtest.h>

#include <random>

#include "support/temp_folder.h"

namespace {

using TagLib::ByteVector;

ByteVector Vector(const std::string& bytes) {
    return ByteVector(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

class Stream : public testing::Test {
  protected:
    Stream() {
        for (int i = 0; i < 20000; ++i) mTwin += static_cast<char>(mRandom());
        EXPECT_TRUE(mReader.Open(mFolder.Write(u"old", mTwin).c_str()));
    }
    std::uint32_t Below(std::size_t bound) { return static_cast<std::uint32_t>(mRandom() % bound); }
    std::string Random() {
        std::string bytes(Below(4) == 0 ? 6000 : Below(40), 'x');
        for (char& byte : bytes) byte = static_cast<char>(mRandom());
        return bytes;
    }

    TempFolder mFolder;
    std::mt19937 mRandom{5};
    std::string mTwin;
    clFileReader mReader;
};

TEST_F(Stream, Is_what_a_string_would_be) {
    clTagStream stream(mReader);
    EXPECT_FALSE(stream.IsChanged());
    for (int step = 0; step < 3000; ++step) {
        const std::uint32_t at = Below(mTwin.size() + 1);
        const std::uint32_t length = Below(8) == 0 ? 5000 : Below(30);
        const std::size_t there = std::min<std::size_t>(length, mTwin.size() - at);
        const std::string bytes = Random();
        const std::uint32_t kind = Below(5);
        if (kind == 0) {
            stream.insert(Vector(bytes), at, length);
            mTwin.replace(at, there, bytes);
        } else if (kind == 1) {
            stream.removeBlock(at, length);
            mTwin.erase(at, there);
        } else if (kind == 2) {
            stream.seek(static_cast<long>(at), TagLib::IOStream::Beginning);
            stream.writeBlock(Vector(bytes));
            mTwin.replace(at, std::min(bytes.size(), mTwin.size() - at), bytes);
            EXPECT_EQ(stream.tell(), static_cast<long>(at + bytes.size()));
        } else if (kind == 3 && at > mTwin.size() - mTwin.size() / 8) {
            stream.truncate(static_cast<long>(at));
            mTwin.resize(at);
        }
        ASSERT_EQ(stream.length(), static_cast<long>(mTwin.size()));
        const std::uint32_t from = Below(mTwin.size() + 1);
        stream.seek(static_cast<long>(from) - static_cast<long>(mTwin.size()), TagLib::IOStream::End);
        ASSERT_TRUE(stream.readBlock(length) == Vector(mTwin.substr(from, length))) << step;
        EXPECT_EQ(stream.tell(), static_cast<long>(std::min<std::size_t>(from + length, mTwin.size())));
    }
    clFileWriter writer;
    ASSERT_TRUE(writer.Create((mFolder / u"new").c_str()));
    EXPECT_TRUE(stream.WriteTo(writer));
    EXPECT_TRUE(writer.Close());
    EXPECT_TRUE(mFolder.Read(u"new") == mTwin);
    EXPECT_TRUE(stream.IsChanged());
}

TEST_F(Stream, Has_nothing_outside_itself) {
    clTagStream stream(mReader);
    stream.seek(-5, TagLib::IOStream::Beginning);
    EXPECT_EQ(stream.tell(), 0);
    stream.seek(1000000, TagLib::IOStream::Beginning);
    EXPECT_TRUE(stream.readBlock(10).isEmpty());
    stream.seek(-3, TagLib::IOStream::End);
    EXPECT_EQ(stream.readBlock(0xFFFFFFFF).size(), 3u);
    stream.removeBlock(1000000, 5);
    stream.truncate(1000000);
    stream.insert(ByteVector(), 5, 0);
    EXPECT_FALSE(stream.IsChanged());
    EXPECT_EQ(stream.length(), 20000);
}

}  // namespace
