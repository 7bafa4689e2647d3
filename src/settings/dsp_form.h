// clDSPFrm: the form of effects.
#pragma once

#include "settings/module_form.h"

using clDSPFrm = clModuleFrm<DSPKind>;
