// Annotations of a window are kept where other processes can read them.

#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "wine/Animations.h"

#include <oleacc.h>

namespace lumenor::services {

namespace {

constexpr auto client = static_cast<DWORD>(OBJID_CLIENT);
constexpr wchar_t nameProperty[] = L"lumenor_services.name";
constexpr wchar_t roleProperty[] = L"lumenor_services.role";

VARIANT Number(LONG number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

class AnnotationsTest : public ::testing::Test {
protected:
  AnnotationsTest() {
    EXPECT_EQ(::CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                                 reinterpret_cast<void **>(services.GetAddressOf())),
              S_OK);
  }
  ~AnnotationsTest() override { ::DestroyWindow(window); }

  HRESULT SetName(const wchar_t *name) {
    return services->SetHwndPropStr(window, client, CHILDID_SELF, PROPID_ACC_NAME, name);
  }
  HRESULT SetRole(const VARIANT &role) {
    return services->SetHwndProp(window, client, CHILDID_SELF, PROPID_ACC_ROLE, role);
  }
  std::wstring Name() const {
    wchar_t name[256] = {};
    const auto atom = reinterpret_cast<ULONG_PTR>(::GetPropW(window, nameProperty));
    ::GlobalGetAtomNameW(static_cast<ATOM>(atom), name, 256);
    return name;
  }

  const tests::ComApartment com;
  const HWND window = ::CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, nullptr, nullptr);
  Ptr<IAccPropServices> services;
};

TEST_F(AnnotationsTest, KeepsNameAndRoleUntilTheyAreCleared) {
  EXPECT_EQ(SetName(L"First"), S_OK);
  EXPECT_EQ(SetName(L"Suchen \u0444"), S_OK);
  EXPECT_EQ(SetRole(Number(44)), S_OK);
  EXPECT_EQ(Name(), L"Suchen \u0444");
  EXPECT_EQ(::GetPropW(window, roleProperty), reinterpret_cast<HANDLE>(44));
  EXPECT_EQ(::GlobalFindAtomW(L"First"), 0);

  const MSAAPROPID properties[] = {PROPID_ACC_NAME, PROPID_ACC_ROLE};
  EXPECT_EQ(services->ClearHwndProps(window, client, CHILDID_SELF, properties, static_cast<int>(std::size(properties))),
            S_OK);

  EXPECT_EQ(::GetPropW(window, nameProperty), nullptr);
  EXPECT_EQ(::GetPropW(window, roleProperty), nullptr);
  EXPECT_EQ(::GlobalFindAtomW(L"Suchen \u0444"), 0);
}

TEST_F(AnnotationsTest, ServesNothingElse) {
  EXPECT_EQ(services->SetHwndPropStr(nullptr, client, CHILDID_SELF, PROPID_ACC_NAME, L"x"), E_INVALIDARG);
  EXPECT_EQ(services->SetHwndPropStr(window, client, 3, PROPID_ACC_NAME, L"x"), E_NOTIMPL);
  EXPECT_EQ(services->SetHwndPropStr(window, client, CHILDID_SELF, PROPID_ACC_HELP, L"x"), E_NOTIMPL);
  EXPECT_EQ(SetRole(VARIANT{}), E_INVALIDARG);
  EXPECT_EQ(SetName(std::wstring(256, L'x').c_str()), E_INVALIDARG);
}

} // namespace

} // namespace lumenor::services
