#include "system/WebAddress.h"

#include <cwchar>
#include <string_view>

#include <shellapi.h>
#include <shlwapi.h>

#include "system/Launch.h"
#include "system/Log.h"

namespace lumenor {

namespace {

constexpr std::size_t longestAddress = 2083; // in characters: the platform's own limit

constexpr std::wstring_view addressMark = L"%1"; // the place of the address in a registered command

constexpr ASSOCF forProtocol = 0x1000; // ASSOCF_IS_PROTOCOL, unknown before Windows 8

/// "http" or "https"; empty for an address of another kind. Other schemes may name any program, which may split its
/// command line in its own way.
std::wstring WebSchemeOf(const std::wstring &address) {
  for (const std::wstring scheme : {L"http", L"https"})
    if (const std::wstring start = scheme + L"://"; ::_wcsnicmp(address.c_str(), start.c_str(), start.size()) == 0)
      return scheme;
  return {};
}

/// The command line that opens addresses of `scheme` on this machine; empty when there is none.
std::wstring RegisteredCommand(const std::wstring &scheme) {
  for (const ASSOCF flags : {forProtocol, ASSOCF{ASSOCF_NONE}}) {
    DWORD size = 0;
    ::AssocQueryStringW(flags, ASSOCSTR_COMMAND, scheme.c_str(), L"open", nullptr, &size);
    std::wstring command(size, L'\0');
    if (size != 0 &&
        SUCCEEDED(::AssocQueryStringW(flags, ASSOCSTR_COMMAND, scheme.c_str(), L"open", command.data(), &size)))
      return command.c_str();
  }
  return {};
}

/// Whether `character` might end a word of a command line or its quotes. No address needs it unescaped.
bool EndsWord(wchar_t character) {
  return character <= L' ' || character == 0x7F ||
         std::wstring_view(L"\"\\<>^`{|}").find(character) != std::wstring::npos;
}

/// `address` with such characters escaped as addresses escape them, so that it stays one argument whether or not the
/// command has quotation marks around it.
std::wstring AsOneWord(const std::wstring &address) {
  constexpr wchar_t digits[] = L"0123456789ABCDEF";
  std::wstring word;
  for (const wchar_t character : address)
    if (EndsWord(character))
      word += {L'%', digits[character >> 4U], digits[character & 15U]};
    else
      word += character;
  return word;
}

/// `arguments` with `word` in every place for the address; empty when there is none.
std::wstring PutAddress(std::wstring arguments, const std::wstring &word) {
  std::size_t at = arguments.find(addressMark);
  if (at == std::wstring::npos)
    return {};
  for (; at != std::wstring::npos; at = arguments.find(addressMark, at + word.size()))
    arguments.replace(at, addressMark.size(), word);
  return arguments;
}

/// The command that starts the user's browser with `address`; without arguments when there is none.
CommandLine BrowserFor(const std::wstring &address) {
  const std::wstring scheme = WebSchemeOf(address);
  if (scheme.empty() || address.size() > longestAddress)
    return {};
  const CommandLine command = SplitCommandLine(RegisteredCommand(scheme));
  return {command.program, PutAddress(command.arguments, AsOneWord(address))};
}

void Open(HWND owner, const std::wstring &program, const wchar_t *arguments) {
  ::ShellExecuteW(owner, L"open", program.c_str(), arguments, nullptr, SW_SHOW);
}

} // namespace

void OpenAddress(HWND owner, const std::wstring &address, const wchar_t *arguments) {
  if (FitsShell(address))
    return Open(owner, address, arguments);
  const CommandLine browser = BrowserFor(address);
  if (!browser.arguments.empty() && FitsShell(browser.program))
    return Open(owner, browser.program, browser.arguments.c_str());
  LogError("Launch: An address of %u characters is too long", static_cast<unsigned>(address.size()));
}

} // namespace lumenor
