#pragma once
// The only include of <windows.h>: strict handle types, no min and max macros, the platform of Windows 7, and none of
// the text macros whose names are also names of ours.

#ifndef STRICT
#define STRICT
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#ifndef _WIN32_WINNT
#define _WIN32_WINNT 0x0601
#endif

#include <windows.h>

#include <objbase.h>

#undef LoadString
#undef LoadBitmap
#undef GetObject
#undef GetMessage
#undef CreateWindow
#undef CreateDialog
#undef ReportEvent
#undef DrawText
#undef FindResource
#undef GetCommandLine
