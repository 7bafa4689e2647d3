// clAudioStream: the audio of one file, as a codec library gives it.
//
// This is all that differs between decoder modules that stand on a library: what a decoder does with it, from
// the block policy to the words for a file that ends early, is clStreamDecoder's. One thread at a time.
//
//     Open (once), then any number of Read and Seek
//
// What is wrong with the file goes to the log through Refuse, when it can't be opened, and Damage. A damaged
// file is read on where the library can find its way again; where it can't, Read gives nothing more.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "foundation/id_tag_list.h"
#include "foundation/wide_string.h"
#include "modules/support/file_reader.h"
#include "modules/support/module_log.h"

// What is known of a file once it is open.
struct clStreamFacts {
    std::uint32_t rate = 0;  // hertz
    std::uint16_t channels = 0;
    std::uint16_t bits = 0;       // of a sample as Read gives it: 8, 16, 24, 32, or 64 for float
    std::uint16_t validBits = 0;  // of them used, counted from the top; 0 for all
    bool isFloat = false;
    std::uint32_t channelMask = 0;        // as in WAVE files; 0 for none given
    std::optional<std::uint64_t> frames;  // exact, or not known

    const char16_t* container = u"";  // "FLAC", "Ogg"
    const char16_t* codec = u"";      // "Vorbis"
    XString encoder;                  // the program or library that wrote the file, empty if not told
    std::uint32_t bitRate = 0;        // average, bit/s; 0 to have it computed from size and length
};

class clAudioStream {
  public:
    explicit clAudioStream(const clModuleLog& log) : mLog(log) {}
    clAudioStream(const clAudioStream&) = delete;
    clAudioStream& operator=(const clAudioStream&) = delete;
    virtual ~clAudioStream() = default;

    // Opens the file and has the library read its headers. False when either fails: it has been reported.
    bool Open(const char16_t* path);

    const clStreamFacts& Facts() const { return mFacts; }
    std::uint64_t FileSize() const { return mFile.Size(); }
    const XString& Path() const { return mPath; }

    // The next whole frames, channels interleaved in the order of WAVE files, 8-bit samples unsigned, all
    // others signed and little-endian. They stand until the next call. Empty at the end, and when there is no
    // going on.
    virtual std::span<const std::uint8_t> Read() = 0;
    // The next Read begins at this frame, which is not behind the end. False when that failed: it has been
    // reported, and Read gives nothing more.
    virtual bool Seek(std::uint64_t frame) = 0;
    // Adds rows for display that only this format has.
    virtual void AddPropertyRows(clIDTagList&) const {}

  protected:
    // Reads the headers from mFile and fills mFacts. Otherwise false, through Refuse.
    virtual bool ReadHeaders() = 0;

    // Always false. A file that could not be read is refused for that, whatever is said here.
    bool Refuse(const char16_t* why);
    // Reports damage, the first of a file only: one broken sector must not fill the host's error text.
    void Damage(const char16_t* what);

    const clModuleLog mLog;
    clFileReader mFile;
    clStreamFacts mFacts;

  private:
    bool RefuseFor(const char16_t* failure);

    XString mPath;
    bool mDamageReported = false;
};
