#include "content/UserDocument.h"

#include <gmock/gmock.h>

#include "content/DocumentNames.h"
#include "support/ComApartment.h"
#include "support/FailingDisk.h"
#include "support/HeldFile.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

extern "C" decltype(&::ExpandEnvironmentStringsW) __imp_ExpandEnvironmentStringsW;

namespace lumenor {
namespace {

using namespace tests;
using testing::ElementsAre;
using testing::IsEmpty;

class UserDocumentTest : public testing::Test {
protected:
  static ElementList Named(std::initializer_list<const wchar_t *> heads) {
    ElementList list;
    for (const wchar_t *head : heads)
      list.emplace_back().Head = head;
    return list;
  }

  ElementList Stored() const { return LoadDocument(userDocumentName, false); }
  std::vector<std::wstring> Files() const { return ListFolder(folders.UserFolder()); }
  std::wstring FileName() const { return std::wstring(userDocumentName) + L".xml"; }

  void LoadWhileInUse() {
    const HeldFile held(path);
    EXPECT_THAT(document.Load(), IsEmpty());
    EXPECT_EQ(250u, HeldFile::WaitedMs());
  }

  const ComApartment com;
  const TestFolders folders;
  const std::wstring path = DocumentPath(userDocumentName);
  UserDocument document;
};

TEST_F(UserDocumentTest, ThatWasReadIsReplacedByAnyList) {
  SaveDocument(Named({L"a", L"b"}), userDocumentName);
  EXPECT_EQ(Named({L"a", L"b"}), document.Load());
  for (const ElementList &list : {Named({L"a", L"b", L"c"}), Named({L"a"}), Named({})}) {
    document.Save(list);
    EXPECT_EQ(list, Stored());
  }
  EXPECT_THAT(Files(), ElementsAre(FileName()));
}

int expansionsToSucceed = 0;
decltype(&::ExpandEnvironmentStringsW) platformExpand = nullptr;

DWORD WINAPI FailToExpandOnce(LPCWSTR text, LPWSTR expanded, DWORD size) {
  return expansionsToSucceed-- == 0 ? 0 : platformExpand(text, expanded, size);
}

TEST_F(UserDocumentTest, WhosePathCannotBeExpandedOnceStays) {
  int failing = 0;
  for (bool hasFailed = true; hasFailed; ++failing) {
    SaveDocument(Named({L"a", L"b"}), userDocumentName);
    {
      const ImportSlot expansions(&__imp_ExpandEnvironmentStringsW, &FailToExpandOnce);
      platformExpand = expansions.Former();
      expansionsToSucceed = failing;
      UserDocument unsteady;
      const ElementList list = unsteady.Load();
      hasFailed = expansionsToSucceed < 0;
      expansionsToSucceed = -1;
      unsteady.Save(list);
    }
    EXPECT_EQ(Named({L"a", L"b"}), Stored()) << failing;
  }
  EXPECT_LT(2, failing);
}

TEST_F(UserDocumentTest, ThatWasMissingIsBuiltAndReplaced) {
  EXPECT_THAT(document.Load(), IsEmpty());
  document.Save(Named({L"a"}));
  EXPECT_EQ(Named({L"a"}), Stored());
  EXPECT_THAT(Files(), ElementsAre(FileName()));
}

TEST_F(UserDocumentTest, ThatWasInUseStaysWithoutNewEntries) {
  SaveDocument(Named({L"a", L"b"}), userDocumentName);
  LoadWhileInUse();
  const std::string before = ReadBytes(path);
  const LogCapture log(folders);
  document.Save({});
  EXPECT_EQ(before, ReadBytes(path));
  EXPECT_THAT(Files(), ElementsAre(FileName()));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Document: " + Utf8(path) + " was never read and stays"));
}

TEST_F(UserDocumentTest, ThatWasInUseIsSetAsideForNewEntries) {
  SaveDocument(Named({L"a", L"b"}), userDocumentName);
  LoadWhileInUse();
  const std::string before = ReadBytes(path);
  document.Save(Named({L"new"}));
  EXPECT_EQ(Named({L"new"}), Stored());
  EXPECT_EQ(before, ReadBytes(path + L".broken"));
  EXPECT_THAT(Files(), ElementsAre(FileName(), FileName() + L".broken"));
}

TEST_F(UserDocumentTest, ThatWasSetAsideIsTheDocksOwnFromThenOn) {
  WriteBytes(path, "<UIRoot");
  document.Load();
  document.Save(Named({L"new"}));
  document.Save({});
  EXPECT_THAT(Stored(), IsEmpty());
  EXPECT_THAT(Files(), ElementsAre(FileName(), FileName() + L".broken"));
}

TEST_F(UserDocumentTest, IsNeverSetAsideOverAnEarlierOne) {
  WriteBytes(path + L".broken", "first");
  WriteBytes(path + L".broken2", "second");
  WriteBytes(path, "<UIRoot third");
  document.Load();
  document.Save(Named({L"new"}));
  EXPECT_EQ("first", ReadBytes(path + L".broken"));
  EXPECT_EQ("second", ReadBytes(path + L".broken2"));
  EXPECT_EQ("<UIRoot third", ReadBytes(path + L".broken3"));
  EXPECT_EQ(Named({L"new"}), Stored());
}

TEST_F(UserDocumentTest, ThatHoldsNoSuchDocumentStays) {
  const std::string main = "<UIRoot><Other><Elements><Element/></Elements></Other></UIRoot>";
  const std::string doctype =
      "<!DOCTYPE UIRoot><UIRoot><" + Utf8(userDocumentName) + "><Elements/></" + Utf8(userDocumentName) + "></UIRoot>";
  for (const std::string &bytes : {std::string(), std::string("text"), main, doctype}) {
    WriteBytes(path, bytes);
    EXPECT_THAT(document.Load(), IsEmpty());
    document.Save({});
    EXPECT_EQ(bytes, ReadBytes(path));
  }
}

TEST_F(UserDocumentTest, ThatIsStillInUseStaysAlsoWithNewEntries) {
  SaveDocument(Named({L"a", L"b"}), userDocumentName);
  const std::string before = ReadBytes(path);
  const LogCapture log(folders);
  {
    const HeldFile held(path);
    document.Load();
    log.Clear();
    document.Save(Named({L"new"}));
  }
  EXPECT_EQ(before, ReadBytes(path));
  EXPECT_THAT(Files(), ElementsAre(FileName()));
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: Document: " + Utf8(path) +
                                       " was never read, can't be set aside (0x80070020) and stays"));
}

TEST_F(UserDocumentTest, AFolderInItsPlaceStays) {
  MakeFolders(path);
  document.Load();
  document.Save(Named({L"new"}));
  EXPECT_THAT(Files(), ElementsAre(FileName()));
}

TEST_F(UserDocumentTest, OnAFullDiskStaysAndLeavesNothingAside) {
  WriteBytes(path, "<UIRoot");
  document.Load();
  {
    const FullDisk full(4);
    document.Save(Named({L"new"}));
  }
  EXPECT_EQ("<UIRoot", ReadBytes(path));
  EXPECT_THAT(Files(), ElementsAre(FileName()));
}

TEST_F(UserDocumentTest, WhoseNewListFindsNoRoomStaysAndLeavesNothingAside) {
  WriteBytes(path, "<UIRoot");
  document.Load();
  {
    const FullDisk full(100); // enough for the copy
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), HResultOf([&] { document.Save(Named({L"new"})); }));
  }
  EXPECT_EQ("<UIRoot", ReadBytes(path));
  EXPECT_THAT(Files(), ElementsAre(FileName()));
  document.Save(Named({L"new"}));
  EXPECT_EQ("<UIRoot", ReadBytes(path + L".broken")) << "it still counts as never read";
}

TEST_F(UserDocumentTest, ThatWentMeanwhileIsWrittenForNewEntriesOnly) {
  WriteBytes(path, "<UIRoot");
  document.Load();
  ::DeleteFileW(path.c_str());
  document.Save({});
  EXPECT_THAT(Files(), IsEmpty());
  document.Save(Named({L"new"}));
  EXPECT_EQ(Named({L"new"}), Stored());
  EXPECT_THAT(Files(), ElementsAre(FileName()));
}

} // namespace
} // namespace lumenor
