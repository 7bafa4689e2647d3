// A combo box with an edit field that answers from what the test sets, the same on every system.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/window.h"
#include "support/faults.h"
#include "toolkit/window_stage.h"

class ComboStage {
  public:
    static inline const platform::Window kCombo = Fake<platform::Window>(0x1000);
    static inline const platform::Window kEdit = Fake<platform::Window>(0x2000);
    static inline const platform::Window kNext = Fake<platform::Window>(0x3000);
    static constexpr std::int32_t kControlId = 1001;

    explicit ComboStage(bool hasEdit = true) {
        slots[{kCombo, platform::kSlotControlId}] = kControlId;
        mRelated.Replace([=](platform::Window window, std::uint32_t relation) -> platform::Window {
            if (window != kCombo) return nullptr;
            if (relation == platform::kRelatedChild) return hasEdit ? kEdit : nullptr;
            return relation == platform::kRelatedNext ? kNext : nullptr;
        });
        mSend.Replace([this](platform::Window window, std::uint32_t message, platform::WordParameter word,
                             platform::LongParameter value) {
            return window == kCombo ? Combo(message, word, value) : Edit(message, word, value);
        });
        mSetText.Replace([this](platform::Window window, const char16_t* set) {
            EXPECT_EQ(window, kCombo);
            text = set;
            asked.push_back("text");
            return true;
        });
        mFocus.Replace([this](platform::Window window) {
            focus = window;
            return kEdit;
        });
        mEnabled.Replace([this](platform::Window) { return isEnabled; });
        // The letters stand where they stand on a keyboard of 26 letters; the digits are moved.
        mKeys.Replace([this](char16_t character) -> std::int16_t {
            const std::u16string from = u"az09";
            const std::size_t at = from.find(character);
            return at == std::u16string::npos ? std::int16_t{-1} : keys[at];
        });
        mGetSlot.Replace([this](platform::Window window, std::int32_t slot) {
            return slots[{window, slot}];
        });
        mSetSlot.Replace([this](platform::Window window, std::int32_t slot, std::intptr_t value) {
            slots[{window, slot}] = value;
            return std::intptr_t{0};
        });
    }

    std::vector<std::u16string> rows;
    std::intptr_t current = -1;
    std::u16string text;
    std::uint32_t first = 0, end = 0;
    bool isEnabled = true;
    platform::Window focus = nullptr;
    std::int16_t keys[4] = {'A', 'Z', '0', '9'};
    std::vector<std::string> asked;  // what changed something
    std::map<std::pair<platform::Window, std::int32_t>, std::intptr_t> slots;

  private:
    std::intptr_t Combo(std::uint32_t message, platform::WordParameter word, platform::LongParameter value) {
        switch (message) {
            case platform::kMessageComboSetItemHeight:
                asked.push_back(Said("height", {static_cast<std::intptr_t>(word), value}));
                return 0;
            case platform::kMessageComboInsert:
                EXPECT_EQ(word, static_cast<platform::WordParameter>(-1));
                rows.emplace_back(reinterpret_cast<const char16_t*>(value));
                return static_cast<std::intptr_t>(rows.size()) - 1;
            case platform::kMessageComboGetCurrent:
                return current;
            case platform::kMessageComboGetTextLength:
                return word < rows.size() ? static_cast<std::intptr_t>(rows[word].size()) : -1;
            case platform::kMessageComboGetText:
                return Copy(rows.at(word), value);
            case platform::kMessageComboSetEditSelection:
                first = static_cast<std::uint32_t>(value & 0xFFFF);
                end = static_cast<std::uint32_t>(value >> 16 & 0xFFFF);
                asked.push_back("select");
                return 1;
            default:
                ADD_FAILURE() << "combo box asked " << message;
                return 0;
        }
    }
    std::intptr_t Edit(std::uint32_t message, platform::WordParameter word, platform::LongParameter value) {
        switch (message) {
            case platform::kMessageGetTextLength:
                return static_cast<std::intptr_t>(text.size());
            case platform::kMessageGetText:
                EXPECT_GT(word, text.size());
                return Copy(text, value);
            case platform::kMessageEditGetSelection:
                *reinterpret_cast<std::uint32_t*>(word) = first;
                *reinterpret_cast<std::uint32_t*>(value) = end;
                return 0;
            case platform::kMessageEditSetSelection:
                asked.push_back(Said("unselect", {static_cast<std::intptr_t>(word), value}));
                first = end;
                return 0;
            case platform::kMessageEditReplaceSelection:
                EXPECT_EQ(*reinterpret_cast<const char16_t*>(value), 0);
                asked.push_back("replace");
                return 0;
            default:
                ADD_FAILURE() << "edit field asked " << message;
                return 0;
        }
    }
    static std::intptr_t Copy(const std::u16string& from, platform::LongParameter to) {
        std::memcpy(reinterpret_cast<void*>(to), from.c_str(), (from.size() + 1) * sizeof(char16_t));
        return static_cast<std::intptr_t>(from.size());
    }

    Faulty<platform::GetWindow> mRelated;
    Faulty<platform::SendMessageW> mSend;
    Faulty<platform::SetWindowTextW> mSetText;
    Faulty<platform::SetFocus> mFocus;
    Faulty<platform::IsWindowEnabled> mEnabled;
    Faulty<platform::VkKeyScanW> mKeys;
    Faulty<platform::GetWindowLongPtrW> mGetSlot;
    Faulty<platform::SetWindowLongPtrW> mSetSlot;
};
