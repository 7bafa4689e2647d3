// The groups of races that qv_bench_audio knows, a source each.
#pragma once

#include "bench/audio/race.h"

void RaceTransforms(Racecourse& course);
void RaceResampling(Racecourse& course);
void RaceDesigns(Racecourse& course);
void MeasureGrowth(Racecourse& course);
void RaceMixing(Racecourse& course);
void RaceDepths(Racecourse& course);
void RaceIdentity(Racecourse& course);
