// A recording of the list: where it is, and what other programs found in it.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

struct Recording {
    using Fields = std::multiset<std::pair<std::string, std::string>>;

    std::string file;  // as the list has it
    std::uint64_t size = 0;
    std::uint32_t crc = 0;  // of the whole file
    std::uint32_t rate = 0, channels = 0, bits = 0;
    std::uint64_t frames = 0;
    std::optional<std::uint32_t> audio = {};  // the checksum of the samples, where they are exact
    double loudness = 0.0;                    // root mean square, where they are not
    std::optional<Fields> tags = {};          // names in capitals, where they are text

    std::u16string Path() const;    // as this system spells it
    std::string Extension() const;  // without the dot
    std::uint64_t AudioBytes() const { return frames * channels * bits / 8; }
};

const std::vector<Recording>& Recordings();
