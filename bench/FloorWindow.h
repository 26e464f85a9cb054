#pragma once
// What everything is measured against: a bare layered window of the bar's size on the same platform services (a
// software Direct2D target on a GDI bitmap, DirectWrite labels, icons through Windows Imaging), with ten icons and
// their labels, drawn straight, without any toolkit.

#include "system/Windows.h" // ahead of the platform's headers, which would make a macro of DrawText

#include <string>
#include <vector>

#include <d2d1.h>
#include <dwrite.h>
#include <wincodec.h>
#include <wrl/client.h>

namespace lumenor::bench {

class FloorWindow {
public:
  /// Opens the window on `area` (screen pixels) and loads `iconFile` ten times. Raises HResultError.
  FloorWindow(const RECT &area, const std::wstring &iconFile);
  ~FloorWindow();
  FloorWindow(const FloorWindow &) = delete;
  FloorWindow &operator=(const FloorWindow &) = delete;

  HWND Handle() const { return window; }

  /// Draws everything and puts it on the screen.
  void Render();

private:
  void MakeTarget();
  void MakeText();
  void LoadIcons(const std::wstring &iconFile);
  void MakeBackground();
  void Draw();

  RECT area;
  HWND window = nullptr;
  Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> target;
  Microsoft::WRL::ComPtr<IDWriteTextFormat> textFormat;
  Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> textBrush;
  Microsoft::WRL::ComPtr<ID2D1LinearGradientBrush> background;
  std::vector<Microsoft::WRL::ComPtr<ID2D1Bitmap>> icons;
};

} // namespace lumenor::bench
