// Tags in files of every kind we write: one set of rows, whatever the container.
//
// Reading and changing the tags themselves is TagLib's work. What it must never do here is touch a file in
// place: a change is made to a copy beside the file, the copy is verified (its tags read back as they should,
// its audio is byte for byte the old one), and only then takes the file's name. A full disk, a crash or a kill
// leaves the old file or the new one.
//
// The names of the rows and what each becomes in each container stand in docs/tags.md. Names are compared
// without regard to ASCII case. Art is a row with bytes, named PICTURE for a front cover and "PICTURE:" with
// the kind for any other; its value is its description. A value that holds U+001F is several values.
#pragma once

#include "foundation/id_tag_list.h"
#include "modules/support/module_log.h"

enum class TagContainer {
    flac,       // Vorbis comments and PICTURE blocks; ID3 tags around it are not read
    oggVorbis,  // Vorbis comments, pictures in METADATA_BLOCK_PICTURE
    oggOpus,    // the same, with Opus's own gain fields
    mpeg,       // ID3v2.4, read from APE and ID3v1 too
    wave,       // an "ID3 " chunk and a LIST INFO chunk for what that can say; RF64 files are only read
    aiff,       // an "ID3 " chunk
    none        // no tags: reads as none, and a change is refused
};

// Adds a row for each value and each picture: the text by name, then the pictures. True, and nothing is added,
// when there are none. False, with the reason in the log, when the file can't be read or is of another kind.
bool ReadFileTags(TagContainer container, const char16_t* file, clIDTagList& tags, const clModuleLog& log);

// For each name among the rows, the file's values of that name become those of the rows; all other tags stay.
// A row that this container can't hold is told as information and left out; when none of them can be held it
// is a failure. No rows, and rows that are there already, leave the file untouched. False, with the reason in
// the log, leaves the file as it was.
bool WriteFileTags(TagContainer container, const char16_t* file, const clIDTagList& rows,
                   const clModuleLog& log);

// Removes every value of that name, or for an empty name all tags, those that are no rows included. A name that
// the file doesn't have is no failure. False, with the reason in the log, leaves the file as it was.
bool DeleteFileTags(TagContainer container, const char16_t* file, const char16_t* name,
                    const clModuleLog& log);
