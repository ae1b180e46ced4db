// A monkey at the real main window, with the real engine and the real cables on a virtual board:
// does one thing after the other that a user could do, sensible or not.
#pragma once

#include "tests/monkey/Board.h"
#include "tests/monkey/Dice.h"
#include "tests/monkey/Inputs.h"
#include "tests/monkey/Visitor.h"
#include "widgets/Help.h"
#include "widgets/WxUserInterface.h"

#include <memory>
#include <wx/weakref.h>

class OmHexViewCtrl;
class OmMainFrame;

class Monkey {
  public:
    Monkey(uint64_t seed, Journal& journal);
    ~Monkey();
    Monkey(const Monkey&) = delete;
    Monkey& operator=(const Monkey&) = delete;

    // Does the next thing, and looks whether the window is well.
    void Step();

    uint64_t StepCount() const { return step_; }

  private:
    struct Deed;

    static std::vector<Deed> MakeDeeds();
    void OpenWindow();
    void OpenWindowAgainIfClosed();
    void Settle();

    void ChooseFromMenu();
    void ClickTool();
    void PressAccelerator();
    void PressKeys();
    void ScrollByEvents();
    void Wheel();
    void ClickView();
    void Resize();
    void MarkModified();
    void LoadFiles();
    void ReplaceBoard();
    void DescribeBoard();
    void DescribeWrongly();
    void BreakBoard();
    void EditSectors();
    void ChooseBsdl();
    void CloseWindow();

    OmHexViewCtrl& View();
    void SendCommand(int id);

    Dice dice_;
    Journal& journal_;
    uint64_t seed_;
    uint64_t step_ = 0;
    InputFiles files_;
    WxUserInterface boxes_;
    MonkeyBoard board_;
    Visitor visitor_;
    std::unique_ptr<OmHelpViewer> help_;
    wxWeakRef<OmMainFrame> frame_;
};
