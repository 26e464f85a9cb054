#include "soak/Figures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "e2e/ProcessFigures.h"
#include "support/TestFolders.h"

namespace lumenor::soak {
namespace {

constexpr double tolerance = 0.02; // of the earlier figure
constexpr std::size_t fewestSamples = 20;

struct Figure {
  const char *name;
  double slack; // allowed whatever the tolerance gives: 2 % of few is less than one
  bool isMemory;
};

// The bar keeps the rows of the former list, and what a button shows under the cursor once it was there.
constexpr Figure columns[] = {{"handles", 2, false}, {"GDI objects", 12, false}, {"windows", 3, false},
                              {"threads", 1, false}, {"private MB", 0.5, true},  {"working set MB", 0.5, true}};

/// The smallest of a few looks: a repaint that runs meanwhile has objects of its own.
int SettledGdiObjects(DWORD processId) {
  int fewest = e2e::GdiObjectCount(processId);
  for (int look = 0; look < 4; ++look) {
    ::Sleep(20);
    fewest = std::min(fewest, e2e::GdiObjectCount(processId));
  }
  return fewest;
}

void Append(const std::wstring &path, const std::string &line) {
  if (std::FILE *const file = ::_wfopen(path.c_str(), L"ab")) {
    std::fputs(line.c_str(), file);
    std::fclose(file);
  }
}

std::string Text(double number) {
  char text[40];
  std::snprintf(text, sizeof text, ",%.1f", number);
  return text;
}

} // namespace

Figures::Figures(const std::wstring &path) : path(path) {
  std::string header = "action";
  for (const Figure &column : columns)
    header += std::string(",") + column.name;
  tests::WriteBytes(path, header + "\n");
}

void Figures::Take(int action, DWORD processId) {
  Sample sample{action,
                {static_cast<double>(e2e::HandleCount(processId)), static_cast<double>(SettledGdiObjects(processId)),
                 static_cast<double>(e2e::WindowCount(processId)), static_cast<double>(e2e::ThreadCount(processId)),
                 e2e::PrivateMegabytes(processId), e2e::WorkingSetMegabytes(processId)}};
  std::string line = std::to_string(action);
  for (const double figure : sample.figures)
    line += Text(figure);
  Append(path, line + "\n");
  samples.push_back(std::move(sample));
}

/// `tenth` from 0 to 9, and there are enough samples.
double Figures::MedianOfTenth(std::size_t tenth, std::size_t figure) const {
  std::vector<double> values;
  for (std::size_t i = samples.size() * tenth / 10; i < samples.size() * (tenth + 1) / 10; ++i)
    values.push_back(samples[i].figures[figure]);
  std::ranges::sort(values);
  return values[values.size() / 2];
}

bool Figures::AreFlat(bool memoryCounts) const {
  if (samples.size() < fewestSamples) {
    std::printf("only %u samples, too few to compare\n", static_cast<unsigned>(samples.size()));
    return false;
  }
  bool areFlat = true;
  std::printf("%-16s %12s %12s   of %u samples\n", "median", "second tenth", "last tenth",
              static_cast<unsigned>(samples.size()));
  for (std::size_t i = 0; i < std::size(columns); ++i) {
    const double early = MedianOfTenth(1, i), late = MedianOfTenth(9, i);
    const bool isFlat = early > 0 && std::abs(late - early) <= std::max(early * tolerance, columns[i].slack);
    const bool counts = memoryCounts || !columns[i].isMemory;
    std::printf("%-16s %12.1f %12.1f   %s\n", columns[i].name, early, late,
                isFlat   ? "flat"
                : counts ? "NOT FLAT"
                         : "not compared in a run this short");
    areFlat = areFlat && (isFlat || !counts);
  }
  return areFlat;
}

} // namespace lumenor::soak
