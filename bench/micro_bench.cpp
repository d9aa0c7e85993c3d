// Costs that are paid many times a second: an emission on the bus, and a deferred call that is
// added and cancelled. The exit status says whether the limits below hold.

#include <Ecore.h>
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "TslSignalMgr.h"
#include "app-assist/WTimer.h"

namespace {

constexpr double emission_limit_ns = 30.0;
constexpr double timer_limit_ratio = 1.5;

std::atomic<std::size_t> g_allocations{0};

}  // namespace

// Not inlined: the compiler would take the pairs apart and see a malloc that is deleted.
[[gnu::noinline]] void *operator new(std::size_t size) {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void *memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void *memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using app_assist::WTimer;
using app_assist::WTimerWeakPtr;

void emission_with_one_listener(benchmark::State &state) {
    benchmark::IterationCount heard = 0;
    auto &signal = TslSignalMgr::getInstance()->getSignal();
    unsigned int id = signal.addListener([&heard](TslSignalType, void *) { ++heard; });
    const std::size_t before = g_allocations;
    for (auto _ : state) {
        TslSignalMgr::getInstance()->getSignal().emit(SIGNAL_PLAYER_VIEW_PROGRESS_TICK, nullptr);
    }
    state.counters["allocations"] = static_cast<double>(g_allocations - before);
    signal.removeListener(id);
    if (heard != state.iterations()) {
        state.SkipWithError("an emission was lost");
    }
}
BENCHMARK(emission_with_one_listener);

Eina_Bool renew(void *) {
    return ECORE_CALLBACK_RENEW;
}

void bare_timer(benchmark::State &state) {
    for (auto _ : state) {
        Ecore_Timer *timer = ecore_timer_add(1.0, renew, nullptr);
        benchmark::DoNotOptimize(timer);
        ecore_timer_del(timer);
    }
}

void framework_timer(benchmark::State &state) {
    for (auto _ : state) {
        WTimerWeakPtr timer = WTimer::addTimer(
            1.0, [](void *) { return false; }, nullptr);
        benchmark::DoNotOptimize(timer);
        WTimer::destroy(timer);
    }
}

BENCHMARK(bare_timer)->Repetitions(9)->ReportAggregatesOnly();
BENCHMARK(framework_timer)->Repetitions(9)->ReportAggregatesOnly();

/// Keeps what the limits are tested on, beside the usual table.
class Limits : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            const std::string &name = run.run_name.function_name;
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") {
                continue;
            }
            if (name == "emission_with_one_listener") {
                m_emission_ns = run.GetAdjustedCPUTime();
                m_allocations = run.counters.at("allocations");
            } else if (name == "bare_timer") {
                m_bare_ns = run.GetAdjustedCPUTime();
            } else if (name == "framework_timer") {
                m_framework_ns = run.GetAdjustedCPUTime();
            }
        }
    }

    [[nodiscard]] bool hold() const {
        const double ratio = m_framework_ns / m_bare_ns;
        std::printf("emission: %.1f ns (limit %.0f), %.0f allocations (limit 0)\n", m_emission_ns,
                    emission_limit_ns, m_allocations);
        std::printf("timer: %.2f times the bare call (limit %.1f)\n", ratio, timer_limit_ratio);
        return m_emission_ns < emission_limit_ns && m_allocations == 0 &&
               ratio <= timer_limit_ratio;
    }

private:
    double m_emission_ns = 0;
    double m_allocations = 0;
    double m_bare_ns = 0;
    double m_framework_ns = 0;
};

}  // namespace

int main(int argc, char **argv) {
    // The toolkit complains at length about services that a build machine lacks.
    setenv("EINA_LOG_LEVEL", "0", 0);
    setenv("EINA_LOG_BACKTRACE", "-1", 0);

    // In random turns, so that what disturbs the machine disturbs both sides of the comparison.
    std::string interleaved = "--benchmark_enable_random_interleaving=true";
    std::vector<char *> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, interleaved.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    ecore_init();
    Limits limits;
    benchmark::RunSpecifiedBenchmarks(&limits);
    ecore_shutdown();
    return limits.hold() ? 0 : 1;
}
