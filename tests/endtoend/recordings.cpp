#include "endtoend/recordings.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "platform/file.h"
#include "platform/names.h"
#include "wave/wave_bytes.h"

using namespace wave_bytes;

namespace {

constexpr std::size_t kPiece = 1 << 20;

std::string Audio(std::size_t bytes, std::uint32_t number) {
    return Noise(bytes + std::size_t{64} * number).substr(std::size_t{64} * number);
}

// Everything before the audio.
std::string Head(std::uint32_t audioBytes) {
    const std::string format = StereoFormat();
    return Claiming("RIFF", static_cast<std::uint32_t>(4 + format.size() + 8) + audioBytes,
                    "WAVE" + format + Claiming("data", audioBytes, ""));
}

void Write(platform::Handle file, std::string_view bytes) {
    std::uint32_t written = 0;
    if (!platform::WriteFile(file, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written))
        throw std::runtime_error("a test's file can't be written");
}

// The audio of a WAVE file, piece by piece.
class AudioReader {
  public:
    explicit AudioReader(const std::u16string& path)
        : mFile(std::filesystem::path(platform::kLongPathPrefix + path), std::ios::binary) {
        mFile.ignore(12);
        std::string id;
        while (id != "data" && mFile) {
            mFile.ignore(static_cast<std::streamsize>(mLeft + mLeft % 2));
            id = Bytes(4);
            mLeft = Number();
        }
        if (!mFile) mLeft = 0;
    }

    std::uint64_t Left() const { return mLeft; }
    std::string Piece() {
        std::string piece = Bytes(std::min<std::size_t>(mLeft, kPiece));
        mLeft -= static_cast<std::uint32_t>(piece.size());
        return piece;
    }

  private:
    std::string Bytes(std::size_t count) {
        std::string bytes(count, '\0');
        mFile.read(bytes.data(), static_cast<std::streamsize>(count));
        bytes.resize(static_cast<std::size_t>(mFile.gcount()));
        return bytes;
    }
    std::uint32_t Number() {
        std::uint32_t number = 0;
        const std::string bytes = Bytes(4);
        for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
            number = number << 8 | static_cast<std::uint8_t>(*byte);
        return number;
    }

    std::ifstream mFile;
    std::uint32_t mLeft = 0;
};

}  // namespace

std::string Recording(std::size_t audioBytes, std::uint32_t number) {
    return Riff(StereoFormat() + Chunk("data", Audio(audioBytes, number)));
}

std::string CutRecording(std::size_t audioBytes, std::uint32_t missing) {
    return Head(static_cast<std::uint32_t>(audioBytes) + missing) + Audio(audioBytes, 0);
}

void WriteVastRecording(const std::u16string& path, std::uint32_t audioBytes) {
    const platform::Handle file =
        platform::CreateFileW(path.c_str(), platform::kGenericWrite, platform::kShareRead,
                              platform::kCreateAlways, platform::kAttributeNormal);
    const std::string head = Head(audioBytes), end = "END.";
    Write(file, head);
    platform::SetFilePointerEx(file, static_cast<std::int64_t>(head.size() + audioBytes - end.size()));
    Write(file, end);
    platform::CloseHandle(file);
}

bool HaveSameAudio(const std::u16string& one, const std::u16string& other) {
    AudioReader first(one), second(other);
    if (first.Left() == 0 || first.Left() != second.Left()) return false;
    while (first.Left() > 0) {
        const std::string piece = first.Piece();
        if (piece.empty() || piece != second.Piece()) return false;
    }
    return true;
}
