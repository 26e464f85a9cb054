#pragma once
// The machine of a long run: the installation, what else is on the desktop, the dock, and what it is expected to show.
// What goes wrong is raised as std::runtime_error, which ends the run.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "e2e/Browser.h"
#include "e2e/DockProcess.h"
#include "e2e/Installation.h"
#include "e2e/OtherWindow.h"
#include "fuzz/Random.h"
#include "soak/Model.h"

namespace lumenor::soak {

using fuzz::Random;

/// Another program's window, which lies under no part of the dock.
constexpr RECT elsewhere = {520, 350, 760, 430};

class Scene {
public:
  /// Installs the dock and starts it.
  explicit Scene(std::uint64_t seed);
  ~Scene();
  Scene(const Scene &) = delete;
  Scene &operator=(const Scene &) = delete;

  /// Starts the dock and waits for its bar; what a new bar has forgotten is forgotten here too.
  void Start();

  /// Waits for the bar that a reset brings, and holds its row against the stubs'.
  void TakeNewBar();

  /// Closes the dock by its button and holds the document that it leaves against the model.
  void Close();

  /// Raises an error unless the dock runs, has the bar that it had, and answers.
  void CheckAnswers() const;

  /// Raises an error unless the row on the screen comes to what the user has made.
  void CheckRow() const;

  /// Raises an error unless the document on the disk has what the user has made.
  void CheckDocument() const;

  /// Waits until the bar is at the edge, and as wide, as the user expects.
  void CheckPlace() const;

  /// Waits for `condition` for as long as a user would, and raises an error with `what` when it doesn't come.
  static void Await(const std::function<bool()> &condition, const std::string &what);

  /// Clicks there until `condition` holds: a user whose click is lost clicks again.
  void ClickUntil(const std::function<POINT()> &place, const std::function<bool()> &condition, const std::string &what);

  /// Drags until the row is `row`: a user whose drag is lost, which leaves the row as it was, drags again.
  void DragUntil(const std::vector<std::wstring> &row, const std::function<void()> &drag);

  /// A click that nothing waits for. Two clicks at one place are never a double click.
  void ClickNear(POINT place);

  /// Moves the cursor without waiting for it.
  static void MoveNear(POINT place);

  /// Brings the cursor to the bar and waits until the buttons that a dimmed bar hides are there.
  void WakeBar() const;

  /// The buttons of the user, from left to right.
  std::vector<HWND> Buttons() const;

  /// How many programs were started with `text` in their command lines.
  int StartsWith(const std::wstring &text) const;

  /// Clicks and drags that had to be done again.
  int LostClicks() const { return lostClicks; }

  const e2e::Installation installation;
  const e2e::Browser browser{installation};
  const e2e::OtherWindow other{elsewhere};
  Random random;
  Model model;
  std::unique_ptr<e2e::ShownDock> dock;

private:
  void WriteContent() const;
  std::vector<std::wstring> ShownRow() const;

  HWND bar = nullptr;
  int clicks = 0;
  int lostClicks = 0;
};

/// The addresses of the search providers, in their order; those behind them aren't of the web.
extern const std::vector<std::wstring> providerAddresses;

/// What the dock's recorders are started with.
constexpr wchar_t fixedStart[] = L"a fixed button";
constexpr wchar_t rowStart[] = L"a row";

} // namespace lumenor::soak
