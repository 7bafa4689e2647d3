#include "modules/mp3/mp3_stream.h"
#include "modules/support/stream_decoder.h"

namespace {

constexpr clFileType kFileTypes[] = {
    {u".mp3", u"MPEG audio, layer III"},
    {u".mp2", u"MPEG audio, layer II"},
    {u".mp1", u"MPEG audio, layer I"},
    {u".mpa", u"MPEG audio"},
};

constexpr clStreamCodec kCodec = {kFileTypes, MakeStream<clMp3Stream>, TagContainer::mpeg};

}  // namespace

std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log) {
    return std::make_unique<clStreamDecoder>(log, kCodec);
}
