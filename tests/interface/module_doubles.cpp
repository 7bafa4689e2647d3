#include "interface/module_doubles.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

DecoderDouble* gDecoder = nullptr;
EncoderDouble* gEncoder = nullptr;

constexpr std::size_t kLargestBlock = 10000;

struct Entry {
    const char* name;
    platform::EntryPoint function;
};

template <class Function>
platform::EntryPoint AsEntry(Function function) {
    return reinterpret_cast<platform::EntryPoint>(function);
}

template <std::size_t count>
platform::EntryPoint Find(const Entry (&entries)[count], const char* name) {
    const auto found =
        std::ranges::find_if(entries, [=](const Entry& entry) { return !std::strcmp(entry.name, name); });
    return found == std::end(entries) ? nullptr : found->function;
}

}  // namespace

Bytes Counted(std::size_t count, std::size_t first) {
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(first++ % 251);
    return bytes;
}

QvFormatExtensible PlainRecord(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                               std::uint16_t bits) {
    QvFormatExtensible record = {};
    record.Format.wFormatTag = tag;
    record.Format.nChannels = channels;
    record.Format.nSamplesPerSec = rate;
    record.Format.wBitsPerSample = bits;
    record.Format.nBlockAlign = static_cast<std::uint16_t>(channels * bits / 8);
    record.Format.nAvgBytesPerSec = record.Format.nBlockAlign * rate;
    return record;
}

QvFormatExtensible ExtensibleRecord(std::uint8_t type, std::uint16_t channels, std::uint32_t rate,
                                    std::uint16_t bits, std::uint32_t mask) {
    const std::uint8_t subFormat[16] = {type, 0,    0,    0,    0x00, 0x00, 0x10, 0x00,
                                        0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
    QvFormatExtensible record = PlainRecord(QV_FORMAT_EXTENSIBLE, channels, rate, bits);
    record.Format.cbSize = 22;
    record.wValidBitsPerSample = bits;
    record.dwChannelMask = mask;
    std::memcpy(record.SubFormat, subFormat, sizeof subFormat);
    return record;
}

DecoderDouble::DecoderDouble() : mLent(kLargestBlock) {
    gDecoder = this;
    mEntries.Replace([](platform::ModuleHandle, const char* name) {
        static const Entry entries[] = {{"Create", AsEntry(&Create)},
                                        {"Destroy", AsEntry(&Destroy)},
                                        {"Get", AsEntry(&Get)},
                                        {"Set", AsEntry(&Set)},
                                        {"Open", AsEntry(&Open)},
                                        {"Close", AsEntry(&Close)},
                                        {"DecodeBlock", AsEntry(&DecodeBlock)},
                                        {"SetPosition", AsEntry(&SetPosition)},
                                        {"DeleteATag", AsEntry(&DeleteATag)}};
        return Find(entries, name);
    });
}

DecoderDouble::~DecoderDouble() {
    gDecoder = nullptr;
}

QvInstance DecoderDouble::Create(const QvLog*) {
    return 1;
}

void DecoderDouble::Destroy(QvInstance) {}

std::int32_t DecoderDouble::Get(QvInstance, const QvChar*, clCodecQueryRec* query) {
    static const QvChar extension[] = {'.', 'a', 'b', 'c', 0};
    query->text = query->description = extension;
    return query->index == 0;
}

std::int32_t DecoderDouble::Set(QvInstance, const QvChar*, const clCodecQueryRec*) {
    return 0;
}

std::int32_t DecoderDouble::Open(QvInstance, clOpenFileRec* record) {
    std::memcpy(record->format, &gDecoder->format, sizeof record->format);
    gDecoder->position = gDecoder->blocksGiven = 0;
    return 1;
}

void DecoderDouble::Close(QvInstance, void* record) {
    gDecoder->closedWith = record;
}

void DecoderDouble::TakeBackLent() {
    if (gDecoder) std::fill_n(gDecoder->mLent.begin(), gDecoder->mLentBytes, std::uint8_t{0xFE});
}

std::int32_t DecoderDouble::DecodeBlock(QvInstance, clBlockRec* block) {
    DecoderDouble& self = *gDecoder;
    TakeBackLent();
    if (self.mFails++ < self.failsBeforeBlock) return 0;
    self.mFails = 0;
    const std::size_t left = self.stream.size() - std::min(self.position, self.stream.size());
    const std::size_t size = std::min<std::size_t>(self.blocks[self.blocksGiven % self.blocks.size()], left);
    std::copy_n(self.stream.begin() + static_cast<std::ptrdiff_t>(self.stream.size() - left), size,
                self.mLent.begin());
    self.mLentBytes = size;
    self.position += size;
    block->data = self.lendsNull ? nullptr : self.mLent.data();
    block->bytes = static_cast<std::uint32_t>(size);
    block->timecode = ++self.blocksGiven;
    const bool last = self.endsWithEmptyBlock ? left == 0 : size == left;
    block->finished = last ? self.finishedValue : 0;
    return 1;
}

void DecoderDouble::SetPosition(QvInstance, std::int64_t frame) {
    gDecoder->seeks.push_back(frame);
    const auto bytes = static_cast<std::int64_t>(gDecoder->stream.size());
    const std::int64_t frameBytes = gDecoder->format.Format.nBlockAlign;
    gDecoder->position =
        static_cast<std::size_t>(std::clamp<std::int64_t>(frame, 0, bytes / frameBytes) * frameBytes);
}

std::int32_t DecoderDouble::DeleteATag(QvInstance, const QvChar*, const QvChar*) {
    return 0;
}

EncoderDouble::EncoderDouble() {
    gEncoder = this;
    mEntries.Replace([](platform::ModuleHandle, const char* name) {
        static const Entry entries[] = {{"ENC_Create", AsEntry(&Create)},
                                        {"ENC_Destroy", AsEntry(&Destroy)},
                                        {"ENC_BeginConversion", AsEntry(&Begin)},
                                        {"ENC_EndConversion", AsEntry(&End)},
                                        {"ENC_EncodeBlock", AsEntry(&EncodeBlock)}};
        const platform::EntryPoint found = Find(entries, name);
        return found ? found : AsEntry(&Unused);
    });
}

EncoderDouble::~EncoderDouble() {
    gEncoder = nullptr;
}

QvInstance EncoderDouble::Create(const QvLog*) {
    return 1;
}

void EncoderDouble::Destroy(QvInstance) {}

std::int32_t EncoderDouble::Begin(QvInstance, clEncoderSessionRec* session) {
    gEncoder->session = *session;
    gEncoder->sessionAddress = session;
    std::uint8_t next = 0;
    for (std::uint8_t& byte : session->reserved3) byte = ++next;
    return 1;
}

std::int32_t EncoderDouble::End(QvInstance, clEncoderSessionRec*, std::uint32_t* reserved) {
    gEncoder->ends.push_back(*reserved);
    *reserved = 77;
    return 1;
}

std::int32_t EncoderDouble::EncodeBlock(QvInstance, const clBlockRec* block) {
    gEncoder->blocks.push_back(*block);
    gEncoder->written.insert(gEncoder->written.end(), block->data, block->data + block->bytes);
    return 0;
}

std::int32_t EncoderDouble::Unused() {
    return 0;
}
