#include "toolkit/drawing/ProgramAppearance.h"

#include <gtest/gtest.h>

#include "drawing/Pictures.h"
#include "support/Shortcut.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using namespace tests;

class ProgramAppearance : public ::testing::Test {
protected:
  ProgramAppearance() { ::CopyFileW(L"C:\\windows\\regedit.exe", program.c_str(), TRUE); }

  TestFolders folders;
  std::wstring program = folders.Root() + L"\\Tool.exe";
};

TEST_F(ProgramAppearance, TheDisplayNameIsTheShells) { EXPECT_EQ(L"Tool.exe", ProgramDisplayName(program)); }

TEST_F(ProgramAppearance, AMissingProgramHasNoDisplayName) {
  try {
    ProgramDisplayName(folders.Root() + L"\\nowhere.exe");
    FAIL() << "nothing was raised";
  } catch (const HResultError &error) {
    EXPECT_EQ(E_FAIL, error.Result());
  }
}

TEST_F(ProgramAppearance, TheImageIsAPictureOf48PixelsWithAnAlpha) {
  const Picture image = PictureOf(ProgramImage(program).Get());
  EXPECT_EQ(48, image.width);
  EXPECT_EQ(48, image.height);
  const RECT ink = InkOf(image);
  EXPECT_GT(ink.right - ink.left, 24);
  EXPECT_GT(ink.bottom - ink.top, 24);
  EXPECT_NE(0, BoundsOf(image, 0u).right) << "and transparent around it";
}

TEST_F(ProgramAppearance, ProgramsWithDifferentIconsHaveDifferentImages) {
  EXPECT_NE(PictureOf(ProgramImage(program).Get()), PictureOf(ProgramImage(L"C:\\windows\\notepad.exe").Get()));
}

TEST_F(ProgramAppearance, AFileWithoutAnIconHasAnImageToo) {
  WriteBytes(folders.Root() + L"\\plain.exe", "no program at all");
  WriteBytes(folders.Root() + L"\\plain.txt", "text");
  for (const std::wstring &name : {std::wstring(L"\\plain.exe"), std::wstring(L"\\plain.txt"), std::wstring()}) {
    const Picture image = PictureOf(ProgramImage(folders.Root() + name).Get());
    EXPECT_EQ(48, image.width);
    EXPECT_NE(0, InkOf(image).right);
  }
}

TEST_F(ProgramAppearance, ADamagedFileHasNoImage) {
  const std::pair<const wchar_t *, std::string> files[] = {
      {L"a.lnk", "no shortcut"}, {L"a.exe", "MZ"}, {L"a.ico", std::string("\0\0\1\0", 4)}};
  for (const auto &[name, bytes] : files)
    WriteBytes(folders.Root() + L"\\" + name, bytes);
  MakeShortcut(folders.Root() + L"\\b.lnk", {.target = folders.Root() + L"\\a.exe"});
  for (const wchar_t *name : {L"a.lnk", L"a.exe", L"a.ico", L"b.lnk"}) {
    try {
      ProgramImage(folders.Root() + L"\\" + name);
      FAIL() << "nothing was raised";
    } catch (const HResultError &error) {
      EXPECT_EQ(HResultFromError(ERROR_FILE_CORRUPT), error.Result());
    }
  }
}

TEST_F(ProgramAppearance, AShortcutThatLeadsToItselfHasNoImage) {
  const std::wstring one = folders.Root() + L"\\one.lnk", other = folders.Root() + L"\\other.lnk";
  WriteBytes(other, ""); // the shell makes no shortcut to a file that isn't there
  MakeShortcut(one, {.target = other});
  MakeShortcut(other, {.target = one});
  EXPECT_THROW(ProgramImage(one), HResultError);
}

TEST_F(ProgramAppearance, AMissingProgramHasNoImage) {
  EXPECT_THROW(ProgramImage(folders.Root() + L"\\nowhere.exe"), HResultError);
}

} // namespace
} // namespace lumenor
