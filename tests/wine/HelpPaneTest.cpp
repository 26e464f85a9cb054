// The help pane writes down what it is asked to search for.

#include <string>

#include <gtest/gtest.h>

#include "support/ComApartment.h"
#include "support/TestFolders.h"
#include "wine/Animations.h"

#include <oleauto.h>

namespace lumenor::services {

namespace {

constexpr CLSID helpPaneClass{0x8CEC58E7, 0x07A1, 0x11D9, {0xB1, 0x5E, 0x00, 0x0D, 0x56, 0xBF, 0xE6, 0xEE}};
constexpr IID helpPaneInterface{0x8CEC5884, 0x07A1, 0x11D9, {0xB1, 0x5E, 0x00, 0x0D, 0x56, 0xBF, 0xE6, 0xEE}};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // as the platform's interfaces, it has none
struct IPane : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE DisplayTask(BSTR url) = 0;
  virtual HRESULT STDMETHODCALLTYPE DisplayContents(BSTR url) = 0;
  virtual HRESULT STDMETHODCALLTYPE DisplaySearchResults(BSTR query) = 0;
};
#pragma GCC diagnostic pop

class HelpPaneTest : public ::testing::Test {
protected:
  HelpPaneTest() {
    EXPECT_EQ(::CoCreateInstance(helpPaneClass, nullptr, CLSCTX_INPROC_SERVER, helpPaneInterface,
                                 reinterpret_cast<void **>(pane.GetAddressOf())),
              S_OK);
  }

  HRESULT Search(const std::wstring &text) {
    const BSTR query = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    const HRESULT result = pane->DisplaySearchResults(query);
    ::SysFreeString(query);
    return result;
  }

  const tests::ComApartment com;
  tests::TestFolders folders;
  const std::wstring path = folders.Root() + L"\\help.txt";
  tests::EnvironmentValue record{L"LUMENOR_HELP_RECORD", path};
  Ptr<IPane> pane;
};

TEST_F(HelpPaneTest, AppendsEachSearchAsALineOfUtf8) {
  EXPECT_EQ(Search(L"printer"), S_OK);
  EXPECT_EQ(Search(L"Gr\u00f6\u00dfe \U0001F600"), S_OK);
  EXPECT_EQ(Search(L""), S_OK);
  EXPECT_EQ(tests::ReadBytes(path), "printer\nGr\xC3\xB6\xC3\x9F"
                                    "e \xF0\x9F\x98\x80\n\n");
}

TEST_F(HelpPaneTest, ItsOtherPagesArentServed) {
  EXPECT_EQ(pane->DisplayTask(nullptr), E_NOTIMPL);
  EXPECT_EQ(pane->DisplayContents(nullptr), E_NOTIMPL);
}

TEST_F(HelpPaneTest, WithoutARecordItIsOnlyShown) {
  record.Remove();
  EXPECT_EQ(Search(L"printer"), S_OK);
  EXPECT_EQ(::GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(HelpPaneTest, TellsWhenTheRecordCantBeWritten) {
  record.Set(folders.Root());
  EXPECT_EQ(Search(L"printer"), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
}

} // namespace

} // namespace lumenor::services
