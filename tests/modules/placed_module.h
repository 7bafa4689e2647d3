// A test module copied to where a test wants it, under a name of its own, with its script beside it
// (script.h).
//
//     PlacedModule abc(folder, u"decoder/abc", "scripted_decoder", "decodes|.abc|A test\n");
//     ...
//     EXPECT_EQ(abc.TakeJournal(), "Create\nGet Decodes 0\nDestroy\n");
//
// Modules to place, all in tests/modules: scripted_decoder, scripted_encoder, scripted_effect; whole_decoder,
// whole_encoder, whole_effect, which do as little as they can; each of those three without one entry, as in
// decoder_without_Get; text_file and empty_file, which are no modules at all.
#pragma once

#include <string>
#include <string_view>

#include "support/temp_folder.h"

// Where the build left a test module.
std::u16string BuiltModule(std::string_view name);

class PlacedModule {
  public:
    // `place` is a path in `folder` without an extension; its folders are made.
    PlacedModule(const TempFolder& folder, std::u16string_view place, std::string_view module,
                 std::string_view script = {});

    const std::u16string& Path() const { return mPath; }
    void SetScript(std::string_view script) const;  // takes effect with the next instance
    // The calls since the last time, in order, a line each.
    std::string TakeJournal() const;

  private:
    const TempFolder& mFolder;
    std::u16string mPlace;
    std::u16string mPath;
};
