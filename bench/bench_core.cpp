// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Each benchmark of ours stands beside its yardstick; run with random interleaving, their repetitions are
// pairs.

#include "InstallWorkload.h"
#include "Workloads.h"

#include <benchmark/benchmark.h>

#include <QJsonDocument>

using namespace brevok;

namespace {

constexpr int listLength = 20000;

void pluginListYardstick(benchmark::State &state)
{
    const QByteArray list = bench::pluginList(listLength);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(QJsonDocument::fromJson(list));
    }
}

void pluginListOurs(benchmark::State &state)
{
    const QByteArray list = bench::pluginList(listLength);
    bench::ListWorkload workload;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        workload.startAnew();
        state.ResumeTiming();
        bench::require(workload.runAgain(list) == listLength / 10);
    }
}

void pluginListAgain(benchmark::State &state)
{
    const QByteArray list = bench::pluginList(listLength);
    bench::ListWorkload workload;
    workload.run(list);
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.runAgain(list) == listLength / 10);
    }
}

void install(benchmark::State &state, int definitions)
{
    bench::InstallWorkload workload(definitions);
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.install() == bench::InstallWorkload::several);
        state.PauseTiming();
        workload.remove();
        state.ResumeTiming();
    }
}

void installBesideFew(benchmark::State &state)
{
    install(state, 100);
}

void installBesideMany(benchmark::State &state)
{
    install(state, listLength);
}

bench::StatusWorkload &statusWorkload()
{
    static bench::StatusWorkload workload;
    return workload;
}

void statusYardstick(benchmark::State &state)
{
    const bench::StatusWorkload &workload = statusWorkload();
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.readPropertyLists() == 3000);
    }
}

void statusFirst(benchmark::State &state)
{
    const bench::StatusWorkload &workload = statusWorkload();
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.runFirst() == 300);
    }
}

void statusAgain(benchmark::State &state)
{
    bench::StatusWorkload &workload = statusWorkload();
    for ([[maybe_unused]] auto _ : state) {
        bench::require(workload.run() == 300);
    }
}

BENCHMARK(pluginListYardstick)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(pluginListOurs)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(pluginListAgain)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(installBesideFew)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(installBesideMany)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK(statusYardstick)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(statusFirst)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(statusAgain)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

} // namespace
