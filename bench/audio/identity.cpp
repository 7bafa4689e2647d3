// A decoded stream that nobody asked to change: through clFormatChanger alone, and through QADDecodeBlock, beside one
// memcpy of the same bytes, which is what a host would pay if it called the module itself and copied.
//
// The module lends one block of 4096 stereo frames of 16 bits again and again.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "bench/audio/groups.h"
#include "interface/converter.h"
#include "platform/module.h"

namespace {

constexpr std::uint32_t kBlockBytes = 4096 * 4;
constexpr std::uint8_t kByte = 0x55;

const std::vector<std::uint8_t> gBlock(kBlockBytes, kByte);

std::int32_t DecodeBlock(QvInstance, clBlockRec* block) {
    block->data = gBlock.data();
    block->bytes = kBlockBytes;
    return 1;
}

QvInstance Create(const QvLog*) {
    return 1;
}

void Destroy(QvInstance) {}

void NotCalled() {}

QvFormat StereoOf16Bits() {
    QvFormat format = {};
    format.wFormatTag = QV_FORMAT_PCM;
    format.nChannels = 2;
    format.nSamplesPerSec = 44100;
    format.wBitsPerSample = 16;
    return format;
}

// A decoder with these entries.
class Decoding {
  public:
    Decoding() {
        platform::LoadLibraryW.Substitute([](const char16_t*) -> platform::ModuleHandle { return &gPlace; });
        platform::FreeLibrary.Substitute([](platform::ModuleHandle) { return true; });
        platform::GetProcAddress.Substitute([](platform::ModuleHandle, const char* name) {
            const std::string_view entry(name);
            if (entry == "Create") return reinterpret_cast<platform::EntryPoint>(&Create);
            if (entry == "DecodeBlock") return reinterpret_cast<platform::EntryPoint>(&DecodeBlock);
            if (entry == "Destroy") return reinterpret_cast<platform::EntryPoint>(&Destroy);
            return &NotCalled;
        });
        const QvFormat format = StereoOf16Bits();
        converter.sourceFormat.setFormat(&format);
        converter.outputFormat.setFormat(&format);
        converter.decoder.Load(u"decoder");
        converter.decoder.Create(converter.log);
    }
    Decoding(const Decoding&) = delete;
    Decoding& operator=(const Decoding&) = delete;
    ~Decoding() {
        converter.decoder.Unload();
        platform::LoadLibraryW.Substitute(nullptr);
        platform::FreeLibrary.Substitute(nullptr);
        platform::GetProcAddress.Substitute(nullptr);
    }

    clConverter converter;

  private:
    static inline int gPlace = 0;
};

void CopyBlocks(std::vector<std::uint8_t>& to) {
    for (std::size_t done = 0; done < to.size(); done += kBlockBytes)
        std::memcpy(to.data() + done, gBlock.data(), std::min<std::size_t>(kBlockBytes, to.size() - done));
    asm volatile("" ::"r"(to.data()) : "memory");  // the copy is wanted
}

void RaceChanger(Racecourse& course) {
    const QvFormat format = StereoOf16Bits();
    clAudioBlock block;
    block.setData(gBlock.data(), kBlockBytes, &format, true);
    const clFormatHolder asked(&format);
    clFormatChanger changer;
    std::vector<std::uint8_t> copy(kBlockBytes);
    const auto change = [&] {
        if (!changer.ChangeFormat(block, asked, false)) Fail("ChangeFormat refuses");
    };
    const auto check = [&] {
        const clAudioBlock& result = changer.result;
        return std::string(
            result.bytes == kBlockBytes && result.data[kBlockBytes - 1] == kByte ? "" : "no audio came");
    };
    course.Run({"clFormatChanger, a block",
                {{"ours", change}, {"memcpy", [&] { CopyBlocks(copy); }}},
                {{"memcpy", 0.4, 0}},
                check});
}

void RaceRequest(Racecourse& course, Decoding& decoding, std::uint32_t wanted) {
    std::vector<std::uint8_t> buffer(wanted), copy(wanted);
    std::uint32_t bytes = 0;
    const auto decode = [&] {
        std::uint32_t finished = 0;
        std::uint64_t positionMs = 0;
        bytes = wanted;
        decoding.converter.DecoderDecodeBlock(buffer.data(), &bytes, &finished, &positionMs);
    };
    const auto check = [&] {
        return std::string(bytes == wanted && buffer[wanted - 1] == kByte ? "" : "the stream did not come");
    };
    course.Run({"QADDecodeBlock, the host wants " + std::to_string(wanted) + " bytes",
                {{"ours", decode}, {"memcpy", [&] { CopyBlocks(copy); }}},
                {{"memcpy", 0.4, 0}},
                check});
}

}  // namespace

void RaceIdentity(Racecourse& course) {
    course.Announce("Identity",
                    {"a decoded stream that stays as it is, 16-bit stereo, blocks of 16384 bytes"});
    RaceChanger(course);
    XLog::StartUp();
    Decoding decoding;
    for (const std::uint32_t wanted : {4096u, 16384u, 65536u}) RaceRequest(course, decoding, wanted);
}
