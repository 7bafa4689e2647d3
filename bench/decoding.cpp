// What a stream costs on its way through QADDecodeBlock when nothing about it is changed, beside one memcpy of the
// same bytes: what the host would pay if it called the module itself and copied.
//
// The module lends one block of 4096 frames again and again. The argument is the number of bytes that the host
// wants in a call.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "interface/converter.h"
#include "platform/module.h"

namespace {

constexpr std::uint32_t kBlockBytes = 4096 * 4;

const std::vector<std::uint8_t> gBlock(kBlockBytes, 0x55);

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
        QvFormat format = {};
        format.wFormatTag = QV_FORMAT_PCM;
        format.nChannels = 2;
        format.nSamplesPerSec = 44100;
        format.wBitsPerSample = 16;
        converter.sourceFormat.setFormat(&format);
        converter.outputFormat.setFormat(&format);
        converter.decoder.Load(u"decoder");
        converter.decoder.Create(converter.log);
    }
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

void DecodeUnchanged(benchmark::State& state) {
    Decoding decoding;
    const auto wanted = static_cast<std::uint32_t>(state.range(0));
    std::vector<std::uint8_t> buffer(wanted);
    std::uint32_t bytes = 0, finished = 0;
    std::uint64_t positionMs = 0;
    for (auto _ : state) {
        bytes = wanted;
        decoding.converter.DecoderDecodeBlock(buffer.data(), &bytes, &finished, &positionMs);
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
    }
    if (bytes != wanted || buffer[wanted - 1] != 0x55) state.SkipWithError("the stream did not come");
    state.SetBytesProcessed(state.iterations() * wanted);
}
BENCHMARK(DecodeUnchanged)->Arg(4096)->Arg(16384)->Arg(65536);

void CopyTheSameBytes(benchmark::State& state) {
    const auto wanted = static_cast<std::size_t>(state.range(0));
    std::vector<std::uint8_t> buffer(wanted);
    for (auto _ : state) {
        for (std::size_t done = 0; done < wanted; done += kBlockBytes)
            std::memcpy(buffer.data() + done, gBlock.data(),
                        std::min<std::size_t>(kBlockBytes, wanted - done));
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CopyTheSameBytes)->Arg(4096)->Arg(16384)->Arg(65536);

}  // namespace

int main(int argc, char** argv) {
    XLog::StartUp();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
