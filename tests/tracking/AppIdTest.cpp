// What the machine is known by, and what the installers left about it.

#include "system/Handles.h"
#include "tracking/Tracking.h"

extern "C" {
extern decltype(&::RegCreateKeyExW) __imp_RegCreateKeyExW;
extern decltype(&::RegQueryValueExW) __imp_RegQueryValueExW;
extern decltype(&::RegSetValueExW) __imp_RegSetValueExW;
extern decltype(&::UuidToStringW) __imp_UuidToStringW;
extern decltype(&::RpcStringFreeW) __imp_RpcStringFreeW;
}

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppId : public Tracking {
protected:
  /// The ID in a closed payload.
  std::string Told() {
    tracker.WritePayload(true);
    const std::string payload = OpenPayload();
    const std::string row = "<attribute name=\"applicationid\" value=\"";
    const std::size_t begin = payload.find(row) + row.size();
    return payload.substr(begin, payload.find('"', begin) - begin);
  }
};

TEST_F(AppId, IsMadeAtTheFirstStart) {
  tracker.LoadAppId();
  EXPECT_EQ(firstId, user.Text(L"AppID"));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(AppId, IsWrittenAsTextWithItsClosingNull) {
  tracker.LoadAppId();
  RegistryKey key;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Tarnwick\\Lumenor", 0, KEY_READ, key.Put());
  DWORD type = REG_NONE, bytes = 0;
  ::RegQueryValueExW(key.Get(), L"AppID", nullptr, &type, nullptr, &bytes);
  EXPECT_EQ(static_cast<DWORD>(REG_SZ), type);
  EXPECT_EQ(74u, bytes);
}

TEST_F(AppId, StaysAsItIs) {
  user.SetText(L"AppID", L"known");
  tracker.LoadAppId();
  EXPECT_EQ(L"known", user.Text(L"AppID"));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: AppID is known"));
}

TEST_F(AppId, IsMadeInPlaceOfAnEmptyOne) {
  user.SetText(L"AppID", L"");
  tracker.LoadAppId();
  EXPECT_EQ(firstId, user.Text(L"AppID"));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(AppId, IsMadeInPlaceOfWhatIsNoText) {
  user.SetNumber(L"AppID", 5);
  tracker.LoadAppId();
  EXPECT_EQ(firstId, user.Text(L"AppID"));
}

TEST_F(AppId, OneThatCannotBeReadIsNotReplaced) {
  static int readsThatSucceed = 0;
  for (const int countOfReads : {0, 1}) {
    user.SetText(L"AppID", L"known");
    log.Clear();
    readsThatSucceed = countOfReads;
    {
      const tests::ImportSlot slot(
          &__imp_RegQueryValueExW, +[](HKEY, LPCWSTR, LPDWORD, LPDWORD type, LPBYTE, LPDWORD bytes) WINAPI -> LONG {
            *type = REG_SZ;
            *bytes = sizeof(L"known");
            return readsThatSucceed-- > 0 ? ERROR_SUCCESS : ERROR_NOT_ENOUGH_MEMORY;
          });
      tracker.LoadAppId();
    }
    EXPECT_EQ(L"known", user.Text(L"AppID")) << countOfReads;
    EXPECT_THAT(log.Lines(), ElementsAre("ERROR: Unable to read AppID: 8")) << countOfReads;
  }
}

TEST_F(AppId, IsMadeWithoutConsentAndNothingElse) {
  Start();
  tracker.TrackDockOpen();
  tracker.Flush();
  EXPECT_EQ(firstId, user.Text(L"AppID"));
  EXPECT_FALSE(tests::Exists(PayloadFolder()));
}

TEST_F(AppId, AMachineThatKnowsNoKeyIsLogged) {
  const tests::ImportSlot slot(
      &__imp_RegCreateKeyExW,
      +[](HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM, const LPSECURITY_ATTRIBUTES, PHKEY, LPDWORD)
           WINAPI -> LONG { return ERROR_ACCESS_DENIED; });
  tracker.LoadAppId();
  EXPECT_THAT(log.Lines(), ElementsAre("FATAL: Unable to create HKEY_CURRENT_USER\\Software\\Tarnwick\\Lumenor"));
}

TEST_F(AppId, OneThatCannotBeWrittenIsLoggedAndHoldsForThisStart) {
  WriteIni();
  {
    const tests::ImportSlot slot(
        &__imp_RegSetValueExW,
        +[](HKEY, LPCWSTR, DWORD, DWORD, const BYTE *, DWORD) WINAPI -> LONG { return ERROR_ACCESS_DENIED; });
    tracker.LoadAppId();
  }
  EXPECT_THAT(log.Lines(), ElementsAre("FATAL: Failed to create AppID"));
  EXPECT_EQ(std::nullopt, user.Text(L"AppID"));
  tracker.ReadOptIn();
  tracker.InitSessionInfo();
  EXPECT_EQ(tests::Utf8(firstId), Told());
}

TEST_F(AppId, APlatformWithoutIdentifiersIsLogged) {
  identifiers.SetStatus(RPC_S_UUID_NO_ADDRESS);
  tracker.LoadAppId();
  EXPECT_THAT(log.Lines(), ElementsAre("FATAL: Failed to create AppID"));
  EXPECT_EQ(std::nullopt, user.Text(L"AppID"));
}

TEST_F(AppId, APlatformWithoutTheirTextsIsLogged) {
  const tests::ImportSlot slot(&__imp_UuidToStringW,
                               [](auto *, RPC_WSTR *) RPC_ENTRY -> RPC_STATUS { return RPC_S_OUT_OF_MEMORY; });
  tracker.LoadAppId();
  EXPECT_THAT(log.Lines(), ElementsAre("FATAL: Failed to create AppID"));
  EXPECT_EQ(std::nullopt, user.Text(L"AppID"));
}

TEST_F(AppId, TheTextOfTheIdentifierIsGivenBackToThePlatform) {
  static wchar_t text[] = L"an id";
  static std::vector<void *> givenBack;
  givenBack.clear();
  const tests::ImportSlot making(&__imp_UuidToStringW, [](auto *, RPC_WSTR *made) RPC_ENTRY -> RPC_STATUS {
    *made = reinterpret_cast<RPC_WSTR>(text);
    return RPC_S_OK;
  });
  const tests::ImportSlot freeing(&__imp_RpcStringFreeW, [](RPC_WSTR *gone) RPC_ENTRY -> RPC_STATUS {
    givenBack.push_back(*gone);
    return RPC_S_OK;
  });
  tracker.LoadAppId();
  EXPECT_EQ(L"an id", user.Text(L"AppID"));
  EXPECT_THAT(givenBack, ElementsAre(text));
}

TEST_F(AppId, AnIdentifierOfThisMachineAloneDoes) {
  identifiers.SetStatus(RPC_S_UUID_LOCAL_ONLY);
  tracker.LoadAppId();
  EXPECT_EQ(firstId, user.Text(L"AppID"));
}

TEST_F(AppId, IsToldUnlessTheMachineHasOneOfItsOwn) {
  StartAgreed();
  EXPECT_EQ(tests::Utf8(firstId), Told());
}

TEST_F(AppId, TheMachinesOwnReplacesIt) {
  machine.SetText(L"applicationid", L"of the machine");
  StartAgreed();
  EXPECT_EQ("of the machine", Told());
  EXPECT_EQ(firstId, user.Text(L"AppID"));
}

TEST_F(AppId, AnEmptyOneOfTheMachineReplacesItToo) {
  machine.SetText(L"applicationid", L"");
  StartAgreed();
  EXPECT_EQ("", Told());
}

class MachineFacts : public Tracking {
protected:
  /// The rows of the machine in a closed payload.
  std::string Told() {
    tests::MakeFolders(PayloadFolder());
    StartAgreed();
    log.Clear();
    tracker.InitSessionInfo();
    tracker.WritePayload(true);
    const std::string payload = OpenPayload();
    const std::size_t begin = payload.find("<attribute name=\"brand\"");
    return payload.substr(begin, payload.find("</session-tracking-info>") - begin);
  }

  static std::string Rows(const std::string &brand, const std::string &platform, const std::string &id) {
    return "<attribute name=\"brand\" value=\"" + brand + "\"/><attribute name=\"platform\" value=\"" + platform +
           "\"/><attribute name=\"applicationid\" value=\"" + id + "\"/>";
  }

  const std::string madeId = tests::Utf8(firstId);
  const std::string fallback =
      "INFO: RUQMENT: unable to open reg key SOFTWARE\\Tarnwick\\System Properties falling back "
      "to SOFTWARE\\Wow6432Node\\Tarnwick\\System Properties";
  const std::string failure =
      "ERROR: RUQMENT: unable to open reg key SOFTWARE\\Wow6432Node\\Tarnwick\\System Properties";
};

TEST_F(MachineFacts, AreReadFromTheMachinesKey) {
  machine.SetText(L"pcbrand", L"Maker");
  machine.SetText(L"Platform", L"VRA");
  machine.SetText(L"applicationid", L"id");
  machine32.SetText(L"pcbrand", L"Other");
  EXPECT_EQ(Rows("Maker", "VRA", "id"), Told());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(MachineFacts, AnExpandableTextCountsUnexpanded) {
  machine.SetText(L"pcbrand", L"%TEMP%", REG_EXPAND_SZ);
  EXPECT_EQ(Rows("%TEMP%", "", madeId), Told());
}

TEST_F(MachineFacts, AreReadFromTheKeyOfOldProgramsWhenTheOtherIsMissing) {
  machine32.SetText(L"pcbrand", L"Maker");
  machine32.SetText(L"Platform", L"VRA");
  machine32.SetText(L"applicationid", L"id");
  EXPECT_EQ(Rows("Maker", "VRA", "id"), Told());
  EXPECT_THAT(log.Lines(), ElementsAre(fallback, fallback, fallback));
}

TEST_F(MachineFacts, AMissingValueIsNotLookedForInTheKeyOfOldPrograms) {
  machine.Create();
  machine32.SetText(L"pcbrand", L"Maker");
  EXPECT_EQ(Rows("", "", madeId), Told());
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(MachineFacts, AreEmptyWithoutAKey) {
  EXPECT_EQ(Rows("", "", madeId), Told());
  EXPECT_THAT(log.Lines(), ElementsAre(fallback, failure, fallback, failure, fallback, failure));
}

TEST_F(MachineFacts, WhatIsNoWellFormedTextDoesNotCount) {
  machine.SetNumber(L"pcbrand", 5);
  machine.SetBytes(L"Platform", REG_SZ, std::string("V\0R\0A\0", 6));     // not terminated
  machine.SetBytes(L"applicationid", REG_SZ, std::string("i\0d\0\0", 5)); // half a character
  EXPECT_EQ(Rows("", "", madeId), Told());
}

TEST_F(MachineFacts, AListDoesNotCount) {
  machine.SetBytes(L"pcbrand", REG_MULTI_SZ, std::string("a\0\0\0\0\0", 6));
  machine.SetBytes(L"Platform", REG_BINARY, std::string("a\0\0\0", 4));
  EXPECT_EQ(Rows("", "", madeId), Told());
}

} // namespace
} // namespace lumenor
