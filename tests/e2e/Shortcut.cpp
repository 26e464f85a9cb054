#include "e2e/Shortcut.h"

#include <wrl/client.h>

#include "support/ComApartment.h"
#include "system/HResultError.h"
#include "system/Windows.h"

#include <shlobj.h>

namespace lumenor::e2e {

using Microsoft::WRL::ComPtr;

void MakeShortcut(const std::wstring &path, const Shortcut &shortcut) {
  const tests::ComApartment com;
  ComPtr<IShellLinkW> link;
  ThrowIfFailed(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(link.GetAddressOf())));
  ThrowIfFailed(link->SetPath(shortcut.target.c_str()));
  ThrowIfFailed(link->SetArguments(shortcut.arguments.c_str()));
  ThrowIfFailed(link->SetWorkingDirectory(shortcut.workingFolder.c_str()));
  ThrowIfFailed(link->SetDescription(shortcut.description.c_str()));
  ComPtr<IPersistFile> file;
  ThrowIfFailed(link.As(&file));
  ThrowIfFailed(file->Save(path.c_str(), TRUE));
}

} // namespace lumenor::e2e
