// Destroying QObjects while some of them are watched for their end, against destroying
// the same number of unwatched objects. Goal: cost per destruction within 1.3x.

#include "shell/ideHook.h"

#include <QCoreApplication>
#include <QObject>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int ObjectCount = 100'000;

struct TSink
{
    size_t Calls = 0;
    void Freed(const void *) { ++Calls; }
};

// Qt's own share: the same objects connected to QObject::destroyed with nothing behind it.
void DestroyConnectedObjects(benchmark::State &state)
{
    const int connectEvery = int(state.range(0));
    size_t calls = 0;
    QObject receiver;
    std::vector<QObject *> objects(ObjectCount);
    for (auto _ : state) {
        state.PauseTiming();
        for (int i = 0; i < ObjectCount; ++i) {
            objects[i] = new QObject;
            if (i % connectEvery == 0)
                QObject::connect(objects[i], &QObject::destroyed, &receiver, [&calls] { ++calls; });
        }
        state.ResumeTiming();
        for (QObject *obj : objects)
            delete obj;
    }
    state.SetItemsProcessed(state.iterations() * ObjectCount);
    state.counters["notified"] = double(calls);
}

void DestroyObjects(benchmark::State &state)
{
    const int watchEvery = int(state.range(0)); // 0: none watched
    TSink sink;
    const kv::TFreeNotifyMethod method = kv::TFreeNotifyMethod::Of<&TSink::Freed>(&sink);
    std::vector<QObject *> objects(ObjectCount);
    for (auto _ : state) {
        state.PauseTiming();
        for (int i = 0; i < ObjectCount; ++i) {
            objects[i] = new QObject;
            if (watchEvery && i % watchEvery == 0)
                kv::kvAddFreeNotification(objects[i], method);
        }
        state.ResumeTiming();
        for (QObject *obj : objects)
            delete obj;
    }
    state.SetItemsProcessed(state.iterations() * ObjectCount);
    state.counters["notified"] = double(sink.Calls);
}

} // namespace

BENCHMARK(DestroyObjects)->Arg(0)->ArgName("unwatched")->Unit(benchmark::kMillisecond);
BENCHMARK(DestroyObjects)->Arg(10)->ArgName("watch_every")->Unit(benchmark::kMillisecond);
BENCHMARK(DestroyConnectedObjects)->Arg(10)->ArgName("qt_connection_every")->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
