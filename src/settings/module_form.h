// clModuleFrm: the modal form in which a user picks a module and sets it up. Both forms of the library are this one;
// a Kind says what makes the difference.
//
// The form is there for exactly the time of its constructor, on its thread, without an owner. `name` goes in as the
// module to begin with and `settings` as the text that it shows. What comes out:
//
//     closed with OK          the module picked and its text, which is empty where it could not be loaded
//     closed otherwise        two empty texts
//     the first module could not be loaded: nothing is shown, two empty texts
//     no forms here           both as they were
//
// `result` is left at 1 when the form came up with its first module, 0 when that could not be loaded, and as it was
// where there are no forms. An exhausted memory closes the form, and then raises.
#pragma once

#include <cstdint>

#include "foundation/log.h"
#include "foundation/wide_string.h"
#include "platform/module.h"
#include "platform/window.h"
#include "settings/form_kinds.h"
#include "settings/toolkit/drop_list.h"
#include "settings/toolkit/icon.h"
#include "settings/toolkit/window.h"

template <class Kind>
class clModuleFrm final : public XWindow {
  public:
    // `module` is where the template and the folders of modules are; null for the program.
    clModuleFrm(XString& name, XString& settings, std::uint32_t& result, platform::ModuleHandle module,
                const XLog& log);

  protected:
    void OnClose() override;
    void OnInitDialog() override;
    void OnDestroy() override;
    std::intptr_t PreTranslate(platform::Window window, std::uint32_t message, platform::WordParameter word,
                               platform::LongParameter value, std::int32_t* handled) override;
    void OnOK() override;
    void OnCancel() override;

  private:
    void End(bool isAccepted, std::intptr_t result);
    void FillList();
    void ChangeModule(const XString& picked);
    void ShowPanel(const XString& text);
    XString RemovePanel();

    const platform::ModuleHandle mModuleHandle;
    XLog mLog;
    XString& mSettings;
    XString& mName;
    std::uint32_t& mResult;
    bool accepted = false;
    typename Kind::Module mModule;
    XDropList mList;
    XIcon mRowIcon;
    XString currentName;
};
