// quaver decode: the audio of files, on standard output and in files.
#include <filesystem>

#include "endtoend/quaver_waves.h"
#include "foundation/pipe.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

namespace fs = std::filesystem;
using namespace wave_bytes;

namespace {

// A stream's sizes when nobody knows them.
const std::string kOpen = "\xFF\xFF\xFF\xFF";

std::string Audio(std::size_t bytes) {
    return Noise(bytes);
}

std::string Bytes(const QvFormatExtensible& format) {
    return {reinterpret_cast<const char*>(&format), 18u + format.Format.cbSize};
}

class QuaverDecode : public QuaverWaves {
  protected:
    std::u16string WriteStereo(std::size_t bytes) const {
        return WriteWave(Plain(QV_FORMAT_PCM, 2, 44100, 16), Audio(bytes));
    }
};

// quaver with nobody at the other end of its standard output.
std::uint32_t RunUnheard(const Arguments& arguments) {
    XPipe output, errors;
    EXPECT_TRUE(output.Create() && errors.Create());
    const platform::ChildStreams streams = {output.DetachWriteEnd(), errors.DetachWriteEnd()};
    output.Close();
    Arguments all = {Quaver::File()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    std::u16string line = CommandLine(all);
    platform::ChildHandles child;
    EXPECT_TRUE(platform::CreateProcessW(
        line.data(), platform::kCreateNoWindow | platform::kNormalPriorityClass, streams, &child));
    platform::CloseHandle(streams.output);
    platform::CloseHandle(streams.error);
    platform::WaitForSingleObject(child.process, platform::kInfinite);
    std::uint32_t exitCode = 0xFFFFFFFF;
    EXPECT_TRUE(platform::GetExitCodeProcess(child.process, &exitCode));
    platform::CloseHandle(child.process);
    platform::CloseHandle(child.thread);
    return exitCode;
}

}  // namespace

TEST_F(QuaverDecode, Writes_a_wave_file_whose_length_is_open_to_standard_output) {
    Expect({u"decode", WriteStereo(400000)}, kDone);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(output.substr(0, 12), "RIFF" + kOpen + "WAVE");
    EXPECT_EQ(output.substr(output.size() - 400008), "data" + kOpen + Audio(400000));
    // It is read back as what it was.
    Expect({u"decode", u"--raw", files.Write(u"piped.wav", output)}, kDone);
    EXPECT_EQ(output, Audio(400000));
}

TEST_F(QuaverDecode, Writes_a_wave_file_with_its_lengths_to_a_file) {
    const std::u16string source = WriteStereo(400000);
    Expect({u"decode", source, u"-o", destination}, kDone, "Decoded '");
    EXPECT_EQ(output, "");
    EXPECT_TRUE(HaveSameAudio(source, destination));
    const std::string file = files.Read(u"out.wav");
    EXPECT_EQ(file.substr(0, 8), "RIFF" + U32(static_cast<std::uint32_t>(file.size() - 8)));
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"in.wav", u"out.wav"}));
}

TEST_F(QuaverDecode, Writes_bare_samples) {
    const std::u16string source = WriteStereo(300000);
    Expect({u"decode", u"--raw", source}, kDone);
    EXPECT_EQ(output, Audio(300000));
    Expect({u"decode", u"--raw", u"--quiet", source, u"--output", destination}, kDone);
    EXPECT_EQ(output + errors, "");
    EXPECT_EQ(files.Read(u"out.wav"), Audio(300000));
}

// Less than a millisecond, and a tail that fills the last block to the byte or misses it by a frame.
TEST_F(QuaverDecode, Delivers_every_frame_of_every_length) {
    constexpr std::size_t kBlock = 262148;
    for (const std::size_t bytes :
         {std::size_t{0}, std::size_t{4}, std::size_t{80}, std::size_t{176}, std::size_t{180}, kBlock - 4,
          kBlock, kBlock + 4, 3 * kBlock - 4, 3 * kBlock, 3 * kBlock + 4}) {
        const std::u16string source = WriteStereo(bytes);
        Expect({u"decode", u"--raw", source}, kDone);
        EXPECT_TRUE(output == Audio(bytes)) << bytes << " became " << output.size();
        Expect({u"decode", source}, kDone);
        EXPECT_TRUE(output.ends_with("data" + kOpen + Audio(bytes))) << bytes;
    }
}

TEST_F(QuaverDecode, Keeps_every_format_that_samples_can_have) {
    const QvFormatExtensible formats[] = {Plain(QV_FORMAT_PCM, 1, 8000, 8),
                                          Plain(QV_FORMAT_PCM, 2, 48000, 24),
                                          Plain(QV_FORMAT_PCM, 3, 96000, 32),
                                          Plain(QV_FORMAT_FLOAT, 2, 44100, 32),
                                          Plain(QV_FORMAT_FLOAT, 1, 192000, 64),
                                          Plain(QV_FORMAT_ALAW, 2, 8000, 8),
                                          Plain(QV_FORMAT_MULAW, 1, 8000, 8),
                                          Extensible(QV_FORMAT_PCM, 6, 48000, 24, 20, 0x3F),
                                          Extensible(QV_FORMAT_FLOAT, 8, 48000, 32, 32, 0x63F)};
    for (const QvFormatExtensible& format : formats) {
        const std::string audio = Audio(std::size_t{format.Format.nBlockAlign} * 1001);
        const std::u16string source = WriteWave(format, audio);
        Expect({u"decode", u"-f", source, u"-o", destination}, kDone, "Decoded");
        EXPECT_TRUE(HaveSameAudio(source, destination));
        const std::string record = Bytes(format).substr(0, format.Format.cbSize == 0 ? 16 : 40);
        EXPECT_NE(files.Read(u"out.wav").find(record), std::string::npos) << format.Format.wFormatTag;
        EXPECT_EQ(files.Read(u"out.wav").size() % 2, 0u);
    }
}

TEST_F(QuaverDecode, Says_what_can_not_be_delivered) {
    const std::string words = "can't be delivered in that format: ";
    const std::u16string stereo = WriteStereo(40000);
    // Channels beyond what is ever mixed.
    ExpectNothingWritten({u"decode", stereo, u"--channels", u"9", u"-o", destination}, kFailed,
                         words + "44100 Hz, 9 channel(s), 16 bits.");
    ExpectNothingWritten({u"decode", stereo, u"--raw", u"--channels", u"9"}, kFailed, words);
    EXPECT_EQ(output, "");
    // A depth that integers don't have.
    ExpectNothingWritten({u"decode", stereo, u"--raw", u"--bits", u"64"}, kFailed,
                         words + "44100 Hz, 2 channel(s), 64 bits.");
    EXPECT_EQ(output, "");
}

TEST_F(QuaverDecode, Takes_a_request_that_is_what_the_file_has) {
    const std::u16string source = WriteStereo(40000);
    Expect({u"decode", source, u"--raw", u"--rate", u"44100", u"--channels", u"2", u"--bits", u"16"}, kDone);
    EXPECT_EQ(output, Audio(40000));
}

TEST_F(QuaverDecode, Passes_coded_audio_on_only_when_told) {
    const std::u16string coded = WriteWave(Coded(QV_FORMAT_MPEG, 2, 44100, 16000, 1, 0, ""), Audio(32000));
    ExpectNothingWritten({u"decode", coded, u"-o", destination}, kFailed,
                         "holds coded audio (format tag 80)");
    Expect({u"decode", coded, u"--raw"}, kDone);
    EXPECT_EQ(output, Audio(32000));
}

TEST_F(QuaverDecode, Gives_what_there_is_of_a_damaged_file_and_says_so) {
    const std::u16string cut = files.Write(u"cut.wav", CutRecording(300000, 4000));
    Expect({u"decode", cut, u"-o", destination}, kDamaged, "4000 of 304000 bytes of audio are missing");
    EXPECT_NE(errors.find("is damaged; what could be read of it was written."), std::string::npos) << errors;
    EXPECT_TRUE(files.Read(u"out.wav").ends_with(Audio(300000)));
    Expect({u"decode", cut, u"--raw"}, kDamaged, "missing");
    EXPECT_EQ(output, Audio(300000));
}

TEST_F(QuaverDecode, Tells_why_a_file_can_not_be_opened) {
    ExpectNothingWritten({u"decode", files / u"none.wav", u"-o", destination}, kFailed, "does not exist");
    ExpectNothingWritten({u"decode", files.Write(u"a.txt", "text")}, kFailed, "Failed to find decoder");
    ExpectNothingWritten({u"decode", files.Write(u"bad.wav", "RIFFbad")}, kFailed, "Failed to open file");
    EXPECT_EQ(output, "");
}

TEST_F(QuaverDecode, Replaces_a_file_only_when_told) {
    const std::u16string source = WriteStereo(40000);
    files.Write(u"out.wav", "old");
    Expect({u"decode", source, u"-o", destination}, kRefused, "exists; --overwrite replaces it");
    EXPECT_EQ(files.Read(u"out.wav"), "old");
    Expect({u"decode", u"--overwrite", source, u"-o", destination}, kDone);
    EXPECT_TRUE(HaveSameAudio(source, destination));
}

TEST_F(QuaverDecode, Refuses_a_destination_that_is_no_place_for_it) {
    const std::u16string source = WriteStereo(40000);
    files.MakeFolder(u"folder");
    fs::create_hard_link(fs::path(source), fs::path(files / u"link.wav"));
    ExpectNothingWritten({u"decode", u"-f", source, u"-o", source}, kRefused, "are the same file");
    ExpectNothingWritten({u"decode", u"-f", source, u"-o", files / u"link.wav"}, kRefused,
                         "are the same file");
    ExpectNothingWritten({u"decode", u"-f", source, u"-o", files / u"folder"}, kRefused,
                         "no file that could be");
    ExpectNothingWritten({u"decode", source, u"-o", files / u"missing/out.wav"}, kOutput, "can't be written");
}

TEST_F(QuaverDecode, Keeps_what_stands_there_when_it_fails) {
    files.Write(u"out.wav", "old");
    Expect({u"decode", u"-f", WriteStereo(40000), u"--channels", u"9", u"-o", destination}, kFailed);
    EXPECT_EQ(files.Read(u"out.wav"), "old");
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"in.wav", u"out.wav"}));
}

TEST_F(QuaverDecode, Ends_with_a_code_of_its_own_when_nobody_reads) {
    const std::u16string source = WriteStereo(4 << 20);
    EXPECT_EQ(RunUnheard({u"decode", source}), kOutput);
    EXPECT_EQ(RunUnheard({u"info", source}), kOutput);
    EXPECT_EQ(RunUnheard({u"list", u"--json"}), kOutput);
}
