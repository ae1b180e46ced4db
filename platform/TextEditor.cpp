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
    // A relative name such as "-rf.bsd" would be taken for an option.
    const std::wstring name = path.starts_with(L'-') ? L"./" + path : path;
    const wchar_t* const arguments[] = {editor, name.c_str(), nullptr};
    return wxExecute(const_cast<wchar_t**>(arguments), wxEXEC_ASYNC) > 0;
}
