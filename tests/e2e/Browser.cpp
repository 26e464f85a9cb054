#include "e2e/Browser.h"

#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

constexpr wchar_t mark[] = L"\" address ";

/// Without the quotation marks, which the platform may omit.
std::wstring Bare(const std::wstring &text) {
  std::wstring bare;
  for (const wchar_t c : text)
    if (c != L'"')
      bare += c;
  return bare;
}

} // namespace

Browser::Browser(const Installation &installation)
    : installation(installation), http(HKEY_LOCAL_MACHINE, L"Software\\Classes\\http\\shell\\open"),
      https(HKEY_LOCAL_MACHINE, L"Software\\Classes\\https\\shell\\open") {
  for (const auto *scheme : {L"http", L"https"}) {
    const std::wstring path = std::wstring(L"Software\\Classes\\") + scheme + L"\\shell\\open";
    ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, path.c_str());
    const std::wstring line = L"\"" + installation.Recorder() + mark + L"\"%1\"";
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, (path + L"\\command").c_str(), nullptr, REG_SZ, line.c_str(),
                      static_cast<DWORD>((line.size() + 1) * sizeof(wchar_t)));
  }
}

std::vector<std::wstring> Browser::Addresses() const {
  std::vector<std::wstring> addresses;
  for (const std::wstring &line : installation.RecordedCommandLines())
    if (const auto at = line.find(mark); at != std::wstring::npos)
      addresses.push_back(Bare(line.substr(at + std::size(mark) - 1)));
  return addresses;
}

std::vector<std::wstring> Browser::WaitForAddresses(std::size_t count) const {
  WaitFor([&] { return Addresses().size() >= count; });
  return Addresses();
}

} // namespace lumenor::e2e
