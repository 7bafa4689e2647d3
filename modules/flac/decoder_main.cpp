#include "modules/flac/flac_stream.h"
#include "modules/support/stream_decoder.h"

namespace {

constexpr clFileType kFileTypes[] = {{u".flac", u"Free Lossless Audio Codec"}};

constexpr clStreamCodec kCodec = {kFileTypes, MakeStream<clFlacStream>, TagContainer::flac};

}  // namespace

std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log) {
    return std::make_unique<clStreamDecoder>(log, kCodec);
}
