// A host that does what its arguments say, in their order, and writes a line about each; fields are parted by tabs.
// The last line is "ended".
//
//     keep NAME TEXT               stores a text for an encoder
//     stored NAME                  "stored NAME TEXT"
//     encoder NAME TEXT            shows the form of encoders: "encoder RESULT NAME TEXT"
//     effect NAME TEXT             that of effects: "effect RESULT NAME TEXT"
//     cycles KIND NAME COUNT       opens that form and has it closed in each of the three ways by turns; then
//                                  "cycles SHOWN GDI USER WINDOWS": how many objects of each kind are left behind, and
//                                  how many windows stand in the table
//     complete ROWS                a drop list with an edit field, of rows parted by "|": "complete TEXT"
//
// The library is not loaded but built into the program, which can so count what stands in gWindowTable. Its modules
// are those in the folders beside the program.
#include <windows.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "forms/completion_form.h"
#include "foundation/joined.h"
#include "foundation/qv_text.h"
#include "platform/module.h"
#include "platform/program.h"
#include "quavermill/quavermill.h"
#include "settings/stored_settings.h"
#include "settings/toolkit/window.h"

namespace {

using Words = std::vector<std::u16string>;

constexpr std::size_t kMostUnits = 1 << 18;
constexpr int kWarmUp = 30;
constexpr std::size_t kFresh = 2000;

void Say(const Words& fields) {
    std::u16string line;
    for (const std::u16string& field : fields) line += (line.empty() ? u"" : u"\t") + field;
    platform::WriteConsoleText(platform::GetStdHandle(platform::kStdOutput), (line + u"\n").c_str());
}

std::u16string Digits(std::int64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

struct Answer {
    std::int32_t result = 77;
    std::u16string name = std::u16string(kMostUnits, u'?'), text = name;
};

Answer ShowForm(QvConverter* converter, const std::u16string& kind, const std::u16string& name,
                const std::u16string& text) {
    Answer answer;
    const auto show = kind == u"encoder" ? QACShowSettings : QACShowDSPSettings;
    answer.result =
        show(converter, ToQvText(name.c_str()), ToQvText(text.c_str()),
             reinterpret_cast<QvChar*>(answer.name.data()), reinterpret_cast<QvChar*>(answer.text.data()));
    answer.name = answer.name.c_str();
    answer.text = answer.text.c_str();
    return answer;
}

// What a user does to a form that only comes up to be closed: OK, Cancel, the close box.
int gClosed = 0;

BOOL CALLBACK CloseDialog(HWND window, LPARAM) {
    constexpr WPARAM kButtons[] = {IDOK, IDCANCEL};
    if (!GetDlgItem(window, 1001) || !IsWindowVisible(window)) return TRUE;
    const int way = gClosed++ % 3;
    if (way < 2)
        SendMessageW(window, WM_COMMAND, kButtons[way], 0);
    else
        SendMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    return FALSE;
}

void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), &CloseDialog, 0);
}

// How high the places reach that many fresh objects get: they fill all gaps first, so each object that was left
// behind pushes the highest one up.
template <class Object>
std::int64_t HighestPlace(Object (*make)(), BOOL(WINAPI* destroy)(Object)) {
    std::vector<Object> fresh(kFresh);
    std::int64_t highest = 0;
    for (Object& object : fresh) {
        object = make();
        highest =
            std::max(highest, static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(object) & 0xFFFF));
    }
    for (Object object : fresh) destroy(object);
    return highest;
}

struct Counts {
    std::int64_t gdi =
        HighestPlace<HGDIOBJ>([] { return HGDIOBJ(CreatePen(PS_SOLID, 3, 0x123456)); }, &DeleteObject);
    std::int64_t user = HighestPlace<HMENU>([] { return CreatePopupMenu(); }, &DestroyMenu);
    std::int64_t windows = gWindowTable.Count();
};

void Cycle(QvConverter* converter, const Words& words) {
    const int count = std::stoi(std::string(words[2].begin(), words[2].end()));
    gClosed = 0;
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &OnTimer);
    for (int i = 0; i < kWarmUp; ++i) ShowForm(converter, words[0], words[1], u"");
    const Counts before;
    gClosed = 0;
    for (int i = 0; i < count; ++i) ShowForm(converter, words[0], words[1], u"");
    const Counts after;
    KillTimer(nullptr, timer);
    Say({u"cycles", Digits(gClosed), Digits(after.gdi - before.gdi), Digits(after.user - before.user),
         Digits(after.windows)});
}

struct Step {
    std::size_t arguments;
    std::function<void(QvConverter*, const Words&)> run;
};

void Form(const char16_t* kind, QvConverter* converter, const Words& words) {
    const Answer answer = ShowForm(converter, kind, words[0], words[1]);
    Say({kind, Digits(answer.result), answer.name, answer.text});
}

const std::map<std::u16string, Step> kSteps = {
    {u"keep",
     {2, [](QvConverter*, const Words& words) { StoreSettings(words[0].c_str(), words[1].c_str()); }}},
    {u"stored",
     {1,
      [](QvConverter*, const Words& words) {
          Say({u"stored", words[0], StoredSettings(words[0].c_str()).Text()});
      }}},
    {u"encoder", {2, [](QvConverter* converter, const Words& words) { Form(u"encoder", converter, words); }}},
    {u"effect", {2, [](QvConverter* converter, const Words& words) { Form(u"effect", converter, words); }}},
    {u"cycles", {3, &Cycle}},
    {u"complete",
     {1,
      [](QvConverter*, const Words& words) {
          Say({u"complete", CompletionForm(words[0]).Typed()});
      }}},
};

}  // namespace

int platform::ProgramMain(const std::vector<std::u16string>& arguments) {
    platform::OnLibraryNotification(nullptr, true);  // the program is the library
    QvConverter* const converter = QACCreate();
    for (std::size_t i = 0; i < arguments.size();) {
        const auto step = kSteps.find(arguments[i++]);
        if (step == kSteps.end() || arguments.size() - i < step->second.arguments) return 2;
        const auto first = arguments.begin() + static_cast<std::ptrdiff_t>(i);
        step->second.run(converter,
                         Words(first, first + static_cast<std::ptrdiff_t>(step->second.arguments)));
        i += step->second.arguments;
    }
    QACDestroy(converter);
    platform::OnLibraryNotification(nullptr, false);
    Say({u"ended"});
    return 0;
}
