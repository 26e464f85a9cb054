#pragma once
// Rounds, medians and the report of the benchmarks.

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace lumenor::bench {

using Clock = std::chrono::steady_clock;

/// Microseconds that `body` takes.
template <typename Body> double Microseconds(Body &&body) {
  const auto begin = Clock::now();
  body();
  return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
}

/// The middle value; of an even count the mean of the middle two.
double Median(std::vector<double> values);

/// The medians of two bodies run in turns, so that whatever else the machine does falls on both alike.
struct Pair {
  double subject;
  double floor;
};
Pair MedianOfTurns(int rounds, const std::function<double()> &subject, const std::function<double()> &floor);

/// Prints one line, "<name>: <value> <unit> (at most|at least <limit>) ok|SHORT", and remembers a shortfall.
void ReportAtMost(const std::string &name, double value, const std::string &unit, double limit);
void ReportAtLeast(const std::string &name, double value, const std::string &unit, double limit);

/// One or two numbers in a sentence.
std::string Format(const char *format, double a, double b = 0);

/// Prints a figure that belongs to the line before it.
void Note(const std::string &text);

/// How many lines fell short.
int Shortfalls();

} // namespace lumenor::bench
