#include "support/Shortcut.h"

#include <wrl/client.h>

#include "support/ComApartment.h"
#include "system/HResultError.h"
#include "system/Windows.h"

#include <shlobj.h>

namespace lumenor::tests {

using Microsoft::WRL::ComPtr;

void MakeShortcut(const std::wstring &path, const Shortcut &shortcut) {
  const ComApartment com;
  ComPtr<IShellLinkW> link;
  ThrowIfFailed(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&link)));
  ThrowIfFailed(link->SetPath(shortcut.target.c_str()));
  ThrowIfFailed(link->SetArguments(shortcut.arguments.c_str()));
  ThrowIfFailed(link->SetWorkingDirectory(shortcut.workingFolder.c_str()));
  ThrowIfFailed(link->SetDescription(shortcut.description.c_str()));
  if (!shortcut.iconFile.empty())
    ThrowIfFailed(link->SetIconLocation(shortcut.iconFile.c_str(), 0));
  ComPtr<IPersistFile> file;
  ThrowIfFailed(link.As(&file));
  ThrowIfFailed(file->Save(path.c_str(), TRUE));
}

} // namespace lumenor::tests
