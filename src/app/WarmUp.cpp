#include "app/WarmUp.h"

#include "system/HResultError.h"
#include "system/ScopeExit.h"
#include "system/Xml.h"
#include "toolkit/StatusFont.h"

namespace lumenor {

namespace {

constexpr float anySize = 12;
constexpr SIZE_T stackReserveBytes = 256 * 1024;

/// The first text loads the collection of fonts, which the platform then keeps for the factory that all share.
Microsoft::WRL::ComPtr<IDWriteTextLayout> LoadFonts() {
  const auto factory = CreateTextFactory();
  const auto format = CreateStatusTextFormat(factory.Get(), DWRITE_FONT_WEIGHT_NORMAL, DWRITE_FONT_STYLE_NORMAL,
                                             DWRITE_FONT_STRETCH_NORMAL, anySize);
  Microsoft::WRL::ComPtr<IDWriteTextLayout> layout;
  ThrowIfFailed(factory->CreateTextLayout(L"A", 1, format.Get(), anySize, anySize, &layout));
  DWRITE_TEXT_METRICS metrics;
  ThrowIfFailed(layout->GetMetrics(&metrics));
  return layout;
}

/// The platform keeps the parser's modules for the process, although this thread leaves COM.
void LoadXmlParser() {
  ThrowIfFailed(::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
  const ScopeExit leaveCom([] { ::CoUninitialize(); });
  LoadXmlString(L"<a/>");
}

} // namespace

WarmUp::WarmUp() noexcept
    : thread(::CreateThread(nullptr, stackReserveBytes, &Run, this, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr)) {}

WarmUp::~WarmUp() {
  if (thread)
    ::WaitForSingleObject(thread.Get(), INFINITE);
}

DWORD WINAPI WarmUp::Run(void *self) {
  try {
    static_cast<WarmUp *>(self)->layout = LoadFonts();
    LoadXmlParser();
  } catch (...) {
    // The same fails again on the thread that needs it, which reports it.
  }
  return 0;
}

} // namespace lumenor
