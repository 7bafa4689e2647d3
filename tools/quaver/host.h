// Host: one handle of the library, with texts as strings and lists as lists.
//
// Rows come one call at a time and texts into buffers that are told no size, so each handle has buffers far
// larger than any text that a module can be expected to give.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "quavermill/quavermill.h"

struct ModuleRow {
    std::u16string name;
    std::u16string extension;    // of an effect: empty
    std::u16string description;  // of a decoder
};

// A row of properties or of tags.
struct TextRow {
    std::u16string name, value;
    std::vector<std::uint8_t> art;  // of a tag that is a picture
};

// What a file is, in numbers.
struct AudioNumbers {
    QvFormat format = {};
    std::uint64_t lengthMs = 0, fileSize = 0;
    std::int64_t property = 0;
};

// What was reported: lines, each with its end.
struct Reports {
    std::u16string errors, remarks;
};

// What a form was left with. An empty name: the module could not be loaded, or the user has cancelled.
struct FormAnswer {
    bool cameUp = false;
    std::u16string name, text;
};

class Host {
  public:
    Host();
    ~Host() { QACDestroy(mConverter); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    QvConverter* Handle() const { return mConverter; }

    // What has arrived since the last time.
    std::u16string TakeErrors() { return Take(QACGetLastError); }
    std::u16string TakeInformation() { return Take(QACGetLastInfo); }

    // Everything that was reported before this call, waiting for what is still on its way.
    std::u16string TakeAllErrors();
    // The same of both texts, a moment longer. Of the information what modules say of their own accord.
    Reports TakeReports();

    // Sorted by name, without what its module does not offer; the rows of one module in its own order.
    std::vector<ModuleRow> Encoders();
    std::vector<ModuleRow> Decoders();
    std::vector<ModuleRow> Effects();

    // Each is true when the file could be read, and the reason stands in the errors when not, as a rule.
    bool ReadNumbers(const std::u16string& file, AudioNumbers& numbers);
    bool ReadProperties(const std::u16string& file, std::vector<TextRow>& rows);
    bool ReadTags(const std::u16string& file, std::vector<TextRow>& rows);

    // Waits for the user. Where there are no forms the name comes back as it was, with the text, an encoder's
    // empty one being the stored one.
    FormAnswer ShowSettings(bool isEffect, const std::u16string& name, const std::u16string& text);

  private:
    std::u16string Take(int32_t(QV_CALL* get)(QvConverter*, QvChar*));
    QvChar* Buffer(std::size_t index) { return mBuffers[index].get(); }
    std::u16string Text(std::size_t index) const {
        return reinterpret_cast<const char16_t*>(mBuffers[index].get());
    }

    QvConverter* mConverter;
    std::array<std::unique_ptr<QvChar[]>, 3> mBuffers;
};

// Text on its way into the library.
inline const QvChar* AsQvChar(const std::u16string& text) {
    return reinterpret_cast<const QvChar*>(text.c_str());
}
