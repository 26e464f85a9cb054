// What the dock does when a picture of its own couldn't be drawn to its end.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "support/Desk.h"
#include "support/LogCapture.h"
#include "toolkit/drawing/Window.h"

#include <d2d1.h>

namespace lumenor {

namespace {

using Texts = std::vector<std::wstring>;

class DrawFailure : public BarFixture {
protected:
  CMainDlg &StartWith(int userCount) {
    SaveDocument(PictureElements(userCount), userDocument);
    return Start();
  }

  /// As the root window tells of it.
  LRESULT Fail(HRESULT result) const {
    return ::SendMessageW(dock->handle, DrawFailedMessage, static_cast<WPARAM>(result), 0);
  }

  const tests::LogCapture log{folders};
  const desk::EventLogSpy eventLog;
};

TEST_F(DrawFailure, IsLoggedAndTheBarGoesOn) {
  StartWith(1);
  dock->AddButton(PictureElement(L"New"), 1);
  const std::string saved = UserDocumentText();
  EXPECT_EQ(0, Fail(D2DERR_WRONG_STATE));
  EXPECT_THAT(log.Lines(), testing::Contains("ERROR: MainDlg: drawing failed, error 88990001"));
  EXPECT_TRUE(::IsWindow(dock->handle));
  EXPECT_EQ(saved, UserDocumentText());
  EXPECT_EQ(std::nullopt, TakeQuitCode());
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

TEST_F(DrawFailure, OfATargetThatIsLostSavesTheButtonsAndBeginsANewCycle) {
  StartWith(1);
  dock->AddButton(PictureElement(L"New"), 1);
  const HWND window = dock->handle;
  Fail(D2DERR_RECREATE_TARGET);
  EXPECT_THAT(log.Lines(), testing::Contains("ERROR: MainDlg: drawing failed, error 8899000c"));
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(999, TakeQuitCode());
  EXPECT_EQ(dock->GetUserElements(), LoadDocument(userDocument, false));
  EXPECT_EQ(2U, dock->GetUserElements().size());
  EXPECT_EQ(Texts{}, eventLog.Reports());
}

TEST_F(DrawFailure, OfALostTargetThatIsReportedTwiceBeginsOneCycle) {
  StartWith(1);
  ::PostMessageW(dock->handle, DrawFailedMessage, static_cast<WPARAM>(D2DERR_RECREATE_TARGET), 0);
  ::PostMessageW(dock->handle, DrawFailedMessage, static_cast<WPARAM>(D2DERR_RECREATE_TARGET), 0);
  EXPECT_EQ(999, TakeQuitCode());
  EXPECT_EQ(std::nullopt, TakeQuitCode());
}

TEST_F(DrawFailure, IsReportedByItsNameWhenTheButtonsCannotBeSaved) {
  StartWith(1);
  ::DeleteFileW(DocumentPath(userDocument).c_str());
  ::CreateDirectoryW(DocumentPath(userDocument).c_str(), nullptr);
  dock->AddButton(PictureElement(L"New"), 0);
  Fail(D2DERR_RECREATE_TARGET);
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnDrawFailed"}, eventLog.Reports());
}

} // namespace

} // namespace lumenor
