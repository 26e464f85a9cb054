// Notifications of controls that a window sends back to them.

#include <gtest/gtest.h>

#include "toolkit/MessageRecorder.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

constexpr int controlId = 77;

class Reflection : public ::testing::Test {
protected:
  Reflection() {
    control.Create(top.GetHandle());
    ::SetWindowLongPtrW(control.handle, GWLP_ID, controlId);
    control.received.clear();
    control.answer = [](UINT message, LRESULT &result) -> BOOL {
      result = 42;
      return message >= reflectedMessageBase;
    };
  }

  /// What reached the control when the window reflects the message.
  std::vector<tests::ReceivedMessage> Reflect(UINT message, WPARAM wParam, LPARAM lParam) {
    control.received.clear();
    handled = 5;
    answer = ReflectNotifications(top.GetHandle(), message, wParam, lParam, handled);
    return control.received;
  }
  void ExpectReflected(UINT message, WPARAM wParam, LPARAM lParam) {
    EXPECT_EQ(Reflect(message, wParam, lParam),
              (std::vector<tests::ReceivedMessage>{{message + 0x2000, wParam, lParam}}))
        << "message " << message;
    EXPECT_EQ(handled, TRUE);
    EXPECT_EQ(answer, 42);
  }
  void ExpectLeftAlone(UINT message, WPARAM wParam, LPARAM lParam) {
    EXPECT_EQ(Reflect(message, wParam, lParam).size(), 0U) << "message " << message;
    EXPECT_EQ(handled, FALSE);
    EXPECT_EQ(answer, 0);
  }
  LPARAM Control() const { return reinterpret_cast<LPARAM>(control.handle); }

  tests::TopLevel top;
  tests::PlainRecorder control;
  BOOL handled = FALSE;
  LRESULT answer = 0;
};

TEST_F(Reflection, MessagesThatNameTheControlInLParamGoToIt) {
  for (const UINT message :
       {WM_COMMAND, WM_HSCROLL, WM_VSCROLL, WM_VKEYTOITEM, WM_CHARTOITEM, WM_CTLCOLORMSGBOX, WM_CTLCOLOREDIT,
        WM_CTLCOLORLISTBOX, WM_CTLCOLORBTN, WM_CTLCOLORDLG, WM_CTLCOLORSCROLLBAR, WM_CTLCOLORSTATIC})
    ExpectReflected(message, 3, Control());
}

TEST_F(Reflection, NotifyGoesToItsSender) {
  NMHDR header{control.handle, controlId, 5};
  ExpectReflected(WM_NOTIFY, controlId, reinterpret_cast<LPARAM>(&header));
}

TEST_F(Reflection, ParentNotifyGoesToTheChildItIsAbout) {
  ExpectReflected(WM_PARENTNOTIFY, WM_CREATE, Control());
  ExpectReflected(WM_PARENTNOTIFY, WM_DESTROY, Control());
  ExpectReflected(WM_PARENTNOTIFY, MAKEWPARAM(WM_LBUTTONDOWN, controlId), MAKELPARAM(1, 1));
  ExpectLeftAlone(WM_PARENTNOTIFY, MAKEWPARAM(WM_LBUTTONDOWN, 999), MAKELPARAM(1, 1));
}

TEST_F(Reflection, OwnerDrawMessagesGoToTheirControl) {
  DRAWITEMSTRUCT draw{};
  draw.hwndItem = control.handle;
  ExpectReflected(WM_DRAWITEM, controlId, reinterpret_cast<LPARAM>(&draw));
  MEASUREITEMSTRUCT measure{};
  measure.CtlID = controlId;
  ExpectReflected(WM_MEASUREITEM, controlId, reinterpret_cast<LPARAM>(&measure));
  COMPAREITEMSTRUCT compare{};
  compare.hwndItem = control.handle;
  ExpectReflected(WM_COMPAREITEM, controlId, reinterpret_cast<LPARAM>(&compare));
  DELETEITEMSTRUCT deleted{};
  deleted.hwndItem = control.handle;
  ExpectReflected(WM_DELETEITEM, controlId, reinterpret_cast<LPARAM>(&deleted));
}

TEST_F(Reflection, MenusAndStrangersAreLeftAlone) {
  DRAWITEMSTRUCT draw{};
  draw.hwndItem = control.handle; // of a menu this is the menu's handle
  ExpectLeftAlone(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&draw));
  MEASUREITEMSTRUCT measure{};
  measure.CtlID = controlId; // a command of the menu may have the same number
  ExpectLeftAlone(WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&measure));
  ExpectLeftAlone(WM_COMMAND, 1, 0);
  ExpectLeftAlone(WM_COMMAND, 1, 0x7FFFFF0);
}

TEST_F(Reflection, OtherMessagesAreLeftAlone) {
  for (const UINT message : {WM_PAINT, WM_CLOSE, WM_SIZE, WM_USER})
    ExpectLeftAlone(message, 3, Control());
}

} // namespace

} // namespace lumenor
