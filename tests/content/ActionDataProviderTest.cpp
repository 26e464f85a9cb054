#include "content/ActionDataProvider.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "content/ProviderData.h"
#include "support/HeldFile.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/ProcessorTime.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

extern "C" {
extern decltype(&::CoCreateInstance) __imp_CoCreateInstance;
}

namespace lumenor {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char notFoundLine[] = "ERROR: Could not find the searchproviders.xml file";

std::string Repeated(const std::string &text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i)
    repeated += text;
  return repeated;
}

std::vector<std::wstring> HeadsOf(const ElementList &elements) {
  std::vector<std::wstring> heads;
  for (const Element &element : elements)
    heads.push_back(element.Head);
  return heads;
}

/// Counts what the DOM is asked for, and lets it fail as long as failures are left.
class FailingDom {
public:
  explicit FailingDom(int failuresToCome) { failures = failuresToCome, calls = 0; }
  int Calls() const { return calls; }

private:
  static HRESULT WINAPI CreateOrFail(const CLSID &classId, IUnknown *outer, DWORD context, const IID &id,
                                     void **object) {
    ++calls;
    if (failures > 0) {
      --failures;
      return REGDB_E_CLASSNOTREG;
    }
    return createInstance(classId, outer, context, id, object);
  }

  static inline int failures = 0;
  static inline int calls = 0;
  static inline decltype(&::CoCreateInstance) createInstance = nullptr;
  const tests::ImportSlot<decltype(&::CoCreateInstance)> slot{
      (createInstance = __imp_CoCreateInstance, &__imp_CoCreateInstance), &CreateOrFail};
};

class ForYou : public ProviderData {
protected:
  ForYouProvider provider;
};

TEST_F(ForYou, ReadsNothingBeforeItIsAsked) {
  const tests::LogCapture log(folders);
  WriteForYou(Numbered("Element", 1));
  const ForYouProvider untouched;
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(ForYou, HasNothingWithoutAFile) { EXPECT_THAT(provider.GetElements(), IsEmpty()); }

TEST_F(ForYou, ReadsFiveFieldsOfAnEntry) {
  WriteForYou(
      "<Element><Position>7</Position><Head MaxLength=\"9\">Gr\xC3\xBC\xC3\x9F"
      "e</Head><ToolTip MaxLength=\"8\">Tip</ToolTip><ActionType>url</ActionType><ActionParams>https://x.example/"
      "?a=1&amp;b=2</ActionParams><ActionParamsBackup>no</ActionParamsBackup><Image>..\\resources\\x.png</Image>"
      "<Spare1>no</Spare1></Element>");
  Element expected;
  expected.Head = L"Gr\u00FC\u00DFe";
  expected.ToolTip = L"Tip";
  expected.ActionType = L"url";
  expected.ActionParams = L"https://x.example/?a=1&b=2";
  expected.Image = L"..\\resources\\x.png";
  EXPECT_EQ(ElementList({expected}), provider.GetElements());
}

TEST_F(ForYou, TakesMissingFieldsForEmpty) {
  WriteForYou("<Element/>");
  EXPECT_EQ(ElementList(1), provider.GetElements());
}

TEST_F(ForYou, TakesTheFirstFiveOfSeven) {
  WriteForYou(Numbered("Element", 7));
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2", L"3", L"4", L"5"));
}

TEST_F(ForYou, LooksForItsEntriesUnderTheirOwnName) {
  tests::WriteBytes(ForYouPath(),
                    "<UIRoot><Other><Elements>" + Numbered("Element", 1) + "</Elements></Other></UIRoot>");
  EXPECT_THAT(provider.GetElements(), IsEmpty());
}

TEST_F(ForYou, FindsItsEntriesAtAnyDepth) {
  tests::WriteBytes(ForYouPath(), "<Wrapped><UIRoot><Lumenor.MainFrame.Controls.DockPopup.ForYou><Elements>" +
                                      Numbered("Element", 1) +
                                      "</Elements></Lumenor.MainFrame.Controls.DockPopup.ForYou></UIRoot></Wrapped>");
  EXPECT_THAT(provider.GetElements(), SizeIs(1));
}

TEST_F(ForYou, IsReadOnceItsWriterHasClosedIt) {
  WriteForYou(Numbered("Element", 2));
  const tests::HeldFile held(ForYouPath(), 3);
  ASSERT_TRUE(held.IsHeld());
  EXPECT_THAT(provider.GetElements(), SizeIs(2));
}

TEST_F(ForYou, IsEmptiedByAFileWithoutEntries) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  WriteForYou("");
  EXPECT_THAT(provider.GetElements(), IsEmpty());
}

TEST_F(ForYou, ReplacesItsListAndAddsNothingToIt) {
  WriteForYou(Numbered("Element", 3));
  provider.GetElements();
  WriteForYou("<Element><Head>new</Head></Element>");
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"new"));
}

TEST_F(ForYou, KeepsItsListWhenTheFileIsDeleted) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  ::DeleteFileW(ForYouPath().c_str());
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(ForYou, ReadsNothingOfADeletedFile) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  ::DeleteFileW(ForYouPath().c_str());
  const tests::LogCapture log(folders);
  const FailingDom dom(0);
  provider.GetElements();
  EXPECT_EQ(0, dom.Calls());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Getting last modified time for " + tests::Utf8(ForYouPath())));
  WriteForYou(Numbered("Element", 1));
  provider.GetElements();
  EXPECT_EQ(1, dom.Calls()) << "of a file that is there";
}

TEST_F(ForYou, KeepsItsListForAMalformedFileWithoutALine) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  WriteForYou("<Element>");
  const tests::LogCapture log(folders);
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Getting last modified time for " + tests::Utf8(ForYouPath())));
}

TEST_F(ForYou, ReadsAnUnchangedFileAgain) {
  WriteForYou(Numbered("Element", 1));
  const FailingDom dom(0);
  provider.GetElements();
  EXPECT_EQ(1, dom.Calls());
  provider.GetElements();
  EXPECT_EQ(2, dom.Calls());
}

TEST_F(ForYou, ReadsAFileOfTheSameTimeAndLengthAgain) {
  WriteForYou("<Element><Head>old</Head></Element>");
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  ::GetFileAttributesExW(ForYouPath().c_str(), GetFileExInfoStandard, &data);
  provider.GetElements();
  WriteForYou("<Element><Head>new</Head></Element>");
  FileHandle file(
      ::CreateFileW(ForYouPath().c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ::SetFileTime(file.Get(), nullptr, nullptr, &data.ftLastWriteTime);
  file.Reset();
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"new"));
}

TEST_F(ForYou, KeepsItsListWhileTheFileIsClosedToOthers) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  const FileHandle file(
      ::CreateFileW(ForYouPath().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_TRUE(file);
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(ForYou, GivesACopyOfItsList) {
  WriteForYou(Numbered("Element", 1));
  ElementList first = provider.GetElements();
  first.clear();
  ::DeleteFileW(ForYouPath().c_str());
  EXPECT_THAT(provider.GetElements(), SizeIs(1));
}

TEST_F(ForYou, TriesAgainAfterAFailureOfTheDom) {
  WriteForYou(Numbered("Element", 1));
  const FailingDom dom(4);
  EXPECT_THAT(provider.GetElements(), SizeIs(1));
  EXPECT_EQ(5, dom.Calls());
}

TEST_F(ForYou, KeepsItsListAfterFiveFailuresOfTheDom) {
  WriteForYou(Numbered("Element", 1));
  provider.GetElements();
  WriteForYou(Numbered("Element", 3));
  const FailingDom dom(6);
  EXPECT_THAT(provider.GetElements(), SizeIs(1));
  EXPECT_EQ(5, dom.Calls());
}

TEST_F(ForYou, RaisesAFailureOfTheDomOutOfARefresh) {
  WriteForYou(Numbered("Element", 1));
  const FailingDom dom(1);
  EXPECT_THROW(provider.Refresh(), HResultError);
}

// Files of others, which may hold anything.

TEST_F(ForYou, KeepsItsListForWhateverIsNoXml) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  const std::string empty, binary("\x89PNG\0\0\xFF\xFE", 8), zeros(4096, '\0'), open("<UIRoot><"), text("not XML");
  for (const std::string &bytes : {empty, binary, zeros, open, text}) {
    tests::WriteBytes(ForYouPath(), bytes);
    EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
  }
}

TEST_F(ForYou, KeepsItsListWhenAFolderTakesTheFilesPlace) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  ::DeleteFileW(ForYouPath().c_str());
  tests::MakeFolders(ForYouPath());
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(ForYou, KeepsItsListForAFileWithADoctype) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  tests::WriteBytes(ForYouPath(), "<!DOCTYPE UIRoot [<!ENTITY e \"text\">]>"
                                  "<UIRoot><Lumenor.MainFrame.Controls.DockPopup.ForYou><Elements><Element>"
                                  "<Head>a&e;</Head></Element></Elements>"
                                  "</Lumenor.MainFrame.Controls.DockPopup.ForYou></UIRoot>");
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(ForYou, KeepsItsListForEntitiesThatGrowBeyondMeasure) {
  WriteForYou(Numbered("Element", 2));
  provider.GetElements();
  std::string entities = "<!ENTITY e0 \"0123456789\">";
  for (int i = 1; i <= 9; ++i)
    entities += "<!ENTITY e" + std::to_string(i) + " \"" + Repeated("&e" + std::to_string(i - 1) + ";", 10) + "\">";
  tests::WriteBytes(ForYouPath(), "<!DOCTYPE UIRoot [" + entities +
                                      "]><UIRoot><Lumenor.MainFrame.Controls.DockPopup.ForYou><Elements><Element>"
                                      "<Head>&e9;</Head></Element></Elements>"
                                      "</Lumenor.MainFrame.Controls.DockPopup.ForYou></UIRoot>");
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(ForYou, ReadsFiveOfAHundredThousandQuickly) {
  WriteForYou(Numbered("Element", 100'000));
  const ULONGLONG start = tests::ProcessorMs();
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2", L"3", L"4", L"5"));
  EXPECT_GT(4000u, tests::ProcessorMs() - start);
}

TEST_F(ForYou, ReadsTextsOf64KilobytesWhole) {
  const std::string longText(65'536, 'x');
  WriteForYou(Repeated("<Element><Head>" + longText + "</Head><ToolTip>" + longText + "</ToolTip><Image>" + longText +
                           "</Image><ActionParams>" + longText + "</ActionParams></Element>",
                       5));
  const ElementList elements = provider.GetElements();
  ASSERT_THAT(elements, SizeIs(5));
  EXPECT_EQ(std::wstring(65'536, L'x'), elements[4].Head);
  EXPECT_EQ(std::wstring(65'536, L'x'), elements[4].Image);
}

TEST_F(ForYou, ReadsFiveOfAHugeFile) {
  WriteForYou(Repeated("<!-- " + std::string(1000, 'x') + " -->", 3000) + Numbered("Element", 150'000));
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2", L"3", L"4", L"5"));
}

TEST_F(ForYou, ReadsEntriesWithUnknownActions) {
  WriteForYou("<Element><ActionType>format</ActionType></Element><Element><ActionType>URL</ActionType></Element>");
  const ElementList elements = provider.GetElements();
  ASSERT_THAT(elements, SizeIs(2));
  EXPECT_EQ(L"format", elements[0].ActionType);
  EXPECT_EQ(L"URL", elements[1].ActionType);
}

TEST_F(ForYou, ReadsAFileOfSixteenBitCharacters) {
  const std::wstring xml = L"\uFEFF<?xml version=\"1.0\" encoding=\"utf-16\"?><UIRoot>"
                           L"<Lumenor.MainFrame.Controls.DockPopup.ForYou><Elements><Element><Head>\u5929\u6C17</Head>"
                           L"</Element></Elements></Lumenor.MainFrame.Controls.DockPopup.ForYou></UIRoot>";
  tests::WriteBytes(ForYouPath(),
                    std::string(reinterpret_cast<const char *>(xml.data()), xml.size() * sizeof(wchar_t)));
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"\u5929\u6C17"));
}

class SearchProviders : public ProviderData {};

TEST_F(SearchProviders, AreReadAtOnce) {
  WriteSearch(Numbered("Providers", 2));
  SearchProvider provider;
  ::DeleteFileW(SearchPath().c_str());
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(SearchProviders, HaveFourFields) {
  WriteSearch("<Providers><Image>i.png</Image><Head MaxLength=\"3\">Web</Head><ToolTip>no</ToolTip>"
              "<Position>4</Position><ActionType>url</ActionType><ActionParams>https://x.example/?q=</ActionParams>"
              "</Providers>");
  Element expected;
  expected.Head = L"Web";
  expected.ActionType = L"url";
  expected.ActionParams = L"https://x.example/?q=";
  expected.Image = L"i.png";
  EXPECT_EQ(ElementList({expected}), SearchProvider().GetElements());
}

TEST_F(SearchProviders, AreFiveAtMost) {
  WriteSearch(Numbered("Providers", 9));
  EXPECT_THAT(HeadsOf(SearchProvider().GetElements()), ElementsAre(L"1", L"2", L"3", L"4", L"5"));
}

TEST_F(SearchProviders, StandBelowTheirRoot) {
  tests::WriteBytes(SearchPath(), "<Wrapped><SearchingProviders>" + Numbered("Providers", 1) +
                                      "</SearchingProviders><Providers><Head>no</Head></Providers></Wrapped>");
  EXPECT_THAT(HeadsOf(SearchProvider().GetElements()), ElementsAre(L"1"));
}

TEST_F(SearchProviders, AreFoundInTheUsersFolderLast) {
  tests::WriteBytes(folders.UserFolder() + L"\\SearchProviders.xml",
                    "<SearchingProviders>" + Numbered("Providers", 1) + "</SearchingProviders>");
  EXPECT_THAT(SearchProvider().GetElements(), SizeIs(1));
  WriteSearch(Numbered("Providers", 2));
  EXPECT_THAT(SearchProvider().GetElements(), SizeIs(2));
}

std::vector<std::string> ErrorsIn(const std::vector<std::string> &lines) {
  std::vector<std::string> errors;
  for (const std::string &line : lines)
    if (line.starts_with("ERROR: "))
      errors.push_back(line);
  return errors;
}

TEST_F(SearchProviders, LogOneErrorARefreshWithoutAFile) {
  const tests::LogCapture log(folders);
  SearchProvider provider;
  EXPECT_THAT(ErrorsIn(log.Lines()), ElementsAre(notFoundLine));
  EXPECT_THAT(provider.GetElements(), IsEmpty());
  EXPECT_THAT(ErrorsIn(log.Lines()), ElementsAre(notFoundLine, notFoundLine));
}

TEST_F(SearchProviders, StayWhenTheFileIsDeleted) {
  WriteSearch(Numbered("Providers", 2));
  SearchProvider provider;
  ::DeleteFileW(SearchPath().c_str());
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(SearchProviders, StayForAMalformedFileWithoutAnError) {
  WriteSearch(Numbered("Providers", 2));
  SearchProvider provider;
  WriteSearch("<Providers>");
  const tests::LogCapture log(folders);
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
  EXPECT_THAT(ErrorsIn(log.Lines()), IsEmpty());
}

TEST_F(SearchProviders, StayWhenAFolderTakesTheFilesPlace) {
  WriteSearch(Numbered("Providers", 2));
  SearchProvider provider;
  ::DeleteFileW(SearchPath().c_str());
  tests::MakeFolders(SearchPath());
  EXPECT_THAT(HeadsOf(provider.GetElements()), ElementsAre(L"1", L"2"));
}

TEST_F(SearchProviders, AreReadAgainEachTime) {
  WriteSearch(Numbered("Providers", 1));
  SearchProvider provider;
  const FailingDom dom(0);
  provider.GetElements();
  provider.GetElements();
  EXPECT_EQ(2, dom.Calls());
  WriteSearch(Numbered("Providers", 3));
  EXPECT_THAT(provider.GetElements(), SizeIs(3));
}

TEST_F(SearchProviders, RaiseAFailureOfTheDomOutOfTheConstruction) {
  WriteSearch(Numbered("Providers", 1));
  const FailingDom dom(1);
  EXPECT_THROW(SearchProvider(), HResultError);
}

TEST_F(SearchProviders, SurviveFiveFailuresOfTheDom) {
  WriteSearch(Numbered("Providers", 1));
  SearchProvider provider;
  const FailingDom dom(6);
  EXPECT_THAT(provider.GetElements(), SizeIs(1));
  EXPECT_EQ(5, dom.Calls());
}

TEST_F(SearchProviders, ReadFiveOfAHundredThousandQuickly) {
  WriteSearch(Numbered("Providers", 100'000));
  const ULONGLONG start = tests::ProcessorMs();
  EXPECT_THAT(SearchProvider().GetElements(), SizeIs(5));
  EXPECT_GT(8000u, tests::ProcessorMs() - start); // for two readings
}

// What both providers share.

class RefusingProvider : public FileDataProvider {
public:
  void Refresh() override {
    ++tries;
    onRefresh();
  }
  int tries = 0;
  std::function<void()> onRefresh;
};

TEST(FileDataProvider, TriesFiveTimesAtMost) {
  RefusingProvider provider;
  provider.onRefresh = [] { throw HResultError(E_FAIL); };
  EXPECT_THAT(provider.GetElements(), IsEmpty());
  EXPECT_EQ(5, provider.tries);
}

TEST(FileDataProvider, EndsItsTriesWithTheFirstThatReturns) {
  RefusingProvider provider;
  provider.onRefresh = [&] {
    if (provider.tries < 3)
      throw HResultError(E_FAIL);
  };
  provider.GetElements();
  EXPECT_EQ(3, provider.tries);
}

TEST(FileDataProvider, LetsAnotherExceptionPass) {
  RefusingProvider provider;
  provider.onRefresh = [] { throw std::runtime_error("another"); };
  EXPECT_THROW(provider.GetElements(), std::runtime_error);
  EXPECT_EQ(1, provider.tries);
}

} // namespace

} // namespace lumenor
