// The flash information page as plain text.
#pragma once

#include <string>

// Table rows become lines, cells stand in columns; other tags are dropped.
std::wstring HtmlToText(const std::wstring& html);
