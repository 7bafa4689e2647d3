// The command file: UTF-16 text without byte order mark that a host leaves in its temporary folder.
#pragma once

#include <string>

// Reads the file whole and deletes it: it holds paths and tags that should not lie about. One that does not
// begin like a command is somebody else's and stays. False when it can't be read or is no text of whole
// units; an absurdly large one is refused too.
bool TakeCommandFile(const std::u16string& name, std::u16string* text);
