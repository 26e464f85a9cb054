#include "system/Desktop.h"

#include "system/HResultError.h"

#include <shobjidl.h>

namespace lumenor {

using Microsoft::WRL::ComPtr;

namespace {

constexpr SIZE iconSize = {48, 48};
constexpr WORD unassignedKey = 7;
constexpr DWORD lowColorBits = 16;
constexpr float pixelsAsUnits = 96.0F; // dots per inch at which a unit of Direct2D is one pixel

} // namespace

void BringToForeground(HWND window) {
  // Only the process that got the last input may change the foreground: an unassigned key is that input.
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = unassignedKey;
  ::SendInput(1, &input, sizeof input);
  ::SetForegroundWindow(window);
}

bool IsLowColorDisplay() {
  DEVMODEW mode = {};
  mode.dmSize = sizeof mode;
  return !::EnumDisplaySettingsW(nullptr, ENUM_CURRENT_SETTINGS, &mode) || mode.dmBitsPerPel == lowColorBits;
}

BitmapHandle ShellIconBitmap(const std::wstring &path) {
  ComPtr<IShellItem> item;
  ThrowIfFailed(::SHCreateItemFromParsingName(path.c_str(), nullptr, IID_PPV_ARGS(item.GetAddressOf())));
  ComPtr<IShellItemImageFactory> images;
  ThrowIfFailed(item.As(&images));
  BitmapHandle bitmap;
  ThrowIfFailed(images->GetImage(iconSize, SIIGBF_RESIZETOFIT, bitmap.Put()));
  return bitmap;
}

ComPtr<ID2D1DCRenderTarget> CreateGdiRenderTarget() {
  ComPtr<ID2D1Factory> factory;
  ThrowIfFailed(::D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, factory.GetAddressOf()));
  return CreateGdiRenderTarget(factory.Get());
}

ComPtr<ID2D1DCRenderTarget> CreateGdiRenderTarget(ID2D1Factory *factory) {
  D2D1_RENDER_TARGET_PROPERTIES properties = {};
  properties.type = D2D1_RENDER_TARGET_TYPE_SOFTWARE;
  properties.pixelFormat = {DXGI_FORMAT_B8G8R8A8_UNORM, D2D1_ALPHA_MODE_PREMULTIPLIED};
  properties.usage = D2D1_RENDER_TARGET_USAGE_GDI_COMPATIBLE;
  properties.minLevel = D2D1_FEATURE_LEVEL_DEFAULT;
  ComPtr<ID2D1DCRenderTarget> target;
  ThrowIfFailed(factory->CreateDCRenderTarget(&properties, target.GetAddressOf()));
  // Without this the target has the display's density, by which every length in a tree is scaled already.
  target->SetDpi(pixelsAsUnits, pixelsAsUnits);
  return target;
}

} // namespace lumenor
