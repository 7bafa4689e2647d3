// Pictures in tags: how their rows are named and what the bytes are.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The name of a picture's row; no kind is the front cover.
std::u16string PictureName(const std::u16string& kind);

// Whether a row of tags is named as a picture of this kind, whatever the case of its letters.
bool IsPicture(const std::u16string& rowName, const std::u16string& kind);

// The kind of picture that the bytes begin as: "image/png" and so on; "application/octet-stream" for none known.
std::u16string ImageType(const std::vector<std::uint8_t>& bytes);
