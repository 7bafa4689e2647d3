// What the library adds to a conversion: the same short file through Quavercore started by hand and through
// QACConvertAudio polled every millisecond, turn by turn, so that both see the same machine.
//
//     qv_bench_overhead SOURCE DESTINATION [ROUNDS]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "direct_run.h"
#include "endtoend/library.h"
#include "platform/clock.h"
#include "platform/names.h"

namespace {

using Clock = std::chrono::steady_clock;

double MsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

const QvChar* In(const std::u16string& text) {
    return reinterpret_cast<const QvChar*>(text.c_str());
}

bool ConvertThroughLibrary(const Library& library, QvConverter* converter, const std::u16string& source,
                           const std::u16string& destination) {
    static const std::u16string encoder = u"Wave", settings;
    if (library.QACConvertAudio(converter, In(source), In(destination), In(encoder), In(settings)) !=
        QV_DONE) {
        return false;
    }
    for (std::uint32_t percent = 0; percent < 100; platform::Sleep(1))
        library.QACGetProgress(converter, &percent);
    static std::vector<QvChar> text(1 << 20);
    library.QACGetLastInfo(converter, text.data());
    return library.QACGetLastError(converter, text.data()) != QV_DONE;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: qv_bench_overhead SOURCE DESTINATION [ROUNDS]\n");
        return 2;
    }
    const std::u16string source = std::filesystem::path(argv[1]).u16string();
    const std::u16string destination = std::filesystem::path(argv[2]).u16string();
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 51;
    const std::u16string program =
        (std::filesystem::path(Library::File()).parent_path() / platform::kConverterFileName).u16string();

    const Library library;
    if (!library.IsLoaded()) return 1;
    QvConverter* const converter = library.QACCreate();
    std::vector<double> direct, through;
    for (int round = 0; round < rounds; ++round) {
        Clock::time_point start = Clock::now();
        if (RunDirectly(program, source, destination) != 0) return 1;
        direct.push_back(MsSince(start));
        start = Clock::now();
        if (!ConvertThroughLibrary(library, converter, source, destination)) return 1;
        through.push_back(MsSince(start));
    }
    library.QACDestroy(converter);
    std::printf("direct %.1f ms, through the library %.1f ms, added %.1f ms (medians of %d)\n",
                Median(direct), Median(through), Median(through) - Median(direct), rounds);
    return 0;
}
