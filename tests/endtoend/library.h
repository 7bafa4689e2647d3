// The built library, loaded at run time, and its exports by their names.
#pragma once

#include <string>

#include "platform/module.h"
#include "quavermill/quavermill.h"

// Every export.  X(name)
// clang-format off
#define QV_EXPORTS(X) \
    X(QACCreate) \
    X(QACDestroy) \
    X(QACGetLastError) \
    X(QACGetLastInfo) \
    X(QACGetEncoder) \
    X(QACGetDecoder) \
    X(QACGetDSP) \
    X(QACReadAudioProperties) \
    X(QACReadAudioPropStrings) \
    X(QACReadIDTag) \
    X(QACWriteIDTag) \
    X(QACDeleteIDTag) \
    X(QACAddIDTagToList) \
    X(QACClearIDTagList) \
    X(QACReadIDTagList) \
    X(QACRemoveFromIDTagList) \
    X(QACSetTagWriteThrough) \
    X(QACAddDSPToList) \
    X(QACClearDSPList) \
    X(QACReadDSPList) \
    X(QACRemoveFromDSPList) \
    X(QACConvertAudio) \
    X(QACGetProgress) \
    X(QACSetPriority) \
    X(QACSetPause) \
    X(QACSetCancelled) \
    X(QACSetCPU) \
    X(QACShowSettings) \
    X(QACShowSettingsOnForm) \
    X(QACRemoveSettings) \
    X(QACShowDSPSettings) \
    X(QADOpenFile) \
    X(QADDecodeBlock) \
    X(QADSetPosition) \
    X(QADCloseFile) \
    X(QAEOpenFile) \
    X(QAEEncodeBlock) \
    X(QAECloseFile)
// clang-format on

class Library {
  public:
    Library();  // from the tree
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    static std::u16string File();
    bool IsLoaded() const { return mModule != nullptr; }
    platform::ModuleHandle Module() const { return mModule; }
    platform::EntryPoint Entry(const char* name) const { return platform::GetProcAddress(mModule, name); }

#define QV_POINTER(name) decltype(&::name) name = reinterpret_cast<decltype(&::name)>(Entry(#name));

  private:
    platform::ModuleHandle mModule = platform::LoadLibraryW(File().c_str());

  public:
    QV_EXPORTS(QV_POINTER)
#undef QV_POINTER
};
