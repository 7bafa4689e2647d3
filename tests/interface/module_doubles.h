// Modules whose entries are functions of the test program: nothing between the library and what the test looks
// at, and no allocation of their own while they are called.
//
// While one stands, every module that is loaded has its entries. What is placed on the disk only has to be a
// module. One of each kind may live at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/module.h"
#include "quavermill/module.h"
#include "support/faults.h"

using Bytes = std::vector<std::uint8_t>;

Bytes Counted(std::size_t count, std::size_t first = 0);  // 0, 1, 2 and so on, 251 behind 250 being 0 again

QvFormatExtensible PlainRecord(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                               std::uint16_t bits);
QvFormatExtensible ExtensibleRecord(std::uint8_t type, std::uint16_t channels, std::uint32_t rate,
                                    std::uint16_t bits, std::uint32_t mask);

// Reads files of type .abc: all hold `stream`.
class DecoderDouble {
  public:
    DecoderDouble();
    ~DecoderDouble();

    // The block that is out is written over, as by a module whose memory somebody else wants.
    static void TakeBackLent();
    DecoderDouble(const DecoderDouble&) = delete;
    DecoderDouble& operator=(const DecoderDouble&) = delete;

    QvFormatExtensible format = PlainRecord(QV_FORMAT_PCM, 2, 44100, 16);
    Bytes stream;
    std::vector<std::uint32_t> blocks = {1000};  // sizes of the blocks, from the first again behind the last
    int failsBeforeBlock = 0;
    bool endsWithEmptyBlock = false;  // or with the block that holds the last bytes
    bool lendsNull = false;           // bytes without data
    std::uint32_t finishedValue = 1;

    std::size_t position = 0;  // bytes of the stream given
    std::size_t blocksGiven = 0;
    std::vector<std::int64_t> seeks;
    const void* closedWith = nullptr;

  private:
    static QvInstance Create(const QvLog*);
    static void Destroy(QvInstance);
    static std::int32_t Get(QvInstance, const QvChar*, clCodecQueryRec* query);
    static std::int32_t Set(QvInstance, const QvChar*, const clCodecQueryRec*);
    static std::int32_t Open(QvInstance, clOpenFileRec* record);
    static void Close(QvInstance, void* record);
    static std::int32_t DecodeBlock(QvInstance, clBlockRec* block);
    static void SetPosition(QvInstance, std::int64_t frame);
    static std::int32_t DeleteATag(QvInstance, const QvChar*, const QvChar*);

    Bytes mLent;  // the block that is out; overwritten when the next is asked for
    std::size_t mLentBytes = 0;
    int mFails = 0;
    Faulty<platform::GetProcAddress> mEntries;
};

// Keeps what it is given.
class EncoderDouble {
  public:
    EncoderDouble();
    ~EncoderDouble();
    EncoderDouble(const EncoderDouble&) = delete;
    EncoderDouble& operator=(const EncoderDouble&) = delete;

    clEncoderSessionRec session =
        {};  // as it came to BeginConversion, which writes 1, 2, 3 and so on into reserved3
    const clEncoderSessionRec* sessionAddress = nullptr;
    std::vector<clBlockRec> blocks;
    Bytes written;
    std::vector<std::uint32_t> ends;  // the number behind the pointer, for each EndConversion

  private:
    static QvInstance Create(const QvLog*);
    static void Destroy(QvInstance);
    static std::int32_t Begin(QvInstance, clEncoderSessionRec* session);
    static std::int32_t End(QvInstance, clEncoderSessionRec*, std::uint32_t* reserved);
    static std::int32_t EncodeBlock(QvInstance, const clBlockRec* block);
    static std::int32_t Unused();

    Faulty<platform::GetProcAddress> mEntries;
};
