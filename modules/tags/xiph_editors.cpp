// FLAC, Ogg Vorbis and Ogg Opus: Vorbis comments, whose pictures are blocks of their own in FLAC and coded
// comments in Ogg.
#include <taglib/flacfile.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/opusfile.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

#include <algorithm>

#include "modules/tags/picture_kinds.h"
#include "modules/tags/tag_editor.h"
#include "modules/tags/tag_text.h"

namespace {

using TagLib::FLAC::Picture;
using Pictures = TagLib::List<Picture*>;

TagPicture FromPicture(const Picture& picture) {
    return {KnownPictureKind(picture.type()), FromTagLib(picture.description()), FromTagLib(picture.data())};
}

void AddPictures(const Pictures& pictures, TagSet& set) {
    for (const Picture* picture : pictures)
        if (!picture->data().isEmpty()) set.pictures.push_back(FromPicture(*picture));
}

Picture* NewPicture(const TagPicture& picture) {
    auto* made = new Picture();
    made->setType(static_cast<Picture::Type>(picture.kind));
    made->setMimeType(PictureMime(picture.bytes));
    made->setDescription(ToTagLib(picture.description));
    made->setData(ToTagLib(picture.bytes));
    return made;
}

// A list of TagLib's owns what is in it as long as it is not copied.
std::vector<Picture*> Pointers(const Pictures& pictures) {
    return {pictures.begin(), pictures.end()};
}

// Pictures that are there already stay as they are. `holder` is what has addPicture and removePicture.
template <class Holder>
void ReplacePictures(Holder& holder, std::vector<TagPicture> pictures) {
    for (Picture* picture : Pointers(holder.pictureList())) {
        const auto kept = std::ranges::find(pictures, FromPicture(*picture));
        if (kept == pictures.end())
            holder.removePicture(picture);
        else
            pictures.erase(kept);
    }
    for (const TagPicture& picture : pictures) holder.addPicture(NewPicture(picture));
}

TagSet ReadText(const TagLib::Ogg::XiphComment& comment) {
    TagSet set;
    for (const auto& [name, values] : comment.fieldListMap())
        for (const TagLib::String& value : values) set.Add(UpperFromTagLib(name), FromTagLib(value));
    return set;
}

void SetField(TagLib::Ogg::XiphComment& comment, const std::u16string& name, const TagSet::Values& values) {
    comment.removeFields(ToTagLib(name));
    for (const std::u16string& value : values) comment.addField(ToTagLib(name), ToTagLib(value), false);
}

class clFlacEditor : public clTagEditor {
  public:
    explicit clFlacEditor(clTagStream& stream)
        : mFile(&stream, TagLib::ID3v2::FrameFactory::instance(), false) {}

    bool IsValid() const override { return mFile.isValid(); }

    TagSet Read() override {
        TagSet set = ReadText(*mFile.xiphComment(true));
        AddPictures(mFile.pictureList(), set);
        AddPictures(mFile.xiphComment()->pictureList(), set);
        return set;
    }
    void SetText(const std::u16string& name, const TagSet::Values& values) override {
        MakeComment();
        SetField(*mFile.xiphComment(true), name, values);
    }
    void SetPictures(const std::vector<TagPicture>& pictures) override {
        MakeComment();
        mFile.xiphComment(true)->removeAllPictures();
        ReplacePictures(mFile, pictures);
    }
    void Clear() override {
        MakeComment();
        mFile.removePictures();
        mFile.strip(TagLib::FLAC::File::AllTags);
    }
    bool Save() override { return mFile.save(); }

  private:
    // TagLib fills a comment that it has to make from ID3 tags, and forgets a date that is no number while it
    // does. So it is made empty, and first.
    void MakeComment() {
        if (mFile.hasXiphComment()) return;
        mFile.save();
        mFile.xiphComment(true)->removeAllFields();
    }

    TagLib::FLAC::File mFile;
};

template <class File>
class clOggEditor : public clTagEditor {
  public:
    explicit clOggEditor(clTagStream& stream) : mFile(&stream, false) {}

    bool IsValid() const override { return mFile.isValid() && mFile.tag(); }

    TagSet Read() override {
        TagSet set = ReadText(*mFile.tag());
        AddPictures(mFile.tag()->pictureList(), set);
        return set;
    }
    void SetText(const std::u16string& name, const TagSet::Values& values) override {
        SetField(*mFile.tag(), name, values);
    }
    void SetPictures(const std::vector<TagPicture>& pictures) override {
        ReplacePictures(*mFile.tag(), pictures);
    }
    void Clear() override {
        mFile.tag()->removeAllFields();
        mFile.tag()->removeAllPictures();
    }
    bool Save() override { return mFile.save(); }

  private:
    File mFile;
};

}  // namespace

std::unique_ptr<clTagEditor> OpenXiphEditor(TagContainer container, clTagStream& stream) {
    if (container == TagContainer::flac) return std::make_unique<clFlacEditor>(stream);
    if (container == TagContainer::oggOpus)
        return std::make_unique<clOggEditor<TagLib::Ogg::Opus::File>>(stream);
    return std::make_unique<clOggEditor<TagLib::Ogg::Vorbis::File>>(stream);
}
