// Ogg files taken apart and put together again, for tests.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ogg_file {

enum : std::uint8_t { kContinued = 1, kBegins = 2, kEnds = 4 };

struct Page {
    std::uint8_t flags = 0;
    std::int64_t granule = 0;
    std::uint32_t serial = 0;
    std::uint32_t number = 0;
    std::string lacing;
    std::string body;

    std::string Bytes() const;  // with its check sum
};

// Of a good file.
std::vector<Page> Pages(std::string_view file);
std::string Bytes(const std::vector<Page>& pages);

// Behind the headers.
std::size_t FirstAudioPage(const std::vector<Page>& pages);

// Whole packets on a page of their own.
Page PageOf(const std::vector<std::string>& packets, std::uint32_t serial, std::uint32_t number);
// The packets of a stream, headers first.
std::vector<std::string> Packets(const std::vector<Page>& pages);

// The same stream under another serial number.
std::vector<Page> WithSerial(std::vector<Page> pages, std::uint32_t serial);

}  // namespace ogg_file
