// BSDL source for tests: one complete file, of which a test changes a piece.
#pragma once

#include <string>

// 24 lines, see there.
std::string SampleSource();

// The sample with its only occurrence of `from` replaced; fails the test if there is not just one.
std::string ChangedSource(const std::string& from, const std::string& to);
