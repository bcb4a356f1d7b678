// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/BrevokAppInstaller.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/BoundedWork.h"
#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "install/CommandQueue.h"
#include "install/InstallPaths.h"
#include "install/InterruptedWork.h"
#include "install/RunningTargets.h"
#include "platform/FileState.h"
#include "platform/StateStore.h"
#include "targets/MarketingNames.h"
#include "targets/TargetJudgement.h"

#include <QCoreApplication>

#include <tuple>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokAppInstaller *sharedInstaller = nullptr;

// The error list that users see takes errors of calls that answered yes only; every other one is a failure
// too. A failure says what could not be done, and why.
void collect(
    bool answer, const std::optional<BrevokError> &error, const QString &sentence, CommandResult &result)
{
    if (answer && error) {
        result.errors.append(*error);
    }
    if (error || !answer) {
        const QString reason = error ? error->description : QString();
        BrevokError failure = installerError(reason.isEmpty() ? sentence : sentence + u' ' + reason);
        if (error) {
            failure.detailedErrors.append(*error);
        }
        result.failures.append(failure);
    }
}

// The disk of a target may have fallen silent since the plan was made, and must not keep the other jobs
// waiting.
bool answers(const QString &pluginPath, CommandResult &result)
{
    const QString place = applicationFolder(pluginPath);
    const bool answers = runBounded(place, [pluginPath](Pulse &) { std::ignore = fileState(pluginPath); });
    if (!answers) {
        result.errors.append(installerError(doesNotAnswer(place)));
        result.failures.append(result.errors.constLast());
    }
    return answers;
}

// The result of a job, to who asked, if it is there still: only the main thread may look.
template <typename Result>
void settle(
    const QPointer<QObject> &asker, const std::function<void(const Result &)> &done, const Result &result)
{
    onMain(QCoreApplication::instance(), [asker, done, result] {
        if (asker) {
            done(result);
        }
    });
}

} // namespace

BrevokAppInstaller::BrevokAppInstaller(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , BrevokInstaller(collaborators.files)
    , m_with(std::move(collaborators))
{
    if (sharedInstaller == nullptr) {
        sharedInstaller = this;
    }
    connect(&m_with.state, &StateStore::becameReadable, this, &BrevokAppInstaller::loadNotificationDates);
    loadNotificationDates();
}

BrevokAppInstaller::~BrevokAppInstaller()
{
    if (sharedInstaller == this) {
        sharedInstaller = nullptr;
    }
}

BrevokAppInstaller *BrevokAppInstaller::appInstaller()
{
    return sharedInstaller;
}

QString BrevokAppInstaller::getVersionString(const QString &version)
{
    return brevok::getVersionString(version);
}

void BrevokAppInstaller::addJob(Task job)
{
    if (!std::exchange(m_helperChecked, true)) {
        m_jobs.add([this] {
            const bool found = checkUpdateHelper();
            onMainAndWait(this, [this, found] { m_valid = found; });
        });
    }
    m_jobs.add(std::move(job));
}

// For this nobody is asked for the helper's rights: it is about what was begun without them.
void BrevokAppInstaller::clearLeftovers(const QStringList &folders)
{
    m_jobs.add([this, folders] {
        m_with.helper.clearLeftovers();
        if (endInterruptedWork(folders)) {
            onMain(&m_with.packages, [&packages = m_with.packages] { packages.notifyPackageStatuses(); });
        }
    });
}

bool BrevokAppInstaller::onMainNow(const Task &work)
{
    auto ran = std::make_shared<bool>(false);
    onMainAndWait(this, [ran, work] {
        work();
        *ran = true;
    });
    return *ran;
}

std::optional<Record> BrevokAppInstaller::currentRecord(const QString &key)
{
    auto record = std::make_shared<Record>();
    const bool ran = onMainNow([this, key, record] {
        if (const DefinitionPtr definition = m_with.plugins.definition(key)) {
            *record = definition->record;
        }
    });
    return ran ? std::optional(*record) : std::nullopt;
}

std::optional<CatalogueSnapshot> BrevokAppInstaller::catalogueOf(const QSet<QString> &plugins)
{
    auto snapshot = std::make_shared<CatalogueSnapshot>();
    const bool ran = onMainNow([this, plugins, snapshot] {
        for (const QString &plugin : plugins) {
            const QSet<QString> prefixes = m_with.plugins.prefixesWith(plugin);
            for (const QString &prefix : prefixes) {
                if (!snapshot->definitions.contains(prefix)) {
                    snapshot->packages += m_with.packages.packagesWithPrefix(prefix);
                    snapshot->definitions.insert(prefix, m_with.plugins.snapshotOf(prefix));
                }
            }
        }
    });
    return ran ? std::optional(*snapshot) : std::nullopt;
}

bool BrevokAppInstaller::dequeue(const QString &key, const QJsonArray &command)
{
    return onMainNow([this, key, command] {
        m_with.plugins.change({key}, [&] {
            if (const DefinitionPtr definition = m_with.plugins.definition(key)) {
                removeCommand(definition->record, command);
            }
        });
    });
}

void BrevokAppInstaller::finishPackage(const Record &package)
{
    onMainAndWait(this, [this, name = package.value(PackageKeys::name).toString()] {
        m_with.packages.forgetNotified(name);
        onMain(&m_with.packages, [&packages = m_with.packages] { packages.notifyPackageStatuses(); });
    });
}

void BrevokAppInstaller::installPlugin(
    const QString &key, const Record &package, bool skipRunningTargets, QObject *context, Completion done)
{
    addJob([this, key, package, skipRunningTargets, guard = QPointer(context), done = std::move(done)] {
        settle(guard, done, carryOutInstalls(key, package, skipRunningTargets));
    });
}

void BrevokAppInstaller::removePlugin(
    const QString &key, const Record &package, QObject *context, Completion done)
{
    addJob([this, key, package, guard = QPointer(context), done = std::move(done)] {
        settle(guard, done, carryOutRemovals(key, package));
    });
}

CommandResult BrevokAppInstaller::carryOutInstalls(
    const QString &key, const Record &package, bool skipRunningTargets)
{
    CommandResult result;
    const std::shared_ptr<InstallerOperations> operations = installer();
    const std::optional<Record> definition = currentRecord(key);
    if (!definition) {
        return result;
    }
    const QJsonArray queue = commandQueue(*definition);
    for (const QJsonValue value : queue) {
        const QJsonArray command = value.toArray();
        if (!isInstallCommand(command)) {
            continue;
        }
        const QString pluginPath = command[1].toString();
        const QString folder = applicationFolder(pluginPath);
        const std::optional<RunningApplication> running = runningUnder(folder);
        if ((!running || !skipRunningTargets) && answers(pluginPath, result)) {
            if (running && !noteRunning(Action::Install, *running, folder)) {
                return result;
            }
            installWorkspace(*operations, folder, result);
            installArchive(*operations, command[2].toString(), pluginPath, result);
        }
        if (!dequeue(key, command)) {
            return result;
        }
    }
    finishPackage(package);
    return result;
}

void BrevokAppInstaller::installArchive(InstallerOperations &operations, const QString &source,
    const QString &target, CommandResult &result) const
{
    std::optional<BrevokError> error;
    const bool answer = operations.installPluginFromSource(source, target, m_with.user, &error);
    collect(answer, error, Texts::tr("The plug-in could not be installed at %1.").arg(target), result);
    // An archive that cannot be unpacked, or holds something else, is answered yes without an error.
    if (answer && !error && !operations.fileExistsAtPath(target)) {
        result.failures.append(
            installerError(Texts::tr("The archive %1 did not put a plug-in at %2.").arg(source, target)));
    }
}

void BrevokAppInstaller::installWorkspace(
    InstallerOperations &operations, const QString &folder, CommandResult &result) const
{
    if (folder.isEmpty()) {
        return;
    }
    const QString target = folder + u"/Presets/InDesign Workspaces/Tolvane.xml"_s;
    // The installer never replaces this file, so a refusal is the usual answer from the second time on.
    const bool isThere = operations.fileExistsAtPath(target);
    std::optional<BrevokError> error;
    const bool answer = operations.installPluginFromSource(m_with.workspaceFile, target, m_with.user, &error);
    if (answer || !isThere) {
        collect(answer, error, Texts::tr("The workspace could not be installed at %1.").arg(target), result);
    }
}

CommandResult BrevokAppInstaller::carryOutRemovals(const QString &key, const Record &package)
{
    CommandResult result;
    const QString prefix = package.value(PackageKeys::prefix).toString();
    const std::shared_ptr<InstallerOperations> operations = installer();
    const std::optional<Record> definition = currentRecord(key);
    const QString name = definition ? definition->value(PluginKeys::name).toString() : QString();
    const std::optional<CatalogueSnapshot> known = definition ? catalogueOf({name}) : std::nullopt;
    if (!known) {
        return result;
    }
    const auto exists = [&](const QString &path) {
        return operations->fileExistsAtPath(path);
    };
    const QJsonArray queue = commandQueue(*definition);
    for (const QJsonValue value : queue) {
        const QJsonArray command = value.toArray();
        if (!isRemovalCommand(command)) {
            continue;
        }
        const QString pluginPath = command[1].toString();
        if (answers(pluginPath, result) && operations->fileExistsAtPath(pluginPath)) {
            const QString folder = applicationFolder(pluginPath);
            const std::optional<RunningApplication> running = runningUnder(folder);
            if (running && !noteRunning(Action::Remove, *running, folder)) {
                return result;
            }
            if (mayRemovePlugin(name, pluginPath, prefix, *known, exists)) {
                remove(*operations, pluginPath, result);
            }
        }
        if (!dequeue(key, command)) {
            return result;
        }
    }
    finishPackage(package);
    return result;
}

void BrevokAppInstaller::remove(
    InstallerOperations &operations, const QString &path, CommandResult &result) const
{
    std::optional<BrevokError> error;
    const bool answer = operations.removeItemAtPath(path, &error);
    collect(answer, error, Texts::tr("The plug-in at %1 could not be removed.").arg(path), result);
}

bool BrevokAppInstaller::canRemovePlugin(
    const QString &name, const QString &pluginPath, const QString &prefix)
{
    const std::shared_ptr<InstallerOperations> operations = installer();
    return mayRemovePlugin(name, pluginPath, prefix, catalogueOf({name}).value_or(CatalogueSnapshot()),
        [&](const QString &path) { return operations->fileExistsAtPath(path); });
}

void BrevokAppInstaller::canRemovePlugins(
    const QList<RemovalQuestion> &questions, QObject *context, RemovalAnswers done)
{
    addJob([this, questions, guard = QPointer(context), done = std::move(done)] {
        const std::shared_ptr<InstallerOperations> operations = installer();
        QSet<QString> plugins;
        for (const RemovalQuestion &question : questions) {
            plugins.insert(question.name);
        }
        const CatalogueSnapshot known = catalogueOf(plugins).value_or(CatalogueSnapshot());
        const auto exists = [&](const QString &path) {
            return operations->fileExistsAtPath(path);
        };
        QList<bool> answers;
        for (const RemovalQuestion &question : questions) {
            answers.append(
                mayRemovePlugin(question.name, question.pluginPath, question.prefix, known, exists));
        }
        settle(guard, done, answers);
    });
}

} // namespace brevok
