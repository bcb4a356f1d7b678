// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationSearch.h"
#include "platform/HelperTool.h"
#include "platform/RunningApplications.h"

namespace brevok::testing {

/// A search whose results and notifications the test gives.
class FakeApplicationSearch final : public ApplicationSearch {
public:
    using ApplicationSearch::ApplicationSearch;

    QStringList patterns;
    QStringList found;
    QStringList searched;
    bool running = false;

    void start(const QStringList &namePatterns) override
    {
        patterns = namePatterns;
        running = true;
    }
    void stop() override { running = false; }
    [[nodiscard]] QStringList results() const override { return found; }
    [[nodiscard]] QStringList folders() const override { return searched; }
};

/// Applications that the test says are running. Set before background work starts.
class FakeRunningApplications final : public RunningApplications {
public:
    QList<RunningApplication> running;
    QList<qint64> terminated;

    [[nodiscard]] QList<RunningApplication> list() const override { return running; }
    bool terminate(const RunningApplication &application) override
    {
        terminated.append(application.processId);
        return true;
    }
};

} // namespace brevok::testing
