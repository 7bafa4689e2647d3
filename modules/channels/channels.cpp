#include "modules/channels/channels.h"

#include "foundation/joined.h"
#include "modules/support/property_text.h"

XString clChannels::Aim(clSettings& settings, const clAudioBlock& source, clFormatHolder& target) {
    target.SetChannels(static_cast<std::uint16_t>(settings.Integer(kChannelCount, mFormat.channels)));
    mChannels = target.format->nChannels;
    mStage.emplace();
    if (mChannels != mFormat.channels) mStage->BuildTables();
    if (mStage->Mix(source, mChannels)) return XString();
    return Joined({NumberText(mFormat.channels).Text(), u" channels can't be mixed to ",
                   NumberText(mChannels).Text(), u": 1 to 8 can be mixed to 1 to 8"});
}

const clAudioBlock* clChannels::Convert(const clAudioBlock& in, bool) {
    return mStage->Mix(in, mChannels) ? &mStage->output : nullptr;
}
