// Bitmaps and icons as owners: what they ask of the platform, in which order, and that everything goes back.
#include "settings/toolkit/bitmap.h"

#include <gtest/gtest.h>

#include "settings/toolkit/icon.h"
#include "support/wide_text.h"
#include "toolkit/drawing_stage.h"

namespace {

using Journal = std::vector<std::string>;

const auto kDC = DrawingStage::kDC;
constexpr char kBytes[64] = {};

}  // namespace

TEST(Bitmap, Create_replaces_the_old_bitmap_and_a_size_of_0_leaves_none) {
    DrawingStage stage;
    XBitmap bitmap;
    bitmap.Create(kDC, 30, 20);
    EXPECT_EQ(stage.Taken(), Journal{"bitmap 1 220 30 20"});
    EXPECT_EQ(bitmap.GetWidth(), 30);
    EXPECT_EQ(bitmap.GetHeight(), 20);
    for (const auto& [width, height] : {std::pair{0, 20}, {30, 0}, {0, 0}, {-1, 20}, {30, -1}}) {
        bitmap.Create(kDC, 30, 20);
        bitmap.Select(kDC);
        EXPECT_EQ(stage.live.size(), 1U);
        bitmap.Create(kDC, width, height);
        EXPECT_EQ(bitmap.Handle(), nullptr);
        EXPECT_EQ(bitmap.Context(), nullptr);
        EXPECT_EQ(bitmap.GetWidth(), 0);
        EXPECT_EQ(bitmap.GetHeight(), 0);
        EXPECT_TRUE(stage.live.empty());
        EXPECT_TRUE(stage.contexts.empty());
    }
}

TEST(Bitmap, Create_without_a_context_takes_the_screens) {
    DrawingStage stage;
    XBitmap bitmap;
    bitmap.Create(nullptr, 3, 4);
    EXPECT_EQ(stage.journal, Journal{"bitmap 1 92 3 4"});
    EXPECT_EQ(stage.screens, 0);
}

TEST(Bitmap, Select_ends_an_earlier_selection) {
    DrawingStage stage;
    XBitmap bitmap;
    bitmap.Select(kDC);
    EXPECT_EQ(bitmap.Context(), nullptr) << "there is nothing to select";
    bitmap.Create(kDC, 3, 4);
    bitmap.Select(kDC);
    bitmap.Select(kDC);
    EXPECT_EQ(stage.journal,
              (Journal{"bitmap 1 220 3 4", "context 2 220", "delete context 2", "context 3 220"}));
    bitmap.Unselect();
    bitmap.Unselect();
    EXPECT_TRUE(stage.contexts.empty());
    EXPECT_NE(bitmap.Handle(), nullptr);
}

TEST(Bitmap, a_selection_that_fails_leaves_no_context) {
    DrawingStage stage;
    XBitmap bitmap;
    bitmap.Create(kDC, 3, 4);
    // The stage's own stand-ins come back with its end.
    platform::SelectObject.Substitute([](platform::DeviceContext, platform::DrawingObject*) {
        return static_cast<platform::DrawingObject*>(nullptr);
    });
    platform::DeleteDC.Substitute([](platform::DeviceContext) { return true; });
    bitmap.Select(kDC);
    EXPECT_EQ(bitmap.Context(), nullptr);
    bitmap.Delete();
}

TEST(Bitmap, Recreate_selects_a_new_bitmap) {
    DrawingStage stage;
    XBitmap bitmap;
    bitmap.Recreate(kDC, 3, 4);
    bitmap.Recreate(kDC, 5, 6);
    EXPECT_EQ(bitmap.GetWidth(), 5);
    EXPECT_EQ(stage.contexts.size(), 1U);
    EXPECT_EQ(stage.contexts.at(bitmap.Context()), bitmap.Handle());
}

TEST(Bitmap, Draw_takes_the_whole_bitmap_for_minus_1) {
    struct Row {
        std::int32_t width, height;
        const char* copied;
    };
    constexpr Row kRows[] = {
        {-1, -1, "copy 220 7 8 30 20 1 2 13369376"}, {-2, -1, "copy 220 7 8 30 20 1 2 13369376"},
        {5, -1, "copy 220 7 8 5 20 1 2 13369376"},   {-1, 6, "copy 220 7 8 30 6 1 2 13369376"},
        {5, -2, "copy 220 7 8 5 -2 1 2 13369376"},
    };
    for (const Row& row : kRows) {
        DrawingStage stage;
        XBitmap bitmap;
        bitmap.Recreate(kDC, 30, 20);
        stage.Taken();
        bitmap.Draw(kDC, 7, 8, row.width, row.height, 1, 2, platform::kRasterCopy);
        EXPECT_EQ(stage.journal, Journal{row.copied});
    }
}

TEST(Bitmap, Draw_needs_a_selection_a_target_and_a_bitmap) {
    DrawingStage stage;
    XBitmap bitmap;
    bitmap.Draw(kDC, 0, 0, -1, -1, 0, 0, platform::kRasterCopy);
    bitmap.Create(kDC, 3, 4);
    bitmap.Draw(kDC, 0, 0, -1, -1, 0, 0, platform::kRasterCopy);
    bitmap.Select(kDC);
    stage.Taken();
    bitmap.Draw(nullptr, 0, 0, -1, -1, 0, 0, platform::kRasterCopy);
    EXPECT_TRUE(stage.journal.empty());
}

TEST(Bitmap, LoadFromMemory_refuses_7_bytes_without_asking_the_platform_and_drops_the_old_bitmap) {
    for (const std::uint32_t size : {0U, 7U}) {
        DrawingStage stage;
        Faulty<platform::GlobalAlloc> blocks;
        XBitmap bitmap;
        bitmap.Recreate(kDC, 3, 4);
        EXPECT_FALSE(bitmap.LoadFromMemory(kBytes, size));
        EXPECT_EQ(blocks.Calls(), 0);
        EXPECT_EQ(bitmap.Handle(), nullptr);
        EXPECT_TRUE(stage.live.empty());
    }
}

namespace {

// Picture code that knows one picture, of an inch by half an inch.
struct PictureStage {
    PictureStage() {
        caps.Replace([](platform::DeviceContext, std::int32_t what) {
            return what == platform::kPixelsPerInchX ? 96 : 120;
        });
        allocate.Replace([this](std::uint32_t flags, std::size_t size) {
            allocatedFlags = flags;
            block.assign(size, 'x');
            ++open;
            return Fake<platform::MemoryBlock>(1);
        });
        lock.Replace([this](platform::MemoryBlock) -> void* { return block.data(); });
        unlock.Replace([](platform::MemoryBlock) { return true; });
        release.Replace([this](platform::MemoryBlock) { return --open, true; });
        stream.Replace([this](platform::MemoryBlock) { return ++open, Fake<platform::Stream>(2); });
        endStream.Replace([this](platform::Stream) { --open; });
        load.Replace([this](platform::Stream, std::uint32_t) { return ++open, Fake<platform::Picture>(3); });
        endPicture.Replace([this](platform::Picture) { --open; });
        measure.Replace([](platform::Picture, platform::Size* size) {
            *size = {2540, 1270};
            return true;
        });
        render.Replace([this](platform::Picture, platform::DeviceContext, const platform::Rect* target,
                              std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
            rendered = Said("render",
                            {target->left, target->top, target->right, target->bottom, x, y, width, height});
            return true;
        });
    }
    ~PictureStage() { EXPECT_EQ(open, 0) << "block, stream and picture go back"; }

    int open = 0;
    std::uint32_t allocatedFlags = 0;
    std::string block, rendered;
    Faulty<platform::GetDeviceCaps> caps;
    Faulty<platform::GlobalAlloc> allocate;
    Faulty<platform::GlobalLock> lock;
    Faulty<platform::GlobalUnlock> unlock;
    Faulty<platform::GlobalFree> release;
    Faulty<platform::CreateStreamOnHGlobal> stream;
    Faulty<platform::ReleaseStream> endStream;
    Faulty<platform::OleLoadPicture> load;
    Faulty<platform::ReleasePicture> endPicture;
    Faulty<platform::GetPictureSize> measure;
    Faulty<platform::RenderPicture> render;
};

}  // namespace

TEST(Bitmap, LoadFromMemory_renders_the_picture_upright_at_the_screens_resolution) {
    DrawingStage stage;
    PictureStage picture;
    XBitmap bitmap;
    EXPECT_TRUE(bitmap.LoadFromMemory("12345678", 8));
    EXPECT_EQ(picture.allocatedFlags, 34U);
    EXPECT_EQ(picture.block, "12345678");
    EXPECT_EQ(picture.rendered, "render 0 0 96 60 0 1270 2540 -1270");
    EXPECT_EQ(bitmap.GetWidth(), 96);
    EXPECT_EQ(bitmap.GetHeight(), 60);
    EXPECT_EQ(bitmap.Context(), nullptr);
    EXPECT_TRUE(stage.contexts.empty());
}

TEST(Bitmap, LoadFromMemory_is_empty_after_any_failure) {
    const std::function<void(PictureStage&)> kFailures[] = {
        [](PictureStage& s) { s.allocate.FailAlways(); },
        [](PictureStage& s) { s.lock.FailAlways(); },
        [](PictureStage& s) { s.stream.FailAlways(); },
        [](PictureStage& s) { s.load.FailAlways(); },
        [](PictureStage& s) { s.measure.FailAlways(); },
        [](PictureStage& s) { s.render.FailAlways(); },
        [](PictureStage& s) {
            s.measure.Replace([](platform::Picture, platform::Size*) { return true; });  // 0 by 0
        },
    };
    for (const auto& fail : kFailures) {
        DrawingStage stage;
        PictureStage picture;
        fail(picture);
        XBitmap bitmap;
        bitmap.Create(kDC, 3, 4);
        EXPECT_FALSE(bitmap.LoadFromMemory(kBytes, sizeof kBytes));
        EXPECT_EQ(bitmap.Handle(), nullptr);
        EXPECT_EQ(bitmap.GetWidth(), 0);
        EXPECT_TRUE(stage.live.empty());
        EXPECT_TRUE(stage.contexts.empty());
    }
}

TEST(Icon, Load_takes_programs_first_icon_and_any_other_file_at_16_pixels) {
    struct Row {
        const char16_t* path;
        bool isProgram;
    };
    constexpr Row kRows[] = {
        {u"C:\\a\\module.dll", true},   {u"C:\\a\\Program.ExE", true}, {u"C:\\a\\module.ico", false},
        {u"C:\\a.dll\\picture", false}, {u"module.dlls", false},       {u"", false},
    };
    for (const Row& row : kRows) {
        Faulty<platform::ExtractIconW> extract;
        Faulty<platform::LoadIconFile> load;
        Faulty<platform::DestroyIcon> destroy;
        std::u16string asked;
        extract.Replace([&](platform::ModuleHandle, const char16_t* file, std::uint32_t index) {
            EXPECT_EQ(index, 0U);
            asked = file;
            return Fake<platform::Icon>(1);
        });
        load.Replace([&](const char16_t* file, std::int32_t width, std::int32_t height) {
            EXPECT_EQ(width, 16);
            EXPECT_EQ(height, 16);
            asked = file;
            return Fake<platform::Icon>(2);
        });
        XIcon icon;
        icon.Load(row.path);
        EXPECT_EQ(asked, row.path);
        EXPECT_EQ(icon.Handle(), Fake<platform::Icon>(row.isProgram ? 1 : 2));
        EXPECT_EQ(destroy.Calls(), 0);
        load.FailAlways();
        icon.Load(u"none.ico");
        EXPECT_EQ(icon.Handle(), nullptr) << "the old one is gone on failure too";
        EXPECT_EQ(destroy.Calls(), 1);
    }
}

TEST(Icon, copies_are_duplicates_and_each_is_destroyed_once) {
    Faulty<platform::DuplicateIcon> duplicate;
    Faulty<platform::DestroyIcon> destroy;
    std::uintptr_t last = 10;
    int alive = 0;
    duplicate.Replace([&](platform::Icon) {
        ++alive;
        return Fake<platform::Icon>(++last);
    });
    destroy.Replace([&](platform::Icon) { return --alive, true; });
    {
        const XIcon first(Fake<platform::Icon>(1));
        XIcon second(first), third;
        third = second;
        EXPECT_EQ(alive, 3);
        XIcon& self = third;
        third = self;
        EXPECT_EQ(third.Handle(), Fake<platform::Icon>(13));
        second = XIcon();
        EXPECT_EQ(second.Handle(), nullptr);
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(duplicate.Calls(), 3) << "nothing is duplicated from an empty one";
}

TEST(Icon, its_size_is_the_colour_bitmaps_and_both_bitmaps_go_back) {
    DrawingStage stage;
    Faulty<platform::DuplicateIcon> duplicate;
    Faulty<platform::GetIconInfo> info;
    Faulty<platform::DestroyIcon> destroy;
    duplicate.Replace([](platform::Icon icon) { return icon; });
    info.Replace([](platform::Icon, platform::IconParts* parts) {
        parts->mask = platform::CreateCompatibleBitmap(kDC, 1, 2);
        parts->colour = platform::CreateCompatibleBitmap(kDC, 32, 48);
        return true;
    });
    EXPECT_EQ(XIcon().GetWidth(), 0);
    EXPECT_EQ(XIcon().GetHeight(), 0);
    const XIcon icon(Fake<platform::Icon>(1));
    EXPECT_EQ(icon.GetWidth(), 32);
    EXPECT_EQ(icon.GetHeight(), 48);
    EXPECT_TRUE(stage.live.empty());
    info.FailAlways();
    EXPECT_EQ(icon.GetWidth(), 0);
}
