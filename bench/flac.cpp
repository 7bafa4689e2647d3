// What decoding a FLAC file costs beside libFLAC's own decoding of it, the check sum over all audio included in
// each: by a program that calls the library, through the module's decoder, and through QADDecodeBlock. The three
// take turns, so that all see the same machine.
//
//     qv_bench_flac FILE [ROUNDS]
#include <FLAC/stream_decoder.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "endtoend/library.h"
#include "modules/flac/flac_stream.h"
#include "modules/support/stream_decoder.h"

namespace {

// Of the processor: nothing here waits for anything but a file that is in memory.
double MsOfProcessor() {
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Each decodes the file and gives the number of frames.

std::uint64_t DecodeByLibFlac(const char* file) {
    std::uint64_t frames = 0;
    FLAC__StreamDecoder* decoder = FLAC__stream_decoder_new();
    FLAC__stream_decoder_set_md5_checking(decoder, true);
    const auto write = [](const FLAC__StreamDecoder*, const FLAC__Frame* frame, const FLAC__int32* const[],
                          void* user) {
        *static_cast<std::uint64_t*>(user) += frame->header.blocksize;
        return FLAC__STREAM_DECODER_WRITE_STATUS_CONTINUE;
    };
    const auto fail = [](const FLAC__StreamDecoder*, FLAC__StreamDecoderErrorStatus, void*) { std::exit(1); };
    FLAC__stream_decoder_init_file(decoder, file, write, nullptr, fail, &frames);
    FLAC__stream_decoder_process_until_end_of_stream(decoder);
    if (!FLAC__stream_decoder_finish(decoder)) std::exit(1);
    FLAC__stream_decoder_delete(decoder);
    return frames;
}

std::uint64_t DecodeByModule(const std::u16string& file) {
    static constexpr clStreamCodec kCodec = {{}, MakeStream<clFlacStream>, TagContainer::flac};
    clStreamDecoder decoder{clModuleLog(nullptr), kCodec};
    clAudioInformation information;
    if (!decoder.OpenForDecoding(file.c_str(), information)) return 0;
    std::uint64_t bytes = 0;
    for (bool finished = false; !finished;) {
        const clDecodedBlock block = decoder.DecodeBlock();
        bytes += block.bytes;
        finished = block.finished;
    }
    return bytes / information.format.Format.nBlockAlign;
}

std::uint64_t DecodeDirectly(const Library& library, QvConverter* converter, const std::u16string& file) {
    QvFormatExtensible format{};
    if (library.QADOpenFile(converter, reinterpret_cast<const QvChar*>(file.c_str()), &format, nullptr) !=
        QV_DONE)
        return 0;
    std::vector<std::uint8_t> buffer(4096u * format.Format.nBlockAlign);
    std::uint64_t all = 0;
    for (std::uint32_t finished = 0; finished == 0;) {
        auto bytes = static_cast<std::uint32_t>(buffer.size());
        std::uint64_t positionMs = 0;
        library.QADDecodeBlock(converter, buffer.data(), &bytes, &finished, &positionMs);
        if (finished == 0 && positionMs == 0) break;
        all += bytes;
    }
    library.QADCloseFile(converter);
    return all / format.Format.nBlockAlign;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: qv_bench_flac FILE [ROUNDS]\n");
        return 2;
    }
    const std::u16string file = std::filesystem::absolute(argv[1]).u16string();
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 21;
    const Library library;
    if (!library.IsLoaded()) return 1;
    QvConverter* const converter = library.QACCreate();
    std::vector<double> times[3];
    for (int round = 0; round < rounds; ++round) {
        const double begin = MsOfProcessor();
        const std::uint64_t frames = DecodeByLibFlac(argv[1]);
        const double second = MsOfProcessor();
        if (DecodeByModule(file) != frames) return 1;
        const double third = MsOfProcessor();
        if (DecodeDirectly(library, converter, file) != frames) return 1;
        const double end = MsOfProcessor();
        times[0].push_back(second - begin);
        times[1].push_back(third - second);
        times[2].push_back(end - third);
    }
    library.QACDestroy(converter);
    const double own = Median(times[0]);
    std::printf("libFLAC %.1f ms, the module %.1f ms (%.3f), QADDecodeBlock %.1f ms (%.3f); medians of %d\n",
                own, Median(times[1]), Median(times[1]) / own, Median(times[2]), Median(times[2]) / own,
                rounds);
    return 0;
}
