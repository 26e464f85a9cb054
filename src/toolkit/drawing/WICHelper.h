#pragma once
// Loading and saving of pictures: finds the file, falls back to a picture built into the program, decodes, limits the
// size where asked, and returns device bitmaps or GDI bitmaps. User-interface thread only, with COM initialised.
// Every operation raises HResultError when a platform call fails, unless it says otherwise.

#include <string>

#include <d2d1.h>
#include <wincodec.h>
#include <wrl/client.h>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// The longest side of a button's picture, in pixels.
inline constexpr int iconSize = 48;

/// The type of picture resources; the look-up ignores case.
inline constexpr const wchar_t *imageResourceType = L"Image";

/// The fallback picture, a resource of 48 by 48 pixels.
inline constexpr const wchar_t *defaultImageResource = L"IDI_DEFAULT";

/// A new reference to the process-wide imaging factory, which is made at first use.
Microsoft::WRL::ComPtr<IWICImagingFactory> GetImagingFactory();

/// Releases the process-wide imaging factory; called at the end of the process while COM is still initialised.
void ReleaseImagingFactory();

/// The picture of the file as a bitmap of `renderTarget`, the built-in picture where there is no such file. With
/// `limitToIconSize` a bigger picture is scaled down to 48 pixels on its longer side.
Microsoft::WRL::ComPtr<ID2D1Bitmap> LoadBitmapFromFile(ID2D1RenderTarget *renderTarget, const std::wstring &imagePath,
                                                       bool limitToIconSize);

/// The picture in a resource of the program as a bitmap of `renderTarget`. Raises E_FAIL where there is none.
Microsoft::WRL::ComPtr<ID2D1Bitmap> LoadBitmapFromResource(ID2D1RenderTarget *renderTarget,
                                                           const std::wstring &resourceName,
                                                           const std::wstring &resourceType);

/// A copy of `source`, whose alpha is taken as straight, as a bitmap of `renderTarget`. `source` stays the caller's.
Microsoft::WRL::ComPtr<ID2D1Bitmap> LoadBitmapFromHBitmap(ID2D1RenderTarget *renderTarget, HBITMAP source);

/// The picture of the file as a DIB of at most 48 pixels a side, premultiplied; empty where there is no such file.
BitmapHandle LoadHBitmapFromFile(const std::wstring &imagePath);

/// A transparent black DIB section, 32 bits a pixel, top row first, sizes in pixels.
BitmapHandle CreateDib(int width, int height);

/// Writes `source` to `path` as a PNG file, over what is there, whole or not at all.
void SaveHBitmapAsPng(HBITMAP source, const std::wstring &path);

/// Encodes `source` into `stream` as PNG; the first failure is returned, not raised.
HRESULT WritePng(IWICBitmapSource *source, IWICStream *stream);

} // namespace lumenor
