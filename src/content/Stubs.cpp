#include "content/Stubs.h"

#include <algorithm>
#include <iterator>

#include "content/DocumentFile.h"
#include "content/DocumentNames.h"
#include "content/ElementXml.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Locale.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/Product.h"

namespace lumenor {

namespace {

constexpr wchar_t stubSuffix[] = L"*dstb";

std::wstring LocaleFolder(const std::wstring &locale) { return ExpandPath(product::stubFolder) + L"\\" + locale; }

std::wstring UserLocale() {
  const std::wstring locale = LanguageCountryKey();
  return PathExists(LocaleFolder(locale)) ? locale : Rfc1766Key();
}

/// The entries without those that have the position of an earlier one.
ElementList DropDuplicates(const ElementList &collected) {
  ElementList kept;
  for (const Element &element : collected) {
    const auto same = std::ranges::find(kept, element.Position, &Element::Position);
    if (same == kept.end())
      kept.push_back(element);
    else
      LogInfo("DockStub: duplicate element %S found at %d skipping", same->ActionParams.c_str(), same->Position);
  }
  return kept;
}

void ProcessStub(const std::wstring &documentName, const std::wstring &path, ElementList &elements) {
  try {
    std::vector<Condition> conditions;
    Element element = ReadStubFile(documentName, path, conditions);
    if (!EvaluateConditions(path, conditions))
      return;
    elements.push_back(std::move(element));
    LogInfo("DockStub: conditions met for %S", path.c_str());
  } catch (const InvalidDstbException &) {
    LogError("DockStub: %S is not valid xml", path.c_str());
  }
}

/// After a search that found nothing more: raises HResultError when that is a failure.
void RequireEndOfFiles() {
  constexpr DWORD endings[] = {ERROR_NO_MORE_FILES, ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_DIRECTORY,
                               ERROR_INVALID_NAME};
  const DWORD error = ::GetLastError();
  if (std::ranges::find(endings, error) == std::end(endings))
    throw HResultError(HResultFromError(error));
}

/// The stubs of a folder that may not let itself be listed. A document that is to be built anew then stays as it is,
/// since the new one would replace the user's buttons by what is left; where there is none yet, the bar comes up with
/// what the other folders have.
std::vector<std::wstring> StubFilesIfListed(const std::wstring &documentName, const std::wstring &locale) {
  try {
    return FindStubFiles(documentName, locale);
  } catch (const HResultError &error) {
    if (!PathIsMissing(DocumentPath(documentName)))
      throw;
    LogError("DockStub: %S can't be listed, error %x", LocaleFolder(locale).c_str(),
             static_cast<unsigned>(error.Result()));
    return {};
  }
}

} // namespace

void ApplyStubs(const std::wstring &documentName) {
  if (!IsDocumentName(documentName))
    return LogError("DockStub: \"%S\" can't be the name of a document", documentName.c_str());
  const std::wstring locale = UserLocale();
  LogInfo("DockStub: current locale set to %S", locale.c_str());
  ElementList collected;
  for (const std::wstring &entry : StubLocaleChain(locale))
    ProcessStubsInLocale(documentName, entry, collected);
  ElementList list = DropDuplicates(collected);
  std::ranges::sort(list, {}, &Element::Position);
  SaveDocument(list, documentName);
}

std::vector<std::wstring> FindStubFiles(const std::wstring &documentName, const std::wstring &locale) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW(StubFilePath(locale, documentName + stubSuffix).c_str(), &found));
  for (bool more(find); more; more = ::FindNextFileW(find.Get(), &found) != FALSE)
    names.emplace_back(found.cFileName);
  RequireEndOfFiles();
  return names;
}

std::wstring StubFilePath(const std::wstring &locale, const std::wstring &fileName) {
  return LocaleFolder(locale) + L"\\" + fileName;
}

void ProcessStubsInLocale(const std::wstring &documentName, const std::wstring &locale, ElementList &elements) {
  for (const std::wstring &name : StubFilesIfListed(documentName, locale))
    ProcessStub(documentName, StubFilePath(locale, name), elements);
}

Element ReadStubFile(const std::wstring &documentName, const std::wstring &path, std::vector<Condition> &conditions) {
  const XmlDocumentPtr document = LoadXmlFileWhenFree(path);
  if (document == nullptr)
    throw InvalidDstbException();
  const XmlNodePtr node = SelectNode(document, ElementsQuery(documentName));
  if (node == nullptr)
    return {}; // a stub of another document counts as an empty entry at position 0
  Element element = NodeToElement(node);
  element.ActionParamsBackup = ChildText(node, L"ActionParamsBackup");
  conditions = ReadConditions(node);
  return element;
}

} // namespace lumenor
