#include "system/Paths.h"

#include <gmock/gmock.h>

#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/Handles.h"

extern "C" decltype(&::ExpandEnvironmentStringsW) __imp_ExpandEnvironmentStringsW;
extern "C" decltype(&::GetFileAttributesW) __imp_GetFileAttributesW;

namespace lumenor {
namespace {

using tests::EnvironmentValue;
using tests::LogCapture;
using tests::TestFolders;
using tests::WriteBytes;

TEST(ExpandPath, ReplacesVariablesInAnyCase) {
  const EnvironmentValue variable(L"LUMENOR_TEST", L"C:\\some where");
  EXPECT_EQ(L"C:\\some where\\file", ExpandPath(L"%LUMENOR_TEST%\\file"));
  EXPECT_EQ(L"C:\\some where\\file", ExpandPath(L"%lumenor_test%\\file"));
}

TEST(ExpandPath, TextWithoutVariablesStays) {
  EXPECT_EQ(L"C:\\plain", ExpandPath(L"C:\\plain"));
  EXPECT_EQ(L"", ExpandPath(L""));
  EXPECT_EQ(L"100 %", ExpandPath(L"100 %"));
}

TEST(ExpandPath, AnUnknownVariableStaysAsItIsWritten) {
  EXPECT_EQ(L"%LUMENOR_NO_SUCH%\\file", ExpandPath(L"%LUMENOR_NO_SUCH%\\file"));
}

int sizeChange = 0;

/// A variable whose value changes its length by `sizeChange` between two calls.
DWORD WINAPI ExpandAndChange(LPCWSTR, LPWSTR text, DWORD size) {
  constexpr DWORD firstSize = 6;
  if (size == 0)
    return firstSize;
  const DWORD newSize = firstSize + static_cast<DWORD>(sizeChange);
  if (newSize <= size) {
    std::fill_n(text, newSize - 1, L'v');
    text[newSize - 1] = L'\0';
  }
  return newSize;
}

TEST(ExpandPath, AVariableThatChangesMeanwhileStaysAsItIsWritten) {
  const tests::ImportSlot changing(&__imp_ExpandEnvironmentStringsW, &ExpandAndChange);
  sizeChange = 0;
  EXPECT_EQ(L"vvvvv", ExpandPath(L"%LUMENOR_TEST%"));
  for (const int change : {-1, 1}) {
    sizeChange = change;
    EXPECT_EQ(L"%LUMENOR_TEST%", ExpandPath(L"%LUMENOR_TEST%")) << change;
  }
}

TEST(ExpandPath, LongTextExpandsWhole) {
  const EnvironmentValue variable(L"LUMENOR_TEST", L"x");
  EXPECT_EQ(L"x" + std::wstring(20000, L'y'), ExpandPath(L"%LUMENOR_TEST%" + std::wstring(20000, L'y')));
}

TEST(FileNamePart, WithBackslashesGivesTheLastName) {
  EXPECT_EQ(L"third.txt", FileNamePart(L"first\\second\\third.txt"));
  EXPECT_EQ(L"b/c", FileNamePart(L"a\\b/c"));
  EXPECT_EQ(L"", FileNamePart(L"folder\\"));
}

TEST(FileNamePart, WithForwardSlashesGivesTheFrontLessOneCharacter) {
  EXPECT_EQ(L"first/", FileNamePart(L"first/s/third"));
  EXPECT_EQ(L"first/secon", FileNamePart(L"first/second/third"));
  EXPECT_EQ(L"", FileNamePart(L"/third"));
}

TEST(FileNamePart, WithoutASeparatorIsEmpty) {
  EXPECT_EQ(L"", FileNamePart(L"name"));
  EXPECT_EQ(L"", FileNamePart(L""));
}

TEST(FolderPart, IsWhatStandsBeforeTheLastSeparator) {
  EXPECT_EQ(L"C:\\a", FolderPart(L"C:\\a\\b.exe"));
  EXPECT_EQ(L"a/b", FolderPart(L"a/b/c"));
  EXPECT_EQ(L"a/b", FolderPart(L"a/b\\c/d"));
  EXPECT_EQ(L"", FolderPart(L"name"));
  EXPECT_EQ(L"", FolderPart(L""));
}

TEST(FileExists, ForAFileButNoFolder) {
  const TestFolders folders;
  WriteBytes(folders.Root() + L"\\a folder\\a.txt", "");
  EXPECT_TRUE(FileExists(folders.Root() + L"\\a folder\\a.txt"));
  EXPECT_FALSE(FileExists(folders.Root() + L"\\a folder"));
  EXPECT_FALSE(FileExists(folders.Root() + L"\\b.txt"));
  EXPECT_FALSE(FileExists(L""));
}

TEST(FileExists, ForNoPathThatIsLongerThanThePlatformHas) {
  const tests::ImportSlot everything(
      &__imp_GetFileAttributesW, +[](LPCWSTR) WINAPI -> DWORD { return FILE_ATTRIBUTE_NORMAL; });
  const std::wstring longest(32767, L'a'), longer(32768, L'a');
  EXPECT_TRUE(PathExists(longest));
  EXPECT_TRUE(FileExists(longest));
  EXPECT_FALSE(PathExists(longer));
  EXPECT_FALSE(FileExists(longer));
  EXPECT_FALSE(PathIsMissing(longer)) << "nobody knows what it stands for";
}

TEST(LastWriteTime, IsTheFilesAndTheLookIsLogged) {
  const TestFolders folders;
  const LogCapture log(folders);
  const std::wstring path = folders.Root() + L"\\file";
  WriteBytes(path, "x");
  const FILETIME written = {0x12345600, 0x01D00000};
  {
    const FileHandle file(::CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(::SetFileTime(file.Get(), nullptr, nullptr, &written));
  }
  const FILETIME told = LastWriteTime(path);
  EXPECT_EQ(0, ::CompareFileTime(&written, &told));
  EXPECT_THAT(log.Lines(), testing::ElementsAre("INFO: Getting last modified time for " + tests::Utf8(path)));
}

TEST(LastWriteTime, IsReadWhileAnotherProgramWrites) {
  const TestFolders folders;
  const std::wstring path = folders.Root() + L"\\file";
  const FileHandle writer(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                        CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  EXPECT_NE(0u, LastWriteTime(path).dwHighDateTime);
}

TEST(LastWriteTime, OfAFileThatCantBeOpenedIsZero) {
  const TestFolders folders;
  const FILETIME told = LastWriteTime(folders.Root() + L"\\missing");
  EXPECT_EQ(0u, told.dwLowDateTime);
  EXPECT_EQ(0u, told.dwHighDateTime);
}

struct Place {
  std::wstring (*find)();
  const wchar_t *below;
};

const Place places[] = {{MainAppPath, L"\\Tarnwick\\Lumenor\\Lumenor.exe"},
                        {InstallFolder, L"\\Tarnwick\\Lumenor"},
                        {DockExePath, L"\\Tarnwick\\Lumenor\\Dock\\LumenorDock.exe"}};

class InstalledPlace : public testing::TestWithParam<Place> {
protected:
  const TestFolders folders;
  const std::wstring first = folders.ProgramFiles() + GetParam().below;
  const std::wstring second = folders.ProgramFilesX86() + GetParam().below;
};

TEST_P(InstalledPlace, IsTheFirstCandidateWhenThatExists) {
  WriteBytes(first + L"\\x", ""); // a folder will do: existence is all that is asked
  WriteBytes(second + L"\\x", "");
  EXPECT_EQ(first, GetParam().find());
}

TEST_P(InstalledPlace, IsTheSecondWhenOnlyThatExists) {
  WriteBytes(second + L"\\x", "");
  EXPECT_EQ(second, GetParam().find());
}

TEST_P(InstalledPlace, IsTheFirstWhenNeitherExists) { EXPECT_EQ(first, GetParam().find()); }

INSTANTIATE_TEST_SUITE_P(Paths, InstalledPlace, testing::ValuesIn(places));

TEST(MapProgramFiles, APathThatExistsOnlyUnderX86IsRewrittenUnexpanded) {
  const TestFolders folders;
  WriteBytes(folders.ProgramFilesX86() + L"\\Maker\\tool.exe", "");
  EXPECT_EQ(L"%programfiles(x86)%\\Maker\\tool.exe", MapProgramFiles(L"%ProgramFiles%\\Maker\\tool.exe"));
}

TEST(MapProgramFiles, APathThatExistsStaysAsItStands) {
  const TestFolders folders;
  WriteBytes(folders.ProgramFiles() + L"\\Maker\\tool.exe", "");
  WriteBytes(folders.ProgramFilesX86() + L"\\Maker\\tool.exe", "");
  EXPECT_EQ(L"%ProgramFiles%\\Maker\\tool.exe", MapProgramFiles(L"%ProgramFiles%\\Maker\\tool.exe"));
}

TEST(MapProgramFiles, APathThatExistsNowhereStays) {
  const TestFolders folders;
  EXPECT_EQ(L"%programfiles%\\Maker\\tool.exe", MapProgramFiles(L"%programfiles%\\Maker\\tool.exe"));
}

TEST(MapProgramFiles, APathThatGoesOnWithAnotherCharacterStays) {
  const TestFolders folders;
  WriteBytes(folders.ProgramFilesX86() + L"\\tool.exe", "");
  EXPECT_EQ(L"%programfiles%x\\tool.exe", MapProgramFiles(L"%programfiles%x\\tool.exe"));
  EXPECT_EQ(L"%programfiles%/tool.exe", MapProgramFiles(L"%programfiles%/tool.exe"));
}

TEST(MapProgramFiles, APathElsewhereStays) {
  const TestFolders folders;
  WriteBytes(folders.ProgramFilesX86() + L"\\tool.exe", "");
  EXPECT_EQ(L"%appdata%\\tool.exe", MapProgramFiles(L"%appdata%\\tool.exe"));
  EXPECT_EQ(L"%localappdata%\\tool.exe", MapProgramFiles(L"%localappdata%\\tool.exe"));
  EXPECT_EQ(L"%program_data%\\tool.exe", MapProgramFiles(L"%program_data%\\tool.exe")) << "as long a variable";
  EXPECT_EQ(L"", MapProgramFiles(L""));
  EXPECT_EQ(L"%programfiles%", MapProgramFiles(L"%programfiles%"));
}

} // namespace
} // namespace lumenor
