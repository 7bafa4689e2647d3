// What it costs to find the decoder of a file: cold, with the module's path in the cache, and with the module
// still in the wrapper. Beside them the one step they share, loading a module, asking it and letting it go.
//
// The folder holds the Wave decoder behind seven others that read something else, so that a cold look-up
// asks all eight.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "foundation/registry.h"
#include "plugins/codec_handler.h"
#include "plugins/module_folder.h"
#include "support/own_settings.h"
#include "support/temp_folder.h"

namespace fs = std::filesystem;

namespace {

constexpr const char16_t* kCache = u"Software\\Brindleway\\Quavermill\\DecoderCache64";
constexpr int kModules = 8;

const XLog kNoLog;

// A library's folder with its decoders.
class Home {
  public:
    Home() {
        fs::create_directory(fs::path(mFolder / u"decoder"));
        const fs::path self(mFolder / u"library.so");
        fs::copy_file(QV_OTHER_DECODER, self);
        mSelf = platform::LoadLibraryW(self.u16string().c_str());
        for (int number = 0; number < kModules; ++number)
            fs::copy_file(QV_OTHER_DECODER,
                          fs::path(mFolder / u"decoder") / (std::to_string(number) + ".so"));
        ModuleWalk walk(mSelf, kDecoderFolder);
        while (walk.Next()) mWave = walk.Path();
        fs::copy_file(QV_WAVE_DECODER, fs::path(mWave.Text()), fs::copy_options::overwrite_existing);
    }
    ~Home() { platform::FreeLibrary(mSelf); }

    platform::ModuleHandle Self() const { return mSelf; }
    const XString& Wave() const { return mWave; }  // the last of the folder

  private:
    TempFolder mFolder;
    platform::ModuleHandle mSelf = nullptr;
    XString mWave;
};

bool Find(const Home& home, clQvDecoder& decoder) {
    return clQvCodecHandler::LoadDecoderForFile(u"song.wav", decoder, kNoLog, home.Self());
}

void LoadAskAndUnloadOneModule(benchmark::State& state) {
    const Home home;
    clQvDecoder decoder;
    for (auto _ : state) {
        if (!clQvCodecHandler::TryDecoderFile(home.Wave(), u".wav", decoder, kNoLog))
            state.SkipWithError("not found");
        decoder.Unload();
    }
}
BENCHMARK(LoadAskAndUnloadOneModule)->Unit(benchmark::kMicrosecond);

void ColdLookUpOfEightModules(benchmark::State& state) {
    const Home home;
    clQvDecoder decoder;
    for (auto _ : state) {
        state.PauseTiming();
        decoder.Unload();
        XRegistry::WriteString(u"", u".wav", kCache);
        state.ResumeTiming();
        if (!Find(home, decoder)) state.SkipWithError("not found");
    }
}
BENCHMARK(ColdLookUpOfEightModules)->Unit(benchmark::kMicrosecond);

void CachedLookUp(benchmark::State& state) {
    const Home home;
    clQvDecoder decoder;
    for (auto _ : state) {
        state.PauseTiming();
        decoder.Unload();
        state.ResumeTiming();
        if (!Find(home, decoder)) state.SkipWithError("not found");
    }
}
BENCHMARK(CachedLookUp)->Unit(benchmark::kMicrosecond);

void LookUpWithTheModuleHeld(benchmark::State& state) {
    const Home home;
    clQvDecoder decoder;
    for (auto _ : state) {
        if (!Find(home, decoder)) state.SkipWithError("not found");
    }
}
BENCHMARK(LookUpWithTheModuleHeld)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    const OwnSettings settings;
    XLog::StartUp();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
