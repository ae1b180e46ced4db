// The one door through which code below the windows speaks to the user: message boxes and the
// busy cursor. The program installs a window version, the console companion its own, and tests a
// recorder. Code above and below uses only the free functions and never a toolkit box.
#pragma once

#include <string>

// Application name, suffix of the main window's title and caption of every message box.
inline constexpr wchar_t kProductName[] = L"Velmora Flash Programmer";
inline constexpr wchar_t kVendorName[] = L"Velmora";

enum class OmButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class OmIcon { None, Information, Exclamation, Error, Question };
enum class OmAnswer { Ok, Cancel, Yes, No };

struct OmMessageStyle {
    OmButtons buttons = OmButtons::Ok;
    OmIcon icon = OmIcon::None;
    bool noIsDefault = false; // of the YesNo styles: Enter answers No

    bool operator==(const OmMessageStyle&) const = default;
};

inline constexpr OmMessageStyle kInformationBox{OmButtons::Ok, OmIcon::Information};
inline constexpr OmMessageStyle kWarningBox{OmButtons::Ok, OmIcon::Exclamation};
inline constexpr OmMessageStyle kErrorBox{OmButtons::Ok, OmIcon::Error};
inline constexpr OmMessageStyle kQuestionBox{OmButtons::YesNo, OmIcon::Question};
inline constexpr OmMessageStyle kSaveQuestionBox{OmButtons::YesNoCancel, OmIcon::Question};
inline constexpr OmMessageStyle kWarningQuestionBox{OmButtons::YesNo, OmIcon::Exclamation};
// A question whose Yes loses something.
inline constexpr OmMessageStyle kLossQuestionBox{OmButtons::YesNo, OmIcon::Exclamation, true};

class OmUserInterface {
  public:
    virtual ~OmUserInterface() = default;

    // Shows a box and returns when it is answered. Closing it counts as Cancel where there is a
    // Cancel button, otherwise as No, otherwise as Ok.
    virtual OmAnswer ShowMessage(const std::wstring& text, const std::wstring& caption,
                                 OmMessageStyle style) = 0;

    // An error box that also tells why, where that is known. The details may be long.
    virtual void ShowFailure(const std::wstring& text, const std::wstring& /*details*/) {
        ShowMessage(text, kProductName, kErrorBox);
    }

    // Calls nest; the cursor is an hourglass while more have begun than ended.
    virtual void BeginBusyCursor() = 0;
    virtual void EndBusyCursor() = 0;
};

// The installed interface. Before SetUserInterface it is one that writes messages to standard error
// and answers every question with the answer that changes nothing (No, Cancel; Ok where that is
// all).
OmUserInterface& GetUserInterface();

// Installs `userInterface` (not owned, must outlive its use; null restores the initial one) and
// returns the one installed before, null for the initial one.
OmUserInterface* SetUserInterface(OmUserInterface* userInterface);

// A box with the product name as caption.
OmAnswer ShowMessage(const std::wstring& text, OmMessageStyle style);

// An hourglass for the time of a scope.
class OmBusyCursor {
  public:
    OmBusyCursor() { GetUserInterface().BeginBusyCursor(); }

    ~OmBusyCursor() { GetUserInterface().EndBusyCursor(); }

    OmBusyCursor(const OmBusyCursor&) = delete;
    OmBusyCursor& operator=(const OmBusyCursor&) = delete;
};
