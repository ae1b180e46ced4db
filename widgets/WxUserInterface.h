// Message boxes and the busy cursor of the toolkit. Boxes belong to the window that is active when
// they come up, so that a box over a dialog is modal to that dialog.
#pragma once

#include "platform/UserInterface.h"

class WxUserInterface : public OmUserInterface {
  public:
    OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                         OmMessageStyle style) override;
    void ShowFailure(const std::wstring& text, const std::wstring& details) override;
    void BeginBusyCursor() override;
    void EndBusyCursor() override;
};
