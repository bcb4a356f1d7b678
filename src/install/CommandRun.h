// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/CommandWork.h"
#include "install/Manner.h"

#include <QJsonArray>
#include <QObject>

#include <functional>

namespace brevok {

class BrevokPackages;
class BrevokPlugins;
class RunningTargetAlerts;

/// Carries out the install or the remove commands of one definition, one after the other: looks, mentions a
/// running application, changes files, takes the command off its queue. The next begins when that is stored.
/// Main thread; files are asked and changed in the background.
class CommandRun final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CommandRun)

public:
    /// Tells whether the helper can be used, which may have to be found out first.
    using HelperQuestion =
        std::function<void(QObject *context, const std::function<void(bool valid)> &answered)>;

    struct Collaborators {
        RunningApplications &applications;
        BrevokPlugins &plugins;
        BrevokPackages &packages;
        RunningTargetAlerts &alerts;
        HelperAccess access;
        HelperQuestion askForHelper;
        QString workspaceFile{};
        quint32 user = 0;
    };
    struct Order {
        bool isRemoval = false;
        QString key; ///< build key
        Record package;
        Manner manner{};
    };

    CommandRun(Collaborators collaborators, Order order, QObject *parent);
    ~CommandRun() override;

    void begin();
    [[nodiscard]] const CommandResult &result() const { return m_result; }

Q_SIGNALS:
    void ended();

private:
    struct Command {
        QJsonArray queued;
        CommandTask task;
    };

    void collect();
    void next();
    void looked(const CommandLook &look);
    void carryOut();
    void carriedOut(const CommandResult &result);
    void finish();

    Collaborators m_with;
    Order m_order;
    CommandTools m_tools;
    QList<Command> m_commands; ///< that are left
    CatalogueSnapshot m_known; ///< of a removal
    CommandResult m_result;
};

/// The packages and definitions that the plug-ins @p names occur in. Main thread.
[[nodiscard]] CatalogueSnapshot catalogueOf(
    const QSet<QString> &names, const BrevokPlugins &plugins, const BrevokPackages &packages);

} // namespace brevok
