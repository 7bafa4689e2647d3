// The settings of the user who runs a test are not the test's to change: while this stands, the process has a
// store of its own, empty at first and gone at the end. Every test program stands in one. On POSIX its
// children share it.
#pragma once

#include <memory>

class OwnSettings {
  public:
    OwnSettings();
    ~OwnSettings();
    OwnSettings(const OwnSettings&) = delete;
    OwnSettings& operator=(const OwnSettings&) = delete;

  private:
    struct Store;
    std::unique_ptr<Store> mStore;
};
