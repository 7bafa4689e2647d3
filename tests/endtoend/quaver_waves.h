// quaver on WAVE files of any format, and what stands in those that it writes.
#pragma once

#include <cstring>
#include <string>

#include "endtoend/quaver_run.h"
#include "wave/wave_bytes.h"

// A WAVE file taken apart.
struct WaveContents {
    QvFormat format{};
    std::string audio;

    explicit WaveContents(const std::string& file) {
        const std::size_t record = file.find("fmt "), data = file.find("data", record);
        EXPECT_TRUE(record != std::string::npos && data != std::string::npos);
        if (data == std::string::npos) return;
        std::uint32_t bytes = 0;
        std::memcpy(&format, file.data() + record + 8, 16);
        std::memcpy(&bytes, file.data() + data + 4, 4);
        EXPECT_LE(bytes, file.size() - data - 8);
        audio = file.substr(data + 8, bytes);
    }
    std::size_t Frames() const { return format.nBlockAlign == 0 ? 0 : audio.size() / format.nBlockAlign; }
};

class QuaverWaves : public QuaverRun {
  protected:
    std::u16string WriteWave(const QvFormatExtensible& format, const std::string& audio) const {
        const std::string record(reinterpret_cast<const char*>(&format), 18u + format.Format.cbSize);
        return files.Write(u"in.wav", wave_bytes::Riff(wave_bytes::Chunk("fmt ", record) +
                                                       wave_bytes::Chunk("data", audio)));
    }

    const std::u16string destination = files / u"out.wav";
};
