// Texts of the combo box, and the keys of its edit field.
//
// What is typed is completed when the key comes up again: the character is in the field by then. The added
// rest is selected, so the next character replaces it, Enter accepts it, and losing the focus drops it.
#include <algorithm>
#include <memory>

#include "settings/toolkit/drop_list.h"

namespace {

constexpr std::uintptr_t kKeyEnter = 13;
constexpr std::uintptr_t kKeySpace = 32;
constexpr std::intptr_t kAllKeys = 4;  // what a control answers that wants every key
constexpr std::uint32_t kLineEnd = 0xFFFF;

// Where the message that is asked about lies in the platform's own record of it.
struct AskedMessage {
    platform::Window window;
    std::uint32_t message;
    platform::WordParameter word;
};

// The text that a window gives by one message, its length being known.
XString TextBy(platform::Window window, std::uint32_t message, std::intptr_t length,
               platform::WordParameter word) {
    if (length <= 0) return {};
    const auto text = std::make_unique<char16_t[]>(static_cast<std::size_t>(length) + 1);
    platform::SendMessageW(window, message, word, reinterpret_cast<platform::LongParameter>(text.get()));
    text[static_cast<std::size_t>(length)] = 0;
    return text.get();
}

std::uintptr_t KeyOf(char16_t character) {
    return static_cast<std::uintptr_t>(platform::VkKeyScanW(character) & 0xFF);
}

bool IsBetween(std::uintptr_t key, char16_t first, char16_t last) {
    return key >= KeyOf(first) && key <= KeyOf(last);
}

bool IsTyping(std::uintptr_t key) {
    return key == kKeySpace || IsBetween(key, u'a', u'z') || IsBetween(key, u'0', u'9');
}

bool IsKeyOfOurs(const AskedMessage* asked) {
    if (!asked) return false;
    if (asked->message != platform::kMessageKeyDown && asked->message != platform::kMessageKeyUp)
        return false;
    return asked->word == kKeyEnter || IsTyping(asked->word);
}

}  // namespace

XString XDropList::GetItemText(std::int32_t index) const {
    const auto row = static_cast<platform::WordParameter>(index);
    return TextBy(mCombo, platform::kMessageComboGetText,
                  platform::SendMessageW(mCombo, platform::kMessageComboGetTextLength, row, 0), row);
}

XString XDropList::GetEditText(bool useEdit) const {
    if (useEdit && mEdit) {
        const std::intptr_t length = platform::SendMessageW(mEdit, platform::kMessageGetTextLength, 0, 0);
        return TextBy(mEdit, platform::kMessageGetText, length,
                      static_cast<platform::WordParameter>(length) + 1);
    }
    const std::intptr_t row = platform::SendMessageW(mCombo, platform::kMessageComboGetCurrent, 0, 0);
    return row >= 0 && row < Count() ? GetItemText(static_cast<std::int32_t>(row)) : XString();
}

void XDropList::AutoComplete(const XString& text) {
    if (text.IsEmpty()) return;
    const XString typed = text.ToLower();
    for (std::int32_t i = 0; i < Count(); ++i) {
        const XString& row = Item(i)->text;
        if (!(row.Left(text.Length()).ToLower() == typed)) continue;
        XString completed = text;
        completed.Append(row.MidToEnd(text.Length() + 1).Text());
        mCurrent = Item(i);
        platform::SetWindowTextW(mCombo, completed.Text());
        const auto start = static_cast<std::uint32_t>(text.Length()) & 0xFFFF;
        platform::SendMessageW(mCombo, platform::kMessageComboSetEditSelection, 0,
                               static_cast<std::int32_t>(kLineEnd << 16 | start));
        OnCompleted(completed);
        return;
    }
}

std::intptr_t XDropList::Filter(platform::Window, std::uint32_t message, platform::WordParameter word,
                                platform::LongParameter value, std::int32_t* handled) {
    switch (message) {
        case platform::kMessageKillFocus:
            DropCompletion();
            break;
        case platform::kMessageGetDialogCode:
            if (!IsKeyOfOurs(reinterpret_cast<const AskedMessage*>(value))) break;
            *handled = 1;
            return kAllKeys;
        case platform::kMessageKeyDown:
            KeyDown(word);
            break;
        case platform::kMessageKeyUp:
            KeyUp(word);
            break;
        default:
            break;
    }
    return 0;
}

XDropList::Selection XDropList::EditSelection() const {
    Selection selection;
    platform::SendMessageW(mEdit, platform::kMessageEditGetSelection,
                           reinterpret_cast<platform::WordParameter>(&selection.first),
                           reinterpret_cast<platform::LongParameter>(&selection.end));
    return selection;
}

// A selection from the very start is the user's own, not what was completed.
void XDropList::DropCompletion() {
    mEnterSeen = false;
    if (EditSelection().first != 0) {
        platform::SendMessageW(mEdit, platform::kMessageEditReplaceSelection, 0,
                               reinterpret_cast<platform::LongParameter>(u""));
    }
}

// The first Enter accepts a completion, the next one is accepted itself.
void XDropList::KeyDown(std::uintptr_t key) {
    const Selection selection = key == kKeyEnter ? EditSelection() : Selection();
    mEnterSeen = key == kKeyEnter && (selection.first == 0 || selection.first == selection.end);
    if (key == kKeyEnter && !mEnterSeen) {
        platform::SendMessageW(mEdit, platform::kMessageEditSetSelection,
                               static_cast<platform::WordParameter>(-1), 0);
    }
}

void XDropList::KeyUp(std::uintptr_t key) {
    if (IsTyping(key)) AutoComplete(GetEditText(true));
    if (key != kKeyEnter || !mEnterSeen) return;
    platform::SetFocus(platform::GetWindow(mCombo, platform::kRelatedNext));
    OnEntered();
}
