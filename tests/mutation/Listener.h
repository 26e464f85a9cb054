#pragma once
// Writes which places each test reached, for script/mutate, which appends this to the copy of the entry function's
// source: a line each of the test, its source, its milliseconds and the places, with tabs between them.

#include <fstream>

namespace {

class ReachedPlaces : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo &) override { mutants::Forget(); }

  void OnTestEnd(const testing::TestInfo &test) override {
    std::ofstream(std::getenv("LUMENOR_REACHED"), std::ios::app)
        << test.test_suite_name() << '.' << test.name() << '\t' << test.file() << '\t' << test.result()->elapsed_time()
        << '\t' << (test.result()->Passed() ? "passed" : "failed") << '\t' << mutants::Reached() << '\n';
  }
};

[[maybe_unused]] const bool listens = [] {
  if (std::getenv("LUMENOR_REACHED") != nullptr)
    testing::UnitTest::GetInstance()->listeners().Append(new ReachedPlaces);
  return true;
}();

} // namespace
