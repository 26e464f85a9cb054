// What the platform is told of a drag over the bar, and what the bar is told: the drop target through its interface,
// with a window in the bar's place that notes what comes.

#include <cstring>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dock/DockMessages.h"
#include "dock/dragdrop/DragObjects.h"
#include "dock/dragdrop/DragState.h"
#include "dock/dragdrop/DropTarget.h"
#include "support/ComApartment.h"
#include "support/FailingClass.h"
#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"
#include "system/WindowException.h"
#include "toolkit/WindowImpl.h"

#include <shlobj.h>

namespace lumenor {

namespace {

using Microsoft::WRL::ComPtr;
using namespace std::literals;

/// What arrived: a notification's code and idFrom, or 1025 and the packed point, with the path behind.
struct Arrival {
  UINT code;
  DWORD value;
  std::wstring path = {};

  bool operator==(const Arrival &) const = default;
};

class NotedWindow : public CWindowImpl<NotedWindow, CWindow, CWinTraits<WS_POPUP, 0>> {
public:
  NotedWindow() { Create(nullptr); }
  ~NotedWindow() override = default;

  BOOL ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD) override {
    if (message == WM_NOTIFY) {
      const auto &header = *reinterpret_cast<const NMHDR *>(lParam);
      EXPECT_EQ(handle, header.hwndFrom);
      EXPECT_EQ(handle, reinterpret_cast<HWND>(wParam));
      arrivals.push_back({header.code, static_cast<DWORD>(header.idFrom)});
    } else if (message == DragAddMessage) {
      arrivals.push_back({message, static_cast<DWORD>(lParam), reinterpret_cast<const wchar_t *>(wParam)});
    } else {
      return FALSE;
    }
    result = 0;
    return TRUE;
  }

  /// What came since the last call.
  std::vector<Arrival> Take() { return std::exchange(arrivals, {}); }

private:
  std::vector<Arrival> arrivals;
};

constexpr POINTL place = {300, 40};
constexpr DWORD packedPlace = (40 << 16) | 300;
constexpr DWORD all = DROPEFFECT_COPY | DROPEFFECT_MOVE | DROPEFFECT_LINK;

const std::wstring firstPath = L"C:\\first.txt";

class DropTarget : public ::testing::Test {
protected:
  DropTarget() { dragOverButtons = true; }
  ~DropTarget() override { ForgetDrag(); }

  DWORD Enter(IDataObject *data, DWORD keys = 0, DWORD effect = all) const {
    EXPECT_EQ(S_OK, target->DragEnter(data, keys, place, &effect));
    return effect;
  }
  DWORD Over(DWORD keys = 0, DWORD effect = all) const {
    EXPECT_EQ(S_OK, target->DragOver(keys, place, &effect));
    return effect;
  }

  /// The result of a drop, which always leaves no effect.
  HRESULT Drop(IDataObject *data, DWORD keys = 0, DWORD effect = all) const {
    const HRESULT result = target->Drop(data, keys, place, &effect);
    EXPECT_EQ(0U, effect);
    return result;
  }

  static HWND Button() { return ::GetDesktopWindow(); } // any window's handle

  const tests::ComApartment com;
  NotedWindow window;
  const ComPtr<CDropTarget> target = MakeComObject<CDropTarget>(window.handle);
  const ComPtr<CDataObject> files = MakeFileData({firstPath});
};

using Arrivals = std::vector<Arrival>;

std::ostream &operator<<(std::ostream &out, const Arrival &arrival) {
  return out << arrival.code << ' ' << std::hex << arrival.value << std::dec << ' ' << arrival.path.size();
}

TEST_F(DropTarget, IsMadeWithOneReferenceAndLeavesNone) {
  EXPECT_EQ(1U, CountReferences(target.Get()));
  ComPtr<IDropTarget> same;
  EXPECT_EQ(S_OK, target->QueryInterface(IID_PPV_ARGS(same.GetAddressOf())));
  EXPECT_EQ(2U, CountReferences(target.Get()));
  Enter(files.Get());
  Over();
  Drop(files.Get());
  EXPECT_EQ(2U, CountReferences(target.Get()));
  EXPECT_EQ(1U, CountReferences(files.Get()));
}

TEST_F(DropTarget, IsNotMadeWithoutThePlatformsHelper) {
  const tests::FailingClass failing(CLSID_DragDropHelper, E_NOTIMPL);
  EXPECT_THROW(MakeComObject<CDropTarget>(window.handle), HResultError);
}

TEST_F(DropTarget, SendsNoNotificationWhenFilesEnter) {
  Enter(files.Get());
  EXPECT_EQ((Arrivals{}), window.Take());
  EXPECT_TRUE(target->IsInDrag());
}

TEST_F(DropTarget, NotifiesOfAButtonThatEnters) {
  draggedButton = Button();
  Enter(files.Get());
  EXPECT_EQ((Arrivals{{1, packedPlace}}), window.Take());
}

TEST_F(DropTarget, NotifiesOfEveryMove) {
  Enter(files.Get());
  Over();
  Over();
  EXPECT_EQ((Arrivals{{2, packedPlace}, {2, packedPlace}}), window.Take());
}

TEST_F(DropTarget, PacksPlacesLeftOfAndAboveTheScreen) {
  Enter(files.Get());
  DWORD effect = all;
  EXPECT_EQ(S_OK, target->DragOver(0, {-2, -3}, &effect));
  EXPECT_EQ((Arrivals{{2, 0xFFFDFFFE}}), window.Take());
}

TEST_F(DropTarget, NotifiesWhichButtonLeft) {
  Enter(files.Get());
  EXPECT_EQ(S_OK, target->DragLeave());
  draggedButton = Button();
  EXPECT_EQ(S_OK, target->DragLeave());
  EXPECT_EQ((Arrivals{{3, 0}, {3, ::HandleToULong(Button())}}), window.Take());
  EXPECT_FALSE(target->IsInDrag());
}

TEST_F(DropTarget, GrantsTheRequestedEffectThatTheSourceAllows) {
  struct Row {
    DWORD keys, allowed, effect;
  };
  const Row rows[] = {
      {0, all, DROPEFFECT_COPY},
      {0, DROPEFFECT_MOVE | DROPEFFECT_LINK, DROPEFFECT_MOVE},
      {0, DROPEFFECT_LINK, DROPEFFECT_LINK},
      {0, DROPEFFECT_LINK | DROPEFFECT_SCROLL, DROPEFFECT_LINK},
      {0, 0, 0},
      {MK_LBUTTON, all, DROPEFFECT_COPY},
      {MK_CONTROL, all, DROPEFFECT_COPY},
      {MK_CONTROL, DROPEFFECT_MOVE, 0},
      {MK_SHIFT, all, DROPEFFECT_MOVE},
      {MK_SHIFT, DROPEFFECT_COPY, 0},
      {MK_CONTROL | MK_SHIFT, all, 0},
      {MK_CONTROL | MK_SHIFT, DROPEFFECT_LINK, 0},
  };
  for (const Row &row : rows) {
    EXPECT_EQ(row.effect, Enter(files.Get(), row.keys, row.allowed)) << row.keys << ' ' << row.allowed;
    EXPECT_EQ(row.effect, Over(row.keys, row.allowed)) << row.keys << ' ' << row.allowed;
    EXPECT_EQ(row.effect == 0 ? E_FAIL : S_OK, Drop(files.Get(), row.keys, row.allowed)) << row.keys;
  }
}

TEST_F(DropTarget, GrantsNothingOffTheRow) {
  Enter(files.Get());
  dragOverButtons = false;
  EXPECT_EQ(0U, Over());
}

TEST_F(DropTarget, GrantsNothingWithoutFiles) {
  const auto text = MakeTextData();
  EXPECT_EQ(0U, Enter(text.Get()));
  EXPECT_EQ(0U, Over());
  window.Take();
  EXPECT_EQ(E_FAIL, Drop(text.Get()));
  EXPECT_EQ((Arrivals{}), window.Take());
}

TEST_F(DropTarget, GrantsNothingAnyMoreWhenTheDragHasLeft) {
  Enter(files.Get());
  target->DragLeave();
  EXPECT_EQ(0U, Over());
  EXPECT_EQ(E_FAIL, Drop(files.Get()));
}

TEST_F(DropTarget, AddsADroppedFile) {
  Enter(files.Get());
  EXPECT_EQ(S_OK, Drop(files.Get()));
  EXPECT_EQ((Arrivals{{1025, packedPlace, firstPath}}), window.Take());
  EXPECT_FALSE(target->IsInDrag());
}

TEST_F(DropTarget, AddsDroppedFilesInTheirOrderAtOnePlace) {
  const auto several = MakeFileData({firstPath, L"C:\\b", L"C:\\a longer name.lnk"});
  Enter(several.Get());
  EXPECT_EQ(S_OK, Drop(several.Get()));
  EXPECT_EQ((Arrivals{{1025, packedPlace, firstPath},
                      {1025, packedPlace, L"C:\\b"},
                      {1025, packedPlace, L"C:\\a longer name.lnk"}}),
            window.Take());
}

TEST_F(DropTarget, AddsNoneOfAnEmptyList) {
  const auto none = MakeFileData({});
  Enter(none.Get());
  EXPECT_EQ(S_OK, Drop(none.Get()));
  EXPECT_EQ((Arrivals{}), window.Take());
}

TEST_F(DropTarget, CutsPathsThatAreTooLong) {
  const std::wstring longest = L"C:\\" + std::wstring(256, L'x');
  ASSERT_EQ(259U, longest.size());
  const auto long3 = MakeFileData({longest, longest + L"y", longest + std::wstring(1000, L'z'), firstPath});
  Enter(long3.Get());
  EXPECT_EQ(S_OK, Drop(long3.Get()));
  EXPECT_EQ((Arrivals{{1025, packedPlace, longest},
                      {1025, packedPlace, longest},
                      {1025, packedPlace, longest},
                      {1025, packedPlace, firstPath}}),
            window.Take());
}

TEST_F(DropTarget, AddsThousandsOfFiles) {
  std::vector<std::wstring> paths;
  Arrivals expected;
  for (int i = 0; i < 5000; ++i) {
    paths.push_back(L"C:\\" + std::wstring(252, L'x') + std::to_wstring(1000 + i));
    expected.push_back({1025, packedPlace, paths.back()});
  }
  const auto many = MakeFileData(paths);
  Enter(many.Get());
  EXPECT_EQ(S_OK, Drop(many.Get()));
  EXPECT_TRUE(expected == window.Take()) << "too many to be printed";
}

/// A data object with a list of files that begins `begin` bytes into its block and holds these `names`.
ComPtr<CDataObject> MakeList(DWORD begin, const std::string &names, BOOL isWide = TRUE) {
  const DROPFILES head{.pFiles = begin, .pt = {}, .fNC = FALSE, .fWide = isWide};
  const std::string bytes = std::string(reinterpret_cast<const char *>(&head), sizeof head) + names;
  STGMEDIUM medium = {};
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  std::memcpy(::GlobalLock(medium.hGlobal), bytes.data(), bytes.size());
  ::GlobalUnlock(medium.hGlobal);
  return MakeData(fileListFormat, medium);
}

TEST_F(DropTarget, TakesAListThatLacksItsEndAsFarAsItGoes) {
  const auto unended = MakeList(sizeof(DROPFILES), "a\0\0\0b\0"s);
  Enter(unended.Get());
  EXPECT_EQ(S_OK, Drop(unended.Get()));
  EXPECT_EQ((Arrivals{{1025, packedPlace, L"a"}, {1025, packedPlace, L"b"}}), window.Take());
  const auto narrow = MakeList(sizeof(DROPFILES), "c\0d"s, FALSE);
  Enter(narrow.Get());
  EXPECT_EQ(S_OK, Drop(narrow.Get()));
  EXPECT_EQ((Arrivals{{1025, packedPlace, L"c"}, {1025, packedPlace, L"d"}}), window.Take());
}

TEST_F(DropTarget, RefusesAListThatBeginsBehindItsBlock) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  for (const DWORD begin : {0x10000000UL, 0xFFFFFFFFUL}) {
    const auto damaged = MakeList(begin, "a\0\0\0\0\0"s);
    Enter(damaged.Get());
    EXPECT_EQ(S_OK, Drop(damaged.Get()));
    EXPECT_EQ((Arrivals{}), window.Take());
    EXPECT_EQ((std::vector<std::string>{"ERROR: DropTarget: the list of the dropped files is damaged"}), log.Lines());
    log.Clear();
  }
}

TEST_F(DropTarget, RefusesABlockThatIsTooShortForAList) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  const auto shortBlock = MakeData(fileListFormat, MakeMemory(std::string(5, '\0')));
  Enter(shortBlock.Get());
  EXPECT_EQ(S_OK, Drop(shortBlock.Get()));
  EXPECT_EQ((Arrivals{}), window.Take());
  EXPECT_EQ((std::vector<std::string>{"ERROR: DropTarget: the list of the dropped files is damaged"}), log.Lines());
}

TEST_F(DropTarget, TakesTheFirst65536OfAListOfFiles) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  const auto takenOf = [this](std::size_t count) {
    const auto many = MakeFileData(std::vector<std::wstring>(count, L"n"));
    Enter(many.Get());
    EXPECT_EQ(S_OK, Drop(many.Get()));
    return window.Take().size();
  };
  EXPECT_EQ(65'536U, takenOf(65'536));
  EXPECT_EQ((std::vector<std::string>{}), log.Lines());
  EXPECT_EQ(65'536U, takenOf(65'537));
  EXPECT_EQ((std::vector<std::string>{"ERROR: DropTarget: of 65537 dropped files the first 65536 are taken"}),
            log.Lines());
}

TEST_F(DropTarget, NotifiesOfADroppedButtonAndAddsNothing) {
  draggedButton = Button();
  Enter(files.Get());
  window.Take();
  EXPECT_EQ(S_OK, Drop(files.Get()));
  EXPECT_EQ((Arrivals{{4, packedPlace}}), window.Take());
}

TEST_F(DropTarget, TakesTheEmptyListOfAButton) {
  STGMEDIUM empty = {};
  empty.tymed = TYMED_HGLOBAL;
  const auto data = MakeData(fileListFormat, empty);
  draggedButton = Button();
  EXPECT_EQ(static_cast<DWORD>(DROPEFFECT_MOVE), Enter(data.Get(), 0, DROPEFFECT_MOVE));
  window.Take();
  EXPECT_EQ(S_OK, Drop(data.Get(), 0, DROPEFFECT_MOVE));
  EXPECT_EQ((Arrivals{{4, packedPlace}}), window.Take());
  draggedButton = nullptr;
  EXPECT_EQ(S_OK, Drop(data.Get(), 0, DROPEFFECT_MOVE)) << "from another program it is no list at all";
  EXPECT_EQ((Arrivals{}), window.Take());
}

TEST_F(DropTarget, ReturnsTheFailureOfASourceThatHasGone) {
  Enter(files.Get());
  const auto text = MakeTextData();
  EXPECT_EQ(DV_E_FORMATETC, Drop(text.Get()));
  EXPECT_EQ((Arrivals{}), window.Take());
}

// Nobody else tells the user why the drop adds nothing.
TEST_F(DropTarget, LogsTheFailureOfASourceThatHasGone) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  Enter(files.Get());
  Drop(MakeTextData().Get());
  EXPECT_THAT(log.Lines(), ::testing::ElementsAre("ERROR: DropTarget: the dropped files can't be had, error 80040064"));
}

TEST_F(DropTarget, ReleasesWhatItWasGiven) {
  CountedObject owner;
  STGMEDIUM medium = {};
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = MakeFileList({firstPath});
  medium.pUnkForRelease = &owner;
  const auto data = MakeData(fileListFormat, medium);
  Enter(data.Get());
  EXPECT_EQ(S_OK, Drop(data.Get()));
  EXPECT_EQ(1U, owner.references);
  ::GlobalFree(medium.hGlobal);
}

TEST_F(DropTarget, RefusesNullArguments) {
  DWORD effect = all;
  EXPECT_EQ(E_INVALIDARG, target->DragEnter(nullptr, 0, place, &effect));
  EXPECT_EQ(E_INVALIDARG, target->DragEnter(files.Get(), 0, place, nullptr));
  EXPECT_EQ(E_INVALIDARG, target->DragOver(0, place, nullptr));
  EXPECT_EQ(E_INVALIDARG, target->Drop(nullptr, 0, place, &effect));
  EXPECT_EQ(E_INVALIDARG, target->Drop(files.Get(), 0, place, nullptr));
}

// What the platform's helper, which shows the pictures of drags, is told.

std::vector<std::string> told;

std::string At(const POINT &point) { return " " + std::to_string(point.x) + " " + std::to_string(point.y); }

HRESULT STDMETHODCALLTYPE NoteEnter(IDropTargetHelper *, HWND window, IDataObject *data, POINT *point, DWORD) {
  told.push_back("enter" + At(*point) + (::IsWindow(window) && data != nullptr ? "" : " nothing"));
  return S_OK;
}
HRESULT STDMETHODCALLTYPE NoteLeave(IDropTargetHelper *) {
  told.emplace_back("leave");
  return S_OK;
}
HRESULT STDMETHODCALLTYPE NoteOver(IDropTargetHelper *, POINT *point, DWORD) {
  told.push_back("over" + At(*point));
  return S_OK;
}
HRESULT STDMETHODCALLTYPE NoteDrop(IDropTargetHelper *, IDataObject *data, POINT *point, DWORD) {
  told.push_back("drop" + At(*point) + (data != nullptr ? "" : " nothing"));
  return S_OK;
}

TEST_F(DropTarget, PassesEveryStepToThePlatformsHelper) {
  ComPtr<IDropTargetHelper> helper;
  ASSERT_EQ(S_OK, ::CoCreateInstance(CLSID_DragDropHelper, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&helper)));
  tests::OperationSpy spy(helper.Get());
  spy.Exchange(3, &NoteEnter);
  spy.Exchange(4, &NoteLeave);
  spy.Exchange(5, &NoteOver);
  spy.Exchange(6, &NoteDrop);
  told.clear();
  Enter(files.Get());
  Over();
  EXPECT_EQ(S_OK, target->DragLeave());
  Enter(files.Get());
  Drop(files.Get());
  EXPECT_EQ((std::vector<std::string>{"enter 300 40", "over 300 40", "leave", "enter 300 40", "drop 300 40"}), told);
}

TEST_F(DropTarget, OutlivesItsWindow) {
  Enter(files.Get());
  ::DestroyWindow(window.handle);
  Over();
  EXPECT_EQ(S_OK, Drop(files.Get()));
  EXPECT_EQ(S_OK, target->DragLeave());
}

TEST(ShieldedCall, KeepsWhatItsBodyRaises) {
  EXPECT_EQ(S_FALSE, Shielded([] { return S_FALSE; }));
  EXPECT_EQ(E_FAIL, Shielded([]() -> HRESULT { throw HResultError(E_NOTIMPL); }));
  EXPECT_THROW(RethrowWindowException(), HResultError);
}

} // namespace

} // namespace lumenor
