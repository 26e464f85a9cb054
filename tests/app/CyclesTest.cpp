#include "app/Cycles.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/VersionSpy.h"
#include "content/Documents.h"
#include "dock/Commands.h"
#include "dock/DockMessages.h"
#include "support/ComApartment.h"
#include "support/Desk.h"
#include "support/FailingClass.h"
#include "support/ImportSlot.h"
#include "support/JumpLists.h"
#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/EventLog.h"
#include "system/WindowException.h"
#include "system/Xml.h"
#include "toolkit/AnimationServices.h"
#include "toolkit/drawing/WICHelper.h"
#include "toolkit/drawing/Window.h"

#include <d2d1.h>
#include <shellapi.h>
#include <shobjidl.h>

extern "C" decltype(&::OpenEventLogW) __imp_OpenEventLogW;
extern "C" decltype(&::ShellExecuteW) __imp_ShellExecuteW;
extern "C" decltype(&::DialogBoxParamW) __imp_DialogBoxParamW;
using CreateDrawingFactory = HRESULT(WINAPI *)(D2D1_FACTORY_TYPE, REFIID, const D2D1_FACTORY_OPTIONS *, void **);
extern "C" CreateDrawingFactory __imp_D2D1CreateFactory;
extern "C" decltype(&::CoGetClassObject) __imp_CoGetClassObject;

namespace lumenor {

namespace {

constexpr wchar_t applicationId[] = L"com.tw.ebu.lumenor";
constexpr ULONGLONG limitMs = 60'000; // of a test that ends the cycles itself
constexpr wchar_t userDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.User";

HINSTANCE WINAPI FailToLaunch(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) { throw std::runtime_error("launch"); }

int factoriesMade = 0;
CreateDrawingFactory platformFactory = nullptr;

HRESULT WINAPI CountFactory(D2D1_FACTORY_TYPE type, REFIID id, const D2D1_FACTORY_OPTIONS *options, void **factory) {
  ++factoriesMade;
  return platformFactory(type, id, options, factory);
}

int parserLookUps = 0;
decltype(&::CoGetClassObject) platformLookUp = nullptr;

HRESULT WINAPI CountParser(REFCLSID classId, DWORD context, void *server, REFIID id, void **factory) {
  parserLookUps += ::IsEqualCLSID(classId, xmlParserClass) ? 1 : 0;
  return platformLookUp(classId, context, server, id, factory);
}

std::function<void(HWND bar)> onBar;

/// Watches from inside the message loop: calls `onBar` while a bar exists.
void CALLBACK LookAtBar(HWND, UINT, UINT_PTR, DWORD) {
  if (const HWND bar = ::FindWindowW(nullptr, L"Lumenor Dock"); ::IsWindowVisible(bar))
    onBar(bar);
}

class CyclesTest : public ::testing::Test {
protected:
  CyclesTest() {
    factoriesMade = parserLookUps = 0;
    platformFactory = factories.Former();
    platformLookUp = classObjects.Former();
    OpenDockEventLog();
    registry.Delete();
    registry.Create();
    registry.SetText(L"ShowWelcomePage", L"0"); // or each bar would greet its user
    mainApplicationStarted = true;
  }
  ~CyclesTest() override {
    ::KillTimer(nullptr, timer);
    mainApplicationStarted = false;
    ReleaseImagingFactory();
  }

  /// The lines of the log about cycles, in order.
  std::vector<std::string> CycleLines() const {
    std::vector<std::string> lines = log.AllLines();
    std::erase_if(lines, [](const std::string &line) {
      return line != "INFO: Jumplist creation" && line != "INFO: Create jumplist" && line != "INFO: MainDlg creation" &&
             line != "INFO: MainDlg InitializeComponent" && line != "INFO: Dock Startup complete" &&
             line != "FATAL: Failed to initialize Lumenor";
    });
    return lines;
  }

  int FailedCycles() const {
    const std::vector<std::string> lines = log.AllLines();
    return static_cast<int>(std::count(lines.begin(), lines.end(), "FATAL: Failed to initialize Lumenor"));
  }

  /// Leads the user's folder to where none can be made. The real one is watched and so can't be taken away.
  void BlockUserFolder() const {
    const std::wstring inTheWay = folders.Root() + L"\\InTheWay";
    tests::WriteBytes(inTheWay, "");
    ::SetEnvironmentVariableW(L"APPDATA", inTheWay.c_str());
  }

  void UnblockUserFolder() const { ::SetEnvironmentVariableW(L"APPDATA", folders.AppData().c_str()); }

  /// Lays a stub of a user's button that starts `program`.
  void WriteUserStub(const std::wstring &program) const {
    const std::wstring name = userDocument;
    tests::WriteText(folders.CommonFolder() + L"\\LangRes\\xx_xx\\" + name + L".1.dstb",
                     L"<UIRoot><" + name + L"><Elements><Element><Head>Head</Head><ActionType>exe</ActionType>" +
                         L"<ActionParams>" + program + L"</ActionParams></Element></Elements></" + name +
                         L"></UIRoot>");
  }

  using Lines = std::vector<std::string>;

  /// The lines of a cycle in which a bar comes up.
  static Lines CycleThatComesUp() {
    return {"INFO: Jumplist creation", "INFO: Create jumplist", "INFO: MainDlg creation",
            "INFO: MainDlg InitializeComponent", "INFO: Dock Startup complete"};
  }

  static Lines Twice(Lines lines) {
    const Lines once = lines;
    lines.insert(lines.end(), once.begin(), once.end());
    return lines;
  }

  using Texts = std::vector<std::wstring>;

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::KeptRegistryKey registry{HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor"};
  const tests::LogCapture log{folders};
  const desk::EventLogSpy eventLog;
  const tests::ImportSlot<CreateDrawingFactory> factories{&__imp_D2D1CreateFactory, &CountFactory};
  const tests::ImportSlot<decltype(&::CoGetClassObject)> classObjects{&__imp_CoGetClassObject, &CountParser};
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, &LookAtBar);
};

TEST_F(CyclesTest, AClosedDockEndsWithZero) {
  onBar = [](HWND bar) { ::PostMessageW(bar, WM_CLOSE, 0, 0); };
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ(CycleThatComesUp(), CycleLines());
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

TEST_F(CyclesTest, TheLoopIsNotedInEveryCycle) {
  std::vector<int> running;
  HWND last = nullptr;
  onBar = [&](HWND bar) {
    if (bar == last)
      return;
    last = bar;
    running.push_back(std::exchange(messageLoopRunning, 0));
    const UINT next = running.size() == 1 ? UINT{ResetDockMessage} : UINT{WM_CLOSE};
    ::PostMessageW(bar, next, 0, 0);
  };
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ((std::vector<int>{1, 1}), running);
}

TEST_F(CyclesTest, AResetBuildsANewBarInTheSameProcess) {
  HWND first = nullptr;
  onBar = [&](HWND bar) {
    if (first == nullptr) {
      first = bar;
      ::PostMessageW(bar, ResetDockMessage, 0, 0);
    } else if (bar != first) {
      ::PostMessageW(bar, WM_CLOSE, 0, 0);
    }
  };
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ(Twice(CycleThatComesUp()), CycleLines());
  EXPECT_EQ(1, factoriesMade);
  EXPECT_EQ(1, parserLookUps);
}

/// As a window procedure whose object has failed.
void KeepFailure() {
  try {
    throw std::runtime_error("kept");
  } catch (...) {
    KeepWindowException();
  }
}

TEST_F(CyclesTest, BeginsWithNothingKept) {
  KeepFailure();
  onBar = [](HWND bar) { ::PostMessageW(bar, WM_CLOSE, 0, 0); };
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ(CycleThatComesUp(), CycleLines());
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

TEST_F(CyclesTest, ALostTargetBuildsANewBarWithTheUsersButtons) {
  Element mine;
  mine.ActionType = L"url";
  mine.Image = L"nothing.png";
  SaveDocument({mine}, userDocument);
  const ULONGLONG limit = ::GetTickCount64() + limitMs;
  HWND first = nullptr;
  onBar = [&](HWND bar) {
    if (first == nullptr) {
      first = bar;
      ::PostMessageW(bar, DrawFailedMessage, static_cast<WPARAM>(D2DERR_RECREATE_TARGET), 0);
    } else if (bar != first || ::GetTickCount64() > limit) {
      ::PostMessageW(bar, WM_CLOSE, 0, 0);
    }
  };
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ(Twice(CycleThatComesUp()), CycleLines());
  EXPECT_EQ(1U, LoadDocument(userDocument, false).size());
  EXPECT_EQ(Texts{}, eventLog.Reports());
  EXPECT_EQ(2, factoriesMade);
}

TEST_F(CyclesTest, ATargetThatIsLostAgainAndAgainCostsACycleASecondAtMost) {
  const ULONGLONG limit = ::GetTickCount64() + limitMs;
  std::vector<ULONGLONG> starts;
  HWND last = nullptr;
  onBar = [&](HWND bar) {
    if (bar == last && ::GetTickCount64() < limit)
      return;
    last = bar;
    starts.push_back(::GetTickCount64());
    const bool isLast = starts.size() == 4 || starts.back() >= limit;
    ::PostMessageW(bar, isLast ? UINT{WM_CLOSE} : UINT{DrawFailedMessage}, static_cast<WPARAM>(D2DERR_RECREATE_TARGET),
                   0);
  };
  const ULONGLONG start = ::GetTickCount64();
  EXPECT_EQ(0, RunCycles());
  ASSERT_EQ(4U, starts.size());
  EXPECT_GE(starts.back() - start, 3000U);
}

TEST_F(CyclesTest, ABarThatIsClosedWhileItFadesEndsWithoutAReport) {
  desk::MoveCursor({640, 600});
  HWND closed = nullptr;
  onBar = [&](HWND bar) {
    if (std::exchange(closed, bar) == bar)
      return;
    for (int i = 0; i < 22; ++i)
      ::SendMessageW(bar, WM_TIMER, FadeTimer, 0);
    ::SendMessageW(bar, WM_CLOSE, 0, 0);
  };
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ(CycleThatComesUp(), CycleLines());
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

/// Ends the loop with 5, as the end of the session would, once no animation plays any more.
void CALLBACK EndAfterTheAnimations(HWND, UINT, UINT_PTR timer, DWORD) {
  if (GetAnimationServices().Timer()->IsEnabled() == S_OK)
    return;
  ::KillTimer(nullptr, timer);
  ::PostQuitMessage(5);
}

/// What the loop of a dialog does in which a window procedure fails.
INT_PTR WINAPI FailInTheLoop(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM) {
  KeepFailure();
  return -1;
}

TEST_F(CyclesTest, AHandlerThatFailsWhileTheBarFadesLeavesOneReportAndALivingProcess) {
  desk::MoveCursor({640, 600});
  HWND failed = nullptr;
  onBar = [&](HWND bar) {
    failed = bar;
    for (int i = 0; i < 22; ++i)
      ::SendMessageW(bar, WM_TIMER, FadeTimer, 0);
    const tests::ImportSlot dialogs(&__imp_DialogBoxParamW, &FailInTheLoop);
    ::SendMessageW(bar, ShowWelcomeMessage, 0, 0);
    ::SetTimer(nullptr, 0, 20, &EndAfterTheAnimations);
  };
  EXPECT_EQ(5, RunCycles());
  EXPECT_NE(nullptr, failed);
  EXPECT_FALSE(::IsWindow(failed));
  EXPECT_EQ(CycleThatComesUp(), CycleLines());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnShowWelcome"}, eventLog.Reports());
}

TEST_F(CyclesTest, AFailureBeforeTheFirstMessageEndsWithZero) {
  BlockUserFolder();
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ((Lines{"INFO: Jumplist creation", "FATAL: Failed to initialize Lumenor"}), CycleLines());
  EXPECT_EQ(Texts{L"Failed to initialize Lumenor"}, eventLog.Reports());
}

TEST_F(CyclesTest, AFailureWithoutAnEventLogIsInTheRollingLogAllTheSame) {
  {
    const tests::ImportSlot noLog(
        &__imp_OpenEventLogW, +[](LPCWSTR, LPCWSTR) WINAPI { return HANDLE{nullptr}; });
    OpenDockEventLog();
  }
  BlockUserFolder();
  EXPECT_EQ(0, RunCycles());
  OpenDockEventLog();
  EXPECT_EQ((Lines{"INFO: Jumplist creation", "FATAL: Failed to initialize Lumenor"}), CycleLines());
  const Lines all = log.AllLines();
  EXPECT_EQ(1, std::count(all.begin(), all.end(), "ERROR: EventLog: Could not report: Failed to initialize Lumenor"));
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

TEST_F(CyclesTest, ABarThatFailsBeforeTheFirstMessageEndsWithZero) {
  const tests::VersionSpy platformWithoutList(6, 2);
  BlockUserFolder();
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ((Lines{"INFO: Jumplist creation", "INFO: MainDlg creation", "FATAL: Failed to initialize Lumenor"}),
            CycleLines());
  EXPECT_EQ(Texts{L"Failed to initialize Lumenor"}, eventLog.Reports());
}

TEST_F(CyclesTest, AJumpListThatFailsKeepsTheBarFromComingUp) {
  const tests::FailingClass noLists(CLSID_DestinationList, REGDB_E_CLASSNOTREG);
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ((Lines{"INFO: Jumplist creation", "INFO: Create jumplist", "FATAL: Failed to initialize Lumenor"}),
            CycleLines());
  EXPECT_EQ(Texts{L"Failed to initialize Lumenor"}, eventLog.Reports());
}

TEST_F(CyclesTest, AJumpListIsThereBeforeTheBar) {
  bool isThere = false;
  onBar = [&](HWND bar) {
    isThere = tests::ReadJumpList(applicationId).has_value();
    ::PostMessageW(bar, WM_CLOSE, 0, 0);
  };
  EXPECT_EQ(0, RunCycles());
  EXPECT_TRUE(isThere);
}

TEST_F(CyclesTest, AResetPublishesTheJumpListOfTheRebuiltDocuments) {
  const std::wstring program = folders.Root() + L"\\a.exe";
  tests::WriteBytes(program, "x");
  std::optional<std::vector<tests::JumpTask>> before;
  HWND first = nullptr;
  onBar = [&](HWND bar) {
    if (first == nullptr) {
      first = bar;
      before = tests::ReadJumpList(applicationId);
      WriteUserStub(program);
      ::PostMessageW(bar, ResetDockMessage, 0, 0);
    } else if (bar != first) {
      ::PostMessageW(bar, WM_CLOSE, 0, 0);
    }
  };
  EXPECT_EQ(0, RunCycles());
  using Tasks = std::vector<tests::JumpTask>;
  EXPECT_EQ(Tasks{}, before);
  EXPECT_EQ((Tasks{{L"Head", program, {}, {}, {}, {}, 0}}), tests::ReadJumpList(applicationId));
}

TEST_F(CyclesTest, ADockOnAnotherPlatformComesUpWithoutAJumpList) {
  const tests::VersionSpy platform(10, 0);
  onBar = [](HWND bar) { ::PostMessageW(bar, WM_CLOSE, 0, 0); };
  EXPECT_EQ(0, RunCycles());
  EXPECT_EQ((Lines{"INFO: Jumplist creation", "INFO: MainDlg creation", "INFO: MainDlg InitializeComponent",
                   "INFO: Dock Startup complete"}),
            CycleLines());
  EXPECT_EQ(std::nullopt, tests::ReadJumpList(applicationId));
}

TEST_F(CyclesTest, AFailureAfterAResetIsTriedAgainUntilItLastsNoLonger) {
  HWND first = nullptr;
  onBar = [&](HWND bar) {
    if (first == nullptr) {
      first = bar;
      BlockUserFolder();
      ::PostMessageW(bar, ResetDockMessage, 0, 0);
    } else if (FailedCycles() > 0) {
      ::PostMessageW(bar, WM_CLOSE, 0, 0);
    }
  };
  std::atomic<bool> ended = false;
  std::thread mender([&] {
    while (FailedCycles() < 2 && !ended)
      ::Sleep(20);
    UnblockUserFolder();
  });
  EXPECT_EQ(0, RunCycles());
  ended = true;
  mender.join();
  EXPECT_LE(2, FailedCycles());
  EXPECT_EQ("INFO: Dock Startup complete", CycleLines().back());
  EXPECT_EQ(L"caught an unhandled exception in OnResetDock", eventLog.Reports().front());
  EXPECT_EQ(L"Failed to initialize Lumenor", eventLog.Reports().back());
  EXPECT_EQ(2, factoriesMade);
}

TEST_F(CyclesTest, AFailureInTheLoopEndsWithWhatTheLastMessageHeld) {
  Element element;
  element.ActionType = L"url";
  element.ActionParams = L"http://nowhere.invalid/";
  element.Image = L"nothing.png";
  SaveDocument({element}, userDocument);
  const tests::ImportSlot slot(&__imp_ShellExecuteW, &FailToLaunch);
  HWND window = nullptr;
  onBar = [&](HWND bar) {
    window = bar;
    ::EnumChildWindows(
        bar,
        [](HWND child, LPARAM) -> BOOL {
          if (::GetDlgCtrlID(child) == FirstUserButtonId)
            ::PostMessageW(child, WM_COMMAND, FirstUserButtonId, reinterpret_cast<LPARAM>(child));
          return TRUE;
        },
        0);
  };
  EXPECT_EQ(FirstUserButtonId, RunCycles());
  EXPECT_EQ(1, FailedCycles());
  EXPECT_EQ(Texts{L"Failed to initialize Lumenor"}, eventLog.Reports());
  EXPECT_FALSE(::IsWindow(window)) << "the window doesn't outlive its object";
}

TEST_F(CyclesTest, ADockThatDoesNotComeUpLeavesALivingProcess) {
  Element element;
  element.ActionType = L"exe";
  element.ActionParams = L"C:\\gone\\gone.exe";
  SaveDocument({element}, L"Lumenor.MainFrame.Windows.DockViewWindow.Main");
  const DWORD thread = ::GetCurrentThreadId();
  std::thread visitor([&] {
    for (int i = 0; i < 500 && CycleLines().size() < CycleThatComesUp().size(); ++i)
      ::Sleep(20);
    ::PostThreadMessageW(thread, WM_QUIT, 5, 0); // as the end of the session ends it
  });
  EXPECT_EQ(5, RunCycles());
  visitor.join();
  EXPECT_EQ(CycleThatComesUp(), CycleLines());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnInitDialog"}, eventLog.Reports());
}

} // namespace

} // namespace lumenor
