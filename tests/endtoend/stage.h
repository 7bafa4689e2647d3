// What a whole conversion is played on: the built library, a folder for its files, and a folder for the
// temporary files of the library and of every program that is started meanwhile, so that nobody else's are
// mistaken for theirs.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "endtoend/library.h"
#include "support/temp_folder.h"

class OwnTemporaries {
  public:
    OwnTemporaries();
    ~OwnTemporaries();
    OwnTemporaries(const OwnTemporaries&) = delete;
    OwnTemporaries& operator=(const OwnTemporaries&) = delete;

    std::u16string Path() const { return mFolder.Path(); }

  private:
    TempFolder mFolder;
};

// The names in a folder.
std::set<std::u16string> NamesIn(const std::u16string& folder);

// Looks again and again; false after a minute.
bool Eventually(const std::function<bool()>& condition);

class Stage : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library.IsLoaded()); }
    // No test leaves a command file or the like behind.
    void TearDown() override { EXPECT_EQ(NamesIn(temporaries.Path()), std::set<std::u16string>()); }

    const Library library;
    const TempFolder files;
    const OwnTemporaries temporaries;
};
