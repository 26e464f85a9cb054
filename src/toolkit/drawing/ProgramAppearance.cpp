#include "toolkit/drawing/ProgramAppearance.h"

#include <utility>

#include <commctrl.h>
#include <commoncontrols.h>
#include <shellapi.h>
#include <shlobj.h>
#include <wincodec.h>
#include <wrl/client.h>

#include "system/Desktop.h"
#include "system/HResultError.h"
#include "system/IconSource.h"
#include "toolkit/drawing/WICHelper.h"

using Microsoft::WRL::ComPtr;

namespace lumenor {
namespace {

/// A picture with a shorter side, in pixels, can't be recognised.
constexpr int leastPictureSize = 16;
constexpr int pictureBits = 32;

bool IsUsablePicture(HBITMAP bitmap) {
  BITMAP record{};
  return ::GetObjectW(bitmap, sizeof record, &record) != 0 && record.bmWidth >= leastPictureSize &&
         record.bmHeight >= leastPictureSize && record.bmBitsPixel == pictureBits;
}

/// The icon that the shell has for files of this kind.
IconHandle FileTypeIcon(const std::wstring &path) {
  SHFILEINFOW info{};
  if (::SHGetFileInfoW(path.c_str(), 0, &info, sizeof info, SHGFI_SYSICONINDEX) == 0)
    throw HResultError(E_FAIL);
  ComPtr<IImageList> icons;
  ThrowIfFailed(::SHGetImageList(SHIL_EXTRALARGE, IID_PPV_ARGS(&icons)));
  IconHandle icon;
  ThrowIfFailed(icons->GetIcon(info.iIcon, ILD_TRANSPARENT, icon.Put()));
  return icon;
}

/// The first icon in the program itself; that of its type where it holds none.
IconHandle ProgramIcon(const std::wstring &programPath) {
  IconHandle icon;
  ::SHDefExtractIconW(programPath.c_str(), 0, 0, icon.Put(), nullptr, iconSize);
  return icon ? std::move(icon) : FileTypeIcon(programPath);
}

/// The icon as a picture of 48 by 48 pixels with straight alpha, which an icon that only has a mask gets from it.
BitmapHandle DrawIcon(HICON icon) {
  ComPtr<IWICBitmap> picture;
  ThrowIfFailed(GetImagingFactory()->CreateBitmapFromHICON(icon, &picture));
  ComPtr<IWICBitmapScaler> scaler;
  ThrowIfFailed(GetImagingFactory()->CreateBitmapScaler(&scaler));
  ThrowIfFailed(scaler->Initialize(picture.Get(), iconSize, iconSize, WICBitmapInterpolationModeCubic));
  ComPtr<IWICBitmapSource> pixels;
  ThrowIfFailed(::WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, scaler.Get(), &pixels));

  BitmapHandle result = CreateDib(iconSize, iconSize);
  DIBSECTION section{};
  ThrowIfFalse(::GetObjectW(result.Get(), sizeof section, &section) != 0);
  const UINT stride = static_cast<UINT>(section.dsBm.bmWidthBytes);
  ThrowIfFailed(pixels->CopyPixels(nullptr, stride, stride * iconSize, static_cast<BYTE *>(section.dsBm.bmBits)));
  return result;
}

} // namespace

std::wstring ProgramDisplayName(const std::wstring &programPath) {
  SHFILEINFOW info{};
  if (::SHGetFileInfoW(programPath.c_str(), 0, &info, sizeof info, SHGFI_DISPLAYNAME) == 0)
    throw HResultError(E_FAIL);
  return info.szDisplayName;
}

BitmapHandle ProgramImage(const std::wstring &programPath) {
  if (HasDamagedIcon(programPath))
    throw HResultError(HResultFromError(ERROR_FILE_CORRUPT));
  BitmapHandle picture = ShellIconBitmap(programPath);
  if (IsUsablePicture(picture.Get()))
    return picture;
  // Some shells answer every request for a picture with success and one blank pixel. Their icons are usable.
  return DrawIcon(ProgramIcon(programPath).Get());
}

} // namespace lumenor
