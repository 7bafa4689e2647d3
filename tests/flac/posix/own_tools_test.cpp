// Beside the format's own tools.
#include <cstdlib>

#include "flac/flac_file.h"
#include "foundation/id_tag_list.h"

namespace {

class FlacTools : public Flac {
  protected:
    void Run(const std::string& command) {
        const std::u16string path = folder.Path();
        ASSERT_EQ(std::system(("cd '" + std::string(path.begin(), path.end()) + "' && " + command).c_str()),
                  0)
            << command;
    }

    CodecModules wave{u"Wave", u"Wave"};
};

}  // namespace

TEST_F(FlacTools, Read_our_files_to_the_same_bits) {
    for (const QvFormatExtensible& format :
         {PcmFormat(44100, 2, 16), PcmFormat(8000, 1, 8), PcmFormat(96000, 2, 24), PcmFormat(96000, 2, 32),
          PcmFormat(48000, 6, 24, 20, 0x60F), PcmFormat(655350, 3, 16, 12, 7)}) {
        const std::string samples = Noise(30001, format);
        Encode(format, samples, u"-compression-level=3");
        Run("flac --totally-silent --test --warnings-as-errors a.flac");
        Run("flac --totally-silent --force --decode -o b.wav a.flac");
        EXPECT_TRUE(wave.Decode(folder / u"b.wav").audio == samples) << format.Format.wBitsPerSample;
    }
}

TEST_F(FlacTools, Write_what_we_read_to_the_same_bits) {
    const char* ways[] = {"-0",
                          "-8",
                          "-5 --blocksize=192",
                          "-5 --no-padding --no-seektable",
                          "-5 -S 100x",
                          "-5 --lax --blocksize=32768"};
    for (const QvFormatExtensible& format : {PcmFormat(44100, 2, 16), PcmFormat(8000, 1, 8),
                                             PcmFormat(96000, 2, 24), PcmFormat(48000, 6, 24, 20, 0x60F)}) {
        const std::string samples = Noise(30001, format);
        ASSERT_TRUE(wave.Encode(folder / u"b.wav", format, samples));
        for (const std::string way : ways) {
            Run("flac --totally-silent --force -o a.flac " + way + " b.wav");
            const Decoding decoding = modules.Decode(folder / u"a.flac");
            EXPECT_EQ(decoding.errors, u"") << way;
            EXPECT_TRUE(decoding.audio == samples) << way;
            EXPECT_EQ(decoding.Format().dwChannelMask, format.dwChannelMask) << way;
            clOpenFileRec record;
            ASSERT_TRUE(modules.Open(folder / u"a.flac", QV_OPEN_DECODING, record));
            for (const std::int64_t frame : {29000, 1, 15000, 15001, 30000})
                EXPECT_TRUE(From(frame) ==
                            samples.substr(static_cast<std::size_t>(frame) * format.Format.nBlockAlign))
                    << way << " " << frame;
        }
    }
}

TEST_F(FlacTools, Write_into_a_pipe_what_we_find_the_length_of) {
    ASSERT_TRUE(wave.Encode(folder / u"b.wav", stereo, audio));
    for (const std::string way : {"flac --totally-silent -c - <b.wav | cat >a.flac",
                                  "ffmpeg -loglevel error -i b.wav -f flac - </dev/null | cat >a.flac"}) {
        Run(way);
        const Decoding decoding = modules.Decode(folder / u"a.flac");
        EXPECT_EQ(decoding.errors, u"") << way;
        EXPECT_TRUE(decoding.audio == audio) << way;
        EXPECT_EQ(ValueOf(decoding.record.lengthMs), kFrames * std::uint64_t{1000} / 44100) << way;
    }
}

TEST_F(FlacTools, Know_the_same_check_sum) {
    Encode(stereo, audio);
    Run("metaflac --show-md5sum a.flac >sum");
    clOpenFileRec record;
    ASSERT_TRUE(modules.Open(folder / u"a.flac", QV_OPEN_PROPERTY_ROWS, record));
    clIDTagList rows;
    rows.Deserialise(record.propertyData, record.propertyDataSize);
    for (std::int32_t i = 0; i < rows.Count(); ++i) {
        if (!(rows.At(i).name == u"MD5")) continue;
        const std::u16string sum = rows.At(i).value.Text();
        EXPECT_EQ(std::string(sum.begin(), sum.end()) + "\n", folder.Read(u"sum"));
        return;
    }
    FAIL() << "no row named MD5";
}
