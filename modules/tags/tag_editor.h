// clTagEditor: the tags of one file behind one face, whatever the container.
//
// Works on what stands in the file (tag_rules.h turns that into rows). Changes show in the stream after Save.
#pragma once

#include <memory>

#include "modules/tags/tag_file.h"
#include "modules/tags/tag_set.h"
#include "modules/tags/tag_stream.h"

class clTagEditor {
  public:
    virtual ~clTagEditor() = default;

    virtual bool IsValid() const = 0;  // only then is anything else asked
    virtual TagSet Read() = 0;
    // The values of a name become these; none remove it.
    virtual void SetText(const std::u16string& name, const TagSet::Values& values) = 0;
    virtual void SetPictures(const std::vector<TagPicture>& pictures) = 0;
    // Removes what is no row as well.
    virtual void Clear() = 0;
    virtual bool Save() = 0;
};

// Both must outlive the editor. Null for a container without tags.
std::unique_ptr<clTagEditor> OpenTagEditor(TagContainer container, clTagStream& stream, clFileReader& file);

// The parts that OpenTagEditor chooses from.
std::unique_ptr<clTagEditor> OpenXiphEditor(TagContainer container, clTagStream& stream);
std::unique_ptr<clTagEditor> OpenMpegEditor(clTagStream& stream);
std::unique_ptr<clTagEditor> OpenWaveEditor(clTagStream& stream, clFileReader& file);
std::unique_ptr<clTagEditor> OpenAiffEditor(clTagStream& stream);
