#include "content/ActionDataProvider.h"

#include <utility>

#include "content/DocumentFile.h"
#include "content/DocumentNames.h"
#include "system/HResultError.h"
#include "system/LanguageResources.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/Product.h"

namespace lumenor {

namespace {

constexpr wchar_t searchProvidersFile[] = L"SearchProviders.xml";
constexpr wchar_t searchProvidersQuery[] = L"//SearchingProviders/Providers";

constexpr int refreshTries = 5;

Element ReadSearchElement(const XmlNodePtr &node) {
  Element element;
  element.Head = ChildText(node, L"Head");
  element.ActionType = ChildText(node, L"ActionType");
  element.ActionParams = ChildText(node, L"ActionParams");
  element.Image = ChildText(node, L"Image");
  return element;
}

Element ReadForYouElement(const XmlNodePtr &node) {
  Element element = ReadSearchElement(node);
  element.ToolTip = ChildText(node, L"ToolTip");
  return element;
}

} // namespace

void FileDataProvider::Watch(HWND window, UINT message) {
  // The new watch is open before the former one ends, so that no change is missed between the two. The former one goes
  // on when there is no new one.
  if (FolderWatch watch = StartFolderWatch(product::userFolder, window, message))
    watchThread = std::move(watch);
}

ElementList FileDataProvider::GetElements() {
  // Without a pause: a file that its writer has just replaced may fail once, and the user interface must not wait for
  // it.
  for (int tried = 0; tried < refreshTries; ++tried) {
    try {
      Refresh();
      break;
    } catch (const HResultError &) {
    }
  }
  return elements;
}

void FileDataProvider::ReadFile(const std::wstring &path, const std::wstring &query,
                                Element (*readElement)(const XmlNodePtr &)) {
  // lastReadTime never changes, on purpose: the comparison only says whether there is a file, and each refresh reads an
  // existing one again.
  const FILETIME fileTime = LastWriteTime(path);
  if (::CompareFileTime(&lastReadTime, &fileTime) >= 0)
    return;
  // Its writer may not have closed it yet, and no further change follows that.
  const XmlDocumentPtr document = LoadXmlFileWhenFree(path);
  if (document == nullptr)
    return;
  ElementList read;
  for (const XmlNodePtr &node : SelectNodes(document, query, maxProviderEntries))
    read.push_back(readElement(node));
  elements.swap(read);
}

void ForYouProvider::Refresh() {
  ReadFile(DocumentPath(forYouListName), L"/" + ElementsQuery(forYouListName), ReadForYouElement);
}

SearchProvider::SearchProvider() { SearchProvider::Refresh(); }

void SearchProvider::Refresh() {
  const std::wstring path = FindResourceFile(searchProvidersFile);
  if (path.empty()) {
    LogError("Could not find the searchproviders.xml file");
    return;
  }
  ReadFile(path, searchProvidersQuery, ReadSearchElement);
}

} // namespace lumenor
