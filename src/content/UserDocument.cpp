#include "content/UserDocument.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "content/DocumentNames.h"
#include "system/FileReading.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/Text.h"
#include "system/WholeFile.h"

namespace lumenor {

namespace {

constexpr wchar_t asideEnding[] = L".broken";

/// A path without a file: earlier copies are kept too.
std::wstring FreeAsidePath(const std::wstring &path) {
  std::wstring aside = path + asideEnding;
  for (std::uint32_t number = 2; PathExists(aside); ++number)
    aside = path + asideEnding + UIntToText(number);
  return aside;
}

/// The path of a copy of the file; nothing, with a line logged, when none can be made. A copy and not a renamed file,
/// so that the document exists at every moment, also when the process is killed.
std::optional<std::wstring> SetAside(const std::wstring &path) {
  std::wstring aside = FreeAsidePath(path);
  const HRESULT copied = HResultOf([&] { WriteWholeFile(aside, ReadWholeFile(path)); });
  if (SUCCEEDED(copied)) {
    LogInfo("Document: %S was never read and is set aside as %S", path.c_str(), aside.c_str());
    return aside;
  }
  LogError("Document: %S was never read, can't be set aside (0x%x) and stays", path.c_str(), copied);
  return std::nullopt;
}

/// False when the document that was never read isn't changed.
bool SaveOverUnread(const ElementList &list) {
  const std::wstring path = DocumentPath(userDocumentName);
  if (list.empty()) {
    LogInfo("Document: %S was never read and stays", path.c_str());
    return false;
  }
  if (PathIsMissing(path)) {
    SaveDocument(list, userDocumentName);
    return true;
  }
  const std::optional<std::wstring> aside = SetAside(path);
  if (!aside)
    return false;
  try {
    SaveDocument(list, userDocumentName);
  } catch (...) {
    ::DeleteFileW(aside->c_str()); // the document is unchanged
    throw;
  }
  return true;
}

} // namespace

ElementList UserDocument::Load() {
  EnsureDocument(userDocumentName);
  DocumentReading reading = ReadDocument(userDocumentName);
  found = reading.state;
  return std::move(reading.elements);
}

void UserDocument::Save(const ElementList &list) {
  if (found != DocumentState::Unreadable)
    SaveDocument(list, userDocumentName);
  else if (SaveOverUnread(list))
    found = DocumentState::Read;
}

} // namespace lumenor
