// A tone that says by itself whether it came through: what comes out at another rate must be the same tone, wherever in
// time the converter puts it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Frames of a sine at half of full scale, channel c at 997 (c + 1) Hz.
std::vector<double> Tone(unsigned rate, unsigned channels, std::size_t frames);

// What is wrong with a stream that should be that tone, or nothing: another length than `frames` by more than `slack`, or
// in the middle half of it another level, or anything besides the tone, by more than `tolerance` of it.
std::string ToneFault(const std::vector<double>& samples, unsigned rate, unsigned channels,
                      std::size_t frames, std::size_t slack, double tolerance);
