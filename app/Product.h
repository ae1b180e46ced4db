// What the windows say about the product besides its name.
#pragma once

inline constexpr wchar_t kWebsiteUrl[] = L"https://velmora.example/velflash";
