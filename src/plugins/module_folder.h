// The three folders of modules beside a library or program, and what is in them.
//
// Each is found from the place of the file that `module` stands for (null: the program). A file that can't
// tell its place has no modules: a path without a folder would begin in the current one, and nothing is ever
// loaded from there.
#pragma once

#include "foundation/find_file.h"
#include "foundation/wide_string.h"
#include "platform/module.h"

inline constexpr const char16_t* kDecoderFolder = u"decoder";
inline constexpr const char16_t* kEncoderFolder = u"encoder";
inline constexpr const char16_t* kDSPFolder = u"DSPs";

// The file of the module of this name, whether it exists or not. Empty when the place can't be told.
XString ModulePath(platform::ModuleHandle module, const char16_t* folder, const XString& name);

// A walk over the module files of one folder, in the order in which the system lists them. What is in them is
// not looked at.
class ModuleWalk {
  public:
    ModuleWalk(platform::ModuleHandle module, const char16_t* folder);

    bool Next();                                           // true while there is one
    const XString& Path() const { return mFiles.Name(); }  // its full path

  private:
    XFindFile mFiles;
};
