// What a host shows of a WAVE file.
#pragma once

#include "foundation/id_tag_list.h"
#include "modules/wave/wave_file.h"

void AddPropertyRows(const clWaveFile& file, clIDTagList& rows);
