#include "failing/World.h"

#include <algorithm>

#include "content/DocumentNames.h"
#include "dock/Commands.h"
#include "dock/dragdrop/DragState.h"
#include "failing/Blocks.h"
#include "failing/Calls.h"
#include "failing/Scenarios.h"
#include "support/ComApartment.h"
#include "support/HandleCounts.h"
#include "support/Shortcut.h"
#include "system/Log.h"
#include "toolkit/drawing/WICHelper.h"
#include "tracking/UsageTracker.h"

#include <ole2.h>

namespace lumenor::failing {

namespace {

constexpr wchar_t folderDocument[] = L"Lumenor.Folder";
constexpr wchar_t windowsDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow";
constexpr std::int32_t errorsInTheLog = 3;

Texts reports;
Texts launches;
IDropTarget *dropTarget = nullptr;

BOOL WINAPI HearReport(HANDLE, WORD, WORD, DWORD, PSID, WORD count, DWORD, LPCWSTR *texts, LPVOID) {
  const OwnCode own;
  for (WORD i = 0; i < count; ++i)
    reports.emplace_back(texts[i]);
  return TRUE;
}

HINSTANCE WINAPI NoteLaunch(HWND, LPCWSTR, LPCWSTR program, LPCWSTR, LPCWSTR, INT) {
  const OwnCode own;
  launches.emplace_back(program);
  return reinterpret_cast<HINSTANCE>(42); // a success
}

decltype(&::Sleep) platformSleep = nullptr;

/// Nobody has a file open here, so the next try needn't wait.
void WINAPI SleepLittle(DWORD) { platformSleep(1); }

decltype(&::RegisterDragDrop) platformRegister = nullptr;
decltype(&::RevokeDragDrop) platformRevoke = nullptr;

HRESULT WINAPI KeepTarget(HWND window, IDropTarget *target) {
  const HRESULT result = platformRegister(window, target);
  if (SUCCEEDED(result))
    dropTarget = target;
  return result;
}

HRESULT WINAPI ForgetTarget(HWND window) {
  dropTarget = nullptr;
  return platformRevoke(window);
}

HRESULT WINAPI RunDrag(IDataObject *data, IDropSource *, DWORD, DWORD *) {
  return World::drag == nullptr ? DRAGDROP_S_CANCEL : World::drag(data);
}

template <typename Function> void Replace(const char *name, Function *replacement, Function **platform = nullptr) {
  void *const former = Redirect(name, reinterpret_cast<void *>(replacement));
  if (platform != nullptr)
    *platform = reinterpret_cast<Function *>(former);
}

int CountThreadWindows() {
  int count = 0;
  ::EnumThreadWindows(
      ::GetCurrentThreadId(),
      [](HWND window, LPARAM counter) -> BOOL {
        const auto countOne = [](HWND, LPARAM of) -> BOOL { return ++*reinterpret_cast<int *>(of), TRUE; };
        ::EnumChildWindows(window, countOne, counter);
        return countOne(window, counter);
      },
      reinterpret_cast<LPARAM>(&count));
  for (HWND window = nullptr;
       (window = ::FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;) // of this process or of another
    count += ::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId() ? 1 : 0;
  return count;
}

std::wstring Row(const std::wstring &head, const std::wstring &action, const std::wstring &params,
                 const std::wstring &image, int position) {
  return L"<Head>" + head + L"</Head><ToolTip>" + head + L"</ToolTip><ActionType>" + action + L"</ActionType>" +
         L"<ActionParams>" + params + L"</ActionParams><Image>" + image + L"</Image><Position>" +
         std::to_wstring(position) + L"</Position>";
}

std::wstring Whole(const std::wstring &name, const std::wstring &elements) {
  return L"<UIRoot><" + name + L"><Elements>" + elements + L"</Elements></" + name + L"></UIRoot>";
}

int CountOf(const std::string &what, const std::string &text) {
  int count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
    ++count;
  return count;
}

} // namespace

HRESULT (*World::drag)(IDataObject *data) = nullptr;
bool World::hasRefused = false;

World::World() {
  Replace("ReportEventW", &HearReport);
  Replace("ShellExecuteW", &NoteLaunch);
  Replace("Sleep", &SleepLittle, &platformSleep);
  Replace("RegisterDragDrop", &KeepTarget, &platformRegister);
  Replace("RevokeDragDrop", &ForgetTarget, &platformRevoke);
  Replace("DoDragDrop", &RunDrag);
  LogLevel = errorsInTheLog;
  reports.reserve(100);
  launches.reserve(100);
  WriteContent();
}

/// The bar's own pictures lie beside the folder of its program.
void World::WritePictures() const {
  const tests::ComApartment com;
  const std::wstring installed = folders.InstallFolder();
  tests::WriteBytes(installed + L"\\Dock\\LumenorDock.exe", "");
  tests::MakeFolders(installed + L"\\resources");
  const std::wstring picture = folders.Root() + L"\\picture.png";
  SaveHBitmapAsPng(CreateDib(16, 16).Get(), picture);
  for (const wchar_t *name :
       {L"LaunchVideo", L"ResetImage", L"arrow-down", L"arrow-up", L"arrow", L"arrowIcon", L"backgroundwindow",
        L"close-icon", L"foryou_active", L"foryou_idle", L"handswithIconsGraphic", L"move_to_bottom", L"move_to_top",
        L"reset-icon", L"scroll_left", L"scroll_right", L"search"})
    ::CopyFileW(picture.c_str(), (installed + L"\\resources\\" + name + L".png").c_str(), FALSE);
  ReleaseImagingFactory();
}

/// What no dock writes: pictures, texts, stubs, lists of others.
void World::WriteContent() const {
  WritePictures();
  tests::WriteText(DroppedPath(), L"content");
  tests::MakeShortcut(ShortcutPath(), {.target = DroppedPath()});
  const std::wstring picture = folders.Root() + L"\\picture.png";
  const std::wstring stubs = folders.CommonFolder() + L"\\LangRes\\xx_xx\\";
  for (const wchar_t *head : {L"Stub 1", L"Stub 2"})
    tests::WriteText(
        stubs + userDocumentName + L"." + head + L".dstb",
        Whole(userDocumentName,
              L"<Element>" + Row(head, L"url", L"http://nowhere.invalid/", picture, head[5] - L'0') + L"</Element>"));
  tests::WriteText(
      stubs + mainDocumentName + L".1.dstb",
      Whole(mainDocumentName, L"<Element>" + Row(L"Folder", L"xml", folderDocument, picture, 1) + L"</Element>"));
  tests::WriteText(stubs + folderDocument + L".1.dstb",
                   Whole(folderDocument, L"<Element>" + Row(L"Row", L"url", L"http://nowhere.invalid/row", picture, 1) +
                                             L"</Element>"));
  const std::wstring texts = folders.CommonFolder() + L"\\BaseContent\\LangRes\\LangRes_VRA\\en_xx\\";
  tests::WriteText(texts + windowsDocument + L".xml",
                   Whole(windowsDocument, L"<Element ID='Dock.CloseToolTip'><Head>Close</Head></Element>"));
  tests::WriteText(texts + forYouDocumentName + L".xml",
                   Whole(forYouDocumentName, L"<Element><Head>For you</Head><ToolTip>For you</ToolTip></Element>"));
  tests::WriteText(texts + L"SearchProviders.xml", L"<SearchingProviders><Providers>" +
                                                       Row(L"Search", L"url", L"http://nowhere.invalid/?", picture, 0) +
                                                       L"</Providers></SearchingProviders>");
}

void World::WriteRows(const std::wstring &name, const Texts &rows) const {
  std::wstring elements;
  for (const std::wstring &row : rows)
    elements += L"<Element>" + row + L"</Element>";
  tests::WriteText(folders.UserFolder() + L"\\" + name + L".xml", Whole(name, elements));
}

void World::WriteDocument(const std::wstring &name, const Texts &heads, const std::wstring &action) const {
  Texts rows;
  for (const std::wstring &head : heads)
    rows.push_back(Row(head, action, action == L"xml" ? folderDocument : L"http://nowhere.invalid/" + head,
                       folders.Root() + L"\\picture.png", static_cast<int>(rows.size()) + 1));
  WriteRows(name, rows);
}

void World::WriteButtons() const {
  const std::wstring picture = folders.Root() + L"\\picture.png";
  WriteRows(userDocumentName, {Row(L"A", L"url", L"http://nowhere.invalid/A", picture, 1),
                               Row(L"B", L"exe", L'"' + ShortcutPath() + L'"', picture, 2),
                               Row(L"C", L"exe", L'"' + DroppedPath() + L'"', picture, 3)});
}

void World::WriteForYou(int rows) const {
  Texts heads;
  for (int i = 0; i < rows; ++i)
    heads.push_back(L"Row " + std::to_wstring(i));
  WriteDocument(forYouListName, heads);
}

void World::Reset() const {
  ForgetUser();
  WriteButtons();
  WriteDocument(mainDocumentName, {L"Folder"}, L"xml");
  WriteDocument(folderDocument, {L"Row 1", L"Row 2"});
  WriteDocument(forYouDocumentName, {});
  WriteDocument(jumpListDocumentName, {});
  WriteForYou(2);
  registry.SetText(L"ShowWelcomePage", L"0");
  registry.SetText(L"DockPosition", L"Top");
  registry.SetText(L"AppID", L"{0}");
  tracking.SetText(L"NextTransferTime", L"1/1/2090 1:1:1");
}

void World::ForgetUser() const {
  tests::DeleteTree(folders.AppData() + L"\\Tarnwick");
  tests::DeleteTree(folders.CommonFolder() + L"\\ImageCache");
  tests::MakeFolders(folders.CommonFolder() + L"\\ImageCache");
  log.Clear();
  registry.Delete();
  registry.Create();
  reports.clear();
  launches.clear();
  usageTracker = UsageTracker();
  mainApplicationStarted = false;
  hasRefused = false;
  ForgetDrag();
}

void World::MakePayloadDue() const { tracking.SetText(L"NextTransferTime", L"1/1/2001 1:1:1"); }

Texts World::Heads() const {
  const std::wstring text =
      tests::FromUtf8(tests::ReadBytes(folders.UserFolder() + L"\\" + userDocumentName + L".xml"));
  if (text.find(L"</UIRoot>") == std::wstring::npos)
    return noDocument;
  Texts heads;
  for (std::size_t at = text.find(L"<Head>"); at != std::wstring::npos; at = text.find(L"<Head>", at + 1))
    heads.push_back(text.substr(at + 6, text.find(L"</Head>", at) - at - 6));
  return heads;
}

Texts World::Leftovers() const {
  Texts left;
  for (const std::wstring &name : tests::ListFolder(folders.UserFolder()))
    if (name.ends_with(L".new") || name.find(L".broken") != std::wstring::npos)
      left.push_back(name);
  return left;
}

int World::Records() const {
  int count = 0;
  for (const std::wstring &name : tests::ListFolder(folders.UserFolder() + L"\\ruq"))
    count += CountOf("<element ", tests::ReadBytes(folders.UserFolder() + L"\\ruq\\" + name));
  return count;
}

std::vector<std::string> World::FailureLines() const {
  std::vector<std::string> lines = log.Lines();
  std::erase_if(lines, [](const std::string &line) { return line.starts_with("INFO:"); });
  return lines;
}

const Texts &World::Reports() { return reports; }

void World::ForgetReports() { reports.clear(); }

const Texts &World::Launches() { return launches; }

IDropTarget *World::DropTarget() { return dropTarget; }

Holdings World::CountHoldings() {
  usageTracker = UsageTracker(); // ends with the process
  return {tests::CountKernelHandles(), tests::CountGdiObjects(), CountThreadWindows(), LiveBlocks()};
}

} // namespace lumenor::failing
