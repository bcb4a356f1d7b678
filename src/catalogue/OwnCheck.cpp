// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/OwnCheck.h"

#include <utility>

namespace brevok {

OwnCheck::OwnCheck(Request plugins, Request packages, QObject *parent)
    : QObject(parent)
    , m_plugins(std::move(plugins))
    , m_packages(std::move(packages))
{
}

OwnCheck::~OwnCheck() = default;

void OwnCheck::begin(const Handler &ended)
{
    const auto run = std::make_shared<Run>();
    m_run = run;
    m_phase = Phase::Asking; // what a failed check found is told with the next good one
    m_plugins([this, run, ended](const std::optional<BrevokError> &error) {
        run->end.plugins = error;
        finish(run, ended);
    });
    m_packages([this, run, ended](const std::optional<BrevokError> &error) {
        run->end.packages = error;
        finish(run, ended);
    });
}

void OwnCheck::finish(const std::shared_ptr<Run> &run, const Handler &ended)
{
    if (--run->open > 0) {
        return;
    }
    const auto &[plugins, packages] = run->end;
    if (run == m_run) {
        m_run.reset();
        if (const auto &error = packages ? packages : plugins) {
            Q_EMIT failed(*error);
        } else {
            m_phase = Phase::Answered;
            Q_EMIT answered();
        }
    }
    if (ended) {
        ended(run->end);
    }
}

void OwnCheck::add(const QString &name)
{
    if (m_phase != Phase::Idle) {
        m_found.append(name);
    }
}

QStringList OwnCheck::takeResult()
{
    m_phase = Phase::Idle;
    return std::exchange(m_found, {});
}

} // namespace brevok
