// XDropList: a combo box whose rows are drawn here, with an icon, a soft frame around the selected one and,
// where the combo box has an edit field, completion of what is typed.
//
// A form attaches it to its combo box, adds rows, and shows it each of its own messages by OnParentMessage:
// that is how rows come to be drawn. The object must not outlive its combo box attached: Destroy or the
// destructor ends that.
//
// Thread: the one that owns the window. Failures are not reported.
#pragma once

#include <cstdint>

#include "foundation/pointer_array.h"
#include "foundation/wide_string.h"
#include "platform/window.h"
#include "settings/toolkit/draw_list.h"
#include "settings/toolkit/icon.h"
#include "settings/toolkit/sub_class_control.h"

// A row: its text and what it is drawn from.
struct XDropItem {
    XString text;
    XDrawList drawing;
};

class XDropList : public XSubClassCtrl {
  public:
    XDropList() = default;
    ~XDropList() override { Destroy(); }

    // Takes over a combo box, which has no rows yet; rows and combo box from before are given up.
    void Attach(platform::Window combo);
    // Gives up the rows and leaves the combo box to itself.
    void Destroy();

    // A new row behind the last. The icon may be null; it stays the caller's.
    void AddItem(const XString& text, const XIcon* icon);
    std::int32_t Count() const { return mItems.Count(); }
    XDropItem* Item(std::int32_t index) const;      // null outside the list
    XString GetItemText(std::int32_t index) const;  // as the combo box has it
    // What stands in the edit field if that is asked for and there is one; otherwise the selected row's text,
    // empty if no row is selected.
    XString GetEditText(bool useEdit) const;
    // Completes a typed text from the first row that begins with it, the letters A to Z in either case. What
    // was added is selected.
    void AutoComplete(const XString& text);

    void DrawItem(const platform::DrawItemRecord& record);

    // Shows the list a message of the window it stands in. One that asks for a row of this list to be drawn
    // is claimed with 1. Arguments and result are those of XWindow::PreTranslate.
    std::intptr_t OnParentMessage(std::uint32_t message, platform::WordParameter word,
                                  platform::LongParameter value, std::int32_t* handled);
    // The keyboard rules of the edit field.
    std::intptr_t Filter(platform::Window window, std::uint32_t message, platform::WordParameter word,
                         platform::LongParameter value, std::int32_t* handled) override;

    std::int32_t ControlId() const { return mControlId; }
    void SetNoScale(bool noScale) { mNoScale = noScale; }  // before Attach
    void SetBackColour(platform::Colour colour) { mBackColour = colour; }

  protected:
    // Places for what a kind of list adds; they do nothing here.
    virtual void OnAttached() {}
    virtual void OnItemAdded(XDropItem&) {}
    virtual void OnCompleted(const XString&) {}
    virtual void OnEntered() {}

  private:
    // In the edit field: from the first character selected to behind the last, counted from 0.
    struct Selection {
        std::uint32_t first = 0, end = 0;
    };

    std::int32_t Scaled(std::int32_t pixels) const;
    platform::Colour BackColour() const;
    Selection EditSelection() const;
    void DropCompletion();
    void KeyDown(std::uintptr_t key);
    void KeyUp(std::uintptr_t key);

    bool mEnterSeen = false;
    platform::Window mCombo = nullptr;
    bool mNoScale = false;
    std::int32_t mControlId = 0;
    std::int32_t mIconSize = 16;
    std::int32_t mItemHeight = 25;
    std::int32_t mTextIndent = 13;
    platform::Window mEdit = nullptr;
    platform::Colour mBackColour = 0;  // 0 for the platform's window colour
    XPointerArray mItems;              // of XDropItem, made by new and owned
    XDropItem* mCurrent = nullptr;     // the row last touched
};
