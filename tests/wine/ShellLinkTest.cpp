// Shell links: the properties that they keep, and that all else is as the platform has it.

#include <iterator>
#include <string>
#include <vector>

#include "support/Recorder.h"
#include "support/TestFolders.h"
#include "wine/Links.h"

#include <ocidl.h>
#include <shellapi.h>

namespace lumenor::services {

namespace {

constexpr PROPERTYKEY otherKey{{0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}}, 3};
constexpr DWORD hasArguments = 0x20;   // SLDF_HAS_ARGS
constexpr std::size_t headerSize = 76; // of a link's file; the list of items comes next
constexpr wchar_t notepad[] = L"C:\\windows\\notepad.exe";

class ShellLinkTest : public ::testing::Test {
protected:
  static Ptr<IShellLinkW> New() { return Create<IShellLinkW>(CLSID_ShellLink); }

  DWORD Count() const {
    DWORD count = 99;
    EXPECT_EQ(properties->GetCount(&count), S_OK);
    return count;
  }

  template <typename Interface> Ptr<Interface> As() const {
    Ptr<Interface> other;
    EXPECT_EQ(link.As(&other), S_OK);
    return other;
  }

  std::wstring SavedLink() const {
    const std::wstring path = folders.Root() + L"\\saved.lnk";
    EXPECT_EQ(As<IPersistFile>()->Save(path.c_str(), TRUE), S_OK);
    return path;
  }

  static std::wstring ArgumentsOf(const Ptr<IShellLinkW> &link) {
    wchar_t arguments[1024] = L"?";
    EXPECT_EQ(link->GetArguments(arguments, 1024), S_OK);
    return arguments;
  }

  static std::wstring PathOf(const Ptr<IShellLinkW> &link) {
    wchar_t path[MAX_PATH] = L"?";
    EXPECT_EQ(link->GetPath(path, MAX_PATH, nullptr, SLGP_RAWPATH), S_OK);
    return path;
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const Ptr<IShellLinkW> link = New();
  const Ptr<IPropertyStore> properties = PropertiesOf(link);
};

TEST_F(ShellLinkTest, KeepsItsTitle) {
  PropertyValue title(L"Gr\u00FC\u00DFe \U0001F600");
  EXPECT_EQ(properties->SetValue(PKEY_Title, *title), S_OK);
  EXPECT_EQ(properties->Commit(), S_OK);
  EXPECT_EQ(TitleOf(link), L"Gr\u00FC\u00DFe \U0001F600");
}

TEST_F(ShellLinkTest, TitleReplacesTheFormerOne) {
  SetTitle(link, L"first");
  SetTitle(link, L"second");
  EXPECT_EQ(TitleOf(link), L"second");
  EXPECT_EQ(Count(), 1U);
}

TEST_F(ShellLinkTest, PropertiesAreCopies) {
  {
    PropertyValue given(L"given");
    EXPECT_EQ(properties->SetValue(PKEY_Title, *given), S_OK);
    given->pwszVal[0] = L'x';
  }
  {
    PropertyValue taken;
    ASSERT_EQ(properties->GetValue(PKEY_Title, taken.Receive()), S_OK);
    ASSERT_EQ(taken->vt, VT_LPWSTR);
    EXPECT_STREQ(taken->pwszVal, L"given");
    taken->pwszVal[0] = L'x';
  }
  EXPECT_EQ(TitleOf(link), L"given");
}

TEST_F(ShellLinkTest, MissingPropertyIsEmpty) {
  PropertyValue value(true);
  EXPECT_EQ(properties->GetValue(PKEY_Title, value.Receive()), S_OK);
  EXPECT_EQ(value->vt, VT_EMPTY);
  EXPECT_EQ(Count(), 0U);
}

TEST_F(ShellLinkTest, EmptyValueTakesThePropertyAway) {
  SetTitle(link, L"title");
  EXPECT_EQ(properties->SetValue(otherKey, *PropertyValue(true)), S_OK);
  EXPECT_EQ(properties->SetValue(PKEY_Title, *PropertyValue()), S_OK);
  EXPECT_EQ(TitleOf(link), L"");
  EXPECT_EQ(Count(), 1U);
  EXPECT_EQ(properties->SetValue(PKEY_Title, *PropertyValue()), S_OK) << "it is gone already";
}

TEST_F(ShellLinkTest, PropertiesAreToldInTheirOrder) {
  EXPECT_EQ(properties->SetValue(otherKey, *PropertyValue(true)), S_OK);
  SetTitle(link, L"title");
  EXPECT_EQ(properties->SetValue(otherKey, *PropertyValue(false)), S_OK);
  ASSERT_EQ(Count(), 2U);
  PROPERTYKEY keys[2] = {};
  EXPECT_EQ(properties->GetAt(0, &keys[0]), S_OK);
  EXPECT_EQ(properties->GetAt(1, &keys[1]), S_OK);
  EXPECT_EQ(keys[0].pid, otherKey.pid);
  EXPECT_EQ(keys[1].pid, PKEY_Title.pid);
  EXPECT_TRUE(::IsEqualGUID(keys[1].fmtid, PKEY_Title.fmtid));
  EXPECT_EQ(properties->GetAt(2, &keys[0]), E_INVALIDARG);
}

TEST_F(ShellLinkTest, ValueThatCantBeCopiedLeavesTheFormerOne) {
  SetTitle(link, L"title");
  PROPVARIANT strange{};
  strange.vt = VT_ILLEGAL;
  EXPECT_LT(properties->SetValue(PKEY_Title, strange), 0);
  EXPECT_EQ(TitleOf(link), L"title");
}

TEST_F(ShellLinkTest, EachLinkHasPropertiesOfItsOwn) {
  SetTitle(link, L"title");
  EXPECT_EQ(TitleOf(New()), L"");
}

TEST_F(ShellLinkTest, RefusesToAnswerToNowhere) {
  SetTitle(link, L"title");
  EXPECT_EQ(properties->GetValue(PKEY_Title, nullptr), E_POINTER);
  EXPECT_EQ(properties->GetCount(nullptr), E_POINTER);
  EXPECT_EQ(properties->GetAt(0, nullptr), E_POINTER);
}

TEST_F(ShellLinkTest, IsOneObjectWithTheInterfacesOfThePlatforms) {
  Ptr<IUnknown> identity;
  ASSERT_EQ(link.As(&identity), S_OK);
  const IID interfaces[] = {__uuidof(IShellLinkW),  __uuidof(IPropertyStore),  __uuidof(IPersist),
                            __uuidof(IPersistFile), __uuidof(IPersistStream),  __uuidof(IShellExtInit),
                            __uuidof(IContextMenu), __uuidof(IObjectWithSite), __uuidof(IShellLinkDataList)};
  for (const IID &from : interfaces) {
    Ptr<IUnknown> face, identityOfFace;
    ASSERT_EQ(link->QueryInterface(from, reinterpret_cast<void **>(face.GetAddressOf())), S_OK) << from.Data1;
    ASSERT_EQ(face.As(&identityOfFace), S_OK);
    EXPECT_EQ(identityOfFace.Get(), identity.Get()) << from.Data1;
    for (const IID &to : interfaces) {
      Ptr<IUnknown> other;
      EXPECT_EQ(face->QueryInterface(to, reinterpret_cast<void **>(other.GetAddressOf())), S_OK) << to.Data1;
    }
  }
  void *none = link.Get();
  EXPECT_EQ(link->QueryInterface(__uuidof(IObjectArray), &none), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
}

TEST_F(ShellLinkTest, KeepsWhatALinkKeeps) {
  EXPECT_EQ(link->SetPath(notepad), S_OK);
  EXPECT_EQ(link->SetArguments(L"\"a b\" c"), S_OK);
  EXPECT_EQ(link->SetWorkingDirectory(L"C:\\windows\\system32"), S_OK);
  EXPECT_EQ(link->SetDescription(L"\u00C4 description"), S_OK);
  EXPECT_EQ(link->SetIconLocation(L"C:\\icons\\x.ico", 7), S_OK);
  EXPECT_EQ(link->SetHotkey(0x641), S_OK);
  EXPECT_EQ(link->SetShowCmd(SW_SHOWMAXIMIZED), S_OK);

  wchar_t folder[MAX_PATH] = {}, description[1024] = {}, icon[MAX_PATH] = {};
  int iconIndex = 0, show = 0;
  WORD key = 0;
  EXPECT_EQ(link->GetWorkingDirectory(folder, MAX_PATH), S_OK);
  EXPECT_EQ(link->GetDescription(description, 1024), S_OK);
  EXPECT_EQ(link->GetIconLocation(icon, MAX_PATH, &iconIndex), S_OK);
  EXPECT_EQ(link->GetHotkey(&key), S_OK);
  EXPECT_EQ(link->GetShowCmd(&show), S_OK);
  EXPECT_EQ(PathOf(link), notepad);
  EXPECT_EQ(ArgumentsOf(link), L"\"a b\" c");
  EXPECT_STREQ(folder, L"C:\\windows\\system32");
  EXPECT_STREQ(description, L"\u00C4 description");
  EXPECT_STREQ(icon, L"C:\\icons\\x.ico");
  EXPECT_EQ(iconIndex, 7);
  EXPECT_EQ(key, 0x641);
  EXPECT_EQ(show, SW_SHOWMAXIMIZED);
}

TEST_F(ShellLinkTest, SavedOneIsLoadedByAnother) {
  ASSERT_EQ(link->SetPath(notepad), S_OK);
  ASSERT_EQ(link->SetArguments(L"saved"), S_OK);
  const std::wstring path = SavedLink();
  LPOLESTR current = nullptr;
  EXPECT_EQ(As<IPersistFile>()->GetCurFile(&current), S_OK);
  EXPECT_STREQ(current, path.c_str());
  ::CoTaskMemFree(current);

  const auto other = New();
  Ptr<IPersistFile> file;
  ASSERT_EQ(other.As(&file), S_OK);
  EXPECT_EQ(file->Load(path.c_str(), STGM_READ), S_OK);
  EXPECT_EQ(other->Resolve(nullptr, SLR_NO_UI), S_OK);
  EXPECT_EQ(PathOf(other), notepad);
  EXPECT_EQ(ArgumentsOf(other), L"saved");
}

TEST_F(ShellLinkTest, GoesThroughAStream) {
  ASSERT_EQ(link->SetPath(notepad), S_OK);
  ASSERT_EQ(link->SetArguments(L"streamed"), S_OK);
  Ptr<IStream> stream;
  ASSERT_EQ(::CreateStreamOnHGlobal(nullptr, TRUE, &stream), S_OK);
  EXPECT_EQ(As<IPersistStream>()->Save(stream.Get(), TRUE), S_OK);
  ASSERT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
  const auto other = New();
  SetTitle(other, L"former");
  Ptr<IPersistStream> loader;
  ASSERT_EQ(other.As(&loader), S_OK);
  EXPECT_EQ(loader->Load(stream.Get()), S_OK);
  EXPECT_EQ(ArgumentsOf(other), L"streamed");
  EXPECT_EQ(TitleOf(other), L"") << "what was loaded has none";
}

TEST_F(ShellLinkTest, LoadedOneHasNoProperties) {
  ASSERT_EQ(link->SetPath(notepad), S_OK);
  const std::wstring path = SavedLink();
  SetTitle(link, L"title");
  EXPECT_EQ(As<IPersistFile>()->Load(path.c_str(), STGM_READ), S_OK);
  EXPECT_EQ(TitleOf(link), L"");
}

TEST_F(ShellLinkTest, FileThatCantBeLoadedChangesNothing) {
  SetTitle(link, L"title");
  const std::wstring gone = folders.Root() + L"\\gone.lnk";
  EXPECT_EQ(As<IPersistFile>()->Load(gone.c_str(), STGM_READ), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
  EXPECT_EQ(TitleOf(link), L"title");
}

// The platform itself would read past the end.
TEST_F(ShellLinkTest, FileWhoseItemsBreakOffIsRefused) {
  ASSERT_EQ(link->SetPath(notepad), S_OK);
  const std::string whole = tests::ReadBytes(SavedLink());
  const std::size_t listEnd = headerSize + 2 + static_cast<unsigned char>(whole[headerSize]) +
                              256u * static_cast<unsigned char>(whole[headerSize + 1]);
  ASSERT_LT(headerSize + 50, listEnd);
  ASSERT_LE(listEnd, whole.size());
  const std::wstring path = folders.Root() + L"\\broken.lnk";
  const auto load = [&](const std::string &bytes) {
    tests::WriteBytes(path, bytes);
    return As<IPersistFile>()->Load(path.c_str(), STGM_READ);
  };
  SetTitle(link, L"title");
  for (std::size_t size = headerSize; size < listEnd; ++size)
    EXPECT_EQ(load(whole.substr(0, size)), E_FAIL) << size;
  std::string tooLong = whole;
  tooLong[headerSize + 2] = tooLong[headerSize + 3] = '\xFF'; // the first item's size
  EXPECT_EQ(load(tooLong), E_FAIL);
  std::string endless = whole;
  endless[listEnd - 2] = 1; // the size that ends the list
  EXPECT_EQ(load(endless), E_FAIL);
  EXPECT_EQ(TitleOf(link), L"title");
  EXPECT_EQ(load(whole), S_OK);
}

TEST_F(ShellLinkTest, TellsTheClassOfAllLinks) {
  CLSID id = {};
  EXPECT_EQ(As<IPersistFile>()->GetClassID(&id), S_OK);
  EXPECT_TRUE(::IsEqualCLSID(id, CLSID_ShellLink));
}

TEST_F(ShellLinkTest, HasFlags) {
  const auto dataBlocks = As<IShellLinkDataList>();
  EXPECT_EQ(link->SetArguments(L"x"), S_OK);
  DWORD flags = 0;
  EXPECT_EQ(dataBlocks->GetFlags(&flags), S_OK);
  EXPECT_NE(flags & hasArguments, 0U);
}

TEST_F(ShellLinkTest, ShellStartsWhatASavedOneNames) {
  const tests::Recorder recorder(folders);
  const std::wstring program = folders.Root() + L"\\a program.exe";
  recorder.InstallAs(program);
  ASSERT_EQ(link->SetPath(program.c_str()), S_OK);
  ASSERT_EQ(link->SetArguments(L"\"of the link\" 1"), S_OK);
  const std::wstring path = SavedLink();
  EXPECT_GT(
      reinterpret_cast<INT_PTR>(::ShellExecuteW(nullptr, L"open", path.c_str(), L"and given", nullptr, SW_SHOWNORMAL)),
      32);
  EXPECT_EQ(recorder.WaitForCommandLines(1),
            std::vector<std::wstring>{L"\"" + program + L"\" \"of the link\" 1 and given"});
}

} // namespace

} // namespace lumenor::services
