// AudioForm: what one stage of a conversion says of the audio that it gives to the next.
#pragma once

#include <array>
#include <cstdint>

struct AudioForm {
    std::array<std::uint8_t, 40> format = {};  // a QvFormat or QvFormatExtensible
    std::uint64_t lengthMs = 0;                // 0 when not known
};
