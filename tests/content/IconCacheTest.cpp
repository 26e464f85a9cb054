#include "content/IconCache.h"

#include <optional>

#include <gmock/gmock.h>

#include "content/IconSpy.h"
#include "content/ShellSteps.h"
#include "support/ComApartment.h"
#include "support/FailingDisk.h"
#include "support/TestFolders.h"
#include "system/Handles.h"

#include <olectl.h>

extern "C" decltype(&::OleCreatePictureIndirect) __imp_OleCreatePictureIndirect;
extern "C" decltype(&::CreateStreamOnHGlobal) __imp_CreateStreamOnHGlobal;

namespace lumenor {
namespace {

using namespace tests;
using Microsoft::WRL::ComPtr;
using testing::ElementsAre;
using testing::IsEmpty;

class IconCacheTest : public testing::Test {
protected:
  IconCacheTest() { MakeFolders(folders.CommonFolder()); }

  std::wstring Folder() const { return folders.CommonFolder() + L"\\ImageCache"; }
  std::wstring Path(const std::wstring &name) const { return folders.Root() + L"\\" + name; }

  const ComApartment com;
  const TestFolders folders;
};

// Where icons are kept.

TEST_F(IconCacheTest, AnIconIsNamedByTheWholeFileNameOfItsTarget) {
  EXPECT_EQ(Folder() + L"\\Tool.exe.ico", CachedIconPath(L"C:\\My Tools\\Tool.exe"));
  EXPECT_EQ(Folder() + L"\\Tool.exe.ico", CachedIconPath(L"D:\\Tool.exe")) << "one file name, one icon";
  EXPECT_EQ(Folder() + L"\\Notes.lnk.ico", CachedIconPath(L"C:\\Notes.lnk"));
  EXPECT_EQ(Folder() + L"\\noext.ico", CachedIconPath(L"C:\\noext"));
}

TEST_F(IconCacheTest, ATargetWithoutABackslashIsNamedByWhatStandsBeforeItsLastSlashLessOneCharacter) {
  EXPECT_EQ(Folder() + L"\\C:/Tool.ico", CachedIconPath(L"C:/Tools/x.exe"));
  EXPECT_EQ(Folder() + L"\\.ico", CachedIconPath(L"x.exe"));
}

// Icons that the shell has for a file.

TEST_F(IconCacheTest, AnIconIsWrittenToAFolderThatIsMadeForIt) {
  const IconSpy icons(false, true);
  EXPECT_EQ(Folder() + L"\\a.txt.ico", CacheAssociatedIcon(L"C:\\a.txt"));
  EXPECT_THAT(ListFolder(Folder()), ElementsAre(L"a.txt.ico"));
  EXPECT_THAT(IconSpy::associatedAsked, ElementsAre(L"C:\\a.txt"));
  EXPECT_THAT(IconSpy::destroyed, ElementsAre(IconSpy::associated));
}

TEST_F(IconCacheTest, AFileWithoutAnIconLeavesNoTrace) {
  const IconSpy icons;
  EXPECT_EQ(L"", CacheAssociatedIcon(L"C:\\a.txt"));
  EXPECT_FALSE(Exists(Folder()));
  EXPECT_THAT(IconSpy::destroyed, IsEmpty());
}

TEST_F(IconCacheTest, TheShellIsNotAskedForTheIconOfADamagedFile) {
  const IconSpy icons(false, true);
  WriteBytes(Path(L"a.exe"), "MZ");
  WriteBytes(Path(L"a.lnk"), "no shortcut");
  EXPECT_EQ(L"", CacheAssociatedIcon(Path(L"a.exe")));
  EXPECT_EQ(L"", CacheAssociatedIcon(Path(L"a.lnk")));
  EXPECT_THAT(IconSpy::associatedAsked, IsEmpty());
}

TEST_F(IconCacheTest, AnIconThatIsThereIsNotWrittenAgain) {
  const IconSpy icons(false, true);
  WriteBytes(Folder() + L"\\a.txt.ico", "former");
  EXPECT_EQ(Folder() + L"\\a.txt.ico", CacheAssociatedIcon(L"C:\\other\\a.txt"));
  EXPECT_EQ("former", ReadBytes(Folder() + L"\\a.txt.ico"));
  EXPECT_THAT(IconSpy::destroyed, ElementsAre(IconSpy::associated));
}

TEST_F(IconCacheTest, AFolderThatCanNotBeMadeIsSilent) {
  DeleteTree(folders.ProgramData() + L"\\Tarnwick");
  const IconSpy icons(false, true);
  EXPECT_EQ(Folder() + L"\\a.txt.ico", CacheAssociatedIcon(L"C:\\a.txt"));
  EXPECT_THAT(ListFolder(folders.ProgramData()), IsEmpty());
  EXPECT_THAT(IconSpy::destroyed, ElementsAre(IconSpy::associated));
}

TEST_F(IconCacheTest, AFileInTheFoldersPlaceIsLeftAlone) {
  WriteBytes(Folder(), "a file");
  const IconSpy icons(false, true);
  EXPECT_EQ(Folder() + L"\\a.txt.ico", CacheAssociatedIcon(L"C:\\a.txt"));
  EXPECT_EQ("a file", ReadBytes(Folder()));
}

TEST_F(IconCacheTest, ThePathIsLentToTheShellAsACopy) {
  const IconSpy icons(false, true);
  const std::wstring target = L"C:\\a folder with a long name\\and another one in it\\a.txt";
  CacheAssociatedIcon(target);
  EXPECT_EQ(L"C:\\a folder with a long name\\and another one in it\\a.txt", target);
}

TEST_F(IconCacheTest, APathThatTheShellHasNoRoomForHasNoIcon) {
  const IconSpy icons(false, true);
  const std::wstring longest = L"C:\\" + std::wstring(256, L'x');
  EXPECT_EQ(L"", CacheAssociatedIcon(longest + L"y"));
  EXPECT_THAT(IconSpy::associatedAsked, IsEmpty());
  EXPECT_NE(L"", CacheAssociatedIcon(longest));
  EXPECT_THAT(IconSpy::associatedAsked, ElementsAre(longest));
}

TEST_F(IconCacheTest, TheShellFindsTheIconOfAProgram) {
  EXPECT_EQ(Folder() + L"\\regedit.exe.ico", CacheAssociatedIcon(L"C:\\windows\\regedit.exe"));
  EXPECT_THAT(ListFolder(Folder()), ElementsAre(L"regedit.exe.ico"));
}

// Icon files.

/// Answers for the bytes of the platform's pictures and looks on while they are copied.
class PictureSpy {
public:
  PictureSpy() : picture(AnyPicture().Get()), stream(AnyStream().Get()) {
    bytes.clear();
    told.reset();
    result = S_OK;
    askedForCopy = FALSE;
    reads.clear();
    failingRead = 0;
    onRead = [] {};
    picture.Exchange(15, &SaveAsFile);
    formerRead = stream.Exchange(3, &Read);
  }

  static inline std::string bytes;        // of the picture's file
  static inline std::optional<LONG> told; // the size that is told for it
  static inline HRESULT result;           // of the saving
  static inline BOOL askedForCopy;
  static inline std::vector<ULONG> reads; // how many bytes were asked for
  static inline std::size_t failingRead;  // counted from 1; 0 for none
  static inline std::function<void()> onRead;

private:
  static ComPtr<IUnknown> AnyPicture() {
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_NONE;
    ComPtr<IPicture> any;
    ThrowIfFailed(::OleCreatePictureIndirect(&description, IID_IPicture, FALSE, &any));
    return any;
  }

  static ComPtr<IUnknown> AnyStream() {
    ComPtr<IStream> any;
    ThrowIfFailed(::CreateStreamOnHGlobal(nullptr, TRUE, &any));
    return any;
  }

  static HRESULT STDMETHODCALLTYPE SaveAsFile(IPicture *, IStream *target, BOOL copy, LONG *size) {
    askedForCopy = copy;
    target->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    *size = told.value_or(static_cast<LONG>(bytes.size()));
    return result;
  }

  static HRESULT STDMETHODCALLTYPE Read(IStream *self, void *buffer, ULONG size, ULONG *read) {
    reads.push_back(size);
    onRead();
    return reads.size() == failingRead ? E_FAIL : formerRead(self, buffer, size, read);
  }

  static inline HRESULT(STDMETHODCALLTYPE *formerRead)(IStream *, void *, ULONG, ULONG *);

  OperationSpy picture, stream;
};

class SaveIconFileTest : public IconCacheTest {
protected:
  ~SaveIconFileTest() override { ::DestroyIcon(icon); }

  const HICON icon = IconSpy::MakeIcon();
  const std::wstring path = Path(L"saved.ico");
};

TEST_F(SaveIconFileTest, WritesWhatThePlatformMakesOfTheIcon) {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_ICON;
  description.icon.hicon = icon;
  ComPtr<IPicture> picture;
  ThrowIfFailed(::OleCreatePictureIndirect(&description, IID_IPicture, FALSE, &picture));
  ComPtr<IStream> stream;
  ThrowIfFailed(::CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  LONG size = 0;
  ThrowIfFailed(picture->SaveAsFile(stream.Get(), TRUE, &size));
  SaveIconFile(icon, path);
  ASSERT_TRUE(Exists(path));
  EXPECT_EQ(static_cast<std::size_t>(size), ReadBytes(path).size());
}

TEST_F(SaveIconFileTest, WritesFilesOfAnySizeWhole) {
  const PictureSpy picture;
  for (const std::size_t size : {0, 1, 4095, 4096, 4097, 8192, 10000}) {
    PictureSpy::bytes = Pattern(size);
    SaveIconFile(icon, path);
    EXPECT_TRUE(Exists(path)) << size;
    EXPECT_TRUE(Pattern(size) == ReadBytes(path)) << size;
  }
}

TEST_F(SaveIconFileTest, ReadsBlocksOf4096Bytes) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(10000);
  SaveIconFile(icon, path);
  EXPECT_THAT(PictureSpy::reads, ElementsAre(4096u, 4096u, 1808u));
}

TEST_F(SaveIconFileTest, LeavesNothingOfAStreamThatEndsBeforeTheToldSize) {
  const PictureSpy picture;
  for (const std::size_t size : {0, 100, 4096, 5000}) {
    PictureSpy::bytes = Pattern(size);
    PictureSpy::told = 20000;
    SaveIconFile(icon, path);
    EXPECT_FALSE(Exists(path)) << size;
  }
}

TEST_F(SaveIconFileTest, EndsAtTheToldSizeBeforeTheStream) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(10000);
  for (const LONG told : {0, 100, 4096, 5000}) {
    PictureSpy::told = told;
    SaveIconFile(icon, path);
    EXPECT_TRUE(Pattern(static_cast<std::size_t>(told)) == ReadBytes(path)) << told;
  }
}

TEST_F(SaveIconFileTest, WritesNothingForASizeBelowZero) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(100);
  PictureSpy::told = -1;
  SaveIconFile(icon, path);
  EXPECT_TRUE(Exists(path));
  EXPECT_EQ("", ReadBytes(path));
}

TEST_F(SaveIconFileTest, AsksThePictureForACopyAndDoesNotGiveTheIconAway) {
  const PictureSpy picture;
  SaveIconFile(icon, path);
  EXPECT_TRUE(PictureSpy::askedForCopy);
  ICONINFO info{};
  EXPECT_TRUE(::GetIconInfo(icon, &info)) << "still the caller's";
  ::DeleteObject(info.hbmColor);
  ::DeleteObject(info.hbmMask);
}

TEST_F(SaveIconFileTest, ReplacesWhatWasThere) {
  const PictureSpy picture;
  WriteBytes(path, std::string(20000, 'x'));
  PictureSpy::bytes = Pattern(5000);
  SaveIconFile(icon, path);
  EXPECT_TRUE(Pattern(5000) == ReadBytes(path));
}

TEST_F(SaveIconFileTest, IsThereOnlyWhenItIsWholeAndForEverybodyThen) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(10);
  bool isThere = true;
  PictureSpy::onRead = [&] { isThere = Exists(path); };
  SaveIconFile(icon, path);
  EXPECT_FALSE(isThere);
  EXPECT_TRUE(FileHandle(::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)));
  EXPECT_THAT(ListFolder(folders.Root()), testing::Contains(L"saved.ico"));
  EXPECT_THAT(ListFolder(folders.Root()), testing::Not(testing::Contains(L"saved.ico.new")));
}

TEST_F(SaveIconFileTest, LeavesNothingOfAStreamWhoseReadFails) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(10000);
  PictureSpy::failingRead = 2;
  SaveIconFile(icon, path);
  EXPECT_EQ(2u, PictureSpy::reads.size());
  EXPECT_FALSE(Exists(path));
}

TEST_F(SaveIconFileTest, LeavesNothingOnAFullDisk) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(10000);
  const std::vector<std::wstring> before = ListFolder(folders.Root());
  for (const DWORD taken : {0, 100}) {
    const FullDisk full(taken);
    SaveIconFile(icon, path);
    EXPECT_EQ(before, ListFolder(folders.Root()));
  }
}

TEST_F(SaveIconFileTest, LeavesNothingOfAWriteThatComesUpShort) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(10000);
  const std::vector<std::wstring> before = ListFolder(folders.Root());
  const HalfDisk half;
  SaveIconFile(icon, path);
  EXPECT_EQ(before, ListFolder(folders.Root()));
}

TEST_F(SaveIconFileTest, LeavesAFileAloneWhenThePictureCanNotBeSaved) {
  const PictureSpy picture;
  WriteBytes(path, "former");
  PictureSpy::bytes = Pattern(10);
  PictureSpy::result = E_FAIL;
  SaveIconFile(icon, path);
  EXPECT_EQ("former", ReadBytes(path));
}

HRESULT WINAPI MakeNoPicture(LPPICTDESC, REFIID, BOOL, LPVOID *) { return E_FAIL; }
HRESULT WINAPI MakeNoStream(HGLOBAL, BOOL, LPSTREAM *) { return E_OUTOFMEMORY; }

TEST_F(SaveIconFileTest, WritesNothingWithoutAPictureOrAStream) {
  {
    const ImportSlot slot(&__imp_OleCreatePictureIndirect, &MakeNoPicture);
    SaveIconFile(icon, path);
  }
  {
    const ImportSlot slot(&__imp_CreateStreamOnHGlobal, &MakeNoStream);
    SaveIconFile(icon, path);
  }
  EXPECT_FALSE(Exists(path));
}

TEST_F(SaveIconFileTest, IsSilentWhereNoFileCanBeMade) {
  const PictureSpy picture;
  PictureSpy::bytes = Pattern(10);
  SaveIconFile(icon, Path(L"no such folder\\saved.ico"));
  SaveIconFile(icon, folders.Root()); // a folder
  SaveIconFile(icon, Path(L"a|b\n.ico"));
  SaveIconFile(icon, {});
  EXPECT_FALSE(Exists(Path(L"no such folder")));
  EXPECT_THAT(ListFolder(folders.Root()), ElementsAre(L"A", L"D", L"P", L"X"));
}

BOOL freesWithStream;
decltype(&::CreateStreamOnHGlobal) formerCreateStream;

HRESULT WINAPI HearStream(HGLOBAL memory, BOOL frees, LPSTREAM *stream) {
  freesWithStream = frees;
  return formerCreateStream(memory, frees, stream);
}

TEST_F(SaveIconFileTest, FreesTheMemoryOfItsStream) {
  const PictureSpy picture;
  const ImportSlot slot(&__imp_CreateStreamOnHGlobal, &HearStream);
  formerCreateStream = slot.Former();
  freesWithStream = FALSE;
  SaveIconFile(icon, path);
  EXPECT_TRUE(freesWithStream);
}

PICTDESC described;
BOOL givenAway;
decltype(&::OleCreatePictureIndirect) formerCreatePicture;

HRESULT WINAPI HearPicture(LPPICTDESC description, REFIID id, BOOL own, LPVOID *object) {
  described = *description;
  givenAway = own;
  return formerCreatePicture(description, id, own, object);
}

TEST_F(SaveIconFileTest, DescribesThePictureAsAnIconThatItDoesNotOwn) {
  const ImportSlot slot(&__imp_OleCreatePictureIndirect, &HearPicture);
  formerCreatePicture = slot.Former();
  SaveIconFile(icon, path);
  EXPECT_EQ(sizeof(PICTDESC), described.cbSizeofstruct);
  EXPECT_EQ(static_cast<UINT>(PICTYPE_ICON), described.picType);
  EXPECT_EQ(icon, described.icon.hicon);
  EXPECT_FALSE(givenAway);
}

} // namespace
} // namespace lumenor
