// A module's panel is a child of the dialog, which the module itself makes and takes away; the form only tells it
// when. So all that happens here hangs on the order: a panel goes before its instance, and its text is copied
// before anything else is asked of the module.
//
// A module that can't be loaded once the user goes over to it leaves the form without a panel. Every call to it is
// then one that does nothing, and its text an empty one.
#include "settings/module_form.h"

#include <algorithm>

#include "foundation/joined.h"
#include "foundation/paths.h"

namespace {

constexpr std::int32_t kListId = 1001;

// ASCII case aside.
bool IsSameName(const XString& first, const XString& second) {
    return first.ToLower() == second.ToLower();
}

std::uint64_t AsNumber(platform::Window window) {
    return reinterpret_cast<std::uint64_t>(window);
}

}  // namespace

template <class Kind>
clModuleFrm<Kind>::clModuleFrm(XString& name, XString& settings, std::uint32_t& result,
                               platform::ModuleHandle module, const XLog& log)
    : mModuleHandle(module), mLog(log), mSettings(settings), mName(name), mResult(result) {
    RunDialog(module, Kind::kTemplate, nullptr);
}

template <class Kind>
void clModuleFrm<Kind>::End(bool isAccepted, std::intptr_t result) {
    accepted = isAccepted;
    platform::EndDialog(mWindow, result);
}

template <class Kind>
void clModuleFrm<Kind>::OnClose() {
    End(false, 1);
}

template <class Kind>
void clModuleFrm<Kind>::OnOK() {
    End(true, 1);
}

template <class Kind>
void clModuleFrm<Kind>::OnCancel() {
    End(false, 0);
}

template <class Kind>
void clModuleFrm<Kind>::OnInitDialog() {
    XWindow::OnInitDialog();
    CenterOnDesktop();
    FillList();
    if (Kind::Load(mName, mModule, mLog, mModuleHandle)) {
        ShowPanel(mSettings);
        mResult = 1;
    } else {
        mResult = 0;
        platform::EndDialog(mWindow, 0);
    }
}

// The module of the name need not be on the list: the first one is then selected, and the panel is that of the name.
template <class Kind>
void clModuleFrm<Kind>::FillList() {
    const platform::Window control = platform::GetDlgItem(mWindow, kListId);
    mList.Attach(control);
    XStringList paths;
    Kind::List(paths, mModuleHandle, mLog);
    std::int32_t selected = 0;
    for (std::int32_t i = 0; i < paths.Count(); ++i) {
        const XString title = paths::GetFileTitle(paths.At(i));
        if (IsSameName(title, mName)) selected = i;
        mRowIcon.Load(Joined({paths::StripExtension(paths.At(i)).Text(), u".ico"}));
        mList.AddItem(title, mRowIcon.Handle() ? &mRowIcon : nullptr);
    }
    if (paths.Count() > 0)
        platform::SendMessageW(control, platform::kMessageComboSetCurrent,
                               static_cast<platform::WordParameter>(selected), 0);
    currentName = mName;
}

// Whatever the list has to say, it is its selection that counts.
template <class Kind>
std::intptr_t clModuleFrm<Kind>::PreTranslate(platform::Window, std::uint32_t message,
                                              platform::WordParameter word, platform::LongParameter value,
                                              std::int32_t* handled) {
    const std::intptr_t result = mList.OnParentMessage(message, word, value, handled);
    if (*handled != 0) return result;
    if (message == platform::kMessageCommand && (word & 0xFFFF) == kListId) {
        const XString picked = mList.GetEditText(false);
        if (!IsSameName(picked, currentName)) ChangeModule(picked);
    }
    return 0;
}

template <class Kind>
void clModuleFrm<Kind>::ChangeModule(const XString& picked) {
    const XString oldName = currentName;
    currentName = picked;
    const XString text = RemovePanel();
    mModule.Destroy();
    Kind::Keep(oldName, text);
    if (Kind::Load(currentName, mModule, mLog, mModuleHandle)) ShowPanel(Kind::Kept(currentName));
}

template <class Kind>
void clModuleFrm<Kind>::ShowPanel(const XString& text) {
    mModule.ShowConfigBit(AsNumber(mWindow), DialogUnitsX(mWindow), DialogUnitsY(mWindow), text.Text());
}

template <class Kind>
XString clModuleFrm<Kind>::RemovePanel() {
    return mModule.RemoveConfigBit(AsNumber(mWindow));
}

template <class Kind>
void clModuleFrm<Kind>::OnDestroy() {
    const XString text = RemovePanel();
    mSettings = accepted ? text : XString();
    mName = accepted ? currentName : XString();
    mModule.Destroy();
    mList.Destroy();
}

template class clModuleFrm<EncoderKind>;
template class clModuleFrm<DSPKind>;
