// The DLL: what it serves, and when it may go.

#include "wine/Animations.h"

#include <shobjidl.h>

namespace lumenor::services {

namespace {

using GetClassObjectFunction = HRESULT(STDAPICALLTYPE *)(REFCLSID, REFIID, void **);
using CanUnloadFunction = HRESULT(STDAPICALLTYPE *)();

template <typename Function> Function Exported(const char *name) {
  const HMODULE module = ::GetModuleHandleW(L"lumenor_services.dll");
  return reinterpret_cast<Function>(reinterpret_cast<void *>(::GetProcAddress(module, name)));
}

HRESULT CanUnload() { return Exported<CanUnloadFunction>("DllCanUnloadNow")(); }

class ModuleTest : public ::testing::Test {
protected:
  const tests::ComApartment com;
};

TEST_F(ModuleTest, NothingIsLeftWhenAllIsGivenBack) {
  auto manager = Create<IUIAnimationManager>(CLSID_UIAnimationManager);
  auto library = Create<IUIAnimationTransitionLibrary>(CLSID_UIAnimationTransitionLibrary);
  auto timer = Create<IUIAnimationTimer>(CLSID_UIAnimationTimer);
  Ptr<IUIAnimationTimerUpdateHandler> updateHandler;
  ASSERT_EQ(manager.As(&updateHandler), S_OK);
  ASSERT_EQ(timer->SetTimerUpdateHandler(updateHandler.Get(), UI_ANIMATION_IDLE_BEHAVIOR_DISABLE), S_OK);
  updateHandler.Reset();
  double now = 0;
  ASSERT_EQ(timer->GetTime(&now), S_OK);
  {
    Ptr<IUIAnimationVariable> variable;
    Ptr<IUIAnimationTransition> transition;
    ASSERT_EQ(manager->CreateAnimationVariable(0, &variable), S_OK);
    ASSERT_EQ(library->CreateLinearTransition(60, 1, &transition), S_OK);
    ASSERT_EQ(manager->ScheduleTransition(variable.Get(), transition.Get(), now), S_OK);
  }
  EXPECT_EQ(CanUnload(), S_FALSE);
  manager.Reset();
  EXPECT_EQ(CanUnload(), S_FALSE) << "the timer still holds it, and it what plays";
  timer.Reset();
  EXPECT_EQ(CanUnload(), S_FALSE) << "the library is left";
  library.Reset();
  EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(ModuleTest, NothingIsLeftOfLinksAndLists) {
  auto link = Create<IShellLinkW>(CLSID_ShellLink);
  auto collection = Create<IObjectCollection>(CLSID_EnumerableObjectCollection);
  auto list = Create<ICustomDestinationList>(CLSID_DestinationList);
  ASSERT_EQ(collection->AddObject(link.Get()), S_OK);
  {
    UINT slots = 0;
    Ptr<IObjectArray> removed;
    ASSERT_EQ(list->BeginList(&slots, IID_PPV_ARGS(&removed)), S_OK);
    ASSERT_EQ(collection->AddObject(removed.Get()), S_OK);
  }
  link.Reset();
  list.Reset();
  EXPECT_EQ(CanUnload(), S_FALSE) << "the collection holds what was added";
  collection.Reset();
  EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(ModuleTest, LockOfAFactoryKeepsItLoaded) {
  Ptr<IClassFactory> factory;
  ASSERT_EQ(::CoGetClassObject(CLSID_UIAnimationManager, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory)), S_OK);
  EXPECT_EQ(CanUnload(), S_FALSE);
  ASSERT_EQ(factory->LockServer(TRUE), S_OK);
  factory.Reset();
  EXPECT_EQ(CanUnload(), S_FALSE);
  ASSERT_EQ(::CoGetClassObject(CLSID_UIAnimationManager, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory)), S_OK);
  ASSERT_EQ(factory->LockServer(FALSE), S_OK);
  factory.Reset();
  EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(ModuleTest, RefusesAggregationAndStrangers) {
  const auto outer = Create<IUIAnimationManager>(CLSID_UIAnimationManager);
  void *object = outer.Get();
  EXPECT_EQ(
      ::CoCreateInstance(CLSID_UIAnimationManager, outer.Get(), CLSCTX_INPROC_SERVER, __uuidof(IUnknown), &object),
      CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
  const auto getClassObject = Exported<GetClassObjectFunction>("DllGetClassObject");
  EXPECT_EQ(getClassObject(GUID_NULL, __uuidof(IClassFactory), &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(getClassObject(CLSID_UIAnimationTimer, __uuidof(IUIAnimationTimer), &object), E_NOINTERFACE);
  EXPECT_EQ(getClassObject(CLSID_UIAnimationTimer, __uuidof(IClassFactory), nullptr), E_POINTER);
  EXPECT_EQ(outer->QueryInterface(__uuidof(IUIAnimationTimer), &object), E_NOINTERFACE);
  EXPECT_EQ(outer->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
}

} // namespace

} // namespace lumenor::services
