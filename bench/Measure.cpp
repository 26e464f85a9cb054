#include "Measure.h"

#include <cstdio>

namespace lumenor::bench {
namespace {

int shortfalls = 0;

void Report(const std::string &name, double value, const std::string &unit, const char *word, double limit,
            bool holds) {
  std::printf("%-58s %10.3f %-6s %s %g  %s\n", name.c_str(), value, unit.c_str(), word, limit, holds ? "ok" : "SHORT");
  std::fflush(stdout);
  shortfalls += !holds;
}

} // namespace

double Median(std::vector<double> values) {
  if (values.empty())
    return 0;
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Pair MedianOfTurns(int rounds, const std::function<double()> &subject, const std::function<double()> &floor) {
  std::vector<double> subjects, floors;
  for (int i = 0; i < rounds; ++i) {
    subjects.push_back(subject());
    floors.push_back(floor());
  }
  return {Median(subjects), Median(floors)};
}

void ReportAtMost(const std::string &name, double value, const std::string &unit, double limit) {
  Report(name, value, unit, "at most", limit, value <= limit);
}

void ReportAtLeast(const std::string &name, double value, const std::string &unit, double limit) {
  Report(name, value, unit, "at least", limit, value >= limit);
}

std::string Format(const char *format, double a, double b) {
  char text[160];
  std::snprintf(text, sizeof(text), format, a, b);
  return text;
}

void Note(const std::string &text) {
  std::printf("    %s\n", text.c_str());
  std::fflush(stdout);
}

int Shortfalls() { return shortfalls; }

} // namespace lumenor::bench
