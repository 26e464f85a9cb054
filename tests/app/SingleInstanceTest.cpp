#include "app/SingleInstance.h"

#include <gtest/gtest.h>

#include "support/ImportSlot.h"
#include "support/MessagePump.h"

extern "C" decltype(&::CreateEventW) __imp_CreateEventW;
extern "C" decltype(&::OpenEventW) __imp_OpenEventW;
extern "C" decltype(&::SetSecurityDescriptorDacl) __imp_SetSecurityDescriptorDacl;

namespace lumenor {

namespace {

UINT activateMessage = 0;
int activations = 0;

LRESULT CALLBACK CountActivations(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == activateMessage)
    ++activations;
  return ::DefWindowProcW(window, message, wParam, lParam);
}

/// How the guard event was made.
struct EventRequest {
  bool isDescribed = false;
  BOOL isInherited = FALSE;
  BOOL isManual = FALSE;
  BOOL isSignalled = TRUE;
};
EventRequest request;
decltype(__imp_CreateEventW) platformCreateEvent = nullptr;

HANDLE WINAPI NoteEvent(LPSECURITY_ATTRIBUTES attributes, BOOL isManual, BOOL isSignalled, LPCWSTR name) {
  request = {attributes != nullptr, attributes != nullptr && attributes->bInheritHandle, isManual, isSignalled};
  return platformCreateEvent(attributes, isManual, isSignalled, name);
}

BOOL WINAPI RefuseList(PSECURITY_DESCRIPTOR, BOOL, PACL, BOOL) { return FALSE; }

HANDLE WINAPI FindNoEvent(DWORD, BOOL, LPCWSTR) { return nullptr; }

/// A window as a running dock has one, that counts how often it is called to the front.
class SingleInstanceTest : public ::testing::Test {
protected:
  SingleInstanceTest() {
    activateMessage = ::RegisterWindowMessageW(dockActivateMessageName);
    activations = 0;
    window = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountActivations));
  }
  ~SingleInstanceTest() override { ::DestroyWindow(window); }

  /// Whether nothing has called the window by the time a message of its own arrives.
  bool WasNotCalled() const {
    ::PostMessageW(window, WM_CLOSE, 0, 0);
    tests::PumpUntil([&] { return !::IsWindow(window); });
    return activations == 0;
  }

  HWND window;
};

TEST_F(SingleInstanceTest, TheFirstJoins) {
  SingleInstance first;
  EXPECT_TRUE(first.Join(activateMessage));
  EXPECT_TRUE(WasNotCalled());
}

TEST_F(SingleInstanceTest, TheSecondIsRefusedAndCallsTheFirst) {
  SingleInstance first;
  SingleInstance second;
  first.Join(activateMessage);
  EXPECT_FALSE(second.Join(activateMessage));
  EXPECT_TRUE(tests::PumpUntil([] { return activations > 0; }));
  EXPECT_EQ(1, activations);
}

TEST_F(SingleInstanceTest, TheNextJoinsWhenTheFirstHasGone) {
  {
    SingleInstance first;
    first.Join(activateMessage);
  }
  SingleInstance next;
  EXPECT_TRUE(next.Join(activateMessage));
}

TEST_F(SingleInstanceTest, OfTwoThatStartTogetherOneIsRefusedWithoutACall) {
  SingleInstance first;
  first.Join(activateMessage);
  const tests::ImportSlot slot(&__imp_OpenEventW, &FindNoEvent);
  SingleInstance second;
  EXPECT_FALSE(second.Join(activateMessage));
  EXPECT_TRUE(WasNotCalled());
}

TEST_F(SingleInstanceTest, WithoutTheEventEveryOneJoins) {
  const KernelHandle otherKind(::CreateMutexW(nullptr, FALSE, instanceGuardEventName));
  SingleInstance first;
  SingleInstance second;
  EXPECT_TRUE(first.Join(activateMessage));
  EXPECT_TRUE(second.Join(activateMessage));
}

TEST_F(SingleInstanceTest, LetsEveryUserOpenTheEvent) {
  SingleInstance first;
  first.Join(activateMessage);
  const KernelHandle event(::OpenEventW(READ_CONTROL | SYNCHRONIZE, FALSE, instanceGuardEventName));
  ASSERT_TRUE(event);
  BYTE descriptor[256] = {};
  DWORD needed = 0;
  ASSERT_TRUE(
      ::GetKernelObjectSecurity(event.Get(), DACL_SECURITY_INFORMATION, descriptor, sizeof(descriptor), &needed));
  BOOL present = FALSE;
  BOOL byDefault = TRUE;
  PACL list = reinterpret_cast<PACL>(descriptor);
  ASSERT_TRUE(::GetSecurityDescriptorDacl(descriptor, &present, &list, &byDefault));
  EXPECT_TRUE(present);
  EXPECT_EQ(nullptr, list);
}

TEST_F(SingleInstanceTest, MakesAnInheritedEventThatStaysSignalled) {
  const tests::ImportSlot noted(&__imp_CreateEventW, &NoteEvent);
  platformCreateEvent = noted.Former();
  SingleInstance first;
  EXPECT_TRUE(first.Join(activateMessage));
  EXPECT_TRUE(request.isDescribed);
  EXPECT_TRUE(request.isInherited);
  EXPECT_TRUE(request.isManual);
  EXPECT_FALSE(request.isSignalled);
}

TEST_F(SingleInstanceTest, MakesTheEventWithoutSecurityWhereItCannotBeDescribed) {
  const tests::ImportSlot noted(&__imp_CreateEventW, &NoteEvent);
  platformCreateEvent = noted.Former();
  SingleInstance first;
  {
    const tests::ImportSlot refused(&__imp_SetSecurityDescriptorDacl, &RefuseList);
    EXPECT_TRUE(first.Join(activateMessage));
  }
  EXPECT_FALSE(request.isDescribed);
  EXPECT_TRUE(request.isManual);
  EXPECT_FALSE(request.isSignalled);
  SingleInstance second;
  EXPECT_FALSE(second.Join(activateMessage));
}

TEST_F(SingleInstanceTest, NeverSignalsTheEvent) {
  SingleInstance first;
  first.Join(activateMessage);
  const KernelHandle event(::OpenEventW(SYNCHRONIZE, FALSE, instanceGuardEventName));
  EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), ::WaitForSingleObject(event.Get(), 0));
}

} // namespace

} // namespace lumenor
