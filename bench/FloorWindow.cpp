#include "FloorWindow.h"

#include "system/Handles.h"
#include "system/HResultError.h"

namespace lumenor::bench {
namespace {

using Microsoft::WRL::ComPtr;

constexpr int iconCount = 10;
constexpr int slotWidth = 77;
constexpr wchar_t className[] = L"LumenorFloor";

HWND OpenWindow(const RECT &area) {
  WNDCLASSW type = {};
  type.lpfnWndProc = ::DefWindowProcW;
  type.hInstance = ::GetModuleHandleW(nullptr);
  type.lpszClassName = className;
  ::RegisterClassW(&type);
  return ThrowIfNull(::CreateWindowExW(WS_EX_LAYERED | WS_EX_TOPMOST, className, L"Floor", WS_POPUP, area.left,
                                       area.top, area.right - area.left, area.bottom - area.top, nullptr, nullptr,
                                       type.hInstance, nullptr));
}

D2D1_RENDER_TARGET_PROPERTIES SoftwareTarget() {
  D2D1_RENDER_TARGET_PROPERTIES properties = {};
  properties.type = D2D1_RENDER_TARGET_TYPE_SOFTWARE;
  properties.pixelFormat = {DXGI_FORMAT_B8G8R8A8_UNORM, D2D1_ALPHA_MODE_PREMULTIPLIED};
  properties.usage = D2D1_RENDER_TARGET_USAGE_GDI_COMPATIBLE;
  return properties;
}

} // namespace

FloorWindow::FloorWindow(const RECT &area, const std::wstring &iconFile) : area(area), window(OpenWindow(area)) {
  MakeTarget();
  MakeText();
  LoadIcons(iconFile);
  MakeBackground();
}

FloorWindow::~FloorWindow() { ::DestroyWindow(window); }

void FloorWindow::MakeTarget() {
  ComPtr<ID2D1Factory> factory;
  ThrowIfFailed(::D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory), nullptr,
                                    reinterpret_cast<void **>(factory.GetAddressOf())));
  const auto properties = SoftwareTarget();
  ThrowIfFailed(factory->CreateDCRenderTarget(&properties, target.GetAddressOf()));
}

void FloorWindow::MakeText() {
  ComPtr<IDWriteFactory> factory;
  ThrowIfFailed(::DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                                      reinterpret_cast<IUnknown **>(factory.GetAddressOf())));
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof(metrics);
  ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
  ThrowIfFailed(factory->CreateTextFormat(metrics.lfStatusFont.lfFaceName, nullptr, DWRITE_FONT_WEIGHT_NORMAL,
                                          DWRITE_FONT_STYLE_NORMAL, DWRITE_FONT_STRETCH_NORMAL, 10.0f, L"en",
                                          textFormat.GetAddressOf()));
  textFormat->SetTextAlignment(DWRITE_TEXT_ALIGNMENT_CENTER);
  const D2D1_COLOR_F white = {1, 1, 1, 1};
  ThrowIfFailed(target->CreateSolidColorBrush(&white, nullptr, textBrush.GetAddressOf()));
}

void FloorWindow::LoadIcons(const std::wstring &iconFile) {
  ComPtr<IWICImagingFactory> factory;
  ThrowIfFailed(
      ::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(factory.GetAddressOf())));
  for (int i = 0; i < iconCount; ++i) {
    ComPtr<IWICBitmapDecoder> decoder;
    ThrowIfFailed(factory->CreateDecoderFromFilename(iconFile.c_str(), nullptr, GENERIC_READ,
                                                     WICDecodeMetadataCacheOnLoad, decoder.GetAddressOf()));
    ComPtr<IWICBitmapFrameDecode> frame;
    ThrowIfFailed(decoder->GetFrame(0, frame.GetAddressOf()));
    ComPtr<IWICFormatConverter> converter;
    ThrowIfFailed(factory->CreateFormatConverter(converter.GetAddressOf()));
    ThrowIfFailed(converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                        WICBitmapPaletteTypeMedianCut));
    ThrowIfFailed(target->CreateBitmapFromWicBitmap(converter.Get(), nullptr, icons.emplace_back().GetAddressOf()));
  }
}

void FloorWindow::MakeBackground() {
  const D2D1_GRADIENT_STOP stops[] = {{0, {0, 0, 0, 0.7f}}, {1, {0, 0, 0, 0.36f}}};
  ComPtr<ID2D1GradientStopCollection> collection;
  ThrowIfFailed(target->CreateGradientStopCollection(stops, 2, D2D1_GAMMA_2_2, D2D1_EXTEND_MODE_CLAMP,
                                                     collection.GetAddressOf()));
  const D2D1_LINEAR_GRADIENT_BRUSH_PROPERTIES line = {{0, 0}, {0, static_cast<float>(area.bottom - area.top)}};
  ThrowIfFailed(target->CreateLinearGradientBrush(&line, nullptr, collection.Get(), background.GetAddressOf()));
}

void FloorWindow::Draw() {
  const D2D1_COLOR_F transparent = {1, 1, 1, 0};
  target->Clear(&transparent);
  const D2D1_ROUNDED_RECT plate = {
      {0, 0, static_cast<float>(area.right - area.left), static_cast<float>(area.bottom - area.top)}, 6, 6};
  target->FillRoundedRectangle(&plate, background.Get());
  for (std::size_t i = 0; i < icons.size(); ++i) {
    const auto left = static_cast<float>(i * slotWidth);
    const D2D1_RECT_F picture = {left + 22, 16, left + slotWidth - 23, 48};
    const D2D1_RECT_F label = {left, 52, left + slotWidth, 68};
    target->DrawBitmap(icons[i].Get(), &picture, 1.0f, D2D1_BITMAP_INTERPOLATION_MODE_LINEAR, nullptr);
    target->DrawText(L"Program", 7, textFormat.Get(), &label, textBrush.Get(), D2D1_DRAW_TEXT_OPTIONS_NONE,
                     DWRITE_MEASURING_MODE_NATURAL);
  }
}

void FloorWindow::Render() {
  const SIZE size = {area.right - area.left, area.bottom - area.top};
  const WindowDeviceContext screen(nullptr);
  const MemoryDeviceContext memory(ThrowIfNull(::CreateCompatibleDC(nullptr)));
  const BitmapHandle bitmap(ThrowIfNull(::CreateCompatibleBitmap(screen.Get(), size.cx, size.cy)));
  const SelectedObject selected(memory.Get(), bitmap.Get());
  const RECT whole = {0, 0, size.cx, size.cy};
  ThrowIfFailed(target->BindDC(memory.Get(), &whole));
  target->BeginDraw();
  Draw();
  ThrowIfFailed(target->EndDraw());
  POINT position = {area.left, area.top}, origin = {};
  SIZE extent = size;
  BLENDFUNCTION blend = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  ThrowIfFalse(::UpdateLayeredWindow(window, nullptr, &position, &extent, memory.Get(), &origin, 0, &blend, ULW_ALPHA));
}

} // namespace lumenor::bench
