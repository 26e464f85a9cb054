#include "Module.h"

#include <atomic>

#include "Classes.h"
#include "ClassFactory.h"
#include "TickWindow.h"

namespace lumenor::services {

namespace {

std::atomic<long> locks = 0;
HINSTANCE moduleInstance = nullptr;

} // namespace

ModuleLock::ModuleLock() { ++locks; }

ModuleLock::~ModuleLock() { --locks; }

long ModuleLock::Count() { return locks; }

HINSTANCE ModuleInstance() { return moduleInstance; }

} // namespace lumenor::services

using namespace lumenor::services;

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void **object) {
  if (object == nullptr)
    return E_POINTER;
  *object = nullptr;
  const Creator create = FindClass(classId);
  return create == nullptr ? CLASS_E_CLASSNOTAVAILABLE
                           : lumenor::MakeComObject<ClassFactory>(create)->QueryInterface(id, object);
}

STDAPI DllCanUnloadNow() { return ModuleLock::Count() == 0 ? S_OK : S_FALSE; }

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void *) {
  if (reason == DLL_PROCESS_ATTACH) {
    moduleInstance = instance;
    ::DisableThreadLibraryCalls(instance);
  } else if (reason == DLL_PROCESS_DETACH) {
    TickWindow::ForgetClass();
  }
  return TRUE;
}
