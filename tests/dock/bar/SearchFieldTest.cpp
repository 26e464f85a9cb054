// The search field of the bar: which provider it is for, and what starts a search.

#include <gtest/gtest.h>

#include "dock/bar/BarFixture.h"
#include "dock/bar/HelpPanes.h"
#include "support/Desk.h"
#include "system/HResultError.h"
#include "system/WindowException.h"

namespace lumenor {

namespace {

class SearchField : public BarFixture {
protected:
  static Element Provider(const wchar_t *head, const wchar_t *type, const wchar_t *params) {
    Element provider;
    provider.Head = head;
    provider.ActionType = type;
    provider.ActionParams = params;
    return provider;
  }

  void Choose(const Element &provider) const { SendAddress(dock->handle, SetSearchProviderMessage, &provider); }

  TextBox &Field() const { return BarTree(*dock).textBox; }

  void Type(const wchar_t *text) const { ::SetWindowTextW(Field().GetHandle(), text); }

  void PressSearchButton() const {
    const HWND button = BarTree(*dock).searchButton.GetHandle();
    ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button));
  }

  Launch Opened(const wchar_t *url) const { return {dock->handle, L"open", url, L"", SW_SHOW}; }
};

using Launches = std::vector<Launch>;

const wchar_t searchUrl[] = L"http://search.invalid/?q=";

TEST_F(SearchField, TakesTheFirstProviderAtTheStart) {
  WriteSearchProviders({L"First", L"Second"});
  Start();
  EXPECT_EQ(L"First", dock->GetSelectedProvider().Head);
  EXPECT_EQ(L"First", Field().WatermarkText.Get());
}

TEST_F(SearchField, WithoutAProviderHasNoWatermark) {
  Start();
  EXPECT_EQ(L"", Field().WatermarkText.Get());
}

TEST_F(SearchField, ShowsTheNameOfTheProviderThatIsChosen) {
  Start();
  Choose(Provider(L"Somewhere", L"url", searchUrl));
  EXPECT_EQ(L"Somewhere", Field().WatermarkText.Get());
}

TEST_F(SearchField, HasItsIdItsLimitAndTheBarsFont) {
  Start();
  EXPECT_EQ(100, ::GetDlgCtrlID(Field().GetHandle()));
  EXPECT_EQ(150, ::SendMessageW(Field().GetHandle(), EM_GETLIMITTEXT, 0, 0));
  EXPECT_EQ(10.0F, Field().FontSize);
}

TEST_F(SearchField, SearchesAtTheButton) {
  Start();
  Choose(Provider(L"Somewhere", L"url", searchUrl));
  Type(L"\u00e4 b");
  PressSearchButton();
  EXPECT_EQ(Launches{Opened(L"http://search.invalid/?q=%c3%a4%20b")}, shell.Launches());
}

TEST_F(SearchField, SearchesAtReturn) {
  Start();
  Choose(Provider(L"Somewhere", L"url", searchUrl));
  Type(L"text");
  ::SendMessageW(Field().GetHandle(), WM_GETDLGCODE, VK_RETURN, 0);
  EXPECT_EQ(Launches{Opened(L"http://search.invalid/?q=text")}, shell.Launches());
}

TEST_F(SearchField, KeepsItsTextAfterASearch) {
  Start();
  Choose(Provider(L"Somewhere", L"url", searchUrl));
  Type(L"text");
  PressSearchButton();
  wchar_t text[16] = {};
  ::GetWindowTextW(Field().GetHandle(), text, 16);
  EXPECT_STREQ(L"text", text);
}

TEST_F(SearchField, WithoutATextDoesNothing) {
  Start();
  Choose(Provider(L"Somewhere", L"url", searchUrl));
  PressSearchButton();
  EXPECT_EQ(Launches{}, shell.Launches());
}

TEST_F(SearchField, WithoutAProviderDoesNothing) {
  Start();
  Type(L"text");
  PressSearchButton();
  EXPECT_EQ(Launches{}, shell.Launches());
  EXPECT_NE(nullptr, dock->handle);
}

TEST_F(SearchField, HandsOnTheWholeOfALongText) {
  Start();
  Choose(Provider(L"Somewhere", L"url", searchUrl));
  Type(std::wstring(150, L'x').c_str());
  PressSearchButton();
  EXPECT_EQ(Launches{Opened((searchUrl + std::wstring(150, L'x')).c_str())}, shell.Launches());
}

TEST_F(SearchField, AFailedHelpSearchGoesOnToTheMessageLoop) {
  HelpPaneRegistration help;
  help.isThere = false;
  Start();
  Choose(Provider(L"Help", L"helpSearch", L""));
  Type(L"text");
  PressSearchButton();
  EXPECT_THROW(RethrowWindowException(), HResultError);
}

TEST_F(SearchField, TogglesTheListOfItsProviders) {
  WriteSearchProviders({L"First", L"Second", L"Third"});
  Start();
  const HWND button = BarTree(*dock).searchProviderButton.GetHandle();
  ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button));
  EXPECT_TRUE(dock->IsKeptAwake());
  RECT place{};
  ::GetWindowRect(::GetActiveWindow(), &place);
  // 95 before the bar's right end, 51 below its top, 40 a row and no header; pushed back to the screen's end.
  EXPECT_EQ((std::vector<LONG>{190 + 900 - 95, 1 + 51, 190 + 900 - 95 + 240, 1 + 51 + 120}),
            (std::vector<LONG>{place.left, place.top, place.right, place.bottom}));
  ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button));
  EXPECT_FALSE(dock->IsKeptAwake());
}

} // namespace

} // namespace lumenor
