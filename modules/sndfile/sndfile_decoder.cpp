#include "modules/sndfile/sndfile_decoder.h"

#include "foundation/paths.h"
#include "modules/sndfile/sndfile_stream.h"

namespace {

constexpr clFileType kFileTypes[] = {
    {u".aiff", u"AIFF audio"},
    {u".aif", u"AIFF audio"},
    {u".aifc", u"AIFF audio"},
    {u".au", u"AU audio"},
    {u".snd", u"AU audio"},
    {u".caf", u"Core Audio Format"},
    {u".w64", u"Wave64 audio"},
    {u".voc", u"Creative Voice"},
    {u".nist", u"NIST Sphere audio"},
    {u".sph", u"NIST Sphere audio"},
    {u".svx", u"8SVX audio"},
    {u".8svx", u"8SVX audio"},
    {u".iff", u"8SVX audio"},
    {u".paf", u"Ensoniq PARIS audio"},
    {u".pvf", u"Portable Voice Format"},
    {u".avr", u"AVR audio"},
    {u".htk", u"HTK audio"},
    {u".sds", u"MIDI sample dump"},
    {u".sf", u"IRCAM audio"},
};

constexpr clStreamCodec kCodec = {kFileTypes, MakeStream<clSndfileStream>, TagContainer::none};

}  // namespace

clSndfileDecoder::clSndfileDecoder(const clModuleLog& log) : clStreamDecoder(log, kCodec) {}

TagContainer clSndfileDecoder::ContainerOf(const char16_t* file) const {
    const XString extension = paths::GetExtension(XString(file)).ToLower();
    const bool isAiff = extension == u".aiff" || extension == u".aif" || extension == u".aifc";
    return isAiff ? TagContainer::aiff : TagContainer::none;
}
