#pragma once
// The sources of the short lists that the flyouts show: the For You list of the user's folder, and the search providers
// of the language resources. Owned by the main window, which outlives the flyouts that read from them. User-interface
// thread, with COM initialised; only the watch has a thread of its own.

#include <cstddef>
#include <string>

#include "content/Element.h"
#include "system/FolderWatcher.h"
#include "system/Windows.h"
#include "system/Xml.h"

namespace lumenor {

/// The longest list; further entries of a file are ignored.
constexpr std::size_t maxProviderEntries = 5;

class IActionDataProvider {
public:
  virtual ~IActionDataProvider() = default;

  /// Has `message` sent to `window` at each change in the user's folder from now on. A provider has one watch, which
  /// replaces the one before and ends with the provider.
  virtual void Watch(HWND window, UINT message) = 0;

  /// Reads the data again if there are any. Raises HResultError when the DOM fails; the list then doesn't change.
  virtual void Refresh() = 0;

  /// The list after a refresh, in the order of the data; the last good one when the data can't be read.
  virtual ElementList GetElements() = 0;
};

/// A provider with the data of one XML file.
class FileDataProvider : public IActionDataProvider {
public:
  void Watch(HWND window, UINT message) override;
  ElementList GetElements() override;

protected:
  /// Replaces the list with the first entries that `query` selects in the file, each made by `readElement`. The list
  /// doesn't change when the file can't be opened or isn't well-formed. Raises HResultError.
  void ReadFile(const std::wstring &path, const std::wstring &query, Element (*readElement)(const XmlNodePtr &));

private:
  FolderWatch watchThread;
  ElementList elements;
  FILETIME lastReadTime = {}; // always 0
};

/// The For You list, which another program writes; empty before the first refresh.
class ForYouProvider : public FileDataProvider {
public:
  void Refresh() override;
};

/// The search providers of the user's language.
class SearchProvider : public FileDataProvider {
public:
  /// Reads the list. Raises HResultError when the DOM fails.
  SearchProvider();

  void Refresh() override;
};

} // namespace lumenor
