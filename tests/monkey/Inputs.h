// What a monkey types, and the files that it chooses: good ones, broken ones, and names that make
// trouble.
#pragma once

#include "tests/monkey/Dice.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <vector>
#include <wx/string.h>

// Something to put into a text box.
wxString PickText(Dice& dice);

class InputFiles {
  public:
    InputFiles();

    // A setup file that a session begins with.
    const std::string& GoodSetup() const { return goodSetup_; }

    // To be called once the program has a setup of a real board.
    void SaveGoodSetup();

    std::string PickDataToOpen(Dice& dice) const;
    std::string PickSetupToOpen(Dice& dice) const;
    std::string PickBsdlToOpen(Dice& dice) const;
    std::string PickToSave(Dice& dice) const;
    std::string PickFolder(Dice& dice) const;

    // Files that a shell has made out of a name; none, if no name has reached a shell.
    bool ShellWasReached() const;

    // The settings, which outlive a window.
    std::string SettingsPath() const { return folder_.Path("settings"); }

  private:
    std::string Damage(const std::string& path, Dice& dice) const;
    std::string PickTrouble(Dice& dice) const;

    TemporaryFolder folder_;
    std::vector<std::string> goodData_;
    std::string goodBsdl_;
    std::string goodSetup_;
};
