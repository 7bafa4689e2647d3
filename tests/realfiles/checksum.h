// CRC-32 as zip files and PNG have it: what the list of recordings knows bytes by.
#pragma once

#include <cstdint>
#include <string_view>

std::uint32_t Checksum(std::string_view bytes);
