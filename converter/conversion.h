// A conversion: one file through a decoder module and the effects into an encoder module.
//
//     Source (decoder) -> block -> Chain (effects) -> Target (encoder) -> marked temporary -> tags -> destination
//
// One block is in memory at a time, so the length of a file costs nothing. Between blocks the host's wish to
// cancel is looked at and the percentage sent. For each effect that wants all of the audio before it begins, the
// source is decoded once more, through the effects in front of it. Whatever goes wrong is told to the host in words and
// ends in an exit code; only a complete output ever carries the destination's name.
#pragma once

#include "converter/command.h"
#include "converter/exit_codes.h"
#include "converter/lifeline.h"
#include "converter/reporter.h"

ExitCode Convert(const Command& command, Lifeline& lifeline, Reporter& reporter);
