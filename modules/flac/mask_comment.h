// The comment in a FLAC file that says which loudspeakers its channels are for, where they are not the usual
// ones.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The mask, when `comment` is that one and makes sense for so many channels; 0 says that they are for none.
std::optional<std::uint32_t> ReadMaskComment(std::string_view comment, std::uint32_t channels);

std::string MaskComment(std::uint32_t mask);
