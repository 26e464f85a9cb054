#include "drawing/Pictures.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <gmock/gmock.h>
#include <wincodec.h>
#include <wrl/client.h>

#include "system/HResultError.h"

using Microsoft::WRL::ComPtr;

namespace lumenor::tests {
namespace {

ComPtr<IWICImagingFactory> NewFactory() {
  ComPtr<IWICImagingFactory> factory;
  ThrowIfFailed(::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&factory)));
  return factory;
}

/// Encodes rows that `nextRows` gives: `rowsAtOnce` rows of `stride` bytes, until the picture is full.
void EncodePng(const std::wstring &path, unsigned width, unsigned height, WICPixelFormatGUID format, unsigned stride,
               unsigned rowsAtOnce, const std::vector<BYTE> &rows) {
  const ComPtr<IWICImagingFactory> factory = NewFactory();
  ComPtr<IWICStream> stream;
  ThrowIfFailed(factory->CreateStream(&stream));
  ThrowIfFailed(stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE));
  ComPtr<IWICBitmapEncoder> encoder;
  ThrowIfFailed(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder));
  ThrowIfFailed(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache));
  ComPtr<IWICBitmapFrameEncode> frame;
  ThrowIfFailed(encoder->CreateNewFrame(&frame, nullptr));
  ThrowIfFailed(frame->Initialize(nullptr));
  ThrowIfFailed(frame->SetSize(width, height));
  ThrowIfFailed(frame->SetPixelFormat(&format));
  for (unsigned row = 0; row < height; row += rowsAtOnce)
    ThrowIfFailed(frame->WritePixels(rowsAtOnce, stride, stride * rowsAtOnce, const_cast<BYTE *>(rows.data())));
  ThrowIfFailed(frame->Commit());
  ThrowIfFailed(encoder->Commit());
}

Picture FirstPictureOf(IWICBitmapDecoder *decoder) {
  ComPtr<IWICBitmapFrameDecode> frame;
  ThrowIfFailed(decoder->GetFrame(0, &frame));
  ComPtr<IWICBitmapSource> source;
  ThrowIfFailed(::WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, frame.Get(), &source));
  UINT width = 0;
  UINT height = 0;
  ThrowIfFailed(source->GetSize(&width, &height));
  Picture picture = SolidPicture(static_cast<int>(width), static_cast<int>(height), 0);
  ThrowIfFailed(
      source->CopyPixels(nullptr, width * 4, width * height * 4, reinterpret_cast<BYTE *>(picture.pixels.data())));
  return picture;
}

int ByteOf(std::uint32_t pixel, int index) { return static_cast<int>(pixel >> 8 * index & 0xFF); }

template <typename Predicate> RECT BoundsWhere(const Picture &picture, Predicate isMeant) {
  RECT bounds{picture.width, picture.height, 0, 0};
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      if (isMeant(picture.At(x, y)))
        bounds = {std::min<LONG>(bounds.left, x), std::min<LONG>(bounds.top, y), std::max<LONG>(bounds.right, x + 1),
                  std::max<LONG>(bounds.bottom, y + 1)};
  return bounds.right == 0 ? RECT{} : bounds;
}

} // namespace

Picture SolidPicture(int width, int height, std::uint32_t pixel) {
  return {width, height, Pixels(static_cast<std::size_t>(width * height), pixel)};
}

BitmapHandle MakeDib(const Picture &picture) {
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, picture.width, -picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void *bits = nullptr;
  BitmapHandle bitmap(ThrowIfNull(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0)));
  std::memcpy(bits, picture.pixels.data(), picture.pixels.size() * sizeof picture.pixels[0]);
  return bitmap;
}

Picture PictureOf(HBITMAP bitmap) {
  BITMAP record{};
  ThrowIfFalse(::GetObjectW(bitmap, sizeof record, &record) != 0);
  Picture picture = SolidPicture(record.bmWidth, record.bmHeight, 0);
  const std::size_t size = picture.pixels.size() * sizeof picture.pixels[0];
  ThrowIfFalse(::GetBitmapBits(bitmap, static_cast<LONG>(size), picture.pixels.data()) == static_cast<LONG>(size));
  return picture;
}

void WritePicture(const std::wstring &path, const Picture &picture) {
  const auto stride = static_cast<unsigned>(picture.width) * 4;
  std::vector<BYTE> rows(picture.pixels.size() * 4);
  std::memcpy(rows.data(), picture.pixels.data(), rows.size());
  EncodePng(path, static_cast<unsigned>(picture.width), static_cast<unsigned>(picture.height),
            GUID_WICPixelFormat32bppBGRA, stride, static_cast<unsigned>(picture.height), rows);
}

Picture ReadPicture(const std::wstring &path) {
  ComPtr<IWICBitmapDecoder> decoder;
  ThrowIfFailed(NewFactory()->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ,
                                                        WICDecodeMetadataCacheOnLoad, &decoder));
  return FirstPictureOf(decoder.Get());
}

void WriteBlackPicture(const std::wstring &path, unsigned width, unsigned height) {
  const unsigned stride = (width + 7) / 8;
  constexpr unsigned rowsAtOnce = 100;
  EncodePng(path, width, height, GUID_WICPixelFormatBlackWhite, stride, rowsAtOnce,
            std::vector<BYTE>(static_cast<std::size_t>(stride) * rowsAtOnce));
}

Picture ReadResourcePicture(const std::wstring &name) {
  const HRSRC resource = ThrowIfNull(::FindResourceW(nullptr, name.c_str(), L"IMAGE"));
  void *const data = ::LockResource(::LoadResource(nullptr, resource));
  const ComPtr<IWICImagingFactory> factory = NewFactory();
  ComPtr<IWICStream> stream;
  ThrowIfFailed(factory->CreateStream(&stream));
  ThrowIfFailed(stream->InitializeFromMemory(static_cast<BYTE *>(data), ::SizeofResource(nullptr, resource)));
  ComPtr<IWICBitmapDecoder> decoder;
  ThrowIfFailed(factory->CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnLoad, &decoder));
  return FirstPictureOf(decoder.Get());
}

bool IsPremultipliedOf(const Picture &premultiplied, const Picture &straight) {
  if (premultiplied.width != straight.width || premultiplied.height != straight.height)
    return false;
  for (std::size_t i = 0; i < straight.pixels.size(); ++i) {
    const int alpha = ByteOf(straight.pixels[i], 3);
    if (ByteOf(premultiplied.pixels[i], 3) != alpha)
      return false;
    for (int channel = 0; channel < 3; ++channel)
      if (std::abs(ByteOf(premultiplied.pixels[i], channel) - ByteOf(straight.pixels[i], channel) * alpha / 255) > 1)
        return false;
  }
  return true;
}

RECT BoundsOf(const Picture &picture, std::uint32_t color) {
  return BoundsWhere(picture, [color](std::uint32_t pixel) { return pixel == color; });
}

RECT InkOf(const Picture &picture) {
  return BoundsWhere(picture, [](std::uint32_t pixel) { return pixel != 0; });
}

void ExpectRect(const RECT &expected, const RECT &actual) {
  EXPECT_THAT((std::vector<LONG>{actual.left, actual.top, actual.right, actual.bottom}),
              ::testing::ElementsAre(expected.left, expected.top, expected.right, expected.bottom));
}

} // namespace lumenor::tests
