#include "dock/bar/Search.h"

#include <gtest/gtest.h>

#include "dock/bar/BarFixture.h"
#include "dock/bar/HelpPanes.h"
#include "system/HResultError.h"

namespace lumenor {

namespace {

TEST(UrlEncode, WritesTheBytesOfUtf8InLowerCase) { EXPECT_EQ(L"%c3%a4%20b", UrlEncode(L"\u00e4 b")); }

TEST(UrlEncode, OfNothingIsNothing) { EXPECT_EQ(L"", UrlEncode(L"")); }

TEST(UrlEncode, LeavesThePercentSign) { EXPECT_EQ(L"100%%20", UrlEncode(L"100% ")); }

TEST(UrlEncode, EncodesEveryUnsafeCharacter) {
  EXPECT_EQ(L"%20%22%23%24%26%2b%2c%3b%3c%3d%3e%3f%40%5b%5c%5d%5e%60%7b%7c%7d", UrlEncode(L" \"#$&+,;<=>?@[\\]^`{|}"));
}

TEST(UrlEncode, EncodesControlCharactersWithALeadingZero) { EXPECT_EQ(L"%01%1f%7f", UrlEncode(L"\x01\x1f\x7f")); }

TEST(UrlEncode, LeavesAllOthers) {
  const std::wstring safe = L"!'()*-./0123456789:ABCXYZ_abcxyz~";
  EXPECT_EQ(safe, UrlEncode(safe));
}

TEST(UrlEncode, TakesAWholePairForOneCharacter) { EXPECT_EQ(L"%f0%9f%90%a6", UrlEncode(L"\U0001f426")); }

TEST(UrlEncode, GivesNothingBehindTheLimit) {
  EXPECT_EQ(2047U, UrlEncode(std::wstring(2047, L'a')).size());
  EXPECT_EQ(L"", UrlEncode(std::wstring(2048, L'a')));
}

class Searching : public BarFixture {
protected:
  static Element Provider(const wchar_t *type, const wchar_t *params = L"") {
    Element provider;
    provider.ActionType = type;
    provider.ActionParams = params;
    return provider;
  }

  static Launch Opened(const wchar_t *url) { return {::GetDesktopWindow(), L"open", url, L"", SW_SHOW}; }
};

TEST_F(Searching, OpensTheUrlWithTheTextBehindIt) {
  SearchFor(::GetDesktopWindow(), Provider(L"url", L"http://search.invalid/?q="), L"\u00e4 b");
  EXPECT_EQ(std::vector<Launch>{Opened(L"http://search.invalid/?q=%c3%a4%20b")}, shell.Launches());
}

TEST_F(Searching, HandsALongAddressToTheBrowserItself) {
  const std::wstring start = L"http://search.invalid/?q=";
  SearchFor(::GetDesktopWindow(), Provider(L"url", start.c_str()), std::wstring(109, L'\u691c'));
  std::wstring address = start;
  for (int i = 0; i < 109; ++i)
    address += L"%e6%a4%9c";
  ASSERT_EQ(1u, shell.Launches().size());
  const Launch &launch = shell.Launches()[0];
  EXPECT_EQ(::GetDesktopWindow(), launch.owner);
  EXPECT_EQ(L"C:\\windows\\system32\\winebrowser.exe", launch.program); // as the test platform registers it
  EXPECT_EQ(L"\"" + address + L"\"", launch.arguments);
  EXPECT_EQ(SW_SHOW, launch.showCommand);
}

TEST_F(Searching, OpensNoAddressThatIsTooLong) {
  const std::wstring start = L"http://search.invalid/" + std::wstring(2062, L'x');
  SearchFor(::GetDesktopWindow(), Provider(L"url", start.c_str()), L"");
  EXPECT_EQ(std::vector<Launch>{}, shell.Launches());
}

TEST_F(Searching, DoesNothingForAnEmptyProvider) {
  SearchFor(::GetDesktopWindow(), Element(), L"text");
  EXPECT_EQ(std::vector<Launch>{}, shell.Launches());
}

TEST_F(Searching, DoesNothingForAnotherType) {
  SearchFor(::GetDesktopWindow(), Provider(L"URL", L"http://search.invalid/"), L"text");
  EXPECT_EQ(std::vector<Launch>{}, shell.Launches());
}

TEST_F(Searching, ForHelpTrimsTheBlanks) {
  const HelpPaneRegistration help;
  SearchFor(nullptr, Provider(L"helpSearch"), L"  two words\t ");
  EXPECT_EQ(std::vector<std::wstring>{L"two words\t"}, helpSearches);
  EXPECT_EQ(std::vector<Launch>{}, shell.Launches());
}

TEST_F(Searching, ForHelpWithBlanksOnlyOpensNothing) {
  const HelpPaneRegistration help;
  SearchFor(nullptr, Provider(L"helpSearch"), L"   ");
  EXPECT_EQ(std::vector<std::wstring>{}, helpSearches);
}

TEST_F(Searching, ForHelpRaisesWhenThePaneFails) {
  HelpPaneRegistration help;
  help.pane.result = E_FAIL;
  EXPECT_THROW(SearchFor(nullptr, Provider(L"helpSearch"), L"text"), HResultError);
}

TEST_F(Searching, ForHelpRaisesWhenThereIsNoPane) {
  HelpPaneRegistration help;
  help.isThere = false;
  EXPECT_THROW(SearchFor(nullptr, Provider(L"helpSearch"), L"text"), HResultError);
}

} // namespace

} // namespace lumenor
