#include "dock/dragdrop/DroppedFile.h"

#include <cstdlib>
#include <iterator>

#include "system/Handles.h"
#include "system/Paths.h"
#include "system/ProgramFile.h"

#include <shellapi.h>

namespace lumenor {

namespace {

constexpr int maxNameLength = 520; // characters, the end's included

/// The text `id` of the library at `modulePath`; empty when there is no such library or text. Whoever made the file
/// names the library: it is read as data, so that no code of it runs in the dock, and it may be one for another
/// processor.
std::wstring LoadModuleText(const std::wstring &modulePath, UINT id) {
  const std::wstring path = ExpandPath(modulePath);
  if (IsDamagedProgram(path, ProgramPart::Texts))
    return {};
  const LibraryHandle library(
      ::LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
  wchar_t text[maxNameLength] = {};
  if (library)
    ::LoadStringW(library.Get(), id, text, maxNameLength);
  return text;
}

std::wstring FileNameWithoutExtension(const std::wstring &path) {
  wchar_t name[maxNameLength] = {};
  ::_wsplitpath_s(path.c_str(), nullptr, 0, nullptr, 0, name, std::size(name), nullptr, 0);
  return name;
}

/// A library that can't be read leaves the label empty: the file has another name than the one on the disk.
std::wstring LabelOf(const std::wstring &path) {
  wchar_t module[MAX_PATH] = {};
  int id = 0;
  ::SHGetLocalizedName(path.c_str(), module, MAX_PATH, &id);
  return module[0] != L'\0' ? LoadModuleText(module, static_cast<UINT>(id)) : FileNameWithoutExtension(path);
}

std::wstring WithoutOuterQuotes(const std::wstring &text) {
  const std::size_t begin = text.find_first_not_of(L'"');
  return begin == std::wstring::npos ? L"" : text.substr(begin, text.find_last_not_of(L'"') - begin + 1);
}

} // namespace

Element MakeDroppedElement(const std::wstring &path) {
  Element element;
  element.ActionType = programAction;
  element.ActionParams = L"\"" + path + L"\"";
  element.ToolTip = WithoutOuterQuotes(element.ActionParams);
  element.Head = LabelOf(path);
  return element;
}

} // namespace lumenor
