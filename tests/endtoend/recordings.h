// WAVE files for conversions: small ones with contents of their own, and vast ones that take no room on the
// disk.
#pragma once

#include <cstdint>
#include <string>

// A file of 16-bit stereo whose audio differs from that of any other number.
std::string Recording(std::size_t audioBytes, std::uint32_t number = 0);

// Such a file whose header claims `missing` bytes of audio more than there are.
std::string CutRecording(std::size_t audioBytes, std::uint32_t missing);

// Makes a file of so many bytes of audio (a multiple of 4, below 4 GiB), nearly all of it silence that the
// disk need not hold; its last bytes are none.
void WriteVastRecording(const std::u16string& path, std::uint32_t audioBytes);

// True when both are WAVE files with the same audio, byte by byte, and some at all.
bool HaveSameAudio(const std::u16string& one, const std::u16string& other);
