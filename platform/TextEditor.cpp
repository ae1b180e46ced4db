#include "platform/TextEditor.h"

#include <wx/log.h>
#include <wx/utils.h>

bool OpenInTextEditor(const std::wstring& path) {
#ifdef __WXMSW__
    const wchar_t* editor = L"notepad";
#else
    const wchar_t* editor = L"xdg-open";
#endif
    const wxLogNull quiet; // a missing editor is reported by the caller
    const wchar_t* const arguments[] = {editor, path.c_str(), nullptr};
    return wxExecute(const_cast<wchar_t**>(arguments), wxEXEC_ASYNC) > 0;
}
