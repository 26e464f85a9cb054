#include "content/IconCache.h"

#include <algorithm>
#include <array>

#include <wrl/client.h>

#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/ImagePath.h"
#include "system/Instance.h"
#include "system/MemoryStream.h"
#include "system/Paths.h"
#include "system/ProgramFile.h"
#include "system/Shortcut.h"
#include "system/WholeFile.h"

#include <olectl.h>
#include <shellapi.h>

using Microsoft::WRL::ComPtr;

namespace lumenor {

namespace {

constexpr std::size_t blockSize = 4096; // bytes

/// The icon that the shell shows for the file; empty when it has none, or when the path is too long for the platform's
/// call.
IconHandle AssociatedIcon(const std::wstring &path) {
  std::array<wchar_t, MAX_PATH> buffer{}; // the platform writes the icon's place into it
  if (path.size() >= buffer.size() || IsDamagedShortcut(path) || IsDamagedProgram(path, ProgramPart::Icons))
    return {};
  std::copy(path.begin(), path.end(), buffer.begin());
  WORD index = 0;
  return IconHandle(::ExtractAssociatedIconW(instanceHandle, buffer.data(), &index));
}

ComPtr<IPicture> PictureOf(HICON icon) {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = icon;
  ComPtr<IPicture> picture;
  ThrowIfFailed(::OleCreatePictureIndirect(&description, IID_IPicture, FALSE, &picture));
  return picture;
}

/// The bytes of an icon file, as many as the platform says that it has. Raises HResultError when there are fewer.
std::string BytesOfIcon(HICON icon) {
  const ComPtr<IStream> stream = MakeMemoryStream();
  LONG left = 0;
  ThrowIfFailed(PictureOf(icon)->SaveAsFile(stream.Get(), TRUE, &left));
  ThrowIfFailed(stream->Seek({}, STREAM_SEEK_SET, nullptr));
  std::string bytes;
  std::array<char, blockSize> block;
  while (left > 0) {
    ULONG read = 0;
    ThrowIfFailed(stream->Read(block.data(), static_cast<ULONG>(std::min<LONG>(left, blockSize)), &read));
    if (read == 0)
      throw HResultError(E_UNEXPECTED);
    bytes.append(block.data(), read);
    left -= static_cast<LONG>(read);
  }
  return bytes;
}

} // namespace

std::wstring CachedIconPath(const std::wstring &target) { return ImageCacheFolder() + FileNamePart(target) + L".ico"; }

std::wstring CacheAssociatedIcon(const std::wstring &target) {
  const IconHandle icon = AssociatedIcon(target);
  if (!icon)
    return {};
  std::wstring cached = CachedIconPath(target);
  if (!PathExists(cached))
    SaveIconFile(icon.Get(), cached);
  return cached;
}

void SaveIconFile(HICON icon, const std::wstring &path) noexcept {
  // A task without its picture is still a task.
  static_cast<void>(HResultOf([&] { WriteWholeFile(path, BytesOfIcon(icon)); }));
}

} // namespace lumenor
