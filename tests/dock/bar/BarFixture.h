#pragma once
// The dock itself on the desk of a test: its documents, texts and registry values are the test's own, its window is a
// real one, and what it starts is noted.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "content/Element.h"
#include "dock/bar/MainDlg.h"
#include "support/ComApartment.h"
#include "support/ImportSlot.h"
#include "support/KeptRegistryKey.h"
#include "support/TestFolders.h"
#include "system/Windows.h"
#include "toolkit/TextBox.h"

#include <shellapi.h>

namespace lumenor {

inline constexpr wchar_t mainDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Main";
inline constexpr wchar_t userDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.User";
inline constexpr wchar_t forYouDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.ForYou";

/// The elements of a composed bar, found by their places in the tree.
struct BarTree {
  explicit BarTree(CMainDlg &dock);

  DockPanel &root;
  DockPanel &bar;
  StackPanel &mainButtons;
  UIElement &leftSplitter;
  ScrollViewer &scrollViewer;
  StackPanel &userButtons;
  Canvas &canvas;
  UIElement &rightSplitter;
  DockButton &forYouButton;
  SearchBox &searchBox;
  TextBox &textBox;
  DockButton &searchProviderButton;
  DockButton &searchButton;
  StackPanel &systemButtons;
  DockButton &resetButton;
  CheckedButton &dockPositionButton;
  DockButton &closeButton;
};

/// The children of a container or of the holder of one child; none of other elements.
std::vector<UIElement *> ChildrenOf(UIElement &element);

/// One line for `element` and one for each below it, indented: its class and its Left, Top, Width and Height.
std::vector<std::string> Describe(UIElement &element, int depth = 0);

/// What a program was started with.
struct Launch {
  HWND owner;
  std::wstring verb;
  std::wstring program;
  std::wstring arguments;
  int showCommand;

  bool operator==(const Launch &) const = default;
};

/// Notes what is handed to the shell for as long as it lives; the shell gets it all the same.
class ShellSpy {
public:
  ShellSpy();

  /// In the order of the calls.
  static const std::vector<Launch> &Launches();

private:
  using ShellExecuteFunction = decltype(&::ShellExecuteW);

  tests::ImportSlot<ShellExecuteFunction> slot;
};

/// Dispatches every message that waits; the code of WM_QUIT when that was among them.
std::optional<int> TakeQuitCode();

class BarFixture : public ::testing::Test {
protected:
  /// The registry says that the welcome screen has been shown.
  BarFixture();
  ~BarFixture() override;

  /// An entry of a document with a picture that exists.
  Element PictureElement(const std::wstring &head) const;

  /// An entry that no button can be made for: a program that isn't there, and no picture.
  static Element VanishedElement(const std::wstring &head);

  /// `count` entries "Head 0", "Head 1" and so on.
  ElementList PictureElements(int count) const;

  /// The dock's own texts, by id; the tool tip of the For You button is `forYouToolTip`.
  void WriteTexts(const std::vector<std::pair<std::wstring, std::wstring>> &texts,
                  const std::wstring &forYouToolTip = L"") const;

  /// The search providers of these names, of type "url".
  void WriteSearchProviders(const std::vector<std::wstring> &heads) const;

  /// Builds the dock and its window.
  CMainDlg &Start();

  /// The path of a picture file.
  std::wstring PicturePath() const { return folders.Root() + L"\\picture.png"; }

  /// The user's document as text; empty when there is none.
  std::string UserDocumentText() const;

  /// Where the texts of the tests' language are looked for first, with a "\" behind.
  std::wstring TextFolder() const;

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::KeptRegistryKey registry{HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor"};
  const ShellSpy shell;
  std::unique_ptr<CMainDlg> dock;
};

} // namespace lumenor
