// A dialog with a text that the user can read, select and copy.
#pragma once

#include <windows.h>

#include <string>

namespace kv::host {

/// Shows the dialog of this resource and waits until the user closes it. It has the controls IDC_SUMMARY, IDC_TEXT,
/// IDC_COPY_TEXT and IDOK, and can be resized. Lines of the text end with \r\n.
void showTextDialog(HWND owner, int resource, const std::wstring& summary, const std::wstring& text);

}  // namespace kv::host
