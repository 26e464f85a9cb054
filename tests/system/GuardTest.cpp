#include "system/Guard.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "ChildRun.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "system/EventLog.h"
#include "system/HResultError.h"

extern "C" decltype(&::DeregisterEventSource) __imp_DeregisterEventSource;
extern "C" decltype(&::OpenEventLogW) __imp_OpenEventLogW;
extern "C" decltype(&::RegisterEventSourceW) __imp_RegisterEventSourceW;
extern "C" decltype(&::ReportEventW) __imp_ReportEventW;

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct Report {
  HANDLE log;
  WORD type;
  WORD category;
  DWORD id;
  bool hasUser;
  bool hasData;
  std::vector<std::wstring> texts;
};

/// Stands between the program and the event log: the test platform keeps nothing that could be read back.
class EventLogSpy {
public:
  EventLogSpy() {
    reports = {}, opened = {}, registered = {}, refused = {}, openSources = 0;
    handle = reinterpret_cast<HANDLE>(0x1234);
    source = reinterpret_cast<HANDLE>(0x5678);
  }

  static const std::vector<Report> &Reports() { return reports; }
  static const std::vector<std::wstring> &Opened() { return opened; }
  static HANDLE Handle() { return handle; }
  static void RefuseToOpen() { handle = nullptr; }

  /// The handle of a registered source, the names that were asked for, and how many weren't closed.
  static HANDLE Source() { return source; }
  static const std::vector<std::wstring> &Registered() { return registered; }
  static int OpenSources() { return openSources; }
  static void RefuseToRegister() { source = nullptr; }

  /// Takes no report by `log`.
  static void Refuse(HANDLE log) { refused.push_back(log); }

private:
  static HANDLE WINAPI Open(LPCWSTR machine, LPCWSTR name) {
    if (machine == nullptr)
      opened.emplace_back(name);
    return handle;
  }

  static BOOL WINAPI Hear(HANDLE log, WORD type, WORD category, DWORD id, PSID user, WORD count, DWORD size,
                          LPCWSTR *texts, LPVOID data) {
    reports.push_back({log, type, category, id, user != nullptr, size != 0 || data != nullptr, {texts, texts + count}});
    return std::find(refused.begin(), refused.end(), log) == refused.end();
  }

  static HANDLE WINAPI Register(LPCWSTR machine, LPCWSTR name) {
    if (machine == nullptr)
      registered.emplace_back(name);
    openSources += source != nullptr;
    return source;
  }

  static BOOL WINAPI Deregister(HANDLE closed) {
    openSources -= closed == source;
    return TRUE;
  }

  static inline std::vector<Report> reports;
  static inline std::vector<std::wstring> opened, registered;
  static inline std::vector<HANDLE> refused;
  static inline HANDLE handle, source;
  static inline int openSources;

  const tests::ImportSlot<decltype(__imp_OpenEventLogW)> openSlot{&__imp_OpenEventLogW, &Open};
  const tests::ImportSlot<decltype(__imp_ReportEventW)> reportSlot{&__imp_ReportEventW, &Hear};
  const tests::ImportSlot<decltype(__imp_RegisterEventSourceW)> registerSlot{&__imp_RegisterEventSourceW, &Register};
  const tests::ImportSlot<decltype(__imp_DeregisterEventSource)> deregisterSlot{&__imp_DeregisterEventSource,
                                                                                &Deregister};
};

auto Text(const std::wstring &text) { return testing::Field(&Report::texts, ElementsAre(text)); }

void KeepAsAWindowProcedureDoes(const std::exception &raised) {
  try {
    throw std::runtime_error(raised.what());
  } catch (...) {
    KeepWindowException();
  }
}

TEST(WindowException, WithNoneKeptNothingIsRaised) { EXPECT_NO_THROW(RethrowWindowException()); }

TEST(WindowException, IsRaisedOnceAsItWas) {
  try {
    throw HResultError(E_ABORT);
  } catch (...) {
    KeepWindowException();
  }
  try {
    RethrowWindowException();
    FAIL() << "nothing was raised";
  } catch (const HResultError &error) {
    EXPECT_EQ(E_ABORT, error.Result());
  }
  EXPECT_NO_THROW(RethrowWindowException());
}

TEST(WindowException, TheFirstOneIsKept) {
  KeepAsAWindowProcedureDoes(std::runtime_error("first"));
  KeepAsAWindowProcedureDoes(std::runtime_error("second"));
  try {
    RethrowWindowException();
    FAIL() << "nothing was raised";
  } catch (const std::runtime_error &error) {
    EXPECT_STREQ("first", error.what());
  }
  EXPECT_NO_THROW(RethrowWindowException());
}

TEST(WindowException, CanBeForgotten) {
  KeepAsAWindowProcedureDoes(std::runtime_error("first"));
  ForgetWindowException();
  EXPECT_NO_THROW(RethrowWindowException());
}

TEST(Guarded, ABodyThatReturnsIsAllRight) {
  bool ran = false;
  EXPECT_TRUE(Guarded(L"OnTest", [&] { ran = true; }));
  EXPECT_TRUE(ran);
}

TEST(Guarded, AnyExceptionMakesItFalse) {
  EXPECT_FALSE(Guarded(L"OnTest", [] { throw std::runtime_error("standard"); }));
  EXPECT_FALSE(Guarded(L"OnTest", [] { throw HResultError(E_FAIL); }));
  EXPECT_FALSE(Guarded(L"OnTest", [] { throw 5; }));
}

TEST(Guarded, AnExceptionKeptByANestedWindowMakesItFalse) {
  EXPECT_FALSE(Guarded(L"OnTest", [] { KeepAsAWindowProcedureDoes(std::runtime_error("nested")); }));
  EXPECT_NO_THROW(RethrowWindowException());
}

TEST(Guarded, AFailureIsToldOnceEvenWhenANestedWindowFailedToo) {
  EXPECT_FALSE(Guarded(L"OnTest", [] {
    KeepAsAWindowProcedureDoes(std::runtime_error("nested"));
    throw std::runtime_error("own");
  }));
  EXPECT_NO_THROW(RethrowWindowException());
}

/// What was kept, as text; "nothing" when nothing was.
std::string TakeKept() {
  try {
    RethrowWindowException();
    return "nothing";
  } catch (const std::exception &error) {
    return error.what();
  }
}

TEST(Guarded, LeavesAloneWhatWasKeptBefore) {
  KeepAsAWindowProcedureDoes(std::runtime_error("earlier"));
  EXPECT_TRUE(Guarded(L"OnTest", [] {}));
  EXPECT_EQ("earlier", TakeKept());
  EXPECT_EQ("nothing", TakeKept());
}

TEST(Guarded, ItsFailureLeavesAloneWhatWasKeptBefore) {
  KeepAsAWindowProcedureDoes(std::runtime_error("earlier"));
  EXPECT_FALSE(Guarded(L"OnTest", [] { throw std::runtime_error("own"); }));
  EXPECT_EQ("earlier", TakeKept());
  EXPECT_EQ("nothing", TakeKept());
}

TEST(Guarded, ANestedOneLeavesTheFailureToTheHandlerThatItAroseIn) {
  const EventLogSpy spy;
  OpenDockEventLog();
  bool nested = false;
  EXPECT_FALSE(Guarded(L"OnOuter", [&] {
    KeepAsAWindowProcedureDoes(std::runtime_error("of the outer one"));
    nested = Guarded(L"OnNested", [] {});
  }));
  EXPECT_TRUE(nested);
  EXPECT_THAT(EventLogSpy::Reports(), ElementsAre(Text(L"caught an unhandled exception in OnOuter")));
  EXPECT_EQ("nothing", TakeKept());
}

TEST(Guarded, EachOfTwoNestedFailuresIsReportedOnceUnderItsOwnName) {
  const EventLogSpy spy;
  OpenDockEventLog();
  EXPECT_FALSE(Guarded(L"OnOuter", [] {
    KeepAsAWindowProcedureDoes(std::runtime_error("of the outer one"));
    Guarded(L"OnNested", [] { throw 5; });
  }));
  EXPECT_THAT(EventLogSpy::Reports(), ElementsAre(Text(L"caught an unhandled exception in OnNested"),
                                                  Text(L"caught an unhandled exception in OnOuter")));
  EXPECT_EQ("nothing", TakeKept());
}

TEST(Guarded, ReportsTheHandlersName) {
  const EventLogSpy spy;
  OpenDockEventLog();
  Guarded(L"OnTest", [] { throw 5; });
  EXPECT_THAT(EventLogSpy::Reports(), ElementsAre(Text(L"caught an unhandled exception in OnTest")));
}

TEST(Guarded, ReportsNothingOfABodyThatReturns) {
  const EventLogSpy spy;
  OpenDockEventLog();
  Guarded(L"OnTest", [] {});
  EXPECT_THAT(EventLogSpy::Reports(), IsEmpty());
}

TEST(Guarded, ReportsOnceWhenANestedWindowFailedToo) {
  const EventLogSpy spy;
  OpenDockEventLog();
  Guarded(L"OnTest", [] {
    KeepAsAWindowProcedureDoes(std::runtime_error("nested"));
    throw 5;
  });
  EXPECT_THAT(EventLogSpy::Reports(), ElementsAre(Text(L"caught an unhandled exception in OnTest")));
}

TEST(EventLog, OpensTheSourceLumenorPanelOfThisMachine) {
  const EventLogSpy spy;
  OpenDockEventLog();
  EXPECT_THAT(EventLogSpy::Opened(), ElementsAre(L"LumenorPanel"));
}

TEST(EventLog, AReportIsOneErrorOfCategory0AndId100WithItsText) {
  const EventLogSpy spy;
  OpenDockEventLog();
  ReportEventLogError(L"Failed to initialize Lumenor");
  ASSERT_THAT(EventLogSpy::Reports(), SizeIs(1));
  const Report &report = EventLogSpy::Reports()[0];
  EXPECT_EQ(EventLogSpy::Handle(), report.log);
  EXPECT_EQ(EVENTLOG_ERROR_TYPE, report.type);
  EXPECT_EQ(0, report.category);
  EXPECT_EQ(100u, report.id);
  EXPECT_FALSE(report.hasUser);
  EXPECT_FALSE(report.hasData);
  EXPECT_THAT(report.texts, ElementsAre(L"Failed to initialize Lumenor"));
}

TEST(EventLog, WithoutItReportsAreDropped) {
  const EventLogSpy spy;
  EventLogSpy::RefuseToOpen();
  OpenDockEventLog();
  ReportEventLogError(L"unheard");
  EXPECT_THAT(EventLogSpy::Reports(), IsEmpty());
}

auto By(HANDLE log, const std::wstring &text) {
  return testing::AllOf(testing::Field(&Report::log, log), testing::Field(&Report::type, EVENTLOG_ERROR_TYPE),
                        testing::Field(&Report::id, 100u), Text(text));
}

class EventLogAndRollingLog : public testing::Test {
protected:
  const tests::TestFolders folders;
  const tests::LogCapture log{folders};
  const EventLogSpy spy;
};

TEST_F(EventLogAndRollingLog, AReportThatIsTakenIsMadeOnce) {
  OpenDockEventLog();
  ReportEventLogError(L"taken");
  EXPECT_THAT(spy.Reports(), ElementsAre(By(spy.Handle(), L"taken")));
  EXPECT_THAT(spy.Registered(), IsEmpty());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(EventLogAndRollingLog, AReportThatIsRefusedIsMadeByARegisteredSource) {
  spy.Refuse(spy.Handle());
  OpenDockEventLog();
  ReportEventLogError(L"first");
  ReportEventLogError(L"second");
  EXPECT_THAT(spy.Reports(), ElementsAre(By(spy.Handle(), L"first"), By(spy.Source(), L"first"),
                                         By(spy.Handle(), L"second"), By(spy.Source(), L"second")));
  EXPECT_THAT(spy.Registered(), ElementsAre(L"LumenorPanel", L"LumenorPanel"));
  EXPECT_EQ(0, spy.OpenSources());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(EventLogAndRollingLog, AReportThatNobodyTakesGetsALogLine) {
  spy.Refuse(spy.Handle());
  spy.Refuse(spy.Source());
  OpenDockEventLog();
  ReportEventLogError(L"lost");
  EXPECT_THAT(spy.Reports(), ElementsAre(By(spy.Handle(), L"lost"), By(spy.Source(), L"lost")));
  EXPECT_EQ(0, spy.OpenSources());
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: EventLog: Could not report: lost"));
}

TEST_F(EventLogAndRollingLog, AReportWhoseSourceCannotBeRegisteredGetsALogLine) {
  spy.Refuse(spy.Handle());
  spy.RefuseToRegister();
  OpenDockEventLog();
  ReportEventLogError(L"lost");
  EXPECT_THAT(spy.Reports(), ElementsAre(By(spy.Handle(), L"lost")));
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: EventLog: Could not report: lost"));
}

TEST_F(EventLogAndRollingLog, AReportWithoutAnEventLogIsALogLineAlone) {
  spy.RefuseToOpen();
  OpenDockEventLog();
  Guarded(L"OnTest", [] { throw 5; });
  EXPECT_THAT(spy.Reports(), IsEmpty());
  EXPECT_THAT(spy.Registered(), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: EventLog: Could not report: caught an unhandled exception in OnTest"));
}

TEST_F(EventLogAndRollingLog, AFailedCallIsLoggedWithItsPlaceBesideItsReport) {
  OpenDockEventLog();
  Guarded(L"OnTest", [] { ThrowIfFailed(E_ABORT); });
  EXPECT_THAT(spy.Reports(), ElementsAre(By(spy.Handle(), L"caught an unhandled exception in OnTest")));
  EXPECT_THAT(log.Lines(),
              ElementsAre(testing::MatchesRegex("ERROR: OnTest: a call failed with 0x80004004 at .*GuardTest.cpp:.*")));
}

TEST_F(EventLogAndRollingLog, AFailedCallOfANestedWindowIsLoggedWithItsPlace) {
  OpenDockEventLog();
  Guarded(L"OnTest", [] {
    try {
      ThrowIfFailed(E_ABORT);
    } catch (...) {
      KeepWindowException();
    }
  });
  EXPECT_THAT(log.Lines(),
              ElementsAre(testing::MatchesRegex("ERROR: OnTest: a call failed with 0x80004004 at .*GuardTest.cpp:.*")));
}

TEST(EventLog, BeforeItIsOpenReportsAreDropped) {
  if (!tests::IsChildRun()) {
    EXPECT_EQ(0u, tests::RunThisTestAsChild({}).exitCode);
    return;
  }
  const EventLogSpy spy;
  ReportEventLogError(L"too early");
  EXPECT_THAT(EventLogSpy::Reports(), IsEmpty());
}

} // namespace
} // namespace lumenor
