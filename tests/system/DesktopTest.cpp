#include "system/Desktop.h"

#include <optional>

#include <gtest/gtest.h>

#include "support/ComApartment.h"
#include "support/DisplayMode.h"
#include "support/ImportSlot.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

extern "C" decltype(&::EnumDisplaySettingsW) __imp_EnumDisplaySettingsW;

namespace lumenor {
namespace {

HRESULT ResultOf(const std::wstring &path) {
  try {
    ShellIconBitmap(path);
    return S_OK;
  } catch (const HResultError &error) {
    return error.Result();
  }
}

TEST(ShellIconBitmap, OfAFileIsABitmapOfTheCallers) {
  const tests::ComApartment com;
  const BitmapHandle bitmap = ShellIconBitmap(L"C:\\windows\\system32\\cmd.exe");
  BITMAP described = {};
  EXPECT_EQ(static_cast<int>(sizeof described), ::GetObjectW(bitmap.Get(), sizeof described, &described));
}

TEST(ShellIconBitmap, OfAMissingFileRaises) {
  const tests::ComApartment com;
  const tests::TestFolders folders;
  EXPECT_EQ(HResultFromError(ERROR_FILE_NOT_FOUND), ResultOf(folders.Root() + L"\\missing.exe"));
}

/// A 32-bit bitmap selected into a device context of its own.
class Canvas {
public:
  Canvas() : context(::CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, 4, -4, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void *bits = nullptr;
    bitmap.Reset(::CreateDIBSection(context.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    pixels = static_cast<DWORD *>(bits);
    selected.emplace(context.Get(), bitmap.Get());
  }

  HDC Context() const { return context.Get(); }
  DWORD Pixel(int x, int y) const {
    ::GdiFlush();
    return pixels[y * 4 + x];
  }

private:
  MemoryDeviceContext context;
  BitmapHandle bitmap;
  std::optional<SelectedObject> selected;
  DWORD *pixels = nullptr;
};

TEST(CreateGdiRenderTarget, DrawsPremultipliedPixelsIntoADeviceContext) {
  const tests::ComApartment com;
  const auto target = CreateGdiRenderTarget();
  const Canvas canvas;
  const RECT bounds = {0, 0, 4, 4};
  ASSERT_EQ(S_OK, target->BindDC(canvas.Context(), &bounds));
  target->BeginDraw();
  const D2D1_COLOR_F halfRed = {1.0f, 0.0f, 0.0f, 0.5f};
  target->Clear(&halfRed);
  ASSERT_EQ(S_OK, target->EndDraw());
  EXPECT_EQ(0x80800000u, canvas.Pixel(2, 2));
}

TEST(CreateGdiRenderTarget, IsASoftwareTargetOfPremultipliedBgra) {
  const tests::ComApartment com;
  const auto target = CreateGdiRenderTarget();
  const D2D1_PIXEL_FORMAT format = target->GetPixelFormat();
  EXPECT_EQ(DXGI_FORMAT_B8G8R8A8_UNORM, format.format);
  EXPECT_EQ(D2D1_ALPHA_MODE_PREMULTIPLIED, format.alphaMode);
}

HRESULT(STDMETHODCALLTYPE *platformCreateTarget)
(ID2D1Factory *, const D2D1_RENDER_TARGET_PROPERTIES *, ID2D1DCRenderTarget **) = nullptr;

/// As on a display of 144 dots per inch, whose density a target takes when it is asked for with none.
HRESULT STDMETHODCALLTYPE CreateDenseTarget(ID2D1Factory *factory, const D2D1_RENDER_TARGET_PROPERTIES *properties,
                                            ID2D1DCRenderTarget **target) {
  EXPECT_EQ(0.0F, properties->dpiX);
  EXPECT_EQ(0.0F, properties->dpiY);
  const HRESULT created = platformCreateTarget(factory, properties, target);
  (*target)->SetDpi(144.0F, 144.0F);
  return created;
}

// Every length in the tree is one of device pixels already: a target that went by the display would scale it once more.
TEST(CreateGdiRenderTarget, DrawsOnePixelForAUnitAtEveryDensity) {
  constexpr std::size_t createDCRenderTarget = 16; // of ID2D1Factory
  const tests::ComApartment com;
  Microsoft::WRL::ComPtr<ID2D1Factory> factory;
  ASSERT_EQ(S_OK, ::D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, factory.GetAddressOf()));
  tests::OperationSpy display(factory.Get());
  platformCreateTarget = display.Exchange(createDCRenderTarget, CreateDenseTarget);
  for (const auto &target : {CreateGdiRenderTarget(), CreateGdiRenderTarget(factory.Get())}) {
    float x = 0, y = 0;
    target->GetDpi(&x, &y);
    EXPECT_EQ(96.0F, x);
    EXPECT_EQ(96.0F, y);
  }
}

TEST(IsLowColorDisplay, IsFalseOnADisplayOf24Bits) { EXPECT_FALSE(IsLowColorDisplay()); }

TEST(IsLowColorDisplay, IsTrueOnADisplayOf16Bits) {
  const tests::LowColorDisplay display;
  EXPECT_TRUE(IsLowColorDisplay());
}

TEST(IsLowColorDisplay, IsTrueWhenTheDisplayDoesNotTell) {
  const tests::ImportSlot slot(
      &__imp_EnumDisplaySettingsW, +[](LPCWSTR, DWORD, LPDEVMODEW) WINAPI { return FALSE; });
  EXPECT_TRUE(IsLowColorDisplay());
}

class TopWindow {
public:
  TopWindow()
      : handle(::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 50, 50, nullptr, nullptr, nullptr,
                                 nullptr)) {}
  ~TopWindow() { ::DestroyWindow(handle); }
  TopWindow(const TopWindow &) = delete;
  TopWindow &operator=(const TopWindow &) = delete;

  const HWND handle;
};

void ReleaseUnassignedKey() {
  INPUT release = {};
  release.type = INPUT_KEYBOARD;
  release.ki.wVk = 7;
  release.ki.dwFlags = KEYEVENTF_KEYUP;
  ::SendInput(1, &release, sizeof release);
}

TEST(BringToForeground, MakesTheWindowTheForegroundOne) {
  const TopWindow behind;
  const TopWindow front;
  ::SetForegroundWindow(front.handle);
  ASSERT_EQ(front.handle, ::GetForegroundWindow());
  BringToForeground(behind.handle);
  EXPECT_EQ(behind.handle, ::GetForegroundWindow());
}

TEST(BringToForeground, PressesTheUnassignedKeyWithoutLettingItGo) {
  const TopWindow window;
  ReleaseUnassignedKey();
  ASSERT_GE(::GetAsyncKeyState(7), 0);
  BringToForeground(window.handle);
  EXPECT_LT(::GetAsyncKeyState(7), 0);
  ReleaseUnassignedKey();
}

TEST(BringToForeground, OfNoWindowIsIgnored) {
  const TopWindow window;
  ::SetForegroundWindow(window.handle);
  BringToForeground(nullptr);
  EXPECT_EQ(window.handle, ::GetForegroundWindow());
}

} // namespace
} // namespace lumenor
