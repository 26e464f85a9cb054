#include "system/LanguageResources.h"

#include "system/Locale.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Xml.h"

namespace lumenor {

namespace {

constexpr wchar_t dockStringsName[] = L"Lumenor.MainFrame.Windows.DockViewWindow";

/// Whether the file exists; the search is logged.
bool LookFor(const std::wstring &path) {
  LogInfo("Looking for file %S", path.c_str());
  return PathExists(path);
}

std::wstring PathInLocale(const std::wstring &base, const std::wstring &locale, const std::wstring &fileName) {
  return base + L"\\" + locale + L"\\" + fileName;
}

} // namespace

std::wstring FindResourceFile(const std::wstring &fileName) {
  const std::wstring base = ExpandPath(product::textFolder) + L"\\LangRes_" + PlatformCode();
  std::wstring locale = LanguageCountryKey();
  if (!PathExists(PathInLocale(base, locale, fileName)))
    locale = Rfc1766Key();
  for (const std::wstring &entry : ResourceLocaleChain(locale))
    if (const std::wstring path = PathInLocale(base, entry, fileName); LookFor(path))
      return path;
  const std::wstring path = ExpandPath(product::userFolder) + L"\\" + fileName;
  return LookFor(path) ? path : std::wstring();
}

std::wstring LoadString(const std::wstring &fileName, const std::wstring &query) {
  const std::wstring path = FindResourceFile(fileName);
  if (path.empty()) {
    LogError("LoadString: Couldn't find file %S", fileName.c_str());
    return {};
  }
  LogInfo("LoadString: Loading from %S with query %S", path.c_str(), query.c_str());
  const XmlDocumentPtr document = LoadXmlFileWhenFree(path);
  return document == nullptr ? std::wstring() : ChildText(document, query);
}

std::wstring LoadDocumentString(const std::wstring &documentName, const std::wstring &path) {
  return LoadString(documentName + L".xml", L"//UIRoot/" + documentName + L"/Elements/" + path);
}

std::wstring LoadStringById(const std::wstring &documentName, const std::wstring &id) {
  return LoadDocumentString(documentName, L"Element[@ID='" + id + L"']/Head");
}

std::wstring LoadDockString(const std::wstring &id) { return LoadStringById(dockStringsName, id); }

} // namespace lumenor
