#pragma once
// Small queries of the desktop. The operations that make objects need a thread that has initialised COM.

#include <string>

#include <d2d1.h>
#include <wrl/client.h>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// Brings `window` to the foreground, which the platform allows to a process that has just had input.
void BringToForeground(HWND window);

/// Whether the screen has 16 bits a pixel; true also when the platform doesn't say.
bool IsLowColorDisplay();

/// The shell's picture, 48 by 48 pixels, of the file at the expanded `path`; the caller owns it. Raises HResultError.
BitmapHandle ShellIconBitmap(const std::wstring &path);

/// A new software render target, premultiplied BGRA and GDI compatible, to be bound to a device context before it
/// draws, with a factory of its own. Raises HResultError.
Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> CreateGdiRenderTarget();

/// The same, made by `factory`; only the thread of the factory may use it.
Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> CreateGdiRenderTarget(ID2D1Factory *factory);

} // namespace lumenor
