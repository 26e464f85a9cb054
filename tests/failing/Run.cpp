#include "failing/Run.h"

#include <exception>

#include "system/HResultError.h"
#include "system/Instance.h"
#include "system/WindowException.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int);

namespace lumenor::failing {

namespace {

constexpr UINT turnMs = 10;
constexpr int turnsToCloseAgain = 50; // of a user who has seen nothing happen: the platform may lose a message
constexpr int mostTurnsToClose = 100;
constexpr int barlessExitCode = 51; // what ends a process that has no bar any more
constexpr int stuckExitCode = 52;

/// One line for each window of the bar: its id and its place.
std::vector<std::string> DescribeBar(HWND bar) {
  std::vector<std::string> lines;
  ::EnumChildWindows(
      bar,
      [](HWND window, LPARAM list) -> BOOL {
        RECT place = {};
        ::GetWindowRect(window, &place);
        std::string line;
        for (const long number :
             {static_cast<long>(::GetDlgCtrlID(window)), place.left, place.top, place.right, place.bottom})
          line += std::to_string(number) + " ";
        reinterpret_cast<std::vector<std::string> *>(list)->push_back(line);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&lines));
  return lines;
}

/// Takes the steps from within the loops of the process, one at each tick of a timer: a timer's message comes when no
/// other waits.
class Player {
public:
  Player(const World &world, const Scenario &scenario, std::optional<Target> target)
      : scenario(scenario), stage(world), target(target) {
    current = this;
    if (scenario.countsTheStart)
      StartCounting();
  }
  ~Player() {
    Disarm();
    ::KillTimer(nullptr, timer);
    current = nullptr;
  }
  Player(const Player &) = delete;
  Player &operator=(const Player &) = delete;

  Ending ending;

private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    const OwnCode own;
    if (current != nullptr)
      current->TakeTurn();
  }

  void StartCounting() const {
    if (target)
      Arm(target->kind, target->number);
  }

  void TakeTurn() {
    const HWND bar = Stage::Bar();
    if (bar == nullptr)
      return EndBarless();
    if (turn++ == 0) {
      ending.bar = DescribeBar(bar);
      if (scenario.countsTheStart && scenario.steps.empty())
        Disarm();
    }
    if (beforehand < scenario.beforehand.size())
      return scenario.beforehand[beforehand++](stage);
    if (step < scenario.steps.size())
      return TakeStep();
    Close(bar);
  }

  void TakeStep() {
    if (step == 0 && !scenario.countsTheStart)
      StartCounting();
    ending.isThrough = ++step == scenario.steps.size();
    scenario.steps[step - 1](stage);
  }

  void EndBarless() {
    Disarm();
    ending.wasBarless = true;
    ::PostQuitMessage(barlessExitCode);
  }

  /// Dialogs first: the bar can't end beneath them.
  void Close(HWND bar) {
    if (!scenario.closes)
      Disarm();
    ending.isThrough = true;
    if (turnsToClose++ == 0 && !scenario.closes)
      ::EnumThreadWindows(::GetCurrentThreadId(), &CloseOther, reinterpret_cast<LPARAM>(bar));
    if (turnsToClose == (scenario.closes ? turnsToCloseAgain : 2))
      ::PostMessageW(bar, WM_CLOSE, 0, 0);
    if (turnsToClose > mostTurnsToClose) {
      ending.wasStuck = true;
      ::PostQuitMessage(stuckExitCode);
    }
  }

  static BOOL CALLBACK CloseOther(HWND window, LPARAM bar) {
    wchar_t name[20] = {};
    ::GetClassNameW(window, name, 20);
    if (window != reinterpret_cast<HWND>(bar) && ::IsWindowVisible(window) && ::lstrcmpW(name, L"#32770") == 0)
      ::EndDialog(window, 0);
    return TRUE;
  }

  static inline Player *current = nullptr;

  const Scenario &scenario;
  Stage stage;
  std::optional<Target> target;
  std::size_t beforehand = 0;
  std::size_t step = 0;
  int turn = 0;
  int turnsToClose = 0;
  const UINT_PTR timer = ::SetTimer(nullptr, 0, turnMs, &Tick);
};

std::string DescribeRaised() {
  try {
    throw;
  } catch (const HResultError &error) {
    char text[100];
    std::snprintf(text, sizeof text, "%08lx at %s:%u", static_cast<unsigned long>(error.Result()), error.File(),
                  error.Line());
    return text;
  } catch (const std::exception &error) {
    return error.what();
  } catch (...) {
    return "something";
  }
}

/// What the end of a process does to its queue.
void ForgetMessages() {
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
    if (message.message != WM_TIMER)
      ::DispatchMessageW(&message);
}

const Scenario plain = {"plain", {}, false, {}, {}, false, {}, {}, {}, false, 0};

} // namespace

Ending RunScenario(const World &world, const Scenario &scenario, std::optional<Target> target) {
  Player player(world, scenario, target);
  wchar_t noWords[] = L"";
  try {
    const ProductsTurn turn;
    player.ending.exitCode = ::wWinMain(instanceHandle, nullptr, noWords, SW_SHOW);
  } catch (...) {
    Disarm();
    player.ending.raised = DescribeRaised();
  }
  Disarm();
  ForgetWindowException();
  ForgetMessages();
  return player.ending;
}

Ending RunPlain(const World &world) { return RunScenario(world, plain, std::nullopt); }

} // namespace lumenor::failing
