#include "system/WholeFile.h"

#include <algorithm>

#include "system/FileInUse.h"
#include "system/Handles.h"
#include "system/HResultError.h"

namespace lumenor {

namespace {

// Always the same: the next save overwrites what a killed process leaves, so leftovers don't accumulate.
constexpr wchar_t besideEnding[] = L".new";

constexpr std::size_t blockBytes = 1 << 20;
constexpr DWORD refusedAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
constexpr DWORD keptAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

/// The attributes for a file that replaces the one at `path`.
DWORD AttributesFor(const std::wstring &path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES)
    return FILE_ATTRIBUTE_NORMAL;
  if ((attributes & refusedAttributes) != 0)
    throw HResultError(E_ACCESSDENIED); // not every platform refuses to replace a read-only file
  const DWORD kept = attributes & keptAttributes;
  return kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept;
}

/// The new file beside the one that it is to replace; deleted at the end of its scope if it hasn't.
class FileBeside {
public:
  explicit FileBeside(const std::wstring &target) : target(target), path(target + besideEnding) {
    const DWORD attributes = AttributesFor(target);
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL); // a hidden leftover couldn't be overwritten
    ThrowIfFalse(TryWhileInUse([&] {
      file.Reset(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, attributes, nullptr));
      return static_cast<bool>(file);
    }));
  }
  ~FileBeside() {
    file.Reset();
    if (!isInPlace)
      ::DeleteFileW(path.c_str());
  }
  FileBeside(const FileBeside &) = delete;
  FileBeside &operator=(const FileBeside &) = delete;

  void Write(std::string_view bytes) {
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), blockBytes)))
      WriteBlock(bytes.substr(0, blockBytes));
    ThrowIfFalse(::FlushFileBuffers(file.Get()));
  }

  void PutInPlace() {
    file.Reset();
    isInPlace = TryWhileInUse([&] { return Replace(); }, &IsReplacedFileInUse);
    ThrowIfFalse(isInPlace);
  }

private:
  void WriteBlock(std::string_view block) {
    DWORD written = 0;
    ThrowIfFalse(::WriteFile(file.Get(), block.data(), static_cast<DWORD>(block.size()), &written, nullptr));
    if (written != block.size())
      throw HResultError(HResultFromError(ERROR_WRITE_FAULT));
  }

  bool Replace() {
    return ::MoveFileExW(path.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
  }

  const std::wstring &target;
  const std::wstring path;
  FileHandle file;
  bool isInPlace = false;
};

} // namespace

void WriteWholeFile(const std::wstring &path, std::string_view bytes) {
  FileBeside beside(path);
  beside.Write(bytes);
  beside.PutInPlace();
}

} // namespace lumenor
