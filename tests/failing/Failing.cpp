// Lets each call of the platform fail once while the dock is used, and tells what comes of that.
//
//   failing run EVERY MOST [SCENARIO...]   every EVERY-th call and allocation, or for 0 one call of each place in the
//                                          code and every 50th allocation; of each scenario and kind at most MOST,
//                                          spread over all of them, or all for 0
//   failing one SCENARIO KIND NUMBER       the call with the number, and where the memory comes from that is left
//
// A KIND is 0 for functions, 1 for memory, 2 for functions on other threads, 3 for methods of objects.
//
// The dock runs in another process of this program, which is started anew when it is gone.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>

#include "failing/Blocks.h"
#include "failing/Calls.h"
#include "failing/Judgement.h"
#include "failing/PlatformObjects.h"
#include "failing/ProductCode.h"
#include "failing/Run.h"
#include "failing/Scenarios.h"
#include "failing/Watchdog.h"
#include "failing/World.h"
#include "support/Arguments.h"
#include "support/ChildProcess.h"
#include "system/Desktop.h"

namespace lumenor::failing {
namespace {

constexpr auto longestSilence = std::chrono::seconds(150); // a busy machine needs long for one start
constexpr std::size_t mostFunctions = 1000;
constexpr std::uint64_t allocationStep = 50;
constexpr ULONGLONG longestEndingMs = 5000; // of a thread that nothing keeps any more
constexpr int unchangedToSettle = 100;      // counts, a millisecond or more apart

/// What the two processes know of each other.
struct Shared {
  std::atomic<std::uint64_t> kind;     // the place of the kind that is taken
  std::atomic<std::uint64_t> next;     // number of the call that is to fail
  std::atomic<std::uint64_t> progress; // grows with each run
  std::atomic<std::uint64_t> made;     // to fail
  std::atomic<std::uint64_t> missed;   // calls that didn't come
  std::atomic<std::uint64_t> findings;
  std::atomic<std::uint64_t> madeOf[mostFunctions]; // in the order of the functions and methods; memory last
};

using Memory = tests::SharedMemory<Shared>;

/// Runs over and over until it returns true, for a few seconds at most.
template <typename Condition> void WaitUntil(Condition &&condition) {
  const ULONGLONG end = ::GetTickCount64() + longestEndingMs;
  while (!condition() && ::GetTickCount64() < end)
    ::Sleep(10);
}

/// What the process holds once the threads that a run has left on their way out are gone.
Holdings CountSettled() {
  Holdings last = World::CountHoldings();
  int unchanged = 0;
  WaitUntil([&] {
    const Holdings former = std::exchange(last, World::CountHoldings());
    unchanged = last == former ? unchanged + 1 : 0;
    return unchanged == unchangedToSettle;
  });
  return last;
}

Traces TakeTraces(const World &world, Ending ending) {
  return {std::move(ending), World::Reports(), world.FailureLines(), world.Heads(), world.Records(), World::hasRefused};
}

/// A scenario in this process, again and again.
class Session {
public:
  Session(const Scenario &scenario, Shared &shared) : scenario(scenario), shared(shared) {}

  /// Runs in which nothing fails, until all that is made once is made. False when one goes wrong.
  bool WarmUp() {
    Prepare();
    measure.barBefore = RunPlainNoted().bar;
    for (const Kind kind : {Kind::Methods, Kind::OtherCalls, Kind::Memory, Kind::Calls}) {
      if (!CountCalls(kind))
        return false;
      const Holdings former = std::exchange(holdings, CountSettled());
      measure.growth = {
          std::max(0, holdings.handles - former.handles), std::max(0, holdings.gdiObjects - former.gdiObjects),
          std::max(0, holdings.windows - former.windows), std::max<std::int64_t>(0, holdings.blocks - former.blocks)};
    }
    return true;
  }

  std::uint64_t HowMany(Kind kind) const { return counted.at(kind); }

  /// The calls that are to fail.
  std::vector<std::uint64_t> Numbers(Kind kind, std::uint64_t every, std::size_t most) const {
    std::vector<std::uint64_t> numbers;
    const std::uint64_t step = every == 0 ? (kind == Kind::Memory ? allocationStep : 1) : every;
    if (every == 0 && (kind == Kind::Calls || kind == Kind::Methods))
      numbers = NumbersOfPlaces(sites.at(kind));
    else
      for (std::uint64_t number = 1; number <= counted.at(kind); number += step)
        numbers.push_back(number);
    if (most == 0 || numbers.size() <= most)
      return numbers;
    std::vector<std::uint64_t> some;
    for (std::size_t i = 0; i < most; ++i)
      some.push_back(numbers[(2 * i + 1) * numbers.size() / (2 * most)]);
    return some;
  }

  /// Lets the call fail. Of what is left behind counts what a second time leaves behind again: the platform keeps some
  /// things for later, such as a device context for one more window at a time.
  void Fail(Kind kind, std::uint64_t number, bool tells) {
    std::optional<Verdict> verdict = Try(kind, number);
    if (!verdict) {
      ++shared.missed;
      return;
    }
    CountMade();
    if (!verdict->growth.empty())
      if (const std::optional<Verdict> again = Try(kind, number))
        verdict->growth = again->growth;
    if (!verdict->growth.empty())
      verdict->problems.push_back(verdict->growth);
    Print(kind, number, *verdict, tells);
  }

private:
  /// Of a run in which a call has failed, and of the next start.
  struct Verdict {
    Traces traces; // of the run
    std::vector<std::string> problems;
    std::string growth;
  };

  /// None where the call didn't come.
  std::optional<Verdict> Try(Kind kind, std::uint64_t number) {
    Prepare();
    Verdict verdict = {TakeTraces(world, RunScenario(world, scenario, Target{kind, number})), {}, {}};
    ++shared.progress;
    if (!HasFailed())
      return std::nullopt;
    Traces &traces = verdict.traces;
    std::erase_if(traces.lines, [this](const std::string &line) {
      return std::ranges::find(measure.lines, line) != measure.lines.end();
    });
    verdict.problems = JudgeRun(scenario, traces);
    World::ForgetReports();
    const Traces next = TakeTraces(world, RunPlainNoted());
    for (std::string &problem : JudgeNextStart(scenario, measure, traces, next))
      verdict.problems.push_back(std::move(problem));
    if (const Texts left = world.Leftovers(); !left.empty())
      verdict.problems.push_back("files are left: " + Join(left));
    verdict.growth = WaitForNoGrowth();
    return verdict;
  }

  /// What the process has come to hold since the former call, and still does when all threads of the run had the time
  /// to end.
  std::string WaitForNoGrowth() {
    const Holdings former = holdings;
    std::string growth;
    WaitUntil([&] {
      holdings = World::CountHoldings();
      growth = DescribeGrowth(measure, former, holdings);
      return growth.empty();
    });
    return growth;
  }

  Ending RunPlainNoted() {
    Ending ending = RunPlain(world);
    ++shared.progress;
    return ending;
  }

  bool CountCalls(Kind kind) {
    Prepare();
    Traces traces = TakeTraces(world, RunScenario(world, scenario, Target{kind, 0}));
    ++shared.progress;
    counted[kind] = CountedSoFar();
    sites[kind] = Counted();
    if (!IsRight(traces))
      return false;
    measure.bar = traces.ending.bar;
    measure.lines = std::move(traces.lines);
    World::ForgetReports();
    measure.barAfter = RunPlainNoted().bar;
    return true;
  }

  void Prepare() const {
    world.Reset();
    if (scenario.prepare)
      scenario.prepare(world);
  }

  /// Whether a run in which nothing fails does what the scenario is for.
  bool IsRight(const Traces &traces) const {
    if (traces.heads == scenario.after && traces.reports.empty() && traces.ending.exitCode == 0 &&
        traces.ending.isThrough && scenario.hasHappened(world) &&
        (scenario.records == 0 || scenario.records == traces.records))
      return true;
    std::printf("%s goes wrong where nothing fails: buttons %s; %s; started %s; exit code %d %s, %d records\n",
                scenario.name.c_str(), Join(traces.heads).c_str(), Join(traces.reports).c_str(),
                Join(World::Launches()).c_str(), traces.ending.exitCode, traces.ending.raised.c_str(), traces.records);
    return false;
  }

  /// The first call of each place.
  static std::vector<std::uint64_t> NumbersOfPlaces(const std::vector<Site> &sites) {
    std::set<std::pair<const void *, std::uint64_t>> seen;
    std::vector<std::uint64_t> numbers;
    for (std::uint64_t number = 1; number <= sites.size(); ++number)
      if (const Site &site = sites[number - 1]; seen.emplace(site.call, site.path).second)
        numbers.push_back(number);
    return numbers;
  }

  void CountMade() const {
    ++shared.made;
    const auto &calls = PlatformCalls();
    const auto at = std::ranges::find(calls, FailedSite().call, [](const PlatformCall &call) { return &call; });
    ++shared.madeOf[at - calls.begin()];
  }

  void Print(Kind kind, std::uint64_t number, const Verdict &verdict, bool tells) const {
    const auto &[traces, problems, growth] = verdict;
    if (problems.empty() && !tells)
      return;
    shared.findings += problems.empty() ? 0 : 1;
    std::printf("%s %d %llu: %s\n", scenario.name.c_str(), static_cast<int>(kind),
                static_cast<unsigned long long>(number), DescribeFailed().c_str());
    std::printf("    reported: %s; buttons: %s; exit code %d%s\n", Join(traces.reports).c_str(),
                Join(traces.heads).c_str(), traces.ending.exitCode, traces.ending.wasBarless ? ", no bar" : "");
    for (const std::string &line : traces.lines)
      std::printf("    log: %s\n", line.c_str());
    if (traces.ending.bar != measure.bar)
      std::printf("    another bar than else: %zu windows, %zu else\n", traces.ending.bar.size(), measure.bar.size());
    for (const std::string &problem : problems)
      std::printf("  %s\n", problem.c_str());
    std::fflush(stdout);
  }

  const Scenario &scenario;
  Shared &shared;
  const World world;
  Measure measure;
  Holdings holdings;
  std::map<Kind, std::uint64_t> counted;
  std::map<Kind, std::vector<Site>> sites; // that were noted
};

const Scenario *FindScenario(const std::string &name) {
  const auto found = std::ranges::find(Scenarios(), name, &Scenario::name);
  return found == Scenarios().end() ? nullptr : &*found;
}

/// What this process needs ahead of a session. The render target makes the others cheap.
Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> SetUp() {
  tests::EndOnCrash(&DescribeCode);
  std::signal(SIGABRT, [](int) { __builtin_trap(); });
  ReadSymbols();
  StandBetween();
  auto target = CreateGdiRenderTarget();
  StandBetweenObjects(target.Get());
  return target;
}

/// What to take of a scenario's calls.
struct Sample {
  std::uint64_t every;
  std::size_t most; // of each kind; 0: all
};

constexpr Kind kinds[] = {Kind::Calls, Kind::Memory, Kind::OtherCalls, Kind::Methods};

int TakeCalls(const std::string &name, Sample sample, Shared &shared) {
  const auto target = SetUp();
  const Watchdog watchdog(shared.progress, longestSilence);
  const OwnCode own;
  Session session(*FindScenario(name), shared);
  const bool isFirst = shared.next == 0 && shared.kind == 0;
  if (!session.WarmUp()) {
    ++shared.findings;
    return 0;
  }
  for (; shared.kind < std::size(kinds); ++shared.kind, shared.next = 0) {
    const Kind kind = kinds[shared.kind];
    const std::vector<std::uint64_t> numbers = session.Numbers(kind, sample.every, sample.most);
    if (isFirst || shared.next == 0)
      std::printf("%s %d: %llu counted, %zu to fail\n", name.c_str(), static_cast<int>(kind),
                  static_cast<unsigned long long>(session.HowMany(kind)), numbers.size());
    std::fflush(stdout);
    for (const std::uint64_t number : numbers) {
      if (number < shared.next)
        continue;
      shared.next = number;
      session.Fail(kind, number, false);
      shared.next = number + 1;
    }
  }
  return 0;
}

int TakeOne(const std::string &name, Kind kind, std::uint64_t number) {
  const Memory memory(L"LumenorFailing" + std::to_wstring(::GetCurrentProcessId()));
  const auto target = SetUp();
  const Watchdog watchdog(memory.Get().progress, longestSilence);
  const OwnCode own;
  Session session(*FindScenario(name), memory.Get());
  if (!session.WarmUp())
    return 1;
  TraceBlocks();
  session.Fail(kind, number, true);
  PrintTracedBlocks();
  return memory.Get().findings == 0 ? 0 : 1;
}

/// Until every call of the scenario that is to fail has. A process that ends on the way is a finding.
void TakeScenario(const Scenario &scenario, Sample sample, Shared &shared, const std::wstring &name) {
  shared.next = 0;
  shared.kind = 0;
  const std::wstring words = L"take " + std::wstring(scenario.name.begin(), scenario.name.end()) + L" " +
                             std::to_wstring(sample.every) + L" " + std::to_wstring(sample.most) + L" " + name;
  for (;;) {
    const KernelHandle process = tests::StartAgain(words);
    if (tests::WaitForChild(process.Get(), shared.progress, 2 * longestSilence) == 0)
      return;
    ++shared.findings;
    ++shared.made;
    std::printf("  by %s %d %llu\n", scenario.name.c_str(), static_cast<int>(shared.kind),
                static_cast<unsigned long long>(shared.next));
    std::fflush(stdout);
    if (shared.next++ == 0)
      return; // it doesn't even come so far
  }
}

/// The functions of the import table and the methods: how often each was made to fail, or why it wasn't.
void PrintFunctions(const Shared &shared) {
  const auto &calls = PlatformCalls();
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const std::string_view why = calls[i].why;
    if (calls[i].how != nullptr)
      std::printf("%8llu %s\n", static_cast<unsigned long long>(shared.madeOf[i]), calls[i].name.c_str());
    else
      std::printf("       - %s: %s\n", calls[i].name.c_str(), why.empty() ? "nobody knows how it fails" : why.data());
  }
  std::printf("%8llu operator new\n", static_cast<unsigned long long>(shared.madeOf[calls.size()]));
}

/// Ends with 1 also when no call was made to fail, which shows nothing.
int Run(Sample sample, const std::vector<std::string> &names) {
  for (const std::string &name : names)
    if (FindScenario(name) == nullptr) {
      std::printf("failing: there is no scenario %s\n", name.c_str());
      return 2;
    }
  const std::wstring name = L"LumenorFailing" + std::to_wstring(::GetCurrentProcessId());
  const Memory memory(name);
  Shared &shared = memory.Get();
  for (const Scenario &scenario : Scenarios())
    if (names.empty() || std::ranges::find(names, scenario.name) != names.end())
      TakeScenario(scenario, sample, shared, name);
  StandBetween();
  PrintFunctions(shared);
  std::printf("failing: %llu calls made to fail, %llu that didn't come, %llu findings\n",
              static_cast<unsigned long long>(shared.made), static_cast<unsigned long long>(shared.missed),
              static_cast<unsigned long long>(shared.findings));
  return shared.findings == 0 && shared.made > 0 ? 0 : 1;
}

std::string Narrow(const wchar_t *text) {
  const std::wstring wide = text;
  return {wide.begin(), wide.end()};
}

} // namespace
} // namespace lumenor::failing

int wmain(int count, wchar_t **words) {
  using namespace lumenor::failing;
  using lumenor::tests::NumberOf;
  const std::wstring task = count > 1 ? words[1] : L"";
  if (task == L"run" && count >= 4) {
    std::vector<std::string> names;
    for (int i = 4; i < count; ++i)
      names.push_back(Narrow(words[i]));
    return Run({NumberOf(words[2]), NumberOf(words[3])}, names);
  }
  if (task == L"one" && count == 5)
    return TakeOne(Narrow(words[2]), static_cast<Kind>(NumberOf(words[3])), NumberOf(words[4]));
  if (task == L"take" && count == 6)
    return TakeCalls(Narrow(words[2]), {NumberOf(words[3]), NumberOf(words[4])}, Memory(words[5]).Get());
  std::printf("failing run EVERY MOST [SCENARIO...] | failing one SCENARIO KIND NUMBER\n");
  return 2;
}
