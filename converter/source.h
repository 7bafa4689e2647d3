// Source: the file to convert, seen through its decoder module.
#pragma once

#include <cstdint>
#include <string>

#include "converter/audio_form.h"
#include "converter/error_tap.h"
#include "converter/reporter.h"
#include "foundation/id_tag_list.h"
#include "foundation/log.h"
#include "plugins/decoder_module.h"
#include "quavermill/module.h"

class Source {
  public:
    Source(std::u16string file, Reporter& reporter);

    // False when no decoder module reads files of this extension.
    bool FindDecoder();
    // Opens the file for decoding. The reason of a refusal has gone to the host in the module's own words.
    bool Open();
    // Opens it once more, to be decoded from its beginning. False, also, when its audio has another form now.
    bool OpenAgain();
    // Adds the file's own tags to `tags`; a file without any adds nothing. What the decoder complains of
    // meanwhile is information: it is the audio that counts. Before Open.
    void ReadTags(clIDTagList& tags);
    // The next block; false when the decoder will not give one. Its last one has `finished` set.
    bool NextBlock(clBlockRec& block);
    // Closes file and module, and says whether all of the audio could be read.
    bool Close();

    // How far the blocks so far have come, 0 to 99.
    int Percent() const;
    // True as soon as the decoder has reported an error.
    bool IsDamaged() const { return mErrors.Lines() > 0; }
    AudioForm Form() const;

  private:
    bool ReadTags(std::uint32_t request, clIDTagList& tags);
    void CloseFile();

    const std::u16string mFile;
    ErrorTap mErrors;  // outlives the module, which may report while it is destroyed
    XLog mLog;         // as long as the module, which may keep its address
    XLog mTagLog;      // while tags are read
    clOpenFileRec mRecord = {};
    clQvDecoder mDecoder;
    std::uint64_t mBytes = 0;
    bool mOpen = false;
};
