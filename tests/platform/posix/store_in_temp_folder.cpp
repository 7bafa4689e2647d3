// The settings of the user who runs the tests are not theirs to change: the store is put into a folder for
// temporary files, also for the children of the test program.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <memory>

#include "support/temp_folder.h"

namespace {

class StoreInTempFolder : public testing::Environment {
  public:
    void SetUp() override {
        mFolder = std::make_unique<TempFolder>();
        const std::u16string path = mFolder->Path();
        setenv("XDG_CONFIG_HOME", std::string(path.begin(), path.end()).c_str(), 1);
    }
    void TearDown() override { mFolder.reset(); }

  private:
    std::unique_ptr<TempFolder> mFolder;
};

[[maybe_unused]] const auto* const registered = testing::AddGlobalTestEnvironment(new StoreInTempFolder);

}  // namespace
