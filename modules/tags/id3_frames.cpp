// A name has its values in one frame where the kind of frame holds several, and several times the same kind of
// frame is read as several values. Comments, lyrics and free links hold one text each and must differ in
// their descriptions: several of one name stand in a user text frame instead. So do links that are more than
// Latin-1, which is all that a link frame can hold.
#include "modules/tags/id3_frames.h"

#include <taglib/attachedpictureframe.h>
#include <taglib/commentsframe.h>
#include <taglib/textidentificationframe.h>
#include <taglib/uniquefileidentifierframe.h>
#include <taglib/unsynchronizedlyricsframe.h>
#include <taglib/urllinkframe.h>

#include <algorithm>

#include "modules/tags/id3_names.h"
#include "modules/tags/picture_kinds.h"
#include "modules/tags/tag_text.h"

namespace id3 {

namespace {

using namespace TagLib::ID3v2;
using Values = TagSet::Values;

constexpr const char* kMusicBrainz = "http://musicbrainz.org";
constexpr const char16_t* kTrackId = u"MUSICBRAINZ_TRACKID";
constexpr std::size_t kLongestIdentifier = 64;

struct Field {
    std::u16string name;
    Values values;
};

std::string IdOf(const Frame& frame) {
    return FromTagLib(frame.frameID());
}

// "COMMENT" for the one without a description, "COMMENT:WHAT" for another.
std::u16string Described(std::u16string name, const TagLib::String& description) {
    const std::u16string text = UpperFromTagLib(description);
    return text.empty() || text == name ? name : name + u":" + text;
}

// The description that Described had; false for another name.
bool IsDescribed(std::u16string_view kind, const std::u16string& name, std::u16string& description) {
    if (!name.starts_with(kind)) return false;
    if (name.size() == kind.size()) return true;
    if (name[kind.size()] != u':' || name.size() == kind.size() + 1) return false;
    description = name.substr(kind.size() + 1);
    return true;
}

Values Texts(const TagLib::StringList& list) {
    Values values;
    for (const TagLib::String& text : list) values.push_back(FromTagLib(text));
    return values;
}

TagLib::StringList List(const Values& values) {
    TagLib::StringList list;
    for (const std::u16string& value : values) list.append(ToTagLib(value));
    return list;
}

Field UserText(const UserTextIdentificationFrame& frame) {
    Values values = Texts(frame.fieldList());
    if (!values.empty()) values.erase(values.begin());  // the description
    return {NameOfDescription(FromTagLib(frame.description())), values};
}

Field PlainText(const TextIdentificationFrame& frame) {
    Field field{NameOfFrame(IdOf(frame)), Texts(frame.fieldList())};
    if (field.name == u"GENRE") std::ranges::transform(field.values, field.values.begin(), Genre);
    return field;
}

Field Identifier(const UniqueFileIdentifierFrame& frame) {
    if (frame.owner() != kMusicBrainz) return {};
    const TagLib::String text(frame.identifier(), TagLib::String::UTF8);
    return {kTrackId, {FromTagLib(text)}};
}

// The row of a frame; one without a name for a frame that is none, or a list of people.
Field Read(const Frame& frame) {
    if (const auto* user = dynamic_cast<const UserTextIdentificationFrame*>(&frame)) return UserText(*user);
    if (const auto* text = dynamic_cast<const TextIdentificationFrame*>(&frame)) return PlainText(*text);
    if (const auto* comment = dynamic_cast<const CommentsFrame*>(&frame))
        return {Described(u"COMMENT", comment->description()), {FromTagLib(comment->text())}};
    if (const auto* lyrics = dynamic_cast<const UnsynchronizedLyricsFrame*>(&frame))
        return {Described(u"LYRICS", lyrics->description()), {FromTagLib(lyrics->text())}};
    if (const auto* link = dynamic_cast<const UserUrlLinkFrame*>(&frame))
        return {Described(u"URL", link->description()), {FromTagLib(link->url())}};
    if (const auto* link = dynamic_cast<const UrlLinkFrame*>(&frame))
        return {NameOfFrame(IdOf(frame)), {FromTagLib(link->url())}};
    if (const auto* id = dynamic_cast<const UniqueFileIdentifierFrame*>(&frame)) return Identifier(*id);
    return {};
}

TagPicture ReadPicture(const AttachedPictureFrame& frame) {
    return {KnownPictureKind(frame.type()), FromTagLib(frame.description()), FromTagLib(frame.picture())};
}

// TagLib's lists own what is in them as long as they are not copied; what is to be removed is gone through as
// pointers.
std::vector<Frame*> Pointers(const FrameList& frames) {
    return {frames.begin(), frames.end()};
}

const FrameList& FramesOf(const Tag& tag, std::string_view id) {
    return tag.frameList(TagLib::ByteVector(id.data(), static_cast<unsigned int>(id.size())));
}

void ReadPeople(const Tag& tag, std::string_view id, TagSet& set) {
    for (const Frame* frame : FramesOf(tag, id)) {
        const auto* text = dynamic_cast<const TextIdentificationFrame*>(frame);
        const Values pairs = text ? Texts(text->fieldList()) : Values();
        for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) set.Add(NameOfRole(id, pairs[i]), pairs[i + 1]);
    }
}

// The list of people without those of that role, and with the new ones at its end.
void SetPeople(Tag& tag, std::string_view id, const std::u16string& name, const Values& values) {
    Values list;
    for (const Frame* frame : FramesOf(tag, id)) {
        const auto* text = dynamic_cast<const TextIdentificationFrame*>(frame);
        const Values pairs = text ? Texts(text->fieldList()) : Values();
        for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
            if (NameOfRole(id, pairs[i]) != name) list.insert(list.end(), {pairs[i], pairs[i + 1]});
    }
    for (const std::u16string& value : values) list.insert(list.end(), {RoleOfName(id, name), value});
    const TagLib::ByteVector frameId(id.data(), static_cast<unsigned int>(id.size()));
    tag.removeFrames(frameId);
    if (list.empty()) return;
    auto* frame = new TextIdentificationFrame(frameId, TagLib::String::UTF8);
    frame->setText(List(list));
    tag.addFrame(frame);
}

bool IsLatin1(const std::u16string& text) {
    return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x100; });
}

Frame* NewComment(const std::u16string& description, const std::u16string& value) {
    auto* frame = new CommentsFrame(TagLib::String::UTF8);
    frame->setDescription(ToTagLib(description));
    frame->setText(ToTagLib(value));
    return frame;
}

Frame* NewLyrics(const std::u16string& description, const std::u16string& value) {
    auto* frame = new UnsynchronizedLyricsFrame(TagLib::String::UTF8);
    frame->setDescription(ToTagLib(description));
    frame->setText(ToTagLib(value));
    return frame;
}

Frame* NewLink(const std::u16string& description, const std::u16string& value) {
    auto* frame = new UserUrlLinkFrame(TagLib::String::UTF8);
    frame->setDescription(ToTagLib(description));
    frame->setUrl(ToTagLib(value));
    return frame;
}

Frame* NewIdentifier(const std::u16string& value) {
    return new UniqueFileIdentifierFrame(kMusicBrainz, ToTagLib(value).data(TagLib::String::UTF8));
}

// For names of which a frame holds one value; null when they go into a user text frame.
Frame* NewSingle(const std::u16string& name, const std::u16string& value) {
    std::u16string description;
    if (IsDescribed(u"COMMENT", name, description)) return NewComment(description, value);
    if (IsDescribed(u"LYRICS", name, description)) return NewLyrics(description, value);
    if (!IsLatin1(value)) return nullptr;
    if (IsDescribed(u"URL", name, description)) return NewLink(description, value);
    if (name == kTrackId && value.size() <= kLongestIdentifier / 2) return NewIdentifier(value);
    return nullptr;
}

Frame* NewFrame(const std::u16string& name, const Values& values) {
    const std::string_view id = FrameOfName(name);
    const TagLib::ByteVector frameId(id.data(), static_cast<unsigned int>(id.size()));
    if (!id.empty() && id[0] != 'W') {
        auto* frame = new TextIdentificationFrame(frameId, TagLib::String::UTF8);
        frame->setText(List(values));
        return frame;
    }
    if (!id.empty() && values.size() == 1 && IsLatin1(values[0])) {
        auto* frame = new UrlLinkFrame(frameId);
        frame->setUrl(ToTagLib(values[0]));
        return frame;
    }
    Frame* single = values.size() == 1 ? NewSingle(name, values[0]) : nullptr;
    if (single) return single;
    return new UserTextIdentificationFrame(ToTagLib(DescriptionOfName(name)), List(values),
                                           TagLib::String::UTF8);
}

}  // namespace

TagSet Read(const Tag& tag) {
    TagSet set;
    for (const Frame* frame : tag.frameList()) {
        const auto* picture = dynamic_cast<const AttachedPictureFrame*>(frame);
        if (picture && !picture->picture().isEmpty()) set.pictures.push_back(ReadPicture(*picture));
        Field field = Read(*frame);
        for (std::u16string& value : field.values) set.Add(field.name, std::move(value));
    }
    for (const std::string_view id : kPeopleFrames) ReadPeople(tag, id, set);
    return set;
}

void SetText(Tag& tag, const std::u16string& name, const Values& values) {
    for (Frame* frame : Pointers(tag.frameList()))
        if (Read(*frame).name == name) tag.removeFrame(frame);
    for (const std::string_view id : kPeopleFrames) {
        if (!RoleOfName(id, name).empty()) return SetPeople(tag, id, name, values);
    }
    if (!values.empty()) tag.addFrame(NewFrame(name, values));
}

void SetPictures(Tag& tag, std::vector<TagPicture> pictures) {
    for (Frame* frame : Pointers(tag.frameList("APIC"))) {
        const auto* picture = dynamic_cast<const AttachedPictureFrame*>(frame);
        const auto kept = picture ? std::ranges::find(pictures, ReadPicture(*picture)) : pictures.end();
        if (kept == pictures.end())
            tag.removeFrame(frame);
        else
            pictures.erase(kept);
    }
    for (const TagPicture& picture : pictures) {
        auto* frame = new AttachedPictureFrame();
        frame->setTextEncoding(TagLib::String::UTF8);
        frame->setType(static_cast<AttachedPictureFrame::Type>(picture.kind));
        frame->setMimeType(PictureMime(picture.bytes));
        frame->setDescription(ToTagLib(picture.description));
        frame->setPicture(ToTagLib(picture.bytes));
        tag.addFrame(frame);
    }
}

void Clear(Tag& tag) {
    for (Frame* frame : Pointers(tag.frameList())) tag.removeFrame(frame);
}

}  // namespace id3
