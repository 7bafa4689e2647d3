// What the children of converter_double.cpp say that their tests must know.
#pragma once

#include <string_view>

inline constexpr std::u16string_view kRemark =
    u"0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcd\r\n";
inline constexpr std::u16string_view kComplaint =
    u"complaint 0123456789abcdef0123456789abcdef0123456789abcdef-\r\n";
inline constexpr int kFloodLines = 8192 + 512;  // a good megabyte on each stream

inline constexpr int kLongPiece = 65536;  // units
inline constexpr int kLongPieces = 80;    // 10 MB

inline constexpr int kManyLines = 100000;

inline constexpr std::u16string_view kCutMessage = u"MSGTO: qMC: PCDone: 55\r\n";
