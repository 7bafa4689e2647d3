// Icon files made in memory.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

// An icon file with an image of each of these sizes, in one opaque colour (blue, green, red from the high byte down).
inline std::string IconFile(std::initializer_list<std::uint32_t> sizes, std::uint32_t colour) {
    std::string head, images;
    const auto put = [](std::string& to, std::uint32_t number, int bytes) {
        for (int i = 0; i < bytes; ++i) to.push_back(static_cast<char>(number >> 8 * i));
    };
    put(head, 0, 2);
    put(head, 1, 2);
    put(head, static_cast<std::uint32_t>(sizes.size()), 2);
    const auto headSize = static_cast<std::uint32_t>(6 + 16 * sizes.size());
    for (const std::uint32_t size : sizes) {
        const std::uint32_t maskBytes = (size + 31) / 32 * 4 * size, bytes = 40 + size * size * 4 + maskBytes;
        for (const std::uint32_t side : {size, size, 0U, 0U}) put(head, side, 1);
        put(head, 1, 2);
        put(head, 32, 2);
        put(head, bytes, 4);
        put(head, headSize + static_cast<std::uint32_t>(images.size()), 4);
        for (const std::uint32_t number : {40U, size, 2 * size, 1U | 32U << 16, 0U, 0U, 0U, 0U, 0U, 0U})
            put(images, number, 4);
        const std::uint32_t pixel = 0xFF000000 | (colour & 0xFF) << 16 | (colour & 0xFF00) | colour >> 16;
        for (std::uint32_t i = 0; i < size * size; ++i) put(images, pixel, 4);
        images.append(maskBytes, '\0');
    }
    return head + images;
}
