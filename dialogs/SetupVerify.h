// Compares a setup that is being edited with the chain on the board.
#pragma once

class OmDesignSetup;

// Tells the user the result, or what was in the way. Opens the cable if there is none.
void VerifyChain(const OmDesignSetup& setup);
