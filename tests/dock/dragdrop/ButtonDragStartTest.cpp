// What the platform is given when a button of the user's begins to be dragged, and what becomes of its answers. Its
// loop of a drag is exchanged for a look at what it would have worked with.

#include <functional>
#include <vector>

#include <gmock/gmock.h>

#include "dock/dragdrop/DataObject.h"
#include "dock/dragdrop/DragFixture.h"
#include "drawing/Pictures.h"
#include "resources/resource.h"
#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/ProgramBytes.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "toolkit/drawing/ProgramAppearance.h"

extern "C" decltype(&::DoDragDrop) __imp_DoDragDrop;

namespace lumenor {

namespace {

using Microsoft::WRL::ComPtr;

/// What stands in for the platform's loop.
std::function<HRESULT(IDataObject *data, IDropSource *source, DWORD allowed)> loop;

HRESULT WINAPI RunLoop(IDataObject *data, IDropSource *source, DWORD allowed, DWORD *) {
  return loop(data, source, allowed);
}

/// The picture that the platform was asked to show.
SHDRAGIMAGE shownImage{};
IDataObject *shownWith = nullptr;

HRESULT STDMETHODCALLTYPE NoteImage(IDragSourceHelper *, SHDRAGIMAGE *image, IDataObject *data) {
  shownImage = *image;
  shownWith = data;
  return S_OK;
}

ComPtr<IDragSourceHelper> MakePlatformHelper() {
  ComPtr<IDragSourceHelper> helper;
  ThrowIfFailed(::CoCreateInstance(CLSID_DragDropHelper, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&helper)));
  return helper;
}

/// What is seen of a cursor, its hot spot included: the same of a copy.
std::vector<LONG> LooksOf(HCURSOR cursor) {
  ICONINFO info = {};
  ::GetIconInfo(cursor, &info);
  const BitmapHandle mask(info.hbmMask), color(info.hbmColor);
  std::vector<LONG> looks = {static_cast<LONG>(info.xHotspot), static_cast<LONG>(info.yHotspot)};
  for (const BitmapHandle *const bitmap : {&mask, &color}) {
    BITMAP size = {};
    ::GetObjectW(bitmap->Get(), sizeof size, &size);
    std::vector<BYTE> bits(static_cast<std::size_t>(size.bmWidthBytes) * static_cast<std::size_t>(size.bmHeight));
    ::GetBitmapBits(bitmap->Get(), static_cast<LONG>(bits.size()), bits.data());
    looks.insert(looks.end(), bits.begin(), bits.end());
  }
  return looks;
}

class DragStart : public Drag {
protected:
  DragStart() {
    shownImage = {};
    shownWith = nullptr;
  }
  ~DragStart() override { loop = nullptr; }

  /// Begins to drag the first button; the platform's loop is `newLoop`.
  void DragFirst(decltype(loop) newLoop) {
    loop = std::move(newLoop);
    ButtonEventArgs args{dock->GetUserButtons().at(0).get()};
    dock->GetUserButtons().at(0)->DragBegin.Fire(&args);
  }

  /// The size of the picture that a drag of `element` shows.
  std::pair<long, long> ShownSize(const Element &element) {
    StartWith({element});
    tests::OperationSpy helper(MakePlatformHelper().Get());
    helper.Exchange(3, &NoteImage);
    IDataObject *dragged = nullptr;
    DragFirst([&](IDataObject *data, IDropSource *, DWORD) {
      dragged = data;
      return DRAGDROP_S_CANCEL;
    });
    EXPECT_NE(nullptr, dragged);
    EXPECT_EQ(dragged, shownWith);
    EXPECT_EQ(0, shownImage.ptOffset.x);
    EXPECT_EQ(0, shownImage.ptOffset.y);
    return {shownImage.sizeDragImage.cx, shownImage.sizeDragImage.cy};
  }

private:
  const tests::ImportSlot<decltype(&::DoDragDrop)> drags{&__imp_DoDragDrop, &RunLoop};
};

TEST_F(DragStart, OffersAMoveOfAListThatIsNotThere) {
  StartWith(1);
  int runs = 0;
  DragFirst([&](IDataObject *data, IDropSource *, DWORD allowed) {
    ++runs;
    EXPECT_EQ(DWORD{DROPEFFECT_MOVE}, allowed);
    FORMATETC format = fileListFormat;
    STGMEDIUM medium = {};
    EXPECT_EQ(S_OK, data->GetData(&format, &medium));
    EXPECT_EQ(DWORD{TYMED_HGLOBAL}, medium.tymed);
    EXPECT_EQ(nullptr, medium.hGlobal);
    EXPECT_EQ(WindowOf(0), draggedButton);
    return DRAGDROP_S_CANCEL;
  });
  EXPECT_EQ(1, runs);
}

TEST_F(DragStart, BringsTheCursorThatMeansRemoval) {
  StartWith(1);
  DragFirst([&](IDataObject *, IDropSource *source, DWORD) {
    dragOutside = true;
    EXPECT_EQ(S_OK, source->GiveFeedback(DROPEFFECT_NONE));
    const std::vector<LONG> looks = LooksOf(::GetCursor());
    EXPECT_THAT(looks, testing::SizeIs(testing::Gt(2U)));
    EXPECT_EQ(LooksOf(::LoadCursorW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(DragCursorId))), looks);
    EXPECT_NE(LooksOf(::LoadCursorW(nullptr, IDC_ARROW)), looks);
    return DRAGDROP_S_CANCEL;
  });
}

TEST_F(DragStart, ShowsThePictureOfTheButton) {
  Element element = PictureElement(L"Picture");
  element.Image = folders.Root() + L"\\narrow.png";
  element.ActionParams = L"C:\\windows\\notepad.exe";
  tests::WritePicture(element.Image, tests::SolidPicture(20, 30, 0xFFFF0000));
  EXPECT_EQ(std::make_pair(20L, 30L), ShownSize(element));
}

TEST_F(DragStart, ShowsTheIconOfAButtonWithoutAPicture) {
  Element element = PictureElement(L"Icon");
  element.Image.clear();
  element.ActionParams = L"C:\\windows\\notepad.exe";
  BITMAP icon = {};
  ::GetObjectW(ProgramImage(element.ActionParams).Get(), sizeof icon, &icon);
  ASSERT_LT(1, icon.bmWidth) << "some shells give one pixel, which the button doesn't show either";
  EXPECT_EQ(std::make_pair(long{icon.bmWidth}, long{icon.bmHeight}), ShownSize(element));
}

TEST_F(DragStart, DoesNotGiveADamagedProgramToTheShell) {
  const tests::LogCapture log(folders);
  Element element = PictureElement(L"Damaged");
  element.Image.clear();
  element.ActionParams = L"\"" + folders.Root() + L"\\damaged.exe\"";
  const std::string whole = tests::MakeProgram({{14, "no group of icons"}, {3, "no icon"}});
  tests::WriteBytes(folders.Root() + L"\\damaged.exe", whole.substr(0, tests::programHeadBytes + 20));
  StartWith({element});
  log.Clear();
  DragFirst([](IDataObject *, IDropSource *, DWORD) { return DRAGDROP_S_CANCEL; });
  EXPECT_THAT(log.Lines(), testing::Contains(testing::HasSubstr("damaged.exe")));
  EXPECT_EQ(nullptr, shownWith);
}

TEST_F(DragStart, ThatThePlatformRefusesLeavesTheButton) {
  StartWith(2);
  DragFirst([](IDataObject *, IDropSource *, DWORD) {
    dragOutside = true;
    return E_OUTOFMEMORY;
  });
  TakeQuitCode();
  EXPECT_EQ((Texts{L"Head 0", L"Head 1"}), Heads());
  EXPECT_EQ(lumenor::Visibility::Visible, dock->GetUserButtons().at(0)->Visibility.Get());
  EXPECT_EQ(nullptr, draggedButton);
  EXPECT_FALSE(dragOutside);
}

TEST_F(DragStart, EndsWithTheBarInFront) {
  const desk::Backdrop other({300, 300, 500, 400}, RGB(10, 20, 30));
  StartWith(1);
  ::SetForegroundWindow(other.Get());
  ASSERT_EQ(other.Get(), ::GetForegroundWindow());
  DragFirst([](IDataObject *, IDropSource *, DWORD) { return DRAGDROP_S_CANCEL; });
  EXPECT_EQ(dock->handle, ::GetForegroundWindow());
}

TEST_F(DragStart, OfAVanishedTargetRunsNoDragAndBringsTheBarToTheFront) {
  Element element = PictureElement(L"Vanishing");
  element.Image.clear();
  element.ActionParams = L"\"" + MakeFile(L"target.txt") + L"\"";
  const desk::Backdrop other({300, 300, 500, 400}, RGB(10, 20, 30));
  StartWith({element});
  ::DeleteFileW((folders.Root() + L"\\target.txt").c_str());
  ::SetForegroundWindow(other.Get());
  ASSERT_EQ(other.Get(), ::GetForegroundWindow());
  int runs = 0;
  DragFirst([&](IDataObject *, IDropSource *, DWORD) {
    ++runs;
    return DRAGDROP_S_CANCEL;
  });
  EXPECT_EQ(0, runs);
  EXPECT_EQ(dock->handle, ::GetForegroundWindow());
  TakeQuitCode();
  EXPECT_EQ(Texts{}, Heads());
}

} // namespace

} // namespace lumenor
