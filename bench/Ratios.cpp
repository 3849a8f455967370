#include "bench/Ratios.h"

#include <cJSON.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

constexpr int kRounds = 5;
constexpr char kFloor[] = "/floor";
constexpr char kPlain[] = "/plain";

void Register(const std::string& name, const Measured& run, const Operation& operation) {
    if (run == nullptr) return;
    benchmark::internal::Benchmark* added = benchmark::RegisterBenchmark(name.c_str(), run)->UseRealTime();
    if (!operation.onHistory) return;
    for (const int days : kHistoryDays) added->Arg(days);
}

// What the names of its benchmarks end in.
std::vector<std::string> Suffixes(const Operation& operation) {
    if (!operation.onHistory) return {""};
    std::vector<std::string> suffixes;
    for (const int days : kHistoryDays) suffixes.push_back("/" + std::to_string(days));
    return suffixes;
}

// 0 of none.
double Median(Rounds rounds) {
    std::sort(rounds.begin(), rounds.end());
    return rounds.empty() ? 0 : rounds[rounds.size() / 2];
}

Ratio Compare(const char* to, const char* what, const Rounds& own, const Rounds& other, bool least,
              double limit, bool all) {
    if (what == nullptr) return {to, nullptr, 0, 0, least, 0, nullptr};
    Rounds ratios;
    for (std::size_t i = 0; i < std::min(own.size(), other.size()); ++i) {
        const double longer = least ? other[i] : own[i];
        const double shorter = least ? own[i] : other[i];
        ratios.push_back(shorter > 0 ? longer / shorter : 0);
    }
    const double value = Median(ratios);
    const char* fault = nullptr;
    if (value == 0)
        fault = all ? "MISSING" : nullptr;
    else if (limit > 0 && (least ? value < limit : value > limit))
        fault = "BEYOND";
    return {to, what, Median(other), value, least, limit, fault};
}

// As in "1.23 ms".
std::string TimeText(double seconds) {
    if (seconds == 0) return "";
    const char* const units[] = {"s", "ms", "us", "ns"};
    std::size_t unit = 0;
    for (; seconds < 0.9995 && unit + 1 < std::size(units); ++unit) seconds *= 1000;
    char text[32];
    std::snprintf(text, sizeof text, "%.*f %s", seconds < 10 ? 2 : (seconds < 100 ? 1 : 0), seconds,
                  units[unit]);
    return text;
}

void PrintRatio(const Ratio& ratio) {
    char value[32] = "";
    char limit[32] = "";
    if (ratio.value > 0) std::snprintf(value, sizeof value, "%.*f", ratio.value < 100 ? 2 : 0, ratio.value);
    if (ratio.limit > 0) std::snprintf(limit, sizeof limit, "%s%.3g", ratio.least ? ">=" : "<=", ratio.limit);
    std::printf(" %7s %-5s", value, limit);
}

void AddRatio(cJSON* list, const Result& result, const Ratio& ratio) {
    cJSON* entry = cJSON_CreateObject();
    cJSON_AddStringToObject(entry, "name", result.name.c_str());
    cJSON_AddStringToObject(entry, "to", ratio.to);
    cJSON_AddStringToObject(entry, "what", ratio.what);
    cJSON_AddNumberToObject(entry, "seconds", result.seconds);
    cJSON_AddNumberToObject(entry, "other_seconds", ratio.seconds);
    cJSON_AddNumberToObject(entry, "ratio", ratio.value);
    if (ratio.limit > 0) cJSON_AddNumberToObject(entry, ratio.least ? "least" : "most", ratio.limit);
    cJSON_AddBoolToObject(entry, "within", static_cast<int>(ratio.fault == nullptr));
    cJSON_AddItemToArray(list, entry);
}

}  // namespace

bool CFigures::ReportContext(const Context& context) {
    PrintBasicContext(&std::cerr, context);
    return true;
}

void CFigures::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration) continue;
        std::string name = run.run_name.function_name;
        if (!run.run_name.args.empty()) name += "/" + run.run_name.args;
        m_rounds[name].push_back(run.real_accumulated_time / static_cast<double>(run.iterations));
    }
}

Rounds CFigures::Of(const std::string& benchmark) const {
    const auto found = m_rounds.find(benchmark);
    return found != m_rounds.end() ? found->second : Rounds{};
}

void Register(const Operations& operations) {
    for (int round = 0; round < kRounds; ++round)
        for (const Operation& operation : operations) {
            const std::string name = operation.name;
            Register(name, operation.run, operation);
            Register(name + kFloor, operation.floor.run, operation);
            if (round == 0 || !operation.plain.once) Register(name + kPlain, operation.plain.run, operation);
        }
}

std::vector<Result> Judge(const Operations& operations, const CFigures& figures, bool all) {
    std::vector<Result> results;
    for (const Operation& operation : operations) {
        const std::vector<std::string> suffixes = Suffixes(operation);
        for (const std::string& suffix : suffixes) {
            const auto rounds = [&](std::string part, const std::string& days) {
                return figures.Of(operation.name + part.append(days));
            };
            const Rounds own = rounds("", suffix);
            if (own.empty() && !all) continue;
            const char* const day = suffix != suffixes.front() ? "one day" : nullptr;
            const double growthLimit = suffix == suffixes.back() ? operation.growthLimit : 0;
            const Reference& floor = operation.floor;
            const Reference& plain = operation.plain;
            results.push_back(
                {operation.name + suffix,
                 Median(own),
                 {Compare("floor", floor.what, own, rounds(kFloor, suffix), false, floor.limit, all),
                  Compare("plain way", plain.what, own, rounds(kPlain, suffix), true, plain.limit, all),
                  Compare("one day", day, own, rounds("", suffixes.front()), false, growthLimit, all)}});
        }
    }
    return results;
}

void Print(const std::vector<Result>& results) {
    std::printf("\n%-27s %8s %9s %-17s %7s %-5s %9s %-21s %7s %-5s %7s %-5s\n", "operation", "time", "floor",
                "", "ratio", "limit", "plain way", "", "ratio", "limit", "x 1 day", "limit");
    for (const Result& result : results) {
        const auto& [floor, plain, day] = result.ratios;
        const auto what = [](const Ratio& ratio) { return ratio.what != nullptr ? ratio.what : ""; };
        std::printf("%-27s %8s %9s %-17s", result.name.c_str(), TimeText(result.seconds).c_str(),
                    TimeText(floor.seconds).c_str(), what(floor));
        PrintRatio(floor);
        std::printf(" %9s %-21s", TimeText(plain.seconds).c_str(), what(plain));
        PrintRatio(plain);
        PrintRatio(day);
        for (const Ratio& ratio : result.ratios)
            if (ratio.fault != nullptr) std::printf(" %s: %s", ratio.fault, ratio.to);
        std::puts("");
    }
    std::puts(
        "Times and ratios are medians of their own: a ratio is not the quotient of the times beside it.");
}

bool AddToJson(const char* path, const std::vector<Result>& results) {
    std::ifstream in(path);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    cJSON* document = cJSON_Parse(text.c_str());
    cJSON* list = cJSON_AddArrayToObject(document, "ratios");
    if (list == nullptr) {
        cJSON_Delete(document);
        return false;
    }
    for (const Result& result : results)
        for (const Ratio& ratio : result.ratios)
            if (ratio.value > 0) AddRatio(list, result, ratio);
    char* printed = cJSON_Print(document);
    cJSON_Delete(document);
    std::ofstream out(path);
    out << (printed != nullptr ? printed : "") << "\n";
    std::free(printed);
    return printed != nullptr && out.flush().good();
}
