// Icons from files and programs, pictures from memory, and what damaged ones do.
#include <gtest/gtest.h>

#include <random>

#include "foundation/joined.h"
#include "settings/toolkit/icon.h"
#include "support/temp_folder.h"
#include "toolkit/real/gauge.h"
#include "toolkit/real/icon_files.h"

namespace {

constexpr platform::Colour kRed = 0x0000FF, kBlue = 0xFF0000;
constexpr const char16_t* kProgramWithIcons = u"C:\\windows\\system32\\shell32.dll";

// 4 by 2 pixels, red above blue.
std::string Bitmap() {
    std::string bytes = "BM";
    const auto put = [&](std::uint32_t number, int count) {
        for (int i = 0; i < count; ++i) bytes.push_back(static_cast<char>(number >> 8 * i));
    };
    for (const std::uint32_t number :
         {54U + 24, 0U, 54U, 40U, 4U, 2U, 1U | 24U << 16, 0U, 24U, 0U, 0U, 0U, 0U})
        put(number, 4);
    for (int i = 0; i < 4; ++i) put(0x0000FF, 3);  // blue, the lower row comes first
    for (int i = 0; i < 4; ++i) put(0xFF0000, 3);
    return bytes;
}

std::string FromHex(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes.push_back(static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16)));
    return bytes;
}

// 8 by 8 pixels, red.
const std::string kJpeg = FromHex(
    "ffd8ffe000104a46494600010100000100010000ffdb004300030202020202030202020303030304060404040404080606050609"
    "080a"
    "0a090809090a0c0f0c0a0b0e0b09090d110d0e0f101011100a0c12131210130f101010ffdb00430103030304030408040408100b"
    "090b"
    "1010101010101010101010101010101010101010101010101010101010101010101010101010101010101010101010101010ffc0"
    "0011"
    "080008000803011100021101031101ffc40014000100000000000000000000000000000008ffc400141001000000000000000000"
    "0000"
    "0000000000ffc4001501010100000000000000000000000000000709ffc40014110100000000000000000000000000000000ffda"
    "000c"
    "03010002110311003f003a03154dffd9");
// 4 by 2 pixels, blue.
const std::string kGif =
    FromHex("47494638396104000200f000000000ff00000021f90400000000002c0000000004000200000203846f05003b");
const std::string kBitmap = Bitmap();

bool Load(XBitmap& bitmap, const std::string& bytes) {
    return bitmap.LoadFromMemory(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

platform::Colour PixelOf(XBitmap& bitmap, std::int32_t x, std::int32_t y) {
    const Canvas canvas(16, 16, 0x808080);
    bitmap.Select(canvas.DC());
    bitmap.Draw(canvas.DC(), 0, 0, -1, -1, 0, 0, platform::kRasterCopy);
    bitmap.Unselect();
    return canvas.At(x, y);
}

std::string Damaged(const std::string& whole, std::mt19937& random) {
    std::string bytes = whole.substr(0, random() % 4 ? whole.size() : random() % whole.size());
    for (unsigned i = random() % 8; i > 0 && !bytes.empty(); --i)
        bytes[random() % std::min<std::size_t>(bytes.size(), 100)] = static_cast<char>(random());
    return bytes;
}

}  // namespace

TEST(RealIcon, a_file_gives_16_pixels_whatever_its_own_size) {
    const TempFolder folder;
    for (const std::uint32_t size : {16U, 32U, 48U}) {
        XIcon icon;
        icon.Load(folder.Write(u"a.ico", IconFile({size}, kRed)).c_str());
        EXPECT_EQ(icon.GetWidth(), 16) << size;
        EXPECT_EQ(icon.GetHeight(), 16) << size;
        const XIcon copy = icon;
        EXPECT_NE(copy.Handle(), icon.Handle());
        EXPECT_EQ(copy.GetWidth(), 16);
    }
}

TEST(RealIcon, a_program_gives_its_first_icon_in_the_platforms_usual_size) {
    XIcon icon;
    icon.Load(kProgramWithIcons);
    EXPECT_EQ(icon.GetWidth(), 32);
    EXPECT_EQ(icon.GetHeight(), 32);
    icon.Load(XString(kProgramWithIcons).ToUpper());
    EXPECT_EQ(icon.GetWidth(), 32);
}

TEST(RealIcon, what_is_missing_or_no_icon_is_empty) {
    const TempFolder folder;
    const std::u16string paths[] = {
        folder / u"none.ico",
        folder / u"none.dll",
        folder.Write(u"empty.ico"),
        folder.Write(u"text.ico", "this is no icon at all"),
        folder.Write(u"text.exe", "this is no program at all"),
        folder.Write(u"short.ico", IconFile({16}, kRed).substr(0, 40)),
        u"",
    };
    for (const std::u16string& path : paths) {
        XIcon icon;
        icon.Load(kProgramWithIcons);
        icon.Load(path.c_str());
        EXPECT_EQ(icon.Handle(), nullptr) << std::string(path.begin(), path.end());
        EXPECT_EQ(icon.GetWidth(), 0);
        EXPECT_EQ(icon.GetHeight(), 0);
    }
}

TEST(RealIcon, damaged_files_give_an_icon_of_16_pixels_or_none) {
    const TempFolder folder;
    const std::string whole = IconFile({16, 32}, kRed);
    std::mt19937 random(20);
    int loaded = 0, refused = 0;
    for (int i = 0; i < 300; ++i) {
        XIcon icon;
        icon.Load(folder.Write(u"damaged.ico", Damaged(whole, random)).c_str());
        const std::int32_t width = icon.GetWidth();
        EXPECT_TRUE(icon.Handle() ? width == 16 || width == 0 : width == 0) << i << ": " << width;
        ++(icon.Handle() ? loaded : refused);
    }
    EXPECT_GT(loaded, 0);
    EXPECT_GT(refused, 0);
}

TEST(RealIcon, loading_and_copying_leave_no_object_behind) {
    const TempFolder folder;
    const std::u16string path = folder.Write(u"a.ico", IconFile({32}, kRed));
    ExpectNothingLeft([&] {
        XIcon icon;
        icon.Load(path.c_str());
        const XIcon copy = icon;
        icon.Load(kProgramWithIcons);
        EXPECT_EQ(copy.GetWidth() + icon.GetHeight(), 48);
    });
}

TEST(RealPicture, a_bitmap_comes_out_upright) {
    XBitmap bitmap;
    ASSERT_TRUE(Load(bitmap, kBitmap));
    EXPECT_EQ(bitmap.GetWidth(), 4);
    EXPECT_EQ(bitmap.GetHeight(), 2);
    EXPECT_EQ(PixelOf(bitmap, 1, 0), kRed);
    EXPECT_EQ(PixelOf(bitmap, 1, 1), kBlue);
    EXPECT_EQ(PixelOf(bitmap, 3, 1), kBlue) << "the whole bitmap is copied";
    EXPECT_EQ(PixelOf(bitmap, 4, 1), 0x808080U);
}

TEST(RealPicture, a_gif_and_a_jpeg_are_read) {
    XBitmap bitmap;
    ASSERT_TRUE(Load(bitmap, kGif));
    EXPECT_EQ(bitmap.GetWidth(), 4);
    EXPECT_EQ(bitmap.GetHeight(), 2);
    EXPECT_EQ(PixelOf(bitmap, 2, 1), kBlue);
    ASSERT_TRUE(Load(bitmap, kJpeg));
    EXPECT_EQ(bitmap.GetWidth(), 8);
    EXPECT_EQ(bitmap.GetHeight(), 8);
    const platform::Colour red = PixelOf(bitmap, 4, 4);
    EXPECT_GT(red & 0xFF, 0xF0U);
    EXPECT_LT(red >> 8, 0x1010U);
}

TEST(RealPicture, what_is_no_picture_leaves_no_bitmap) {
    const std::string cases[] = {
        "", "BM", kBitmap.substr(0, 7), "this is no picture at all", kJpeg.substr(0, 20),
    };
    for (const std::string& bytes : cases) {
        XBitmap bitmap;
        ASSERT_TRUE(Load(bitmap, kGif));
        EXPECT_FALSE(Load(bitmap, bytes)) << bytes.size();
        EXPECT_EQ(bitmap.Handle(), nullptr);
        EXPECT_EQ(bitmap.GetWidth(), 0);
        EXPECT_EQ(bitmap.GetHeight(), 0);
    }
}

TEST(RealPicture, damaged_ones_give_a_bitmap_or_none) {
    std::mt19937 random(21);
    int loaded = 0, refused = 0;
    for (int i = 0; i < 300; ++i) {
        const std::string& whole = i % 3 == 0 ? kJpeg : i % 3 == 1 ? kGif : kBitmap;
        XBitmap bitmap;
        const bool done = Load(bitmap, Damaged(whole, random));
        EXPECT_EQ(done, bitmap.Handle() != nullptr) << i;
        EXPECT_EQ(done, bitmap.GetWidth() > 0 && bitmap.GetHeight() > 0) << i;
        ++(done ? loaded : refused);
    }
    EXPECT_GT(loaded, 0);
    EXPECT_GT(refused, 0);
}

TEST(RealPicture, sizes_of_0_and_null_are_empty) {
    XBitmap bitmap;
    EXPECT_FALSE(bitmap.LoadFromMemory(nullptr, 100));
    bitmap.Create(nullptr, 0, 0);
    EXPECT_EQ(bitmap.Handle(), nullptr);
    bitmap.Create(nullptr, 30, 20);
    EXPECT_EQ(bitmap.GetWidth(), 30);
    bitmap.Create(nullptr, 0, 20);
    EXPECT_EQ(bitmap.GetWidth(), 0);
}

TEST(RealPicture, loading_selecting_and_drawing_leave_no_object_behind) {
    ExpectNothingLeft([] {
        XBitmap bitmap;
        EXPECT_TRUE(Load(bitmap, kBitmap));
        EXPECT_FALSE(Load(bitmap, "this is no picture at all"));
        bitmap.Recreate(nullptr, 5, 5);
        bitmap.Recreate(nullptr, 6, 6);
        const Canvas canvas(10, 10);
        bitmap.Draw(canvas.DC(), 0, 0, -1, -1, 0, 0, platform::kRasterCopy);
    });
}
