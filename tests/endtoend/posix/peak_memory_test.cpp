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

// Of a converter whose source has so many MiB of audio, without effects or with those that make another format of
// it. It makes and removes the output.
long PeakKiB(const TempFolder& files, std::uint32_t mebibytes, const std::u16string& effects = u"none") {
    const std::u16string source = files / u"in.wav", destination = files / u"out.wav";
    WriteVastRecording(source, mebibytes << 20);
    Program weighing(child::CommandLine("convert_and_weigh", CommandLine({source, destination, effects})));
    EXPECT_EQ(weighing.Finish(), 0u) << weighing.Errors();
    EXPECT_GE(std::filesystem::file_size(destination) >> 20, mebibytes);
    std::filesystem::remove(destination);
    return std::stol(weighing.Output());
}

}  // namespace

CHILD_PROGRAM(convert_and_weigh) {
    const Library library;
    Host host(library);
    const std::filesystem::path source(argv[0]), destination(argv[1]);
    Order order{source.u16string(), destination.u16string()};
    if (std::string_view(argv[2]) == "format")
        order.effects = {
            {u"Depth", u"-bits=24"}, {u"Resample", u"-rate=48000"}, {u"Channels", u"-channels=6"}};
    if (!host.Convert(order).Succeeded()) return 1;
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

TEST_F(PeakMemory, Of_a_converter_that_makes_another_format_is_the_same_for_3_MiB_and_150_MiB) {
    const long small = PeakKiB(files, 3, u"format"), large = PeakKiB(files, 150, u"format");
    std::printf("to another format, 3 MiB: %ld KiB, 150 MiB: %ld KiB\n", small, large);
    EXPECT_GT(small, 0);
    EXPECT_LE(std::abs(large - small), 2048);
}
