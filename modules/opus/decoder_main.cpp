#include "modules/opus/opus_stream.h"
#include "modules/support/stream_decoder.h"

namespace {

constexpr clFileType kFileTypes[] = {{u".opus", u"Opus audio"}};

constexpr clStreamCodec kCodec = {kFileTypes, MakeStream<clOpusStream>, TagContainer::oggOpus};

}  // namespace

std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log) {
    return std::make_unique<clStreamDecoder>(log, kCodec);
}
