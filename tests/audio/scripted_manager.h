// An audio compression manager that does what a test says, in the place of the system's own.
//
// It opens what `opens` accepts, and converts by adding 1 to every byte: as many come out as go in. It keeps
// a journal of its calls, a line each. The operations stand open for faults too:
//
//     ScriptedManager manager;
//     manager.opens = [](const QvFormat& source, const QvFormat&) { return source.wBitsPerSample == 16; };
//     manager.takesAtMost = 5;                    // the rest of the source is left
//     manager.conversions.FailCall(1, 1u);        // the next conversion fails
//     manager.TakeJournal();                      // "open 1/16 6/8\nsize 7\n..."
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "platform/acm.h"
#include "support/faults.h"

class ScriptedManager {
  public:
    ScriptedManager() {
        opening.Replace([this](auto... arguments) { return Open(arguments...); });
        closing.Replace([this](auto... arguments) { return Close(arguments...); });
        sizes.Replace([this](auto... arguments) { return Size(arguments...); });
        preparations.Replace([this](auto... arguments) { return Prepare(arguments...); });
        conversions.Replace([this](auto... arguments) { return Convert(arguments...); });
        unpreparations.Replace([this](auto... arguments) { return Unprepare(arguments...); });
    }

    std::string TakeJournal() { return std::exchange(mJournal, {}); }

    std::function<bool(const QvFormat& source, const QvFormat& target)> opens;  // all, where none is given
    std::optional<std::uint32_t> suggests;                 // for any source, else as much as that
    std::uint32_t takesAtMost = UINT32_MAX;                // of one conversion's source
    std::uint32_t makesAtMost = UINT32_MAX;                // of one conversion's destination
    std::uint32_t claimsTaken = 0;                         // more than it took
    std::uint32_t claimsMade = 0;                          // more than it made
    bool keepsJournal = true;                              // which takes memory
    alignas(8) platform::AcmStreamHeader lastHeader = {};  // as it came to the last conversion
    int streams = 0;                                       // that are open
    int prepared = 0;                                      // headers that are

    Faulty<platform::acmStreamOpen> opening;
    Faulty<platform::acmStreamClose> closing;
    Faulty<platform::acmStreamSize> sizes;
    Faulty<platform::acmStreamPrepareHeader> preparations;
    Faulty<platform::acmStreamConvert> conversions;
    Faulty<platform::acmStreamUnprepareHeader> unpreparations;

  private:
    static std::string Name(const QvFormat& format) {
        return std::to_string(format.wFormatTag) + "/" + std::to_string(format.wBitsPerSample);
    }
    static platform::AcmStream Stream() {
        static char stream = 0;
        return &stream;
    }

    void Note(auto line) {
        if (keepsJournal) mJournal += line();
    }

    std::uint32_t Open(platform::AcmStream* stream, const QvFormat* from, const QvFormat* to,
                       std::uint32_t flags) {
        Note([&] {
            return "open " + Name(*from) + " " + Name(*to) + (flags == 4 ? "\n" : " with other flags\n");
        });
        if (opens && !opens(*from, *to)) return platform::kAcmErrorNotPossible;
        *stream = Stream();
        ++streams;
        return 0;
    }
    std::uint32_t Close(platform::AcmStream stream) {
        Note([&] { return std::string("close\n"); });
        if (stream != Stream()) return platform::kAcmErrorInvalidHandle;
        --streams;
        return 0;
    }
    std::uint32_t Size(platform::AcmStream, std::uint32_t bytes, std::uint32_t* suggested,
                       std::uint32_t flags) {
        Note([&] { return "size " + std::to_string(bytes) + (flags == 0 ? "\n" : " of the destination\n"); });
        *suggested = suggests.value_or(bytes);
        return 0;
    }
    std::uint32_t Prepare(platform::AcmStream, platform::AcmStreamHeader* header) {
        Note([&] {
            return "prepare " + std::to_string(header->cbSrcLength) + " " +
                   std::to_string(header->cbDstLength) + "\n";
        });
        if (header->cbDstLength == 0 || header->cbStruct != 124) return platform::kAcmErrorInvalidParameter;
        ++prepared;
        return 0;
    }
    std::uint32_t Unprepare(platform::AcmStream, platform::AcmStreamHeader*) {
        Note([&] { return std::string("unprepare\n"); });
        --prepared;
        return 0;
    }
    std::uint32_t Convert(platform::AcmStream, platform::AcmStreamHeader* header, std::uint32_t flags) {
        Note([&] { return "convert " + std::to_string(flags) + "\n"; });
        lastHeader = *header;
        const std::uint32_t taken = std::min(header->cbSrcLength, takesAtMost);
        const std::uint32_t made = std::min({taken, header->cbDstLength, makesAtMost});
        for (std::uint32_t index = 0; index < made; ++index)
            header->pbDst[index] = static_cast<std::uint8_t>(header->pbSrc[index] + 1);
        header->cbSrcLengthUsed = taken + claimsTaken;
        header->cbDstLengthUsed = made + claimsMade;
        return 0;
    }

    std::string mJournal;
};
