#include "toolkit/drawing/WICHelper.h"

#include <array>
#include <span>

#include "system/HResultError.h"
#include "system/ImagePath.h"
#include "system/Instance.h"
#include "system/Log.h"
#include "system/MemoryStream.h"
#include "system/Paths.h"
#include "system/WholeFile.h"
#include "toolkit/drawing/PictureSize.h"

using Microsoft::WRL::ComPtr;

namespace lumenor {
namespace {

constexpr int bytesPerPixel = 4;

/// What the process keeps of the imaging service. Never destroyed: static destructors run when COM is gone already.
struct Services {
  ComPtr<IWICImagingFactory> factory;
  ComPtr<IClassFactory> pngDecoders; // null until the first PNG
};

Services &SharedServices() {
  static auto *const services = new Services;
  return *services;
}

bool HasPngSignature(IStream *stream) {
  constexpr std::array<BYTE, 8> signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::array<BYTE, signature.size()> start{};
  ULONG length = 0;
  return SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr)) &&
         SUCCEEDED(stream->Read(start.data(), static_cast<ULONG>(start.size()), &length)) && start == signature &&
         SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr));
}

/// The decoder of a PNG; null for all else. The imaging service looks through the registry for every picture; nearly
/// all of ours are PNGs, whose decoder is known.
ComPtr<IWICBitmapDecoder> DecodePng(IStream *stream) {
  if (!HasPngSignature(stream))
    return nullptr;
  ComPtr<IClassFactory> &decoders = SharedServices().pngDecoders;
  ComPtr<IWICBitmapDecoder> decoder;
  if ((!decoders &&
       FAILED(::CoGetClassObject(CLSID_WICPngDecoder, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&decoders)))) ||
      FAILED(decoders->CreateInstance(nullptr, IID_PPV_ARGS(&decoder))) ||
      FAILED(decoder->Initialize(stream, WICDecodeMetadataCacheOnLoad)))
    return nullptr;
  return decoder;
}

/// A few bytes can claim gigabytes, which some decoders take at once. Raises HResultError, after a log line.
void RequireBearable(PictureSize size, const std::wstring &path) {
  if (IsBearable(size))
    return;
  LogError("WICHelper: %S claims %u by %u pixels", path.c_str(), size.width, size.height);
  throw HResultError(WINCODEC_ERR_IMAGESIZEOUTOFRANGE);
}

ComPtr<IWICBitmapDecoder> DecodePngFile(const std::wstring &path) {
  ComPtr<IWICStream> stream;
  ThrowIfFailed(GetImagingFactory()->CreateStream(&stream));
  if (FAILED(stream->InitializeFromFilename(path.c_str(), GENERIC_READ)))
    return nullptr;
  if (const auto size = ClaimedSize(stream.Get()))
    RequireBearable(*size, path);
  return DecodePng(stream.Get());
}

ComPtr<IWICBitmapFrameDecode> FirstFrame(IWICBitmapDecoder *decoder) {
  ComPtr<IWICBitmapFrameDecode> frame;
  ThrowIfFailed(decoder->GetFrame(0, &frame));
  return frame;
}

PictureSize PixelSize(IWICBitmapSource *source) {
  PictureSize size;
  ThrowIfFailed(source->GetSize(&size.width, &size.height));
  return size;
}

ComPtr<IWICBitmapFrameDecode> DecodeFile(const std::wstring &path) {
  ComPtr<IWICBitmapDecoder> decoder = DecodePngFile(path);
  if (!decoder)
    ThrowIfFailed(GetImagingFactory()->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ,
                                                                 WICDecodeMetadataCacheOnLoad, &decoder));
  ComPtr<IWICBitmapFrameDecode> frame = FirstFrame(decoder.Get());
  RequireBearable(PixelSize(frame.Get()), path);
  return frame;
}

/// The size within 48 by 48 at the same proportions. The arithmetic is in 32-bit floats: wider ones would make 47 of
/// some sides that have to be 48.
PictureSize LimitedSize(PictureSize size) {
  constexpr UINT limit = iconSize;
  if (size.width <= limit && size.height <= limit)
    return size;
  const bool isWide = size.width > size.height;
  const float factor = static_cast<float>(limit) / static_cast<float>(isWide ? size.width : size.height);
  if (isWide)
    return {limit, static_cast<UINT>(static_cast<float>(size.height) * factor)};
  return {static_cast<UINT>(static_cast<float>(size.width) * factor), limit};
}

ComPtr<IWICBitmapSource> LimitToIconSize(IWICBitmapSource *frame) {
  const PictureSize size = LimitedSize(PixelSize(frame));
  ComPtr<IWICBitmapScaler> scaler;
  ThrowIfFailed(GetImagingFactory()->CreateBitmapScaler(&scaler));
  ThrowIfFailed(scaler->Initialize(frame, size.width, size.height, WICBitmapInterpolationModeCubic));
  return scaler;
}

ComPtr<IWICBitmapSource> ConvertToPremultiplied(IWICBitmapSource *source) {
  ComPtr<IWICFormatConverter> converter;
  ThrowIfFailed(GetImagingFactory()->CreateFormatConverter(&converter));
  ThrowIfFailed(converter->Initialize(source, GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0.0,
                                      WICBitmapPaletteTypeMedianCut));
  return converter;
}

ComPtr<ID2D1Bitmap> MakeDeviceBitmap(ID2D1RenderTarget *renderTarget, IWICBitmapSource *source) {
  const ComPtr<IWICBitmapSource> converter = ConvertToPremultiplied(source);
  ComPtr<ID2D1Bitmap> bitmap;
  ThrowIfFailed(renderTarget->CreateBitmapFromWicBitmap(converter.Get(), nullptr, &bitmap));
  return bitmap;
}

ComPtr<IWICBitmap> WrapHBitmap(HBITMAP bitmap) {
  ComPtr<IWICBitmap> wrapped;
  ThrowIfFailed(GetImagingFactory()->CreateBitmapFromHBITMAP(bitmap, nullptr, WICBitmapUseAlpha, &wrapped));
  return wrapped;
}

struct Dib {
  BitmapHandle bitmap;
  BYTE *bits = nullptr;
};

/// Empty when the platform has no such bitmap to give.
Dib TryCreateDib(int width, int height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 8 * bytesPerPixel;
  info.bmiHeader.biCompression = BI_RGB;
  const WindowDeviceContext screen(nullptr);
  void *bits = nullptr;
  BitmapHandle bitmap(::CreateDIBSection(screen.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  return {std::move(bitmap), static_cast<BYTE *>(bits)};
}

/// A resource's bytes, which live as long as the program.
std::span<BYTE> LockImageResource(const std::wstring &name, const std::wstring &type) {
  const HRSRC resource = ::FindResourceW(instanceHandle, name.c_str(), type.c_str());
  const HGLOBAL loaded = resource != nullptr ? ::LoadResource(instanceHandle, resource) : nullptr;
  void *const data = loaded != nullptr ? ::LockResource(loaded) : nullptr;
  const DWORD size = data != nullptr ? ::SizeofResource(instanceHandle, resource) : 0;
  if (size == 0)
    throw HResultError(E_FAIL);
  return {static_cast<BYTE *>(data), size};
}

} // namespace

ComPtr<IWICImagingFactory> GetImagingFactory() {
  ComPtr<IWICImagingFactory> &factory = SharedServices().factory;
  if (!factory)
    ThrowIfFailed(::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&factory)));
  return factory;
}

void ReleaseImagingFactory() { SharedServices() = {}; }

ComPtr<ID2D1Bitmap> LoadBitmapFromFile(ID2D1RenderTarget *renderTarget, const std::wstring &imagePath,
                                       bool limitToIconSize) {
  const std::wstring path = ResolveImagePath(imagePath);
  if (!FileExists(path)) {
    LogError("WICHelper: cannot find %S loading default image", path.c_str());
    return LoadBitmapFromResource(renderTarget, defaultImageResource, imageResourceType);
  }
  LogInfo("Loading bitmap file: %S", path.c_str());
  ComPtr<IWICBitmapSource> source = DecodeFile(path);
  if (limitToIconSize)
    source = LimitToIconSize(source.Get());
  return MakeDeviceBitmap(renderTarget, source.Get());
}

ComPtr<ID2D1Bitmap> LoadBitmapFromResource(ID2D1RenderTarget *renderTarget, const std::wstring &resourceName,
                                           const std::wstring &resourceType) {
  const std::span<BYTE> bytes = LockImageResource(resourceName, resourceType);
  ComPtr<IWICStream> stream;
  ThrowIfFailed(GetImagingFactory()->CreateStream(&stream));
  ThrowIfFailed(stream->InitializeFromMemory(bytes.data(), static_cast<DWORD>(bytes.size())));
  ComPtr<IWICBitmapDecoder> decoder = DecodePng(stream.Get());
  if (!decoder)
    ThrowIfFailed(
        GetImagingFactory()->CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnLoad, &decoder));
  return MakeDeviceBitmap(renderTarget, FirstFrame(decoder.Get()).Get());
}

ComPtr<ID2D1Bitmap> LoadBitmapFromHBitmap(ID2D1RenderTarget *renderTarget, HBITMAP source) {
  return MakeDeviceBitmap(renderTarget, WrapHBitmap(source).Get());
}

BitmapHandle LoadHBitmapFromFile(const std::wstring &imagePath) {
  const std::wstring path = ResolveImagePath(imagePath);
  LogInfo("Loading hbitmap from file: %S", path.c_str());
  if (!PathExists(path)) {
    LogError("WICHelper: cannot find %S", path.c_str());
    return {};
  }
  const ComPtr<IWICBitmapSource> limited = LimitToIconSize(DecodeFile(path).Get());
  const ComPtr<IWICBitmapSource> picture = ConvertToPremultiplied(limited.Get());
  PictureSize size;
  if (FAILED(picture->GetSize(&size.width, &size.height)) || size.width == 0 || size.height == 0)
    return {};
  Dib dib = TryCreateDib(static_cast<int>(size.width), static_cast<int>(size.height));
  // A truncated picture keeps what could be read of it.
  if (dib.bitmap)
    picture->CopyPixels(nullptr, bytesPerPixel * size.width, bytesPerPixel * size.width * size.height, dib.bits);
  return std::move(dib.bitmap);
}

BitmapHandle CreateDib(int width, int height) {
  Dib dib = TryCreateDib(width, height);
  ThrowIfNull(dib.bitmap.Get());
  return std::move(dib.bitmap);
}

void SaveHBitmapAsPng(HBITMAP source, const std::wstring &path) {
  const ComPtr<IWICBitmap> picture = WrapHBitmap(source);
  const ComPtr<IStream> memory = MakeMemoryStream();
  ComPtr<IWICStream> stream;
  ThrowIfFailed(GetImagingFactory()->CreateStream(&stream));
  ThrowIfFailed(stream->InitializeFromIStream(memory.Get()));
  ThrowIfFailed(WritePng(picture.Get(), stream.Get()));
  WriteWholeFile(path, BytesOf(memory.Get()));
}

HRESULT WritePng(IWICBitmapSource *source, IWICStream *stream) try {
  const PictureSize size = PixelSize(source);
  WICPixelFormatGUID pixelFormat{};
  ThrowIfFailed(source->GetPixelFormat(&pixelFormat));
  ComPtr<IWICBitmapEncoder> encoder;
  ThrowIfFailed(::CoCreateInstance(CLSID_WICPngEncoder, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&encoder)));
  ThrowIfFailed(encoder->Initialize(stream, WICBitmapEncoderNoCache));
  ComPtr<IWICBitmapFrameEncode> frame;
  ThrowIfFailed(encoder->CreateNewFrame(&frame, nullptr));
  ThrowIfFailed(frame->Initialize(nullptr));
  ThrowIfFailed(frame->SetSize(size.width, size.height));
  ThrowIfFailed(frame->SetPixelFormat(&pixelFormat));
  ThrowIfFailed(frame->WriteSource(source, nullptr));
  ThrowIfFailed(frame->Commit());
  ThrowIfFailed(encoder->Commit());
  return S_OK;
} catch (const HResultError &error) {
  return error.Result();
}

} // namespace lumenor
