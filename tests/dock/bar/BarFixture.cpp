#include "dock/bar/BarFixture.h"

#include <typeinfo>

#include "content/Documents.h"
#include "dock/Commands.h"
#include "system/EventLog.h"
#include "system/WindowException.h"
#include "toolkit/BackPlate.h"
#include "toolkit/drawing/WICHelper.h"

// The slot through which the program calls the shell.
extern "C" decltype(&::ShellExecuteW) __imp_ShellExecuteW;

namespace lumenor {

namespace {

template <typename Child> Child &ChildAt(Container &parent, std::size_t index) {
  return dynamic_cast<Child &>(*parent.GetChildren().at(index));
}

std::string ClassName(UIElement &element) {
  const std::string mangled = typeid(element).name(); // N7lumenor9DockPanelE: each word behind its length
  const std::size_t length = mangled.find_first_of("0123456789", std::string("N7lumenor").size());
  const std::size_t word = mangled.find_first_not_of("0123456789", length);
  return mangled.substr(word, mangled.size() - word - 1);
}

std::vector<Launch> launches;
decltype(__imp_ShellExecuteW) platformShellExecute = nullptr;

std::wstring OrEmpty(LPCWSTR text) { return text == nullptr ? L"" : text; }

HINSTANCE WINAPI NoteLaunch(HWND owner, LPCWSTR verb, LPCWSTR program, LPCWSTR arguments, LPCWSTR folder,
                            INT showCommand) {
  launches.push_back({owner, OrEmpty(verb), OrEmpty(program), OrEmpty(arguments), showCommand});
  return platformShellExecute(owner, verb, program, arguments, folder, showCommand);
}

} // namespace

BarTree::BarTree(CMainDlg &dock)
    : root(dynamic_cast<DockPanel &>(*dock.GetChild())), bar(ChildAt<DockPanel>(root, 1)),
      mainButtons(ChildAt<StackPanel>(bar, 0)), leftSplitter(ChildAt<UIElement>(bar, 1)),
      scrollViewer(ChildAt<ScrollViewer>(bar, 2)), userButtons(dynamic_cast<StackPanel &>(*scrollViewer.GetChild())),
      canvas(ChildAt<Canvas>(bar, 3)), rightSplitter(ChildAt<UIElement>(bar, 4)),
      forYouButton(ChildAt<DockButton>(canvas, 0)), searchBox(ChildAt<SearchBox>(canvas, 1)),
      textBox(ChildAt<TextBox>(canvas, 2)), searchProviderButton(ChildAt<DockButton>(canvas, 3)),
      searchButton(ChildAt<DockButton>(canvas, 4)), systemButtons(ChildAt<StackPanel>(canvas, 5)),
      resetButton(ChildAt<DockButton>(systemButtons, 0)), dockPositionButton(ChildAt<CheckedButton>(systemButtons, 1)),
      closeButton(ChildAt<DockButton>(systemButtons, 2)) {}

std::vector<UIElement *> ChildrenOf(UIElement &element) {
  if (auto *const container = dynamic_cast<Container *>(&element))
    return container->GetChildren();
  if (auto *const holder = dynamic_cast<SingleChildContainer *>(&element); holder && holder->GetChild())
    return {holder->GetChild()};
  return {};
}

std::vector<std::string> Describe(UIElement &element, int depth) {
  std::string line(static_cast<std::size_t>(2 * depth), ' ');
  line += ClassName(element);
  for (const long number : {element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get()})
    line += ' ' + std::to_string(number);
  std::vector<std::string> lines = {line};
  for (UIElement *const child : ChildrenOf(element))
    for (std::string &childLine : Describe(*child, depth + 1))
      lines.push_back(std::move(childLine));
  return lines;
}

ShellSpy::ShellSpy() : slot(&__imp_ShellExecuteW, &NoteLaunch) {
  launches.clear();
  platformShellExecute = slot.Former();
}

const std::vector<Launch> &ShellSpy::Launches() { return launches; }

std::optional<int> TakeQuitCode() {
  std::optional<int> code;
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT)
      code = static_cast<int>(message.wParam);
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
    RethrowWindowException();
  }
  return code;
}

BarFixture::BarFixture() {
  OpenDockEventLog();
  registry.Delete();
  registry.SetText(L"ShowWelcomePage", L"0"); // or a modal dialog would stand in the way of every test
  SaveHBitmapAsPng(CreateDib(48, 48).Get(), PicturePath());
}

BarFixture::~BarFixture() {
  dock.reset();
  ForgetWindowException();
  TakeQuitCode();
  mainApplicationStarted = false;
  dockActivateMessage = 0;
  ReleaseImagingFactory();
}

Element BarFixture::PictureElement(const std::wstring &head) const {
  Element element;
  element.Head = head;
  element.ToolTip = L"Tip of " + head;
  element.ActionType = L"exe";
  element.ActionParams = L"C:\\windows\\" + head + L".exe";
  element.Image = PicturePath();
  return element;
}

Element BarFixture::VanishedElement(const std::wstring &head) {
  Element element;
  element.Head = head;
  element.ActionType = L"exe";
  element.ActionParams = L"C:\\gone\\gone.exe";
  return element;
}

ElementList BarFixture::PictureElements(int count) const {
  ElementList list;
  for (int i = 0; i < count; ++i)
    list.push_back(PictureElement(L"Head " + std::to_wstring(i)));
  return list;
}

std::wstring BarFixture::TextFolder() const {
  return folders.CommonFolder() + L"\\BaseContent\\LangRes\\LangRes_VRA\\en_xx\\";
}

void BarFixture::WriteTexts(const std::vector<std::pair<std::wstring, std::wstring>> &texts,
                            const std::wstring &forYouToolTip) const {
  std::wstring elements;
  for (const auto &[id, text] : texts)
    elements += L"<Element ID='" + id + L"'><Head>" + text + L"</Head></Element>";
  const std::wstring folder = TextFolder();
  const std::wstring name = L"Lumenor.MainFrame.Windows.DockViewWindow";
  tests::WriteText(folder + name + L".xml",
                   L"<UIRoot><" + name + L"><Elements>" + elements + L"</Elements></" + name + L"></UIRoot>");
  tests::WriteText(folder + forYouDocument + L".xml",
                   L"<UIRoot><" + std::wstring(forYouDocument) + L"><Elements><Element><ToolTip>" + forYouToolTip +
                       L"</ToolTip></Element></Elements></" + forYouDocument + L"></UIRoot>");
}

void BarFixture::WriteSearchProviders(const std::vector<std::wstring> &heads) const {
  std::wstring providers;
  for (const std::wstring &head : heads)
    providers += L"<Providers><Head>" + head + L"</Head><ActionType>url</ActionType></Providers>";
  tests::WriteText(TextFolder() + L"SearchProviders.xml",
                   L"<SearchingProviders>" + providers + L"</SearchingProviders>");
}

CMainDlg &BarFixture::Start() {
  dock = std::make_unique<CMainDlg>();
  dock->Create(nullptr);
  return *dock;
}

std::string BarFixture::UserDocumentText() const { return tests::ReadBytes(DocumentPath(userDocument)); }

} // namespace lumenor
