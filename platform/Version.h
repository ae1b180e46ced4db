// The version of the product. The build reads it from here too.
#pragma once

inline constexpr wchar_t kVersionText[] = L"Version 1.3.1, build 1525, Aug 13 2010";
