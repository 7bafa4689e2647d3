// Host: one handle of the library, with texts as strings.
#pragma once

#include <string>
#include <vector>

#include "quavermill/quavermill.h"

class Host {
  public:
    Host() : mConverter(QACCreate()), mBuffer(kLongestText) {}
    ~Host() { QACDestroy(mConverter); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    QvConverter* Handle() const { return mConverter; }

    // What the library has to say since the last time. It copies with no bound, so the buffer is far larger
    // than what can gather between two polls.
    std::u16string TakeErrors() { return Take(QACGetLastError); }
    std::u16string TakeInformation() { return Take(QACGetLastInfo); }

  private:
    static constexpr std::size_t kLongestText = 4 << 20;

    std::u16string Take(int32_t(QV_CALL* get)(QvConverter*, QvChar*)) {
        if (get(mConverter, mBuffer.data()) != 1) return {};
        return reinterpret_cast<const char16_t*>(mBuffer.data());
    }

    QvConverter* mConverter;
    std::vector<QvChar> mBuffer;
};

// Text on its way into the library.
inline const QvChar* AsQvChar(const std::u16string& text) {
    return reinterpret_cast<const QvChar*>(text.c_str());
}
