#pragma once
// What the dock costs, taken again and again, and whether that grows.

#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor::soak {

/// The figures of one moment; a column each, in the order of `figureNames`.
struct Sample {
  int action = 0;
  std::vector<double> figures;
};

class Figures {
public:
  /// Samples also go to the file of that path, a line each.
  explicit Figures(const std::wstring &path);

  /// Takes a sample of the process.
  void Take(int action, DWORD processId);

  /// Prints the medians of the second and of the last tenth of the samples; whether none has grown or shrunk by more
  /// than is allowed. Memory counts only where `memoryCounts`: a short run is still filling what is kept for later.
  bool AreFlat(bool memoryCounts) const;

private:
  double MedianOfTenth(std::size_t tenth, std::size_t figure) const;

  std::wstring path;
  std::vector<Sample> samples;
};

} // namespace lumenor::soak
