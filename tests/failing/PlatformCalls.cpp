#include "failing/PlatformCalls.h"

#include <algorithm>
#include <iterator>

namespace lumenor::failing {

namespace {

constexpr std::uint64_t none = 0;
constexpr std::uint64_t allBits = ~std::uint64_t{0}; // INVALID_FILE_ATTRIBUTES, WAIT_FAILED and -1 in their widths
constexpr std::uint64_t invalidHandle = allBits;
constexpr std::uint64_t outOfMemory = static_cast<std::uint32_t>(E_OUTOFMEMORY);

/// By name.
constexpr Failing failings[] = {
    // clang-format off
    {"AssocQueryStringW", outOfMemory, 0, false},
    {"BeginPaint", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ClientToScreen", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CloseHandle", none, ERROR_INVALID_HANDLE, true},
    {"CoCreateInstance", outOfMemory, 0, false},
    {"CoGetApartmentType", outOfMemory, 0, false},
    {"CoGetClassObject", outOfMemory, 0, false},
    {"CoInitialize", outOfMemory, 0, false},
    {"CoTaskMemAlloc", none, 0, false},
    {"CommandLineToArgvW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CopyEnhMetaFileW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CopyIcon", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateCompatibleBitmap", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateCompatibleDC", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateDIBSection", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateDialogParamW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateDirectoryW", none, ERROR_ACCESS_DENIED, false},
    {"CreateEventW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateFileW", invalidHandle, ERROR_ACCESS_DENIED, false},
    {"CreateFontIndirectW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateStreamOnHGlobal", outOfMemory, 0, false},
    {"CreateThread", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"CreateToolhelp32Snapshot", invalidHandle, ERROR_ACCESS_DENIED, false},
    {"CreateWindowExW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"D2D1CreateFactory", outOfMemory, 0, false},
    {"DWriteCreateFactory", outOfMemory, 0, false},
    {"DeleteDC", none, ERROR_INVALID_HANDLE, true},
    {"DeleteFileW", none, ERROR_ACCESS_DENIED, false},
    {"DeleteObject", none, ERROR_INVALID_HANDLE, true},
    {"DeregisterEventSource", none, ERROR_INVALID_HANDLE, true},
    {"DestroyCursor", none, ERROR_INVALID_HANDLE, true},
    {"DestroyIcon", none, ERROR_INVALID_HANDLE, true},
    {"DestroyWindow", none, ERROR_ACCESS_DENIED, true},
    {"DialogBoxParamW", allBits, ERROR_NOT_ENOUGH_MEMORY, false},
    {"DoDragDrop", outOfMemory, 0, false},
    {"DragQueryFileW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"DuplicateHandle", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"EndDialog", none, ERROR_INVALID_HANDLE, true},
    {"EndPaint", none, ERROR_INVALID_HANDLE, true},
    {"EnumDisplaySettingsW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ExpandEnvironmentStringsW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ExtractAssociatedIconW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ExtractIconW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"FileTimeToSystemTime", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"FindClose", none, ERROR_INVALID_HANDLE, true},
    {"FindCloseChangeNotification", none, ERROR_INVALID_HANDLE, true},
    {"FindFirstChangeNotificationW", invalidHandle, ERROR_ACCESS_DENIED, false},
    {"FindFirstFileW", invalidHandle, ERROR_ACCESS_DENIED, false},
    {"FindNextFileW", none, ERROR_ACCESS_DENIED, false},
    {"FindResourceW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"FindWindowW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"FlushFileBuffers", none, ERROR_DISK_FULL, false},
    {"FreeLibrary", none, ERROR_INVALID_HANDLE, true},
    {"GetAncestor", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetBitmapBits", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetClassInfoExW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetClassLongPtrW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetClientRect", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetCursorPos", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetDC", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetDeviceCaps", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetDlgItem", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetEnvironmentVariableW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetFileAttributesExW", none, ERROR_ACCESS_DENIED, false},
    {"GetFileAttributesW", allBits, ERROR_ACCESS_DENIED, false},
    {"GetFileSizeEx", none, ERROR_ACCESS_DENIED, false},
    {"GetFileTime", none, ERROR_ACCESS_DENIED, false},
    {"GetGUIThreadInfo", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetGeoInfoW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetLocaleInfoEx", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetLocaleInfoW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetMessageW", allBits, ERROR_INVALID_HANDLE, false},
    {"GetModuleFileNameW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetModuleHandleW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetObjectW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetProcAddress", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetSystemMetrics", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetTextExtentPoint32W", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetTextMetricsW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetThreadContext", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetVersionExW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetWindowLongW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetWindowRect", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetWindowTextLengthW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetWindowTextW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"GetWindowThreadProcessId", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"InitCommonControlsEx", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"InitializeSecurityDescriptor", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"InvalidateRect", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"IsDBCSLeadByteEx", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"IsDialogMessageW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"KillTimer", none, ERROR_INVALID_HANDLE, true},
    {"LoadCursorW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"LoadIconW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"LoadLibraryExW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"LoadLibraryW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"LoadResource", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"LoadStringW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"LockResource", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"MoveFileExW", none, ERROR_ACCESS_DENIED, false},
    {"MoveFileW", none, ERROR_ACCESS_DENIED, false},
    {"MoveWindow", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"MultiByteToWideChar", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"OleCreatePictureIndirect", outOfMemory, 0, false},
    {"OleDuplicateData", none, 0, false},
    {"OleInitialize", outOfMemory, 0, false},
    {"OpenEventLogW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"OpenEventW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"PostMessageW", none, ERROR_NOT_ENOUGH_QUOTA, false},
    {"Process32FirstW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"Process32NextW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ReadFile", none, ERROR_ACCESS_DENIED, false},
    {"RedrawWindow", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"RegCloseKey", ERROR_INVALID_HANDLE, 0, true},
    {"RegCreateKeyExW", ERROR_ACCESS_DENIED, 0, false},
    {"RegDeleteValueW", ERROR_ACCESS_DENIED, 0, false},
    {"RegNotifyChangeKeyValue", ERROR_ACCESS_DENIED, 0, false},
    {"RegOpenKeyExW", ERROR_ACCESS_DENIED, 0, false},
    {"RegQueryValueExW", ERROR_ACCESS_DENIED, 0, false},
    {"RegSetValueExW", ERROR_ACCESS_DENIED, 0, false},
    {"RegisterClassExW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"RegisterDragDrop", outOfMemory, 0, false},
    {"RegisterEventSourceW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"RegisterWindowMessageW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ReleaseDC", none, ERROR_INVALID_HANDLE, true},
    {"ReportEventW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ResetEvent", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ResumeThread", allBits, ERROR_NOT_ENOUGH_MEMORY, false},
    {"RevokeDragDrop", outOfMemory, 0, true},
    {"RpcStringFreeW", RPC_S_INVALID_ARG, 0, true},
    {"SHAppBarMessage", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SHCreateItemFromParsingName", outOfMemory, 0, false},
    {"SHDefExtractIconW", outOfMemory, 0, false},
    {"SHGetFileInfoW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SHGetImageList", outOfMemory, 0, false},
    {"SHGetLocalizedName", outOfMemory, 0, false},
    {"ScreenToClient", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SelectObject", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SendInput", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetActiveWindow", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetBitmapBits", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetCurrentDirectoryW", none, ERROR_ACCESS_DENIED, false},
    {"SetCursor", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetEvent", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetFileAttributesW", none, ERROR_ACCESS_DENIED, false},
    {"SetFilePointer", allBits, ERROR_ACCESS_DENIED, false},
    {"SetFocus", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetForegroundWindow", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetSecurityDescriptorDacl", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetSecurityDescriptorGroup", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetSecurityDescriptorSacl", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetTimer", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetWindowLongPtrW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetWindowLongW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetWindowPos", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SetWindowTextW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"ShellExecuteW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SizeofResource", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SuspendThread", allBits, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SysAllocStringLen", none, 0, false},
    {"SystemParametersInfoW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"SystemTimeToFileTime", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"TerminateThread", none, ERROR_ACCESS_DENIED, true},
    {"TrackMouseEvent", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"UpdateLayeredWindow", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"UuidCreate", RPC_S_OUT_OF_MEMORY, 0, false},
    {"UuidToStringW", RPC_S_OUT_OF_MEMORY, 0, false},
    {"VariantClear", outOfMemory, 0, true},
    {"WICConvertBitmapSource", outOfMemory, 0, false},
    {"WaitForMultipleObjects", allBits, ERROR_INVALID_HANDLE, false},
    {"WaitForSingleObject", allBits, ERROR_INVALID_HANDLE, false},
    {"WideCharToMultiByte", none, ERROR_NOT_ENOUGH_MEMORY, false},
    {"WriteFile", none, ERROR_DISK_FULL, false},
    {"lstrcpynW", none, ERROR_NOT_ENOUGH_MEMORY, false},
    // clang-format on
};

/// Functions that aren't made to fail, their names between blanks.
struct Reason {
  std::string_view why;
  std::string_view names;
};

constexpr Reason reasons[] = {
    // clang-format off
    {"it has no answer that means a failure",
     "CompareFileTime GetActiveWindow GetAsyncKeyState GetCaretBlinkTime GetCurrentProcess "
     "GetCurrentProcessId GetDesktopWindow GetDlgCtrlID GetFocus GetHandleInformation GetLastError "
     "GetLocalTime GetParent GetSysColor GetSystemTime GetTickCount64 GetUserDefaultUILanguage "
     "GetUserGeoID InSendMessage IsRectEmpty IsWindow IsWindowEnabled IsWindowVisible MulDiv PtInRect "
     "SysStringLen"},
    {"it answers nothing",
     "CoUninitialize LocalFree NotifyWinEvent OleUninitialize PostQuitMessage ReleaseStgMedium "
     "SetLastError Sleep SysFreeString VariantInit"},
    {"its answer is that of a window procedure, or what was before",
     "CallWindowProcW DefWindowProcW DispatchMessageW EnableWindow SendMessageW ShowWindow "
     "TranslateMessage"},
    {"it is only asked for what a window has itself, while that window has a message", "GetWindowLongPtrW"},
    {"only the run-time libraries call it",
     "AddVectoredExceptionHandler CreateEventA CreateSemaphoreA DeleteCriticalSection EnterCriticalSection "
     "GetCurrentThread GetCurrentThreadId GetProcessAffinityMask GetStartupInfoW GetSystemTimeAsFileTime "
     "GetThreadPriority InitializeCriticalSection IsDebuggerPresent LeaveCriticalSection OpenProcess "
     "OutputDebugStringA RaiseException ReleaseSemaphore RemoveVectoredExceptionHandler RtlCaptureContext "
     "RtlLookupFunctionEntry RtlUnwindEx RtlVirtualUnwind SetProcessAffinityMask SetThreadContext "
     "SetThreadPriority SetUnhandledExceptionFilter TlsAlloc TlsGetValue TlsSetValue "
     "TryEnterCriticalSection VirtualProtect VirtualQuery __C_specific_handler"},
    {"only the test and the run-time libraries call it",
     "AcquireSRWLockExclusive CopyFileW CreateFileMappingW CreateProcessW EnumChildWindows "
     "EnumThreadWindows FindWindowExW FormatMessageA GetClassNameW GetCurrentDirectoryW GetExitCodeProcess "
     "GetFileSize GetModuleHandleA GetModuleHandleExW GetProcessTimes GetSystemTimeAdjustment GetTempPathW GetThreadTimes "
     "GlobalAlloc GlobalLock GlobalUnlock MapViewOfFile PeekMessageW QueryPerformanceCounter "
     "QueryPerformanceFrequency RegCopyTreeW RegDeleteTreeW RegGetValueW ReleaseSRWLockExclusive "
     "RemoveDirectoryW RtlCaptureStackBackTrace SetEnvironmentVariableW SetSystemTime TerminateProcess "
     "UnmapViewOfFile VirtualAlloc lstrcmpW lstrcmpiW wsprintfW"},
    // clang-format on
};

bool HasName(std::string_view names, std::string_view name) {
  for (std::size_t at = names.find(name); at != std::string_view::npos; at = names.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    if ((at == 0 || names[at - 1] == ' ') && (end == names.size() || names[end] == ' '))
      return true;
  }
  return false;
}

} // namespace

const Failing *FindFailing(std::string_view name) {
  const Failing *const found = std::ranges::lower_bound(failings, name, {}, &Failing::name);
  return found != std::end(failings) && found->name == name ? found : nullptr;
}

std::string_view WhyNotFailing(std::string_view name) {
  for (const Reason &reason : reasons)
    if (HasName(reason.names, name))
      return reason.why;
  return {};
}

} // namespace lumenor::failing
