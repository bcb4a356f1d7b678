// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What the jobs of the catalogue cost by its number of packages: each has a build for every host version, and
// is installed in one target where statuses are looked at.

#include "InstallWorkload.h"
#include "Workloads.h"

#include <benchmark/benchmark.h>

using namespace brevok;

namespace {

constexpr int buildsOfPackage = 10;

int packages(const benchmark::State &state)
{
    return static_cast<int>(state.range(0));
}

void refreshAllNew(benchmark::State &state)
{
    const QByteArray list = bench::pluginList(packages(state) * buildsOfPackage);
    bench::ListWorkload workload;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        workload.startAnew();
        state.ResumeTiming();
        bench::require(workload.runAgain(list) == packages(state));
    }
}

void refreshUnchanged(benchmark::State &state)
{
    const QByteArray list = bench::pluginList(packages(state) * buildsOfPackage);
    bench::ListWorkload workload;
    workload.run(list);
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.runAgain(list) == packages(state));
    }
}

void statusFirst(benchmark::State &state)
{
    const bench::StatusWorkload workload(packages(state), 1);
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.runFirst() == packages(state));
    }
}

void statusAgain(benchmark::State &state)
{
    bench::StatusWorkload workload(packages(state), 1);
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.run() == packages(state));
    }
}

void installOne(benchmark::State &state)
{
    bench::InstallWorkload workload(packages(state) * buildsOfPackage, 1);
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.install() == 1);
        state.PauseTiming();
        workload.remove();
        state.ResumeTiming();
    }
}

void inSizes(benchmark::internal::Benchmark *benchmark)
{
    constexpr int least = 10;
    constexpr int most = 10000;
    benchmark->RangeMultiplier(10)->Range(least, most)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(refreshAllNew)->Apply(inSizes);
BENCHMARK(refreshUnchanged)->Apply(inSizes);
BENCHMARK(statusFirst)->Apply(inSizes);
BENCHMARK(statusAgain)->Apply(inSizes);
BENCHMARK(installOne)->Apply(inSizes);

} // namespace
