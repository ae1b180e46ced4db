// What the scanner's rules use of the scanner around them.
#pragma once

// Keeps the text of the token just matched and returns `token`.
int KeepText(int token);

// A line of the input on top has ended.
void CountLine();

// At the end of an input: goes on with the one below. False if there is none.
bool ResumeInputBelow();
