// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HelperTool.h"

#include <QProcess>

namespace brevok {

/// The helper on the system's bus. A packaged one is simply there; a program that has one beside itself, as
/// in a build tree, installs that through pkexec, which asks the user. Without a system bus nobody is asked
/// for anything. One job at a time, as the installer works.
class BusHelperTool final : public HelperTool {
public:
    /// The system's statuses, by their numbers.
    enum Status { Granted = 0, Denied = -60005, Cancelled = -60006, Unavailable = -60008 };

    /// @p setUp is the helper to install where there is none, with options; @p authorizer the command that
    /// runs it as root.
    BusHelperTool(QStringList setUp, QStringList authorizer);
    /// With the helper beside this program, and pkexec.
    BusHelperTool();
    ~BusHelperTool() override;

    [[nodiscard]] Connection connection(bool mayAsk) override;
    /// Starts the helper's own set-up as root; the right is held until bless(), or a removal that failed.
    [[nodiscard]] int createAuthorization() override;
    [[nodiscard]] int makeExternalForm() override;
    [[nodiscard]] bool removeJob(std::optional<BrevokError> *error) override;
    [[nodiscard]] bool bless(std::optional<BrevokError> *error) override;
    void clearLeftovers() override;

private:
    [[nodiscard]] bool order(const QByteArray &command, std::optional<BrevokError> *error);

    QStringList m_setUp;
    QStringList m_authorizer;
    /// Lives on the job's thread, from the authorization to its end.
    std::unique_ptr<QProcess> m_process;
};

} // namespace brevok
