#include "toolkit/StatusFont.h"

#include "system/HResultError.h"

namespace lumenor {

Microsoft::WRL::ComPtr<IDWriteFactory> CreateTextFactory() {
  Microsoft::WRL::ComPtr<IDWriteFactory> factory;
  ThrowIfFailed(::DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                                      reinterpret_cast<IUnknown **>(factory.GetAddressOf())));
  return factory;
}

LOGFONTW GetStatusFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  return metrics.lfStatusFont;
}

} // namespace lumenor
