// A mixer with its table, for tests.
#pragma once

#include "audio/channel_mixer.h"

#include <gtest/gtest.h>

#include <memory>

// It is large for a stack.
inline std::unique_ptr<clChannelMixer> BuiltMixer() {
    auto mixer = std::make_unique<clChannelMixer>();
    mixer->BuildTables();
    return mixer;
}
