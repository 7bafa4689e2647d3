// There is no compression manager here, so no codec converts anything and no stream ever is.
#include "platform/acm.h"

namespace platform {

namespace {

std::uint32_t NoCodec(AcmStream*, const QvFormat*, const QvFormat*, std::uint32_t) {
    return kAcmErrorNoDriver;
}

template <class... Arguments>
std::uint32_t NoStream(AcmStream, Arguments...) {
    return kAcmErrorInvalidHandle;
}

}  // namespace

constinit Operation<std::uint32_t(AcmStream*, const QvFormat*, const QvFormat*, std::uint32_t)> acmStreamOpen{
    &NoCodec};
constinit Operation<std::uint32_t(AcmStream)> acmStreamClose{&NoStream<>};
constinit Operation<std::uint32_t(AcmStream, std::uint32_t, std::uint32_t*, std::uint32_t)> acmStreamSize{
    &NoStream<std::uint32_t, std::uint32_t*, std::uint32_t>};
constinit Operation<std::uint32_t(AcmStream, AcmStreamHeader*)> acmStreamPrepareHeader{
    &NoStream<AcmStreamHeader*>};
constinit Operation<std::uint32_t(AcmStream, AcmStreamHeader*)> acmStreamUnprepareHeader{
    &NoStream<AcmStreamHeader*>};
constinit Operation<std::uint32_t(AcmStream, AcmStreamHeader*, std::uint32_t)> acmStreamConvert{
    &NoStream<AcmStreamHeader*, std::uint32_t>};

}  // namespace platform
