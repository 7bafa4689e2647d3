#include "modules/support/stream_decoder.h"
#include "modules/vorbis/vorbis_stream.h"

namespace {

constexpr clFileType kFileTypes[] = {
    {u".ogg", u"Ogg Vorbis audio"},
    {u".oga", u"Ogg Vorbis audio"},
};

constexpr clStreamCodec kCodec = {kFileTypes, MakeStream<clVorbisStream>, TagContainer::oggVorbis};

}  // namespace

std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log) {
    return std::make_unique<clStreamDecoder>(log, kCodec);
}
