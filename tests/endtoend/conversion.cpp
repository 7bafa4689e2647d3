#include "endtoend/conversion.h"

#include "platform/clock.h"

namespace {

constexpr std::uint32_t kPollMs = 2;
constexpr std::uint32_t kPatienceMs = 60000;
constexpr std::size_t kLongestText = 1 << 20;

const QvChar* In(const std::u16string& text) {
    return reinterpret_cast<const QvChar*>(text.c_str());
}

}  // namespace

bool Outcome::Says(const std::u16string& line) const {
    return (u"\r\n" + information).find(u"\r\n" + line + u"\r\n") != std::u16string::npos;
}

Host::Host(const Library& library)
    : mLibrary(library), mConverter(library.QACCreate()), mText(kLongestText) {}

Outcome Host::Convert(const Order& order) {
    Outcome outcome = Start(order);
    Finish(outcome);
    return outcome;
}

Outcome Host::Start(const Order& order) {
    mLibrary.QACClearIDTagList(mConverter);
    mLibrary.QACClearDSPList(mConverter);
    for (const auto& [name, value] : order.tags) mLibrary.QACAddIDTagToList(mConverter, In(name), In(value));
    for (const auto& [name, value] : order.effects) mLibrary.QACAddDSPToList(mConverter, In(name), In(value));
    mLibrary.QACSetTagWriteThrough(mConverter, order.carryTags ? 1 : 0);
    mLibrary.QACSetCPU(mConverter, order.processor);
    Outcome outcome;
    outcome.started = mLibrary.QACConvertAudio(mConverter, In(order.source), In(order.destination),
                                               In(order.encoder), In(order.settings)) == QV_DONE;
    return outcome;
}

bool Host::Poll(Outcome& outcome) {
    platform::Sleep(kPollMs);
    std::uint32_t percent = 12345;
    mLibrary.QACGetProgress(mConverter, &percent);
    outcome.percents.push_back(percent);
    outcome.errors += Take(mLibrary.QACGetLastError);
    outcome.information += Take(mLibrary.QACGetLastInfo);
    outcome.ended = percent == 100;
    return !outcome.ended;
}

void Host::Finish(Outcome& outcome) {
    const std::uint32_t start = platform::GetTickCount();
    while (outcome.started && Poll(outcome)) {
        if (platform::GetTickCount() - start > kPatienceMs) return;
    }
}

std::u16string Host::Take(decltype(&QACGetLastError) get) {
    if (get(mConverter, mText.data()) != QV_DONE) return u"";
    return reinterpret_cast<const char16_t*>(mText.data());
}
