// An encoder's or an effect's settings: shown to the user, on a form of ours or
// on one of the host's, and handed back as one text that only the module
// understands.
//
// An encoder's text is also kept, for the user, and what is kept is where an
// empty text begins. Whatever comes of a form of ours is kept under the name
// that it leaves: one that was cancelled, or that had no encoder to show,
// leaves neither name nor text, so that nothing which any encoder has is
// touched.
#include <optional>

#include "interface/converter.h"
#include "interface/text.h"
#include "plugins/codec_handler.h"
#include "settings/dsp_form.h"
#include "settings/settings_form.h"
#include "settings/stored_settings.h"

std::int32_t clConverter::ShowSettings(const char16_t* encoderName, char16_t* encoderNameOut,
                                       const char16_t* settings, char16_t* settingsOut,
                                       std::uint64_t parentForm, std::uint32_t x, std::uint32_t y) {
    XTraceScope trace(log, "clConverter::ShowSettings");
    settingsText.Assign(settings, 0);
    settingsEncoderName.Assign(encoderName, 0);
    const XString stored = StoredSettings(settingsEncoderName);
    if (settingsText.IsEmpty()) settingsText = stored;
    return parentForm != 0 ? ShowPanel(parentForm, x, y) : RunSettingsForm(encoderNameOut, settingsOut);
}

std::int32_t clConverter::ShowPanel(std::uint64_t parentForm, std::uint32_t x, std::uint32_t y) {
    if (!clQvCodecHandler::LoadEncoder(settingsEncoderName, settingsEncoder, log, moduleHandle)) return 0;
    settingsEncoder.ShowConfigBit(parentForm, static_cast<std::int32_t>(x), static_cast<std::int32_t>(y),
                                  settingsText.Text());
    return 1;
}

// The form may have changed both texts: the user can pick another encoder.
std::int32_t clConverter::RunSettingsForm(char16_t* encoderNameOut, char16_t* settingsOut) {
    std::uint32_t shown = 0;
    const clSettingsFrm form(settingsEncoderName, settingsText, shown, moduleHandle, log);
    CopyOut(settingsText, settingsOut);
    CopyOut(settingsEncoderName, encoderNameOut);
    StoreSettings(settingsEncoderName, settingsText);
    return static_cast<std::int32_t>(shown);
}

// Without a panel an empty text is kept: that is how a host forgets what is
// stored.
std::int32_t clConverter::RemoveSettings(std::uint64_t parentForm, char16_t* settingsOut) {
    const XString text = settingsEncoder.RemoveConfigBit(parentForm);
    StoreSettings(settingsEncoderName, text);
    CopyOut(text, settingsOut);
    return 1;
}

// The form goes behind the leave mark.
std::int32_t clConverter::ShowDSPSettings(const char16_t* dspName, char16_t* dspNameOut,
                                          const char16_t* settings, char16_t* settingsOut) {
    std::uint32_t shown = 0;
    XString text(settings), name(dspName);
    std::optional<clDSPFrm> form;
    const XTraceScope trace(log, "clConverter::ShowDSPSettings");
    form.emplace(name, text, shown, moduleHandle, log);
    CopyOut(text, settingsOut);
    CopyOut(name, dspNameOut);
    return static_cast<std::int32_t>(shown);
}
