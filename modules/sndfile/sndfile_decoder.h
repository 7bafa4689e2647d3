// clSndfileDecoder: the decoder for AIFF and the many formats that have no module of their own.
#pragma once

#include "modules/support/stream_decoder.h"

class clSndfileDecoder : public clStreamDecoder {
  public:
    explicit clSndfileDecoder(const clModuleLog& log);

  private:
    // AIFF files alone have tags that can be told from the outside.
    TagContainer ContainerOf(const char16_t* file) const override;
};
