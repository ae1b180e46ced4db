// Runs everything that the program asks of a cable, with what the input spells.
#pragma once

#include <cstddef>

class OmCable;
class Pod;

// Ends early, like the program, when the cable throws OmException. Checks that what comes back has
// the shape that was asked for, and that no call waits longer than a user would. `maxBits` of one
// scan: fewer for a cable that goes bit by bit, for the sake of more runs.
void RunScans(OmCable& cable, Pod& pod, size_t maxBits = 5000);
