// MPEG audio and AIFF: ID3v2.4. An MPEG file may have up to three tags. What the ID3v2 tag doesn't name is
// read from the APE tag, and then from ID3v1; what is written goes into the ID3v2 tag. The APE tag loses what
// is changed, an ID3v1 tag that is there follows as far as it can, and none is made.
#include <taglib/aifffile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/mpegfile.h>

#include "modules/tags/ape_items.h"
#include "modules/tags/id3_frames.h"
#include "modules/tags/tag_editor.h"
#include "modules/tags/tag_text.h"

namespace {

TagSet ReadId3v1(const TagLib::ID3v1::Tag& tag) {
    const auto number = [](unsigned int value) {
        return FromTagLib(TagLib::String::number(static_cast<int>(value)));
    };
    TagSet set;
    set.Add(u"TITLE", FromTagLib(tag.title()));
    set.Add(u"ARTIST", FromTagLib(tag.artist()));
    set.Add(u"ALBUM", FromTagLib(tag.album()));
    set.Add(u"COMMENT", FromTagLib(tag.comment()));
    set.Add(u"GENRE", FromTagLib(tag.genre()));
    if (tag.year() > 0) set.Add(u"DATE", number(tag.year()));
    if (tag.track() > 0) set.Add(u"TRACKNUMBER", number(tag.track()));
    return set;
}

void SetId3v1(TagLib::ID3v1::Tag& tag, const std::u16string& name, const TagLib::String& value) {
    const auto number = static_cast<unsigned int>(std::max(value.substr(0, 4).toInt(), 0));
    if (name == u"TITLE") tag.setTitle(value);
    if (name == u"ARTIST") tag.setArtist(value);
    if (name == u"ALBUM") tag.setAlbum(value);
    if (name == u"COMMENT") tag.setComment(value);
    if (name == u"GENRE") tag.setGenre(value);
    if (name == u"DATE") tag.setYear(number);
    if (name == u"TRACKNUMBER") tag.setTrack(number < 256 ? number : 0);
}

class clMpegEditor : public clTagEditor {
    using File = TagLib::MPEG::File;

  public:
    explicit clMpegEditor(clTagStream& stream)
        : mFile(&stream, TagLib::ID3v2::FrameFactory::instance(), false) {}

    bool IsValid() const override { return mFile.isValid(); }

    TagSet Read() override {
        TagSet set = id3::Read(*mFile.ID3v2Tag(true));
        if (mFile.APETag()) set.Complete(ape::Read(*mFile.APETag()));
        if (mFile.hasID3v1Tag()) set.Complete(ReadId3v1(*mFile.ID3v1Tag()));
        return set;
    }
    void SetText(const std::u16string& name, const TagSet::Values& values) override {
        id3::SetText(*mFile.ID3v2Tag(true), name, values);
        mTouched |= File::ID3v2;
        if (mFile.APETag() && ape::Remove(*mFile.APETag(), name)) mTouched |= File::APE;
        if (!mFile.hasID3v1Tag()) return;
        SetId3v1(*mFile.ID3v1Tag(true), name, values.empty() ? TagLib::String() : ToTagLib(values[0]));
        mTouched |= File::ID3v1;
    }
    void SetPictures(const std::vector<TagPicture>& pictures) override {
        id3::SetPictures(*mFile.ID3v2Tag(true), pictures);
        mTouched |= File::ID3v2;
        if (mFile.APETag() && ape::RemovePictures(*mFile.APETag())) mTouched |= File::APE;
    }
    void Clear() override { mFile.strip(File::AllTags); }
    bool Save() override {
        return mTouched == File::NoTags ||
               mFile.save(mTouched, File::StripNone, TagLib::ID3v2::v4, File::DoNotDuplicate);
    }

  private:
    File mFile;
    int mTouched = File::NoTags;
};

class clAiffEditor : public clTagEditor {
  public:
    explicit clAiffEditor(clTagStream& stream) : mFile(&stream, false) {}

    bool IsValid() const override { return mFile.isValid() && mFile.tag(); }
    TagSet Read() override { return id3::Read(*mFile.tag()); }
    void SetText(const std::u16string& name, const TagSet::Values& values) override {
        id3::SetText(*mFile.tag(), name, values);
    }
    void SetPictures(const std::vector<TagPicture>& pictures) override {
        id3::SetPictures(*mFile.tag(), pictures);
    }
    void Clear() override { id3::Clear(*mFile.tag()); }
    bool Save() override { return mFile.save(); }

  private:
    TagLib::RIFF::AIFF::File mFile;
};

}  // namespace

std::unique_ptr<clTagEditor> OpenMpegEditor(clTagStream& stream) {
    return std::make_unique<clMpegEditor>(stream);
}

std::unique_ptr<clTagEditor> OpenAiffEditor(clTagStream& stream) {
    return std::make_unique<clAiffEditor>(stream);
}
