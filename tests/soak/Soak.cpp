// Uses the dock at random and for long, by real input for the most part, and tells whether it stays what it was.
//
//   soak MINUTES COUNT SEED FOLDER   as many actions as fit into the time, at most COUNT; ends with 1 when something
//                                    went wrong, or the run was too short to tell. FOLDER, as this program sees it,
//                                    gets the list of the actions, the figures, and a picture of what went wrong
//
// The actions follow from SEED and COUNT, which decides how often samples are taken: the same two play a run again.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "soak/Actions.h"
#include "soak/Figures.h"
#include "soak/LogWatch.h"
#include "support/Arguments.h"

#include <shlobj.h>

namespace lumenor::soak {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int actionsOfAGlance = 10;    // after which the log and the whole row are looked at
constexpr int actionsOfAReport = 1'000; // after which a line is printed
constexpr int restartAt = 20;           // early: the figures are of the process that follows
constexpr int memoryCountsFrom = 5'000; // actions, in which all that is kept for later is filled
constexpr int mostActionsOfASample = 30;
constexpr int samplesOfARun = 80;     // of one that ends by its number of actions, if each came at once
constexpr int patienceForASample = 5; // actions that may bring the usual state about by themselves

struct Task {
  std::chrono::minutes time;
  int count;
  std::uint64_t seed;
  std::wstring folder;

  std::wstring File(const wchar_t *name) const {
    return folder + L"\\" + name + L"-" + std::to_wstring(seed) + L".txt";
  }
};

class Run {
public:
  explicit Run(const Task &task)
      : task(task), list(::_wfopen(task.File(L"actions").c_str(), L"wb")), figures(task.File(L"figures")),
        scene(task.seed), log(scene.installation.LogFolder()) {}
  ~Run() {
    if (list != nullptr)
      std::fclose(list);
  }
  Run(const Run &) = delete;
  Run &operator=(const Run &) = delete;

  /// False when something went wrong, which it prints.
  bool Succeeds() {
    bool isFlat = false;
    try {
      Go();
      isFlat = figures.AreFlat(done >= memoryCountsFrom);
    } catch (const std::exception &error) {
      std::printf("soak: %s\n", error.what());
      e2e::SaveShot("soak-" + std::to_string(task.seed));
    }
    for (const auto &[name, time] : spent)
      std::printf("%8d times %6lld ms  %s\n", time.times, static_cast<long long>(time.all.count() / time.times),
                  name.c_str());
    PrintCounts();
    return isFlat;
  }

private:
  void Go() {
    const Clock::time_point end = Clock::now() + task.time;
    while (done < task.count && Clock::now() < end) {
      if (done == restartAt)
        Restart();
      Do(Next());
      TakeDueSample();
    }
    Note("the end");
    Restart();
  }

  void PrintCounts() const {
    std::printf("soak: %d actions of seed %llu, %d clicks and drags lost\n", done,
                static_cast<unsigned long long>(task.seed), scene.LostClicks());
    std::fflush(stdout);
  }

  void Do(const Action &action) {
    const Clock::time_point begin = Clock::now();
    Note(action.name);
    action.run(scene);
    Spent &time = spent[action.name];
    ++time.times;
    time.all += std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    std::erase(untried, &action);
    ++done;
    Look();
  }

  /// Behind the restart each action comes once, as soon as it is possible: what a first time leaves for later is there
  /// before the first sample. A sample that is due isn't waited for for ever.
  const Action &Next() {
    if (done >= restartAt && !untried.empty()) {
      const auto possible =
          std::ranges::find_if(untried, [&](const Action *each) { return each->isPossible(scene.model); });
      sampleDue = done + 1;
      return possible != untried.end() ? **possible : ChooseAction(scene);
    }
    const Action *const towards = done > sampleDue + patienceForASample ? ActionTowardsUsual(scene.model) : nullptr;
    return towards != nullptr ? *towards : ChooseAction(scene);
  }

  void Note(const char *what) {
    if (list == nullptr)
      return;
    std::fprintf(list, "%d %s\n", done + 1, what);
    std::fflush(list);
  }

  void Look() {
    scene.CheckAnswers();
    if (::testing::UnitTest::GetInstance()->Failed())
      throw std::runtime_error("a step has failed, as printed");
    if (done % actionsOfAGlance != 0)
      return;
    scene.CheckRow();
    CheckLog();
    if (done % actionsOfAReport == 0)
      PrintCounts();
  }

  void CheckLog() {
    const std::vector<std::string> errors = log.NewErrors();
    for (const std::string &line : errors)
      std::printf("%s\n", line.c_str());
    if (!errors.empty())
      throw std::runtime_error("the dock has logged what went wrong");
  }

  void TakeDueSample() {
    if (done < sampleDue || !untried.empty() || !scene.model.IsUsual())
      return;
    e2e::MoveCursor(scene.dock->Rest());
    scene.CheckAnswers();
    figures.Take(done, scene.dock->Id());
    sampleDue = done + std::min(mostActionsOfASample, std::max(1, task.count / samplesOfARun));
  }

  void Restart() {
    while (const Action *const towards = ActionTowardsUsual(scene.model))
      towards->run(scene);
    scene.Close();
    scene.dock.reset();
    scene.Start();
    untried = AllActions();
    CheckLog();
  }

  static std::vector<const Action *> AllActions() {
    std::vector<const Action *> all;
    for (const Action &action : Actions())
      all.push_back(&action);
    return all;
  }

  struct Spent {
    int times = 0;
    std::chrono::milliseconds all{};
  };

  const Task &task;
  std::FILE *list;
  Figures figures;
  Scene scene;
  LogWatch log;
  int done = 0;
  int sampleDue = 0;
  std::vector<const Action *> untried = AllActions();
  std::map<std::string, Spent> spent; // by the names of the actions
};

int Soak(const Task &task) {
  ::SHCreateDirectoryExW(nullptr, task.folder.c_str(), nullptr);
  bool succeeded = false;
  try {
    succeeded = Run(task).Succeeds();
  } catch (const std::exception &error) {
    std::printf("soak: the dock can't be started: %s\n", error.what());
  }
  std::printf("soak: %s\n", succeeded ? "nothing found" : "something found, or too little done");
  return succeeded ? 0 : 1;
}

} // namespace
} // namespace lumenor::soak

int wmain(int count, wchar_t **words) {
  using namespace lumenor::soak;
  if (count != 5) {
    std::printf("soak MINUTES COUNT SEED FOLDER\n");
    return 2;
  }
  using lumenor::tests::NumberOf;
  return Soak({std::chrono::minutes(NumberOf(words[1])), static_cast<int>(NumberOf(words[2])), NumberOf(words[3]),
               lumenor::tests::PathOf(words[4])});
}
