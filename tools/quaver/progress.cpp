#include "progress.h"

#include <algorithm>

#include "platform/program.h"
#include "utf8.h"

namespace {

constexpr std::uint32_t kWidestBar = 40;

std::u16string Decimal(std::uint64_t number) {
    return FromUtf8(std::to_string(number));
}

std::u16string Padded(std::uint64_t number, std::size_t width) {
    std::u16string text = Decimal(number);
    return text.size() < width ? std::u16string(width - text.size(), u' ') + text : text;
}

std::u16string Clock(std::uint64_t seconds) {
    const std::u16string rest = Decimal(seconds % 60);
    return Decimal(seconds / 60) + u":" + (rest.size() < 2 ? u"0" : u"") + rest;
}

}  // namespace

Progress::Progress(platform::Handle stream, std::uint64_t sourceBytes)
    : mStream(stream),
      mWidth(platform::GetConsoleWidth(stream)),
      mSourceBytes(sourceBytes),
      mStart(std::chrono::steady_clock::now()) {}

void Progress::Show(std::uint32_t percent) {
    percent = std::min(percent, 100u);
    const std::u16string figures = Padded(percent, 3) + u"%" + Figures(percent);
    if (mWidth > 0) {
        Redraw(percent, figures);
    } else if (percent / 10 > mShownTenth) {
        mShownTenth = percent / 10;
        platform::WriteConsoleText(mStream, (figures + u"\n").c_str());
    }
}

void Progress::Clear() {
    if (mLine.empty()) return;
    platform::WriteConsoleText(mStream, (u"\r" + std::u16string(mLine.size(), u' ') + u"\r").c_str());
    mLine.clear();
}

void Progress::Redraw(std::uint32_t percent, const std::u16string& figures) {
    std::u16string line;
    if (mWidth > figures.size() + 14) {
        const std::uint32_t room =
            std::min(kWidestBar, mWidth - static_cast<std::uint32_t>(figures.size()) - 4);
        const std::uint32_t filled = room * percent / 100;
        line = u"[" + std::u16string(filled, u'=') + std::u16string(room - filled, u' ') + u"] ";
    }
    line += figures;
    if (mWidth <= line.size()) line.resize(mWidth - 1);
    if (line == mLine) return;
    const std::size_t leftover = mLine.size() > line.size() ? mLine.size() - line.size() : 0;
    platform::WriteConsoleText(mStream, (u"\r" + line + std::u16string(leftover, u' ')).c_str());
    mLine = line;
}

// Speed and time left, once there is something to go by.
std::u16string Progress::Figures(std::uint32_t percent) const {
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - mStart).count();
    if (percent == 0 || elapsed <= 0.0) return {};
    const double bytesPerSecond = static_cast<double>(mSourceBytes) * percent / 100.0 / elapsed;
    const double left = elapsed * (100 - percent) / percent;
    const auto tenths = static_cast<std::uint64_t>(bytesPerSecond / 1e5);
    return u"  " + Decimal(tenths / 10) + u"." + Decimal(tenths % 10) + u" MB/s  " +
           Clock(static_cast<std::uint64_t>(left + 0.5)) + u" left";
}
