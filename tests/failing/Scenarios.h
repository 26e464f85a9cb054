#pragma once
// What a user does while a call of the platform fails.

#include <functional>
#include <string>
#include <vector>

#include "failing/World.h"
#include "system/Windows.h"

namespace lumenor::failing {

/// The dock of this process, as the steps of a scenario see it. Every step runs once nothing waits in the queue.
class Stage {
public:
  explicit Stage(const World &world) : world(world) {}

  /// The bar's window, null without one.
  static HWND Bar();

  /// The window of the bar's control with this id, null without one.
  static HWND Control(int id);

  /// A visible window of this thread with the title; null without one.
  static HWND Dialog(const wchar_t *title);

  /// Sends the bar a message; the product is called and counted.
  static LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

  const World &world;
};

using Step = std::function<void(Stage &)>;

struct Scenario {
  std::string name;

  /// Ahead of the start; the world is as Reset leaves it.
  std::function<void(const World &)> prepare;

  /// Calls are counted from the start of the process; otherwise from the first of `steps` on.
  bool countsTheStart;

  std::vector<Step> beforehand; // not counted
  std::vector<Step> steps;

  /// The dock is closed by the last step; otherwise behind it, uncounted.
  bool closes;

  /// The labels of the user's buttons on the disk: either is right after a failure.
  Texts before, after;

  /// Whether the steps did what they are for; asked where no call fails.
  std::function<bool(const World &)> hasHappened;

  /// Buttons are made of stubs, and one whose stub can't be read is left out, with a line in the log.
  bool readsStubs = false;

  /// How many records of its use the dock leaves when nothing is reported; not looked at when 0.
  int records = 0;
};

/// What the user's document reads as when there is none.
inline const Texts noDocument = {L"unreadable"};

const std::vector<Scenario> &Scenarios();

} // namespace lumenor::failing
