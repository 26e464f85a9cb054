#include "app/JumpListPlatform.h"

#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "content/JumpList.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

using SetApplicationIdFunction = HRESULT(WINAPI *)(PCWSTR);

/// Looked up, not imported, so that the program also starts with a shell that lacks the function.
SetApplicationIdFunction FindSetApplicationId() {
  const HMODULE shell = ::GetModuleHandleW(L"Shell32.dll");
  if (shell == nullptr)
    return nullptr;
  return reinterpret_cast<SetApplicationIdFunction>(
      reinterpret_cast<void *>(::GetProcAddress(shell, "SetCurrentProcessExplicitAppUserModelID")));
}

/// A process keeps its ID, so only the first cycle has to set it.
void SetApplicationId() {
  if (hasApplicationId)
    return;
  if (const SetApplicationIdFunction setApplicationId = FindSetApplicationId()) {
    ThrowIfFailed(setApplicationId(applicationUserModelId));
    hasApplicationId = true;
  }
}

} // namespace

bool IsJumpListPlatform() {
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  return ::GetVersionExW(&version) && version.dwMajorVersion == 6 && version.dwMinorVersion == 1;
}

void PublishJumpList() {
  LogInfo("Jumplist creation");
  if (!IsJumpListPlatform())
    return;
  SetApplicationId();
  const ElementList mainElements = LoadDocument(mainDocumentName, false);
  const ElementList jumpListElements = LoadDocument(jumpListDocumentName, false);
  LogInfo("Create jumplist");
  ThrowIfFailed(CreateJumpList(mainElements, jumpListElements));
}

} // namespace lumenor
