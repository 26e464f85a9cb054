// The session that records belong to, and when the next payload is due.

#include "tracking/Tracking.h"

#include "system/Handles.h"
#include "system/HResultError.h"

extern "C" {
extern decltype(&::RegCreateKeyExW) __imp_RegCreateKeyExW;
extern decltype(&::UuidToStringW) __imp_UuidToStringW;
}

namespace lumenor {
namespace {

using testing::ElementsAre;

class Session : public Tracking {
protected:
  Session() { StartAgreed(); }

  /// The session of the next record.
  std::wstring Id() {
    tracker.TrackDockOpen();
    return tracker.GetRecords().back().SessionID;
  }

  std::uint32_t NextSequence() {
    tracker.TrackDockOpen();
    return tracker.GetRecords().back().SequenceId;
  }
};

TEST_F(Session, HasAnIdentifierOfItsOwn) { EXPECT_EQ(secondId, Id()); }

TEST_F(Session, ANewOneCountsFromOneAgain) {
  tracker.TrackDockOpen();
  tracker.TrackDockOpen();
  tracker.StartSession();
  tracker.TrackDockOpen();
  EXPECT_EQ(thirdId, tracker.GetRecords().back().SessionID);
  EXPECT_EQ(1u, tracker.GetRecords().back().SequenceId);
}

TEST_F(Session, WithoutANewIdentifierAllStaysAsItWas) {
  tracker.TrackDockOpen();
  clock.SetLocal(Moment(2024, 3, 6, 1, 0, 0));
  identifiers.SetStatus(RPC_S_UUID_NO_ADDRESS);
  tracker.StartSession();
  EXPECT_EQ(2u, NextSequence());
  EXPECT_EQ(secondId, Id());
  EXPECT_TRUE(tracker.IsSessionDayOver()); // the day of the session stayed too
}

TEST_F(Session, WithoutTheTextOfTheIdentifierAllStaysAsItWas) {
  tracker.TrackDockOpen();
  clock.SetLocal(Moment(2024, 3, 6, 1, 0, 0));
  const tests::ImportSlot slot(&__imp_UuidToStringW,
                               [](auto *, RPC_WSTR *) RPC_ENTRY -> RPC_STATUS { return RPC_S_OUT_OF_MEMORY; });
  tracker.StartSession();
  EXPECT_EQ(2u, NextSequence());
  EXPECT_EQ(secondId, Id());
  EXPECT_TRUE(tracker.IsSessionDayOver());
}

TEST_F(Session, AnIdentifierOfThisMachineAloneDoes) {
  identifiers.SetStatus(RPC_S_UUID_LOCAL_ONLY);
  tracker.StartSession();
  EXPECT_EQ(thirdId, Id());
}

TEST_F(Session, EndsWithTheLastMillisecondOfItsLocalDay) {
  EXPECT_FALSE(tracker.IsSessionDayOver());
  clock.SetLocal(Moment(2024, 3, 5, 23, 59, 59, 998));
  EXPECT_FALSE(tracker.IsSessionDayOver());
  clock.SetLocal(Moment(2024, 3, 5, 23, 59, 59, 999));
  EXPECT_TRUE(tracker.IsSessionDayOver());
  clock.SetLocal(Moment(2024, 3, 6, 0, 0, 0));
  EXPECT_TRUE(tracker.IsSessionDayOver());
}

TEST_F(Session, TheDayOfUtcDoesNotMatter) {
  clock.SetUtc(Moment(2024, 3, 6, 5, 0, 0));
  EXPECT_FALSE(tracker.IsSessionDayOver());
}

TEST_F(Session, AnEarlierDayIsNoEnd) {
  clock.SetLocal(Moment(2024, 3, 4, 23, 59, 59, 999));
  EXPECT_FALSE(tracker.IsSessionDayOver());
  clock.SetLocal(Moment(2023, 12, 31, 23, 59, 59, 999));
  EXPECT_FALSE(tracker.IsSessionDayOver());
}

TEST_F(Session, OneThatBeganInTheLastMillisecondIsOverAtOnce) {
  clock.SetLocal(Moment(2024, 2, 29, 23, 59, 59, 999));
  tracker.StartSession();
  EXPECT_TRUE(tracker.IsSessionDayOver());
}

TEST_F(Session, AnotherFollowsAtTheFirstFlushAfterMidnight) {
  tracker.TrackDockOpen();
  clock.SetLocal(Moment(2024, 3, 6, 0, 10, 0));
  tracker.TrackUrlSearch(); // before the flush, still of the old one
  tracker.Flush();
  tracker.TrackDockClose();
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Dock 1", "Search 2"));
  EXPECT_EQ(2u, Occurrences(OpenPayload(), tests::Utf8(secondId)));
  EXPECT_THAT(Summary(tracker.GetRecords()), ElementsAre("Dock 1"));
  EXPECT_EQ(thirdId, tracker.GetRecords().at(0).SessionID);
}

TEST_F(Session, AnotherFollowsOnceADay) {
  clock.SetLocal(Moment(2024, 3, 6, 0, 10, 0));
  tracker.Flush();
  EXPECT_EQ(thirdId, Id());
  tracker.Flush();
  EXPECT_EQ(thirdId, Id());
}

TEST_F(Session, WrittenRecordsKeepTheirs) {
  tracker.TrackDockOpen();
  tracker.Flush();
  const std::string before = OpenPayload();
  clock.SetLocal(Moment(2024, 3, 6, 0, 10, 0));
  tracker.Flush();
  tracker.TrackDockClose();
  tracker.Flush();
  const std::string element =
      before.substr(before.find("<element"), before.find("</payload>") - before.find("<element"));
  EXPECT_THAT(OpenPayload(), testing::HasSubstr("<payload>" + element + "<element"));
  EXPECT_THAT(Elements(OpenPayload()), ElementsAre("Dock 1", "Dock 1"));
}

class TransferTime : public Tracking {
protected:
  TransferTime() { WriteIni(); }

  /// What a start makes of this value.
  std::wstring After(const std::wstring &value) {
    settings32.SetText(L"NextTransferTime", value);
    Start();
    return NextTransferTime();
  }
};

constexpr wchar_t inSevenDays[] = L"3/12/2024 6:7:8";

TEST_F(TransferTime, IsRead) { EXPECT_EQ(L"12/31/2025 23:59:58", After(L"12/31/2025 23:59:58")); }

TEST_F(TransferTime, OneThatHasPassedIsReadToo) {
  EXPECT_EQ(L"1/2/2003 4:5:6", After(L"1/2/2003 4:5:6"));
  EXPECT_TRUE(tracker.IsTransferDue());
}

TEST_F(TransferTime, LeadingZerosAndAnEndingAreRead) {
  EXPECT_EQ(L"4/5/2025 6:7:8", After(L"04/05/2025 06:07:08 UTC"));
}

TEST_F(TransferTime, WithoutAValueItIsInSevenDays) {
  settings32.Create();
  Start();
  EXPECT_EQ(std::nullopt, settings32.Text(L"NextTransferTime"));
  EXPECT_EQ(inSevenDays, NextTransferTime());
}

TEST_F(TransferTime, TheSevenDaysRunFromThisStart) {
  clock.SetUtc(Moment(2024, 2, 25, 23, 0, 1));
  Start();
  clock.SetUtc(Moment(2024, 2, 26, 0, 0, 0));
  EXPECT_EQ(L"3/3/2024 23:0:1", NextTransferTime());
}

TEST_F(TransferTime, SevenDaysMayEndInAnotherYear) {
  clock.SetUtc(Moment(2023, 12, 28, 0, 0, 0));
  Start();
  EXPECT_EQ(L"1/4/2024 0:0:0", NextTransferTime());
}

TEST_F(TransferTime, AMalformedOneIsInSevenDaysAndStaysInTheRegistry) {
  for (const wchar_t *text : {L"", L"soon", L"0/5/2025 6:7:8", L" ", L"/5/2025 6:7:8", L"x4/5/2025 6:7:8"}) {
    settings32.SetText(L"NextTransferTime", text);
    tracker = {};
    Start();
    EXPECT_EQ(text, settings32.Text(L"NextTransferTime"));
    EXPECT_EQ(inSevenDays, NextTransferTime());
  }
}

TEST_F(TransferTime, NumbersThatAreNoDateAreInSevenDays) {
  for (const wchar_t *text :
       {L"13/5/2025 6:7:8", L"2/30/2025 6:7:8", L"4/5/2025 24:0:0", L"4/5/2025 6:60:0", L"4/0/2025 6:7:8",
        L"4/5/1600 6:7:8", L"4/5", L"4", L"-1/5/2025 6:7:8", L"99999999999/5/2025 6:7:8"}) {
    settings32.SetText(L"NextTransferTime", text);
    tracker = {};
    Start();
    EXPECT_EQ(inSevenDays, NextTransferTime()) << tests::Utf8(text);
  }
}

TEST_F(TransferTime, WhatIsNoTextIsInSevenDays) {
  settings32.SetNumber(L"NextTransferTime", 5);
  Start();
  EXPECT_EQ(inSevenDays, NextTransferTime());
}

TEST_F(TransferTime, TheKeyIsMadeAndNothingInIt) {
  Start();
  RegistryKey key;
  EXPECT_EQ(ERROR_SUCCESS, ::RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\Wow6432Node\\Tarnwick\\Lumenor\\Dock", 0,
                                           KEY_READ, key.Put()));
  DWORD values = 1;
  ::RegQueryInfoKeyW(key.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr, nullptr,
                     nullptr, nullptr);
  EXPECT_EQ(0u, values);
  EXPECT_EQ(inSevenDays, NextTransferTime());
}

TEST_F(TransferTime, TheOtherKeyIsNotRead) {
  settings.SetText(L"NextTransferTime", L"4/5/2025 6:7:8");
  Start();
  EXPECT_EQ(inSevenDays, NextTransferTime());
}

TEST_F(TransferTime, IsDueFromItsMomentOn) {
  After(L"3/12/2024 6:7:8");
  clock.SetUtc(Moment(2024, 3, 12, 6, 7, 7, 999));
  EXPECT_FALSE(tracker.IsTransferDue());
  clock.SetUtc(Moment(2024, 3, 12, 6, 7, 8));
  EXPECT_TRUE(tracker.IsTransferDue());
  clock.SetUtc(Moment(2025, 1, 1, 0, 0, 0));
  EXPECT_TRUE(tracker.IsTransferDue());
}

TEST_F(TransferTime, LocalTimeDoesNotMatter) {
  After(L"3/12/2024 6:7:8");
  clock.SetLocal(Moment(2024, 3, 13, 0, 0, 0));
  EXPECT_FALSE(tracker.IsTransferDue());
}

TEST_F(TransferTime, WithoutAKeyToKeepItInItIsInSevenDays) {
  tracker.LoadAppId();
  tracker.ReadOptIn();
  tracker.InitSessionInfo();
  tracker.StartSession();
  {
    const tests::ImportSlot slot(
        &__imp_RegCreateKeyExW,
        +[](HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM, const LPSECURITY_ATTRIBUTES, PHKEY, LPDWORD)
             WINAPI -> LONG { return ERROR_ACCESS_DENIED; });
    tracker.LoadNextTransferTime();
  }
  EXPECT_FALSE(tracker.IsTransferDue());
  MakeDue();
  EXPECT_TRUE(tracker.IsTransferDue());
}

TEST_F(TransferTime, AClockThatTellsNoTimeRaises) {
  Start();
  clock.SetUtc({});
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER), HResultOf([&] { tracker.SetNextTransferTime(); }));
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER), HResultOf([&] { tracker.IsTransferDue(); }));
  clock.SetLocal({});
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_PARAMETER), HResultOf([&] { tracker.IsSessionDayOver(); }));
}

} // namespace
} // namespace lumenor
