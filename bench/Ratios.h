// The figures of a run, and how they stand to each other.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "bench/Operation.h"

// What a benchmark took in each round, seconds.
using Rounds = std::vector<double>;

class CFigures : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    bool Empty() const { return m_rounds.empty(); }
    // Empty for a benchmark that did not run.
    Rounds Of(const std::string& benchmark) const;

  private:
    std::map<std::string, Rounds> m_rounds;
};

// How an operation stands to something else.
struct Ratio {
    const char* to;
    const char* what;
    double seconds;     // what that takes; 0 for no figure
    double value;       // how many times its time ours is, or ours its; 0 where one of them was not measured
    bool least;         // the limit is to be reached, not to be kept to
    double limit;       // 0 for none
    const char* fault;  // null for none
};

struct Result {
    std::string name;  // of the operation, with the days of the history that it was measured on
    double seconds;
    std::array<Ratio, 3> ratios;  // to the floor, the plain way, the shortest history
};

// Makes the benchmarks of `operations` known to Google Benchmark: several rounds, in each of which an
// operation and what stands beside it follow each other. A ratio is the median of those of the rounds, so
// that a disk or a processor that is busy for a while moves both sides of it, or spoils a round.
void Register(const Operations& operations);
// What came of them. A ratio without a value is a fault only when `all` were to run.
std::vector<Result> Judge(const Operations& operations, const CFigures& figures, bool all);
void Print(const std::vector<Result>& results);
// Adds the ratios to the JSON file that Google Benchmark wrote. False when that cannot be done.
bool AddToJson(const char* path, const std::vector<Result>& results);
