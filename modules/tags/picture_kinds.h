// The 21 kinds of pictures that ID3 and FLAC know, and what pictures are coded as.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// What is beyond the known ones is kind 0, "Other".
std::int32_t KnownPictureKind(std::int64_t kind);

// "PICTURE" for a front cover, "PICTURE:Back Cover" and so on for the others.
std::u16string PictureName(std::int32_t kind);

// The kind that a row's name says, without regard to ASCII case; none when it is no name of a picture.
std::optional<std::int32_t> PictureKind(const std::u16string& name);

// By the bytes it begins with: JPEG, PNG, GIF, BMP, WebP, else "application/octet-stream".
const char* PictureMime(const std::string& bytes);
