// Marks the functions that a stand-in exports under the vendor's names.
#pragma once

#ifdef _WIN32
#define VB_EXPORT extern "C" __declspec(dllexport)
#else
#define VB_EXPORT extern "C" __attribute__((visibility("default")))
#endif
