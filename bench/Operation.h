// What is measured, and what stands beside each figure of the same run.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

using Measured = std::function<void(benchmark::State&)>;

// Another way to the same result.
struct Reference {
    const char* what = nullptr;  // null where there is none
    Measured run{};
    double limit = 0;   // of the ratio, see Operation; 0 for none
    bool once = false;  // it takes seconds: one round has to do
};

struct Operation {
    const char* name;
    Measured run;
    Reference floor{};       // what cannot be saved; the limit is how many times that the operation may take
    Reference plain{};       // the plain way; the limit is how many times the operation it has to take
    bool onHistory = false;  // measured on a history of each of kHistoryDays, which is the run's argument
    double growthLimit = 0;  // how many times what it takes on the shortest of them it may on the longest
};

inline constexpr int kHistoryDays[] = {1, 365, 3650};

using Operations = std::vector<Operation>;

Operations TickOperations();
Operations BurstOperations();
Operations HistoryOperations();
Operations MessageOperations();
Operations StartOperations();
