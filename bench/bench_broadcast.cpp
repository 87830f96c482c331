// One message to 10,000 notifiers through the registry, against a plain loop over a
// std::vector of the same notifiers; and the same for a notifier list against a vector of
// the same methods. Goal: cost per notifier within 2x of the plain loop.
// "per_notifier" is the time per notifier reached.

#include "foundation/ideSystem_notifierlist.h"
#include "foundation/ideSystem_notifiers.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr int NotifierCount = 10'000;

class TCounter final : public kv::INotifier
{
public:
    void Dispatch(kv::TMessage &Message) override
    {
        if (Message.Msg == kv::CM_PROPCHANGED)
            ++Count;
    }
    size_t Count = 0;
};

struct TListener
{
    size_t Count = 0;
    void Notify(QObject *, qintptr wParam, qintptr) { Count += size_t(wParam); }
};

// Makes its neighbour leave and rejoin the registry while a broadcast is under way, so that
// every later notifier of that broadcast is checked for still being registered.
class TChurner final : public kv::INotifier
{
public:
    explicit TChurner(kv::INotifier *neighbour) : m_neighbour(neighbour) {}
    void Dispatch(kv::TMessage &) override
    {
        kv::UnregisterNotifier(m_neighbour);
        kv::RegisterNotifier(m_neighbour);
    }

private:
    kv::INotifier *m_neighbour;
};

std::vector<std::unique_ptr<TCounter>> MakeCounters()
{
    std::vector<std::unique_ptr<TCounter>> counters;
    for (int i = 0; i < NotifierCount; ++i)
        counters.push_back(std::make_unique<TCounter>());
    return counters;
}

void SetPerNotifier(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * NotifierCount);
    state.counters["per_notifier"] = benchmark::Counter(
        NotifierCount, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void PlainLoop(benchmark::State &state)
{
    const auto counters = MakeCounters();
    std::vector<kv::INotifier *> notifiers;
    for (const auto &c : counters)
        notifiers.push_back(c.get());
    for (auto _ : state) {
        kv::TMessage message{kv::CM_PROPCHANGED, 0, 0, 0};
        for (auto it = notifiers.rbegin(); it != notifiers.rend(); ++it)
            (*it)->Dispatch(message);
        benchmark::DoNotOptimize(message);
    }
    SetPerNotifier(state);
}

void Broadcast(benchmark::State &state)
{
    const auto counters = MakeCounters();
    for (const auto &c : counters)
        kv::RegisterNotifier(c.get());
    for (auto _ : state)
        benchmark::DoNotOptimize(kv::BroadCastToNotifiers(nullptr, kv::CM_PROPCHANGED, 0, 0));
    SetPerNotifier(state);
    for (const auto &c : counters)
        kv::UnregisterNotifier(c.get());
}

// The slow path: a removal early in every broadcast.
void BroadcastWithRemoval(benchmark::State &state)
{
    const auto counters = MakeCounters();
    for (const auto &c : counters)
        kv::RegisterNotifier(c.get());
    TCounter neighbour;
    kv::RegisterNotifier(&neighbour);
    TChurner churner(&neighbour);
    kv::RegisterNotifier(&churner);
    for (auto _ : state)
        benchmark::DoNotOptimize(kv::BroadCastToNotifiers(nullptr, kv::CM_PROPCHANGED, 0, 0));
    SetPerNotifier(state);
    kv::UnregisterNotifier(&churner);
    kv::UnregisterNotifier(&neighbour);
    for (const auto &c : counters)
        kv::UnregisterNotifier(c.get());
}

void PlainMethodLoop(benchmark::State &state)
{
    std::vector<TListener> listeners(NotifierCount);
    std::vector<kv::TNotifierProc> methods;
    for (TListener &l : listeners)
        methods.push_back(kv::TNotifierProc::Of<&TListener::Notify>(&l));
    for (auto _ : state) {
        for (auto it = methods.rbegin(); it != methods.rend(); ++it)
            (*it)(nullptr, 1, 0);
    }
    benchmark::DoNotOptimize(listeners.front().Count);
    SetPerNotifier(state);
}

void NotifyEvents(benchmark::State &state)
{
    std::vector<TListener> listeners(NotifierCount);
    kv::TNotifierList list;
    for (TListener &l : listeners)
        list.AddMethod(kv::TNotifierProc::Of<&TListener::Notify>(&l));
    for (auto _ : state)
        list.NotifyEvents(nullptr, 1, 0);
    benchmark::DoNotOptimize(listeners.front().Count);
    SetPerNotifier(state);
}

} // namespace

BENCHMARK(PlainLoop);
BENCHMARK(Broadcast);
BENCHMARK(BroadcastWithRemoval);
BENCHMARK(PlainMethodLoop);
BENCHMARK(NotifyEvents);

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    kv::FinalizeNotifiers();
    return 0;
}
