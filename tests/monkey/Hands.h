// What a monkey does to the controls of a dialog, and how it ends one.
#pragma once

#include "tests/monkey/Dice.h"

class wxDialog;
class wxWindow;

// Does something to one control of the dialog that can be used; what it did, empty for nothing.
std::string PlayWithSomeControl(wxDialog& dialog, Dice& dice);

// Tries to end the dialog in one of the ways that it offers; what it did. The dialog may refuse.
std::string TryToEnd(wxDialog& dialog, Dice& dice);

// Ends it without giving it anything; every dialog must agree to that.
void Cancel(wxDialog& dialog);
