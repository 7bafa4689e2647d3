// Numbers as text.
#pragma once

#include <concepts>
#include <string>

inline std::u16string Decimal(std::integral auto number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}
