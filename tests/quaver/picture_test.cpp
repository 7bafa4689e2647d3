// Pictures by their names and by their bytes.
#include "picture.h"

#include <gtest/gtest.h>

#include <string_view>

TEST(Picture, Without_a_kind_is_the_front_cover) {
    EXPECT_EQ(PictureName(u""), u"PICTURE");
    EXPECT_EQ(PictureName(u"front cover"), u"PICTURE");
    EXPECT_EQ(PictureName(u"Back Cover"), u"PICTURE:Back Cover");
    EXPECT_TRUE(IsPicture(u"Picture", u""));
    EXPECT_TRUE(IsPicture(u"PICTURE:Back Cover", u"back cover"));
    EXPECT_FALSE(IsPicture(u"PICTURE:Back Cover", u""));
    EXPECT_FALSE(IsPicture(u"PICTURE", u"Back Cover"));
    EXPECT_FALSE(IsPicture(u"TITLE", u""));
}

TEST(Picture, Is_known_by_its_first_bytes) {
    using namespace std::string_view_literals;
    const std::pair<std::string_view, const char16_t*> rows[] = {
        {"\xFF\xD8\xFF\xE0\0\x10JFIF"sv, u"image/jpeg"},
        {"\x89PNG\r\n\x1A\n\0\0"sv, u"image/png"},
        {"GIF87a.."sv, u"image/gif"},
        {"GIF89a.."sv, u"image/gif"},
        {"BM\x36\x10\0\0"sv, u"image/bmp"},
        {"II*\0\x08"sv, u"image/tiff"},
        {"MM\0*\0"sv, u"image/tiff"},
        {"RIFF\x10\0\0\0WEBPVP8 "sv, u"image/webp"},
        {"RIFF\x10\0\0\0WAVE"sv, u"application/octet-stream"},
        {"\x89PNG\r\n"sv, u"application/octet-stream"},
        {"\xFF\xD8"sv, u"application/octet-stream"},
        {""sv, u"application/octet-stream"},
    };
    for (const auto& [bytes, type] : rows) EXPECT_EQ(ImageType({bytes.begin(), bytes.end()}), type);
}
