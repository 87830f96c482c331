// TSortedList against a sorted std::vector searched with std::lower_bound, side by side:
// adding a million pointers in ascending order, adding ten thousand random pointers to a
// list of a million, and finding a million random present pointers in a list of a million.
// At the end the ratio of each pair (list time / vector time) is printed.

#include "foundation/ideLib_sortedlist.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

using kv::TSortedList;
using Pointers = std::vector<void *>;

constexpr size_t kBig = 1'000'000;
constexpr size_t kFew = 10'000;

void *Addr(quintptr value)
{
    return reinterpret_cast<void *>(value);
}

// Even addresses spread over the whole address range, ascending; the odd ones between them
// are never present.
const Pointers &Ascending()
{
    static const Pointers pointers = [] {
        Pointers result(kBig);
        const quintptr step = (UINTPTR_MAX / kBig) & ~quintptr(0xF);
        for (size_t i = 0; i < kBig; ++i)
            result[i] = Addr(16 + i * step);
        return result;
    }();
    return pointers;
}

const Pointers &ShuffledPresent()
{
    static const Pointers pointers = [] {
        Pointers result = Ascending();
        std::shuffle(result.begin(), result.end(), std::mt19937_64(1));
        return result;
    }();
    return pointers;
}

const Pointers &RandomAbsent()
{
    static const Pointers pointers = [] {
        std::mt19937_64 random(2);
        std::uniform_int_distribution<size_t> index(0, kBig - 1);
        Pointers result(kFew);
        for (void *&p : result)
            p = Addr(quintptr(Ascending()[index(random)]) + 8);
        return result;
    }();
    return pointers;
}

// The vector's counterpart of TSortedList::Add in dupIgnore mode.
void VectorAdd(Pointers &v, void *p)
{
    const auto it = std::lower_bound(v.begin(), v.end(), p, std::less<>());
    if (it == v.end() || *it != p)
        v.insert(it, p);
}

void FillList(TSortedList &list)
{
    list.Clear();
    for (void *p : Ascending())
        list.Add(p);
}

void BM_AddAscending1M_SortedList(benchmark::State &state)
{
    for (auto _ : state) {
        TSortedList list;
        for (void *p : Ascending())
            list.Add(p);
        benchmark::DoNotOptimize(list.Count());
    }
}

void BM_AddAscending1M_Vector(benchmark::State &state)
{
    for (auto _ : state) {
        Pointers v;
        for (void *p : Ascending())
            VectorAdd(v, p);
        benchmark::DoNotOptimize(v.size());
    }
}

void BM_AddRandom10kTo1M_SortedList(benchmark::State &state)
{
    TSortedList list;
    for (auto _ : state) {
        state.PauseTiming();
        FillList(list);
        state.ResumeTiming();
        for (void *p : RandomAbsent())
            list.Add(p);
        benchmark::DoNotOptimize(list.Count());
    }
}

void BM_AddRandom10kTo1M_Vector(benchmark::State &state)
{
    Pointers v;
    for (auto _ : state) {
        state.PauseTiming();
        v = Ascending();
        state.ResumeTiming();
        for (void *p : RandomAbsent())
            VectorAdd(v, p);
        benchmark::DoNotOptimize(v.size());
    }
}

void BM_Find1MIn1M_SortedList(benchmark::State &state)
{
    TSortedList list;
    FillList(list);
    for (auto _ : state) {
        size_t found = 0;
        qsizetype index = 0;
        for (void *p : ShuffledPresent())
            found += list.Find(p, index);
        if (found != kBig)
            state.SkipWithError("a present pointer was not found");
        benchmark::DoNotOptimize(found);
    }
}

void BM_Find1MIn1M_Vector(benchmark::State &state)
{
    const Pointers v = Ascending();
    for (auto _ : state) {
        size_t found = 0;
        for (void *p : ShuffledPresent()) {
            const auto it = std::lower_bound(v.begin(), v.end(), p, std::less<>());
            found += it != v.end() && *it == p;
        }
        if (found != kBig)
            state.SkipWithError("a present pointer was not found");
        benchmark::DoNotOptimize(found);
    }
}

// The machine is shared: each pair is compared by its fastest repetition, the one least
// disturbed by other work.
double Fastest(const std::vector<double> &times)
{
    return *std::min_element(times.begin(), times.end());
}

void Configure(benchmark::internal::Benchmark *b, int repetitions)
{
    b->Unit(benchmark::kMillisecond)
        ->Repetitions(repetitions)
        ->ComputeStatistics("min", Fastest)
        ->DisplayAggregatesOnly(true);
}

BENCHMARK(BM_AddAscending1M_SortedList)->Apply([](auto *b) { Configure(b, 9); });
BENCHMARK(BM_AddAscending1M_Vector)->Apply([](auto *b) { Configure(b, 9); });
BENCHMARK(BM_AddRandom10kTo1M_SortedList)->Apply([](auto *b) { Configure(b, 3); });
BENCHMARK(BM_AddRandom10kTo1M_Vector)->Apply([](auto *b) { Configure(b, 3); });
BENCHMARK(BM_Find1MIn1M_SortedList)->Apply([](auto *b) { Configure(b, 9); });
BENCHMARK(BM_Find1MIn1M_Vector)->Apply([](auto *b) { Configure(b, 9); });

// The console report, then one line per pair: how many times the vector's time the
// list takes.
class TRatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.error_occurred)
                continue;
            // The fastest repetition when there are several, else the one run.
            const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
            if (!single && !(run.run_type == Run::RT_Aggregate && run.aggregate_name == "min"))
                continue;
            const std::string name = run.run_name.function_name;
            const size_t split = name.rfind('_');
            if (split != std::string::npos)
                m_times[name.substr(0, split)][name.substr(split + 1)] = {run.GetAdjustedRealTime(),
                                                                          run.GetAdjustedCPUTime()};
        }
    }

    void Finalize() override
    {
        ConsoleReporter::Finalize();
        std::printf("\nTSortedList time / sorted std::vector + lower_bound time, fastest"
                    " repetitions (goal: at most 1.5)\n");
        for (const auto &[test, times] : m_times) {
            const auto list = times.find("SortedList");
            const auto vector = times.find("Vector");
            if (list == times.end() || vector == times.end())
                continue;
            std::printf("  %-20s real %.2f   cpu %.2f\n", test.c_str() + 3,
                        list->second.Real / vector->second.Real, list->second.Cpu / vector->second.Cpu);
        }
    }

private:
    struct Times
    {
        double Real = 0;
        double Cpu = 0;
    };
    std::map<std::string, std::map<std::string, Times>> m_times;
};

} // namespace

int main(int argc, char **argv)
{
#if defined(__GLIBC__)
    // Keep large blocks on the heap: otherwise glibc moves its mmap threshold as the first
    // big blocks are freed, and whichever side runs later reuses warm pages that the other
    // had to fault in.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
#endif
    // Repetitions of the two sides are interleaved, so that a change in the machine's load
    // falls on both; a flag on the command line overrides this.
    std::vector<char *> args(argv, argv + argc);
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    args.insert(args.begin() + 1, interleave);
    argc = int(args.size());
    argv = args.data();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    TRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
