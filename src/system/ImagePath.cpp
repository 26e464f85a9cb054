#include "system/ImagePath.h"

#include "system/Log.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

std::wstring FallBack(const std::wstring &tried, const std::wstring &folder, const std::wstring &imagePath) {
  std::wstring next = folder + L"\\" + imagePath;
  LogInfo("WICHelper: can't find %S falling back to %S", tried.c_str(), next.c_str());
  return next;
}

} // namespace

std::wstring ResolveImagePath(const std::wstring &imagePath) {
  if (PathExists(imagePath))
    return imagePath;
  const std::wstring installed = FallBack(imagePath, InstallFolder(), imagePath);
  if (PathExists(installed))
    return installed;
  return FallBack(installed, ExpandPath(product::stubFolder), imagePath);
}

std::wstring ImageCacheFolder() {
  std::wstring folder = ExpandPath(product::imageCacheFolder);
  ::CreateDirectoryW(folder.c_str(), nullptr);
  return folder;
}

} // namespace lumenor
