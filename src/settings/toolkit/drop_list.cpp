// The combo box keeps the rows' texts, this object what they are drawn from: row and item have one index,
// since rows are only ever added at the end.
//
// Without an edit field the combo box keeps its own keys, and nothing is put in front of its procedure.
#include "settings/toolkit/drop_list.h"

#include <memory>

#include "settings/toolkit/fill.h"
#include "settings/toolkit/window.h"

namespace {

constexpr std::int32_t kIconSize = 16;
constexpr std::int32_t kIconMargin = 4;
constexpr std::int32_t kItemHeight = 25;
constexpr std::int32_t kTextIndent = 13;
constexpr std::int32_t kRadius = 4;
constexpr DrawFrame kSelectionFrame = {.fill = 0xFFFAEE,
                                       .outline = 0xDDAC84,
                                       .radius = kRadius,
                                       .topLeft = 0xFEF4EB,
                                       .topRight = 0xFEF4EB,
                                       .bottomLeft = 0xFCDBC1,
                                       .bottomRight = 0xFCDBC1};
constexpr platform::Colour kDisabledText = 0xC0C0C0;

// Of a row that is to be drawn, as the platform tells it.
constexpr std::uint32_t kItemSelected = 1;
constexpr std::uint32_t kItemFocused = 0x10;
constexpr std::uint32_t kItemInField = 0x1000;

std::uint32_t StateWord(std::uint32_t itemState) {
    return (itemState & kItemSelected ? kDrawSelected : kDrawUnselected) |
           (itemState & kItemFocused ? kDrawFocused : kDrawUnfocused) |
           (itemState & kItemInField ? 0U : std::uint32_t{kDrawInList});
}

}  // namespace

void XDropList::Attach(platform::Window combo) {
    Destroy();
    mIconSize = Scaled(kIconSize);
    mItemHeight = Scaled(kItemHeight);
    mTextIndent = Scaled(kTextIndent);
    mCombo = combo;
    mControlId = static_cast<std::int32_t>(platform::GetWindowLongPtrW(combo, platform::kSlotControlId));
    platform::SendMessageW(combo, platform::kMessageComboSetItemHeight, 0, mItemHeight);
    mEdit = platform::GetWindow(combo, platform::kRelatedChild);
    Replace(mEdit);
    OnAttached();
}

void XDropList::Destroy() {
    Release();
    for (std::int32_t i = 0; i < Count(); ++i) delete Item(i);
    mItems.Clear();
    mCurrent = nullptr;
    mCombo = mEdit = nullptr;
    mEnterSeen = false;
}

std::int32_t XDropList::Scaled(std::int32_t pixels) const {
    return mNoScale ? pixels : XWindow::ScaleForDPI(pixels);
}

platform::Colour XDropList::BackColour() const {
    return mBackColour ? mBackColour : platform::GetSysColor(platform::kSystemColourWindow);
}

XDropItem* XDropList::Item(std::int32_t index) const {
    return index >= 0 && index < Count() ? static_cast<XDropItem*>(mItems.At(index)) : nullptr;
}

void XDropList::AddItem(const XString& text, const XIcon* icon) {
    auto item = std::make_unique<XDropItem>();
    item->text = text;
    XDrawList& drawing = item->drawing;
    drawing.AddBackground(BackColour());
    drawing.AddFrame(kSelectionFrame, {kDrawSelected, kDrawSelected});
    if (icon) drawing.AddIcon(*icon, Scaled(kIconMargin), mIconSize);
    drawing.AddText(text, mTextIndent, {.face = {}, .pixels = Scaled(XDrawFont::kUsualPixels)});
    mItems.Append(item.get());
    mCurrent = item.release();
    platform::SendMessageW(mCombo, platform::kMessageComboInsert, static_cast<platform::WordParameter>(-1),
                           reinterpret_cast<platform::LongParameter>(text.Text()));
    OnItemAdded(*mCurrent);
}

// A row has an item number that may lie outside the list: an empty field has none.
void XDropList::DrawItem(const platform::DrawItemRecord& record) {
    XDropItem* item = Item(static_cast<std::int32_t>(record.itemId));
    if (!item) {
        FillWith(record.dc, record.rect, BackColour());
        return;
    }
    mCurrent = item;
    XDrawList& drawing = item->drawing;
    platform::Colour* colour = drawing.TextColour();
    const platform::Colour usual = colour ? *colour : 0;
    if (colour && !platform::IsWindowEnabled(mCombo)) *colour = kDisabledText;
    drawing.SetState(StateWord(record.itemState));
    drawing.Draw(record.dc, record.rect);
    if (colour) *colour = usual;
}

std::intptr_t XDropList::OnParentMessage(std::uint32_t message, platform::WordParameter word,
                                         platform::LongParameter value, std::int32_t* handled) {
    if (message != platform::kMessageDrawItem || !mCombo || !value) return 0;
    if (static_cast<std::int32_t>(word) != mControlId) return 0;
    DrawItem(*reinterpret_cast<const platform::DrawItemRecord*>(value));
    *handled = 1;
    return 1;
}
