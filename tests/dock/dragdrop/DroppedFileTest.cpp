// What a dropped file becomes.

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "dock/dragdrop/DroppedFile.h"
#include "support/ImportSlot.h"
#include "support/ProgramBytes.h"
#include "support/TestFolders.h"
#include "system/Handles.h"

#include <shellapi.h>

extern "C" decltype(&::SHGetLocalizedName) __imp_SHGetLocalizedName;
extern "C" decltype(&::LoadStringW) __imp_LoadStringW;

namespace lumenor {

namespace {

/// Where the platform says that a localized name is.
std::wstring nameModule;
int nameId = 0;

HRESULT WINAPI GetTestName(PCWSTR, PWSTR module, UINT size, int *id) {
  if (nameModule.size() >= size)
    return E_FAIL;
  std::copy_n(nameModule.c_str(), nameModule.size() + 1, module);
  *id = nameId;
  return S_OK;
}

/// The first text of a library, and its number.
std::pair<std::wstring, UINT> AnyTextOf(const wchar_t *path) {
  const LibraryHandle library(::LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE));
  for (UINT id = 1; id < 70'000; ++id) {
    wchar_t text[520] = {};
    if (::LoadStringW(library.Get(), id, text, 520) > 0)
      return {text, id};
  }
  return {};
}

/// The same of the platform's own library of texts.
std::pair<std::wstring, UINT> AnyPlatformText() { return AnyTextOf(L"shell32.dll"); }

bool wasLoadedAsProgram = true;
decltype(&::LoadStringW) platformLoadString = nullptr;

class DroppedFile : public ::testing::Test {
protected:
  ~DroppedFile() override { nameModule.clear(); }

  static std::wstring LabelOf(const std::wstring &path) { return MakeDroppedElement(path).Head; }
};

/// The platform knows localized names.
class LocalizedFile : public DroppedFile {
protected:
  const tests::ImportSlot<decltype(&::SHGetLocalizedName)> slot{&__imp_SHGetLocalizedName, &GetTestName};
};

TEST_F(DroppedFile, BecomesAnElementThatOpensIt) {
  Element expected;
  expected.Head = L"My program";
  expected.ToolTip = L"C:\\A folder\\My program.exe";
  expected.ActionType = L"exe";
  expected.ActionParams = L"\"C:\\A folder\\My program.exe\"";
  EXPECT_EQ(expected, MakeDroppedElement(L"C:\\A folder\\My program.exe"));
}

TEST_F(DroppedFile, IsLabelledWithItsNameWithoutTheExtension) {
  EXPECT_EQ(L"Text", LabelOf(L"C:\\a.b\\Text.txt"));
  EXPECT_EQ(L"Link", LabelOf(L"C:\\Link.lnk"));
  EXPECT_EQ(L"archive.tar", LabelOf(L"C:\\archive.tar.gz"));
  EXPECT_EQ(L"no extension", LabelOf(L"\\\\server\\share\\no extension"));
  EXPECT_EQ(L"Gr\u00FC\u00DFe \u4E16\u754C", LabelOf(L"D:\\Gr\u00FC\u00DFe \u4E16\u754C.txt"));
  EXPECT_EQ(std::wstring(252, L'x'), LabelOf(L"C:\\" + std::wstring(252, L'x') + L".txt"));
}

TEST_F(DroppedFile, WithoutANameHasAnEmptyLabel) {
  EXPECT_EQ(L"", LabelOf(L"C:\\"));
  EXPECT_EQ(L"", LabelOf(L"\\\\server\\share\\"));
  EXPECT_EQ(L"", LabelOf(L""));
}

TEST_F(DroppedFile, HasItsPathWithoutOuterQuotesAsToolTip) {
  EXPECT_EQ(L"C:\\a \"b\" c", MakeDroppedElement(L"\"\"C:\\a \"b\" c\"").ToolTip);
  EXPECT_EQ(L"", MakeDroppedElement(L"\"\"").ToolTip);
  EXPECT_EQ(L"\"\"", MakeDroppedElement(L"").ActionParams);
}

TEST_F(DroppedFile, OfMoreThanTheLongestNameHasAnEmptyLabel) {
  EXPECT_EQ(L"", LabelOf(L"C:\\" + std::wstring(3000, L'x')));
}

TEST_F(LocalizedFile, HasItsLocalizedName) {
  const auto [text, id] = AnyPlatformText();
  ASSERT_FALSE(text.empty());
  nameModule = L"%SystemRoot%\\system32\\shell32.dll";
  nameId = static_cast<int>(id);
  EXPECT_EQ(text, LabelOf(L"C:\\windows\\notepad.exe"));
  EXPECT_EQ(L"C:\\windows\\notepad.exe", MakeDroppedElement(L"C:\\windows\\notepad.exe").ToolTip);
}

int WINAPI NoteModule(HINSTANCE module, UINT id, LPWSTR text, int size) {
  wasLoadedAsProgram = ::GetModuleHandleW(L"inetcpl.cpl") != nullptr;
  return platformLoadString(module, id, text, size);
}

// A library that is loaded as a program runs code of its own in the dock.
TEST_F(LocalizedFile, RunsNoCodeOfTheLibrary) {
  constexpr wchar_t library[] = L"C:\\windows\\system32\\inetcpl.cpl";
  const auto [text, id] = AnyTextOf(library);
  ASSERT_FALSE(text.empty());
  nameModule = library;
  nameId = static_cast<int>(id);
  const tests::ImportSlot slot(&__imp_LoadStringW, &NoteModule);
  platformLoadString = slot.Former();
  wasLoadedAsProgram = true;
  EXPECT_EQ(text, LabelOf(L"C:\\windows\\notepad.exe"));
  EXPECT_FALSE(wasLoadedAsProgram);
}

// Many programs keep their names in libraries for 32 bits. Windows would refuse to load one as a program here; Wine 8
// takes it, so there RunsNoCodeOfTheLibrary alone tells how it was loaded.
TEST_F(LocalizedFile, HasTheNameOfALibraryForAnotherProcessor) {
  nameModule = tests::BesideThisProgram(L"library32.dll");
  nameId = 7;
  EXPECT_EQ(L"Text of a 32-bit library", LabelOf(L"C:\\windows\\notepad.exe"));
}

TEST_F(LocalizedFile, WhoseLibraryIsMissingHasAnEmptyLabel) {
  nameModule = L"C:\\gone\\gone.dll";
  EXPECT_EQ(L"", LabelOf(L"C:\\windows\\notepad.exe"));
}

TEST_F(LocalizedFile, WhoseLibraryIsDamagedHasAnEmptyLabel) {
  const tests::TestFolders folders;
  nameModule = folders.Root() + L"\\a.dll";
  nameId = 1;
  const std::string before(2, '\0'), text = tests::NumberBytes(4, 2) + std::string("a\0b\0c\0d\0", 8);
  tests::WriteBytes(nameModule, tests::MakeProgram({{6, before + text + std::string(28, '\0')}}));
  EXPECT_EQ(L"abcd", LabelOf(L"C:\\windows\\notepad.exe"));
  tests::WriteBytes(nameModule, tests::MakeProgram({{6, before + text + std::string(27, '\0')}}));
  EXPECT_EQ(L"", LabelOf(L"C:\\windows\\notepad.exe")) << "texts without their end";
}

TEST_F(LocalizedFile, WhoseTextIsMissingHasAnEmptyLabel) {
  nameModule = L"shell32.dll";
  nameId = 0xFFFF;
  EXPECT_EQ(L"", LabelOf(L"C:\\windows\\notepad.exe"));
}

TEST_F(LocalizedFile, WithoutALocalizedNameHasItsFileName) {
  EXPECT_EQ(L"notepad", LabelOf(L"C:\\windows\\notepad.exe"));
}

} // namespace

} // namespace lumenor
