#include "modules/flac/mask_comment.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdio>

namespace {

constexpr std::string_view kName = "WAVEFORMATEXTENSIBLE_CHANNEL_MASK=";

char Upper(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

}  // namespace

std::optional<std::uint32_t> ReadMaskComment(std::string_view comment, std::uint32_t channels) {
    if (comment.size() < kName.size() ||
        !std::ranges::equal(comment.substr(0, kName.size()), kName, {}, Upper))
        return std::nullopt;
    std::string_view digits = comment.substr(kName.size());
    const bool isHex = digits.starts_with("0x") || digits.starts_with("0X");
    if (isHex) digits.remove_prefix(2);
    std::uint32_t mask = 0;
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, mask, isHex ? 16 : 10);
    const bool isGood = result.ec == std::errc() && result.ptr == end;
    if (!isGood || static_cast<std::uint32_t>(std::popcount(mask)) > channels) return std::nullopt;
    return mask;
}

std::string MaskComment(std::uint32_t mask) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%04X", static_cast<unsigned>(mask));
    return std::string(kName) + "0x" + digits;
}
