#include "toolkit/StatusFont.h"

#include "system/HResultError.h"

namespace lumenor {

Microsoft::WRL::ComPtr<IDWriteFactory> CreateTextFactory() {
  Microsoft::WRL::ComPtr<IUnknown> factory;
  ThrowIfFailed(::DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory), &factory));
  Microsoft::WRL::ComPtr<IDWriteFactory> textFactory;
  ThrowIfFailed(factory.As(&textFactory));
  return textFactory;
}

LOGFONTW GetStatusFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  return metrics.lfStatusFont;
}

Microsoft::WRL::ComPtr<IDWriteTextFormat> CreateStatusTextFormat(IDWriteFactory *factory, DWRITE_FONT_WEIGHT weight,
                                                                 DWRITE_FONT_STYLE style, DWRITE_FONT_STRETCH stretch,
                                                                 float size) {
  const LOGFONTW font = GetStatusFont();
  Microsoft::WRL::ComPtr<IDWriteTextFormat> format;
  ThrowIfFailed(
      factory->CreateTextFormat(font.lfFaceName, nullptr, weight, style, stretch, size, textLocaleName, &format));
  ThrowIfFailed(format->SetParagraphAlignment(DWRITE_PARAGRAPH_ALIGNMENT_CENTER));
  return format;
}

} // namespace lumenor
