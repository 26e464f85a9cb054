#pragma once
// What the tests of drags over the bar stand in: a dock whose row is pointed at and dropped upon, whose drop target is
// at hand and whose every picture is looked through for the marker.

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <wrl/client.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/dragdrop/DragObjects.h"
#include "dock/dragdrop/DragState.h"
#include "support/Desk.h"
#include "support/ImportSlot.h"

#include <shlobj.h>

extern "C" decltype(&::UpdateLayeredWindow) __imp_UpdateLayeredWindow;
extern "C" decltype(&::RegisterDragDrop) __imp_RegisterDragDrop;
extern "C" decltype(&::RevokeDragDrop) __imp_RevokeDragDrop;

namespace lumenor {

using Texts = std::vector<std::wstring>;

inline constexpr POINT farAway = {640, 600};

// What the dock gives to the platform.

inline Microsoft::WRL::ComPtr<IDropTarget> registeredTarget;
inline HWND revokedWindow = nullptr;
inline HRESULT registrationResult = S_OK;
inline decltype(__imp_RegisterDragDrop) platformRegister = nullptr;
inline decltype(__imp_RevokeDragDrop) platformRevoke = nullptr;

inline HRESULT WINAPI NoteRegistration(HWND window, IDropTarget *target) {
  registeredTarget = target;
  return FAILED(registrationResult) ? registrationResult : platformRegister(window, target);
}

inline HRESULT WINAPI NoteRevocation(HWND window) {
  revokedWindow = window;
  return platformRevoke(window);
}

/// Where white stands in a row of the bar: the first pixel and the one behind the last; both -1 without any.
struct WhiteRun {
  int left = -1;
  int right = -1;

  bool operator==(const WhiteRun &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const WhiteRun &run) {
  return out << run.left << " to " << run.right;
}

/// The marker as the bar's last picture has it.
struct Marker {
  WhiteRun topCap;
  WhiteRun aboveIt;
  WhiteRun stem;
  WhiteRun bottomCap;
  WhiteRun belowIt;
};

inline WhiteRun FindWhite(HDC picture, int width, int y) {
  WhiteRun run;
  for (int x = 0; x < width; ++x) {
    if (::GetPixel(picture, x, y) != RGB(255, 255, 255))
      continue;
    if (run.left < 0)
      run.left = x;
    run.right = x + 1;
  }
  return run;
}

inline HWND watchedBar = nullptr;
inline int pictures = 0;
inline Marker marker;
inline decltype(__imp_UpdateLayeredWindow) platformUpdate = nullptr;

inline BOOL WINAPI NotePicture(HWND window, HDC to, POINT *place, SIZE *size, HDC from, POINT *origin, COLORREF key,
                               BLENDFUNCTION *blend, DWORD flags) {
  if (window == watchedBar) {
    ++pictures;
    // Off the rows in which buttons have their pictures and texts, the bar itself has nothing white.
    marker = {FindWhite(from, size->cx, 4), FindWhite(from, size->cx, 3), FindWhite(from, size->cx, 10),
              FindWhite(from, size->cx, 74), FindWhite(from, size->cx, 75)};
  }
  return platformUpdate(window, to, place, size, from, origin, key, blend, flags);
}

class Drag : public BarFixture {
protected:
  Drag() {
    registeredTarget.Reset();
    revokedWindow = nullptr;
    registrationResult = S_OK;
    platformUpdate = updates.Former();
    platformRegister = registrations.Former();
    platformRevoke = revocations.Former();
    ForgetDrag();
    desk::MoveCursor(farAway);
  }
  ~Drag() override {
    ForgetDrag();
    registeredTarget.Reset();
    watchedBar = nullptr;
  }

  void StartWith(const ElementList &elements) {
    SaveDocument(elements, userDocument);
    Start();
    watchedBar = dock->handle;
  }

  void StartWith(int count) { StartWith(PictureElements(count)); }

  /// The labels of records and buttons, which go together.
  Texts Heads() const {
    Texts records, buttons;
    for (const Element &element : dock->GetUserElements())
      records.push_back(element.Head);
    for (const auto &button : dock->GetUserButtons())
      buttons.push_back(button->GetElement().Head);
    EXPECT_EQ(records, buttons);
    return buttons;
  }

  HWND WindowOf(std::size_t index) const { return dock->GetUserButtons().at(index)->GetHandle(); }

  /// The place on the screen that is `right` pixels behind the left end of the row.
  POINT OnRow(LONG right, LONG down = 30) const {
    POINT point = {right, down};
    ::ClientToScreen(BarTree(*dock).userButtons.GetHandle(), &point);
    return point;
  }

  /// On the left or the right half of a button.
  POINT FirstHalf(int index) const { return OnRow(4 + 81 * index + 10); }
  POINT SecondHalf(int index) const { return OnRow(4 + 81 * index + 60); }

  LRESULT Notify(UINT code, UINT_PTR idFrom) const {
    const NMHDR header = {dock->handle, idFrom, code};
    return ::SendMessageW(dock->handle, WM_NOTIFY, reinterpret_cast<WPARAM>(dock->handle),
                          reinterpret_cast<LPARAM>(&header));
  }
  LRESULT Notify(UINT code, POINT screen) const {
    return Notify(code, static_cast<DWORD>(MAKELONG(screen.x, screen.y)));
  }
  LRESULT Over(POINT screen) const { return Notify(2, screen); }

  LRESULT Add(const std::wstring &path, POINT screen) const {
    return SendAddress(dock->handle, DragAddMessage, path.c_str(), MAKELONG(screen.x, screen.y));
  }

  /// A file that exists.
  std::wstring MakeFile(const std::wstring &name) const {
    const std::wstring path = folders.Root() + L"\\" + name;
    tests::WriteBytes(path, "content");
    return path;
  }

  /// Drags the files of these names from elsewhere to `screen` and drops them.
  HRESULT DropFiles(const Texts &names, POINT screen) const {
    Texts paths;
    for (const std::wstring &name : names)
      paths.push_back(MakeFile(name));
    return DropData(MakeFileData(paths).Get(), screen);
  }

  static HRESULT DropData(IDataObject *data, POINT screen) {
    DWORD effect = DROPEFFECT_COPY;
    registeredTarget->DragEnter(data, MK_LBUTTON, {screen.x, screen.y}, &effect);
    effect = DROPEFFECT_COPY;
    registeredTarget->DragOver(MK_LBUTTON, {screen.x, screen.y}, &effect);
    effect = DROPEFFECT_COPY;
    return registeredTarget->Drop(data, 0, {screen.x, screen.y}, &effect);
  }

  /// The places that the marker has for the left end `left` of its caps, if it is drawn whole.
  static void ExpectMarker(int left) {
    EXPECT_EQ((WhiteRun{left, left + 9}), marker.topCap);
    EXPECT_EQ((WhiteRun{left, left + 9}), marker.bottomCap);
    EXPECT_EQ(2, marker.stem.right - marker.stem.left);
    EXPECT_NEAR(left + 4.5, (marker.stem.left + marker.stem.right) / 2.0, 0.5);
    EXPECT_EQ(WhiteRun{}, marker.aboveIt);
    EXPECT_EQ(WhiteRun{}, marker.belowIt);
  }

  static void ExpectNoMarker() {
    EXPECT_EQ(WhiteRun{}, marker.topCap);
    EXPECT_EQ(WhiteRun{}, marker.stem);
    EXPECT_EQ(WhiteRun{}, marker.bottomCap);
  }

  /// The row's left end in the bar's coordinates.
  int RowLeft() const {
    POINT point = OnRow(0);
    ::ScreenToClient(dock->handle, &point);
    return point.x;
  }

private:
  const tests::ImportSlot<decltype(&::UpdateLayeredWindow)> updates{&__imp_UpdateLayeredWindow, &NotePicture};
  const tests::ImportSlot<decltype(&::RegisterDragDrop)> registrations{&__imp_RegisterDragDrop, &NoteRegistration};
  const tests::ImportSlot<decltype(&::RevokeDragDrop)> revocations{&__imp_RevokeDragDrop, &NoteRevocation};
};

} // namespace lumenor
