// Text in real files, and a file as the far end of a log channel.
#pragma once

#include <string>
#include <string_view>

#include "platform/types.h"
#include "support/temp_folder.h"

bool FileExists(const std::u16string& path);
std::string ReadBytes(const std::u16string& path);
std::u16string TextOf(const std::string& bytes);  // taken as 16-bit text; half a unit at the end is left out
// Straight to the platform, past what a test has put in its place.
void WriteAll(platform::Handle handle, std::u16string_view text);

// What a log channel was given, kept in a file so that no channel ever fills.
class TextSink {
  public:
    TextSink();
    ~TextSink();
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;

    platform::Handle Channel() const { return mChannel; }
    std::u16string Text() const { return TextOf(mFolder.Read(u"text")); }
    std::u16string Take();  // what came since the last Take

  private:
    TempFolder mFolder;
    platform::Handle mChannel;
    std::size_t mTaken = 0;
};
