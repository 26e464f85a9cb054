#pragma once
// An owner for every kind of platform handle that the system uses, and the pairs that must be undone together.

#include <type_traits>

#include "system/Owner.h"
#include "system/Windows.h"

namespace lumenor {

/// Traits of a handle whose empty value is null and whose closer is the platform's function `close`.
template <typename HandleType, auto close> struct NullHandleTraits {
  using Handle = HandleType;
  static Handle Empty() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept { close(handle); }
};

/// Traits of a handle whose empty value is INVALID_HANDLE_VALUE.
template <auto close> struct InvalidHandleTraits {
  using Handle = HANDLE;
  static Handle Empty() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle handle) noexcept { close(handle); }
};

using KernelHandle = Owner<NullHandleTraits<HANDLE, &::CloseHandle>>;            // events, threads, processes
using FileHandle = Owner<InvalidHandleTraits<&::CloseHandle>>;                   // files and snapshots
using FindHandle = Owner<InvalidHandleTraits<&::FindClose>>;                     // FindFirstFileW
using ChangeHandle = Owner<InvalidHandleTraits<&::FindCloseChangeNotification>>; // folder watches
using RegistryKey = Owner<NullHandleTraits<HKEY, &::RegCloseKey>>;
using MemoryDeviceContext = Owner<NullHandleTraits<HDC, &::DeleteDC>>;
using WindowHandle = Owner<NullHandleTraits<HWND, &::DestroyWindow>>;
using IconHandle = Owner<NullHandleTraits<HICON, &::DestroyIcon>>;
using CursorHandle = Owner<NullHandleTraits<HCURSOR, &::DestroyCursor>>;
using LibraryHandle = Owner<NullHandleTraits<HMODULE, &::FreeLibrary>>;

using BitmapHandle = Owner<NullHandleTraits<HBITMAP, &::DeleteObject>>;
using FontHandle = Owner<NullHandleTraits<HFONT, &::DeleteObject>>;

/// Memory from the local heap, such as the array of CommandLineToArgvW.
template <typename T> using LocalMemory = Owner<NullHandleTraits<T *, &::LocalFree>>;

/// A window's or the screen's device context, released at the end of its scope.
class WindowDeviceContext {
public:
  /// Takes the device context of `window`; null means the screen's.
  explicit WindowDeviceContext(HWND window) noexcept : window(window), context(::GetDC(window)) {}
  ~WindowDeviceContext() {
    if (context != nullptr)
      ::ReleaseDC(window, context);
  }
  WindowDeviceContext(const WindowDeviceContext &) = delete;
  WindowDeviceContext &operator=(const WindowDeviceContext &) = delete;

  /// Null when the platform gave none.
  HDC Get() const noexcept { return context; }

private:
  HWND window;
  HDC context;
};

/// Selects a GDI object into a device context, and the former one again at the end of its scope.
class SelectedObject {
public:
  SelectedObject(HDC context, HGDIOBJ object) noexcept : context(context), former(::SelectObject(context, object)) {}
  ~SelectedObject() {
    if (Succeeded())
      ::SelectObject(context, former);
  }
  SelectedObject(const SelectedObject &) = delete;
  SelectedObject &operator=(const SelectedObject &) = delete;

  /// False when the platform refused the object.
  bool Succeeded() const noexcept { return former != nullptr && former != HGDI_ERROR; }

private:
  HDC context;
  HGDIOBJ former;
};

} // namespace lumenor
