// What the windows say about the product besides its name and version.
#pragma once

#include "platform/Translation.h"

inline constexpr const char* kRightsText = // for translation
    ForTranslation("\u00A9 2008-2010 Velmora. All rights reserved.");
inline constexpr wchar_t kSupportAddress[] = L"support@velmora.example";
inline constexpr wchar_t kWebsiteUrl[] = L"https://velmora.example/velflash";
