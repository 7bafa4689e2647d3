// What the child says. Every line of its error stream is an error. A line of its output is information for
// the owner, unless it holds the token "MSGTO: ": such a line is three colons deep,
//
//     MSGTO: recipient: key: value
//
// and is never passed on, whoever it is for and whether or not it could be understood.
//
// A line belongs to the poll that reads it. One that a read has cut in two becomes two lines, and the
// writer's side of the bargain is to write each in one piece. So what is held is bounded by what waits in a
// pipe.
#include <algorithm>
#include <cstring>
#include <limits>

#include "foundation/string_list.h"
#include "platform/clock.h"
#include "supervisor/cpu_encoder.h"

namespace {

constexpr std::uint32_t kPollsPerText = 16;
constexpr std::uint32_t kBlankMs = 2000;

// `left` takes what stands before the first colon, `right` what stands behind it and one blank. False, and
// both are empty, when there is no colon.
bool SplitAtColon(const XString& text, XString& left, XString& right) {
    left.Assign(u"", 1);
    right.Assign(u"", 1);
    const std::int32_t colon = text.Find(u':');
    if (colon == 0) return false;
    if (colon > 1) left = text.Left(colon - 1);
    right = text.MidToEnd(text.GetAt(colon + 1) == u' ' ? colon + 2 : colon + 1);
    return true;
}

}  // namespace

// A broken pipe is no news here: the end of the child is told by its handle, after which its last words are
// read.
void CPUEncoder::DrainStream(Stream stream, XPipe& pipe) {
    bool broken = false;
    clByteStore* const waiting = pipe.ReadAvailable(&broken);
    if (waiting->Cursor() == 0) return;
    TakeText(stream, waiting->Data(), waiting->Cursor());
    waiting->Resize(0, false, 0);
}

// The text ends at its first NUL. One stands behind the bytes in any case, and before it the missing half of
// a unit that was cut.
void CPUEncoder::TakeText(Stream stream, const void* bytes, std::uint32_t count) {
    clByteStore text;
    if (!text.Assign(bytes, count, 2 + count % 2)) return;  // no memory for them: they are dropped
    std::memset(text.Data() + count, 0, 2 + count % 2);
    XStringList lines;
    XStringList::SplitOnLineEnd(lines, XString(reinterpret_cast<const char16_t*>(text.Data())));
    for (std::int32_t index = 0; index < lines.Count(); ++index) {
        if (!lines.At(index).IsEmpty()) TakeLine(stream, lines.At(index));
    }
}

void CPUEncoder::TakeLine(Stream stream, const XString& line) {
    if (stream == Stream::kError) {
        XLog::Error(line.Text(), log, nullptr);
    } else if (!ParseMessage(line)) {
        XLog::Information(line.Text(), log);
    }
}

// True when the line is a message, whether or not it did anything. The first split is at the line's first
// colon, wherever the token stands, so a colon before the token makes a message for somebody else of it.
bool CPUEncoder::ParseMessage(const XString& line) {
    if (line.Find(u"MSGTO: ") == 0) return false;
    XString ignored, recipientPart, recipient, keyPart, key, value;
    if (SplitAtColon(line, ignored, recipientPart) && SplitAtColon(recipientPart, recipient, keyPart) &&
        recipient == u"qMC" && SplitAtColon(keyPart, key, value)) {
        ApplyMessage(key, value);
    }
    return true;
}

void CPUEncoder::ApplyMessage(const XString& key, const XString& value) {
    static constexpr struct {
        const char16_t* key;
        XString CPUEncoder::*text;
    } kTexts[] = {
        {u"Action", &CPUEncoder::actionText},
        {u"ActionInput", &CPUEncoder::actionInputText},
        {u"ActionOutput", &CPUEncoder::actionOutputText},
    };
    if (key == u"PCDone") RaisePercent(value.ToInt64());
    for (const auto& known : kTexts) {
        if (key == known.key) this->*known.text = value;
    }
}

// Progress never falls within a run. A number beyond 32 bits is the largest there is: it is no less progress.
void CPUEncoder::RaisePercent(std::int64_t value) {
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    if (value > percent) percent = static_cast<std::int32_t>(std::min(value, kLargest));
}

// What is read and what is written are shown only beside what is being done, each for its share of the polls.
const XString& CPUEncoder::LineToShow() const {
    if (actionText.IsEmpty()) return actionText;
    const std::uint32_t slots = 1u + !actionInputText.IsEmpty() + !actionOutputText.IsEmpty();
    const std::uint32_t phase = rotationTick / kPollsPerText % slots;
    if (phase == 0) return actionText;
    return phase == 1 && !actionInputText.IsEmpty() ? actionInputText : actionOutputText;
}

// The old line outlives a gap of up to two seconds, so that a breath between two actions does not blink. The
// line is written at every poll, whether or not it has changed, and so is a blank one, during a run and
// outside of it: the channel shows the state of things at each poll to whoever empties it.
void CPUEncoder::RotateLine() {
    ++rotationTick;
    const XString& line = LineToShow();
    if (!line.IsEmpty()) {
        blankSince = 0;
    } else {
        const std::uint32_t now = platform::GetTickCount();
        if (blankSince == 0) blankSince = now;
        if (now - blankSince < kBlankMs) return;
    }
    displayText.Assign(line.Text(), line.Count());
    XLog::Information(displayText.Text(), log);
}
