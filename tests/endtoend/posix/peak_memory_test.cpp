// The most memory that a conversion ever takes does not depend on the length of the file. A child converts,
// since the system tells the peak of a process's ended children all together.
#include <sys/resource.h>

#include <cstdio>
#include <filesystem>

#include "endtoend/conversion.h"
#include "endtoend/program.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "support/child.h"

namespace {

using PeakMemory = Stage;

// Of a converter whose source has so many MiB of audio. It makes and removes the output.
long PeakKiB(const TempFolder& files, std::uint32_t mebibytes) {
    const std::u16string source = files / u"in.wav", destination = files / u"out.wav";
    WriteVastRecording(source, mebibytes << 20);
    Program weighing(child::CommandLine("convert_and_weigh", CommandLine({source, destination})));
    EXPECT_EQ(weighing.Finish(), 0u) << weighing.Errors();
    EXPECT_EQ(std::filesystem::file_size(destination) >> 20, mebibytes);
    std::filesystem::remove(destination);
    return std::stol(weighing.Output());
}

}  // namespace

CHILD_PROGRAM(convert_and_weigh) {
    const Library library;
    Host host(library);
    const std::filesystem::path source(argv[0]), destination(argv[1]);
    if (!host.Convert({source.u16string(), destination.u16string()}).Succeeded()) return 1;
    rusage children{};
    getrusage(RUSAGE_CHILDREN, &children);
    std::printf("%ld\n", children.ru_maxrss);
    return 0;
}

TEST_F(PeakMemory, Of_a_converter_is_the_same_for_3_MiB_and_3_GiB) {
    const long small = PeakKiB(files, 3), large = PeakKiB(files, 3072);
    std::printf("3 MiB: %ld KiB, 3 GiB: %ld KiB\n", small, large);
    EXPECT_GT(small, 0);
    EXPECT_LE(std::abs(large - small), 2048);
}
