#include "dock/bar/Search.h"

#include <string_view>

#include <wrl/client.h>

#include "system/ComText.h"
#include "system/HResultError.h"
#include "system/WebAddress.h"
#include "tracking/UsageTracker.h"

namespace lumenor {

/// The platform's help pane, as far as the operation that searches; no header declares it. Not in the
/// unnamed namespace: the compiler would see there that nothing implements it, and take its calls for unreachable.
struct IHelpPane {
  virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void **object) = 0;
  virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
  virtual ULONG STDMETHODCALLTYPE Release() = 0;
  virtual HRESULT STDMETHODCALLTYPE DisplayTask(BSTR task) = 0;
  virtual HRESULT STDMETHODCALLTYPE DisplayContents(BSTR url) = 0;
  virtual HRESULT STDMETHODCALLTYPE DisplaySearchResults(BSTR text) = 0;

protected:
  ~IHelpPane() = default;
};

namespace {

constexpr CLSID helpPaneClass = {0x8cec58e7, 0x07a1, 0x11d9, {0xb1, 0x5e, 0x00, 0x0d, 0x56, 0xbf, 0xe6, 0xee}};
constexpr IID helpPaneInterface = {0x8cec5884, 0x07a1, 0x11d9, {0xb1, 0x5e, 0x00, 0x0d, 0x56, 0xbf, 0xe6, 0xee}};

constexpr std::size_t maxEncodedLength = 2047;

std::string ToUtf8(const std::wstring &text) {
  const int length = static_cast<int>(text.size());
  const int count = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(count), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), count, nullptr, nullptr);
  return bytes;
}

bool IsUnsafe(unsigned char byte) {
  constexpr std::string_view unsafe = " \"#$%&+,;<=>?@[\\]^`{|}";
  return byte < 32 || byte > 126 || unsafe.find(static_cast<char>(byte)) != std::string_view::npos;
}

/// A percent sign is unsafe but is kept: "100%" is searched for as "100%".
void AppendEncoded(std::wstring &result, unsigned char byte) {
  constexpr wchar_t digits[] = L"0123456789abcdef";
  if (byte == '%' || !IsUnsafe(byte))
    result += static_cast<wchar_t>(byte);
  else
    result += {L'%', digits[byte >> 4U], digits[byte & 15U]};
}

std::wstring TrimBlanks(const std::wstring &text) {
  const std::size_t first = text.find_first_not_of(L' ');
  if (first == std::wstring::npos)
    return {};
  return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

void SearchHelp(const std::wstring &text) {
  const std::wstring trimmed = TrimBlanks(text);
  if (trimmed.empty())
    return;
  Microsoft::WRL::ComPtr<IHelpPane> pane;
  ThrowIfFailed(::CoCreateInstance(helpPaneClass, nullptr, CLSCTX_ALL, helpPaneInterface,
                                   reinterpret_cast<void **>(pane.GetAddressOf())));
  const Bstr words = MakeBstr(trimmed);
  ThrowIfFailed(pane->DisplaySearchResults(words.Get()));
}

} // namespace

std::wstring UrlEncode(const std::wstring &text) {
  std::wstring result;
  for (const char byte : ToUtf8(text))
    AppendEncoded(result, static_cast<unsigned char>(byte));
  if (result.size() > maxEncodedLength)
    return {};
  return result;
}

void SearchFor(HWND owner, const Element &provider, const std::wstring &text) {
  if (provider.ActionType == helpSearchAction) {
    SearchHelp(text);
    usageTracker.TrackHelpSearch(); // whether or not there was anything to search for
  } else if (provider.ActionType == urlAction) {
    OpenAddress(owner, provider.ActionParams + UrlEncode(text), L"");
    usageTracker.TrackUrlSearch();
  }
}

} // namespace lumenor
