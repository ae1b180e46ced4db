// Runs everything that the program asks of a cable, with what the input spells.
#pragma once

class OmCable;
class Pod;

// Ends early, like the program, when the cable throws OmException. Checks that what comes back has
// the shape that was asked for, and that no call waits longer than a user would.
void RunScans(OmCable& cable, Pod& pod);
