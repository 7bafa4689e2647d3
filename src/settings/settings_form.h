// clSettingsFrm: the form of encoders.
#pragma once

#include "settings/module_form.h"

using clSettingsFrm = clModuleFrm<EncoderKind>;
