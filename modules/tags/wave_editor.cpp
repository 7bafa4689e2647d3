// WAVE: an ID3v2.4 tag in an "ID3 " chunk says everything; a LIST INFO chunk repeats what it can say, for
// programs that look nowhere else.
//
// The INFO fields are read by us (info_fields.h) and not by TagLib, which takes all of them for UTF-8 and
// sees one list only. What we read is handed to TagLib before it writes, so that every field keeps its text.
#include <taglib/infotag.h>
#include <taglib/wavfile.h>

#include "modules/tags/id3_frames.h"
#include "modules/tags/info_fields.h"
#include "modules/tags/tag_editor.h"
#include "modules/tags/tag_text.h"

namespace {

class clWaveEditor : public clTagEditor {
    using File = TagLib::RIFF::WAV::File;

  public:
    clWaveEditor(clTagStream& stream, clFileReader& file) : mFile(&stream, false) {
        mIsValid = ReadInfoFields(file, mInfo) && mFile.isValid() && mFile.ID3v2Tag() && mFile.InfoTag();
        if (!mIsValid) return;
        for (const InfoField& field : mInfo) SetInfo(field.id, field.text);
    }

    bool IsValid() const override { return mIsValid; }

    TagSet Read() override {
        TagSet set = id3::Read(*mFile.ID3v2Tag());
        set.Complete(RowsOfInfo(mInfo));
        return set;
    }
    void SetText(const std::u16string& name, const TagSet::Values& values) override {
        id3::SetText(*mFile.ID3v2Tag(), name, values);
        std::u16string joined;
        for (const std::u16string& value : values) joined += (joined.empty() ? u"" : u"; ") + value;
        for (const std::string& id : InfoIdsOfName(name)) {
            SetInfo(id, joined);
            joined.clear();  // one says it, a second that meant the same goes
        }
    }
    void SetPictures(const std::vector<TagPicture>& pictures) override {
        id3::SetPictures(*mFile.ID3v2Tag(), pictures);
    }
    void Clear() override { mFile.strip(File::AllTags); }
    bool Save() override { return mFile.save(File::AllTags, File::StripNone, TagLib::ID3v2::v4); }

  private:
    void SetInfo(const std::string& id, const std::u16string& text) {
        mFile.InfoTag()->setFieldText(ToTagLib(id), ToTagLib(text));
    }

    File mFile;
    std::vector<InfoField> mInfo;
    bool mIsValid = false;
};

}  // namespace

std::unique_ptr<clTagEditor> OpenWaveEditor(clTagStream& stream, clFileReader& file) {
    return std::make_unique<clWaveEditor>(stream, file);
}
