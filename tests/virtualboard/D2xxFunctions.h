// The vendor's C interface as a program that links the stand-in sees it.
#pragma once

#include <cstdint>

extern "C" {
uint32_t FT_SetVIDPID(uint32_t vendor, uint32_t product);
uint32_t FT_CreateDeviceInfoList(uint32_t* count);
uint32_t FT_GetDeviceInfoDetail(uint32_t index, uint32_t* flags, uint32_t* type, uint32_t* id,
                                uint32_t* location, void* serial, void* description, void** handle);
uint32_t FT_GetDeviceInfo(void* handle, uint32_t* type, uint32_t* id, char* serial,
                          char* description, void* dummy);
uint32_t FT_OpenEx(const void* argument, uint32_t flags, void** handle);
uint32_t FT_Close(void* handle);
uint32_t FT_ResetDevice(void* handle);
uint32_t FT_SetUSBParameters(void* handle, uint32_t in, uint32_t out);
uint32_t FT_Purge(void* handle, uint32_t mask);
uint32_t FT_SetLatencyTimer(void* handle, uint8_t milliseconds);
uint32_t FT_SetBitMode(void* handle, uint8_t mask, uint8_t mode);
uint32_t FT_GetQueueStatus(void* handle, uint32_t* waiting);
uint32_t FT_Write(void* handle, const void* buffer, uint32_t size, uint32_t* written);
uint32_t FT_Read(void* handle, void* buffer, uint32_t size, uint32_t* received);
}
