#include "failing/Judgement.h"

#include <algorithm>

#include "support/TestFolders.h"

namespace lumenor::failing {

namespace {

constexpr wchar_t failedCycle[] = L"Failed to initialize Lumenor";
constexpr char failedCycleLine[] = "FATAL: Failed to initialize Lumenor";
constexpr wchar_t failedHandler[] = L"caught an unhandled exception in ";

auto CountOf(const Texts &texts, const std::wstring &begin) {
  return std::ranges::count_if(texts, [&](const std::wstring &text) { return text.starts_with(begin); });
}

/// One cause may fail a handler and then the cycle; nothing is reported more often.
std::string JudgeReports(const Traces &traces) {
  const auto cycles = CountOf(traces.reports, failedCycle), handlers = CountOf(traces.reports, failedHandler);
  if (cycles != std::ranges::count(traces.lines, failedCycleLine))
    return "the event log has " + Join(traces.reports) + ", and the log doesn't agree";
  if (cycles > 1 || handlers > 1)
    return "reported more than once: " + Join(traces.reports);
  if (traces.ending.wasBarless && handlers == 0)
    return "the bar went without a report";
  return {};
}

std::string JudgeEnd(const Traces &traces) {
  const Ending &ending = traces.ending;
  const bool cycleFailed = CountOf(traces.reports, failedCycle) > 0;
  if (!ending.raised.empty())
    return "the entry function raised " + ending.raised;
  if (ending.wasStuck)
    return "the bar can't be closed";
  const bool refused =
      ending.exitCode == -1 && FailedSite().call != nullptr &&
      FailedSite().call->name == "RegisterWindowMessageW"; // the one call that a start can't do without
  if (!ending.wasBarless && ending.exitCode != 0 && !cycleFailed && !refused)
    return "ended with " + std::to_string(ending.exitCode);
  if (!ending.isThrough && !ending.wasBarless && !cycleFailed && !refused)
    return "ended before its time, without a report";
  return {};
}

auto CountLeftOutStubs(const Scenario &scenario, const Traces &traces) {
  return !scenario.readsStubs ? 0 : std::ranges::count_if(traces.lines, [](const std::string &line) {
    return line.starts_with("ERROR: DockStub:");
  });
}

/// Whether these are some of the scenario's buttons, and the log says of each other one that its stub can't be read.
bool LacksStubs(const Scenario &scenario, const Traces &traces) {
  const auto isThere = [&](const std::wstring &head) {
    return std::ranges::find(scenario.after, head) != scenario.after.end();
  };
  return scenario.readsStubs && std::ranges::all_of(traces.heads, isThere) &&
         traces.heads.size() + static_cast<std::size_t>(CountLeftOutStubs(scenario, traces)) >= scenario.after.size();
}

std::string JudgeUserData(const Scenario &scenario, const Traces &traces) {
  if (traces.heads != scenario.before && traces.heads != scenario.after && !LacksStubs(scenario, traces))
    return "the user's buttons are " + Join(traces.heads);
  const bool isSilent = traces.reports.empty() && traces.lines.empty();
  if (isSilent && !traces.hasRefused && traces.heads != scenario.after)
    return "what the user did is lost without a word";
  if (isSilent && scenario.records != 0 && traces.records != scenario.records)
    return std::to_string(traces.records) + " records are left";
  return {};
}

/// The buttons that a start leaves which finds these.
const Texts &ButtonsOfNextStart(const Scenario &scenario, const Texts &heads) {
  return heads == noDocument ? scenario.after : heads;
}

void Keep(std::vector<std::string> &problems, std::string problem) {
  if (!problem.empty())
    problems.push_back(std::move(problem));
}

void KeepGrowth(std::string &text, const char *what, std::int64_t growth) {
  if (growth > 0)
    text += (text.empty() ? "left behind: " : ", ") + std::to_string(growth) + " " + what;
}

} // namespace

std::vector<std::string> JudgeRun(const Scenario &scenario, const Traces &traces) {
  std::vector<std::string> problems;
  Keep(problems, JudgeEnd(traces));
  Keep(problems, JudgeReports(traces));
  Keep(problems, JudgeUserData(scenario, traces));
  return problems;
}

std::vector<std::string> JudgeNextStart(const Scenario &scenario, const Measure &measure, const Traces &failed,
                                        const Traces &next) {
  const Texts &heads = failed.heads;
  std::vector<std::string> problems;
  Keep(problems, JudgeEnd(next).empty() ? "" : "the next start " + JudgeEnd(next));
  if (!next.reports.empty())
    problems.push_back("the next start reports " + Join(next.reports));
  const Texts &expected = ButtonsOfNextStart(scenario, heads);
  if (next.heads != expected)
    problems.push_back("the next start makes " + Join(next.heads) + " of the buttons " + Join(heads));
  const bool isKnown =
      (expected == scenario.before || expected == scenario.after) && CountLeftOutStubs(scenario, failed) == 0;
  if (isKnown && next.ending.bar != (expected == scenario.after ? measure.barAfter : measure.barBefore))
    problems.push_back("the next start isn't whole");
  return problems;
}

std::string DescribeGrowth(const Measure &measure, const Holdings &before, const Holdings &after) {
  std::string text;
  KeepGrowth(text, "handles", after.handles - before.handles - measure.growth.handles);
  KeepGrowth(text, "GDI objects", after.gdiObjects - before.gdiObjects - measure.growth.gdiObjects);
  KeepGrowth(text, "windows", after.windows - before.windows - measure.growth.windows);
  KeepGrowth(text, "blocks of memory", after.blocks - before.blocks - measure.growth.blocks);
  return text;
}

std::string Join(const Texts &texts) {
  std::string joined;
  for (const std::wstring &text : texts)
    joined += (joined.empty() ? "" : ", ") + tests::Utf8(text);
  return joined;
}

} // namespace lumenor::failing
