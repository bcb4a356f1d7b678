// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/BrevokAppInstaller.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Tasks.h"
#include "install/InstallPaths.h"
#include "install/InterruptedWork.h"
#include "targets/MarketingNames.h"

namespace brevok {

namespace {

BrevokAppInstaller *sharedInstaller = nullptr;

QList<bool> removalAnswers(
    const QList<RemovalQuestion> &questions, const CatalogueSnapshot &known, const CommandTools &tools)
{
    QList<bool> answers;
    for (const RemovalQuestion &question : questions) {
        InstallerOperations &operations = tools.forPath(question.pluginPath);
        const auto exists = [&operations](const QString &path) {
            return operations.fileExistsAtPath(path);
        };
        answers.append(canRemovePlugin(question.name, question.pluginPath, question.prefix, known, exists));
    }
    return answers;
}

} // namespace

BrevokAppInstaller::BrevokAppInstaller(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_with(std::move(collaborators))
    , m_access(m_with.helper, m_with.files)
    , m_runningAlerts(m_with.applications, m_with.state, m_with.alerts, m_with.now, nullptr)
{
    if (sharedInstaller == nullptr) {
        sharedInstaller = this;
    }
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

void BrevokAppInstaller::checkUpdateHelper(
    QObject *context, const std::function<void(bool valid)> &answered, bool mayAsk)
{
    if (m_valid && (*m_valid || mayAsk)) { // where nobody is asked, a refusal of earlier is none
        answered(*m_valid);
        return;
    }
    inBackgroundThen(
        this, [access = accessOf(mayAsk)] { return access.checkUpdateHelper(); },
        [this, guard = QPointer(context), answered, mayAsk](bool found) {
            if (found || mayAsk) {
                m_valid = found; // else somebody may still agree
            }
            if (guard) {
                answered(found);
            }
        });
}

HelperAccess BrevokAppInstaller::accessOf(bool mayAsk) const
{
    return mayAsk ? m_access : m_access.unattended();
}

std::shared_ptr<InstallerOperations> BrevokAppInstaller::installer() const
{
    return m_access.installer(valid());
}

void BrevokAppInstaller::addJob(Task begin)
{
    m_jobs.append(std::move(begin));
    if (!m_working) {
        nextJob();
    }
}

void BrevokAppInstaller::nextJob()
{
    m_working = !m_jobs.isEmpty();
    if (m_working) {
        m_jobs.takeFirst()();
    }
}

void BrevokAppInstaller::jobEnded()
{
    onMain(this, [this] { nextJob(); });
}

void BrevokAppInstaller::installPlugin(
    const QString &key, const Record &package, const Manner &manner, QObject *context, Completion done)
{
    run({.key = key, .package = package, .manner = manner}, context, std::move(done));
}

void BrevokAppInstaller::removePlugin(
    const QString &key, const Record &package, const Manner &manner, QObject *context, Completion done)
{
    run({.isRemoval = true, .key = key, .package = package, .manner = manner}, context, std::move(done));
}

void BrevokAppInstaller::run(CommandRun::Order order, QObject *context, Completion done)
{
    addJob([this, order = std::move(order), guard = QPointer(context), done = std::move(done)] {
        const bool mayAsk = !order.manner.unattended;
        auto *job = new CommandRun(
            {.applications = m_with.applications,
                .plugins = m_with.plugins,
                .packages = m_with.packages,
                .alerts = m_runningAlerts,
                .access = accessOf(mayAsk),
                .askForHelper = [this, mayAsk](QObject *asker,
                                    const auto &answered) { checkUpdateHelper(asker, answered, mayAsk); },
                .workspaceFile = m_with.workspaceFile,
                .user = m_with.user},
            order, this);
        connect(job, &CommandRun::ended, this, [this, job, guard, done] {
            job->deleteLater();
            jobEnded();
            if (guard) {
                done(job->result());
            }
        });
        job->begin();
    });
}

// For this nobody is asked for the helper's rights: it is about what was begun without them.
void BrevokAppInstaller::clearLeftovers(const QStringList &targets)
{
    QStringList folders;
    for (const QString &target : targets) {
        folders += changedFolders(target);
    }
    folders.removeDuplicates();
    addJob([this, folders] {
        inBackgroundThen(
            this,
            [folders, &helper = m_with.helper] {
                helper.clearLeftovers();
                return endInterruptedWork(folders);
            },
            [this](bool found) {
                jobEnded();
                if (found) {
                    m_with.packages.calculatePackageStatuses();
                }
            });
    });
}

void BrevokAppInstaller::canRemovePlugins(
    const QList<RemovalQuestion> &questions, QObject *context, RemovalAnswers done, bool mayAsk)
{
    addJob([this, questions, mayAsk, guard = QPointer(context), done = std::move(done)] {
        const RemovalAnswers answered = [this, guard, done](const QList<bool> &answers) {
            jobEnded();
            if (guard) {
                done(answers);
            }
        };
        QList<CommandTask> tasks;
        for (const RemovalQuestion &question : questions) {
            tasks.append({.plugin = question.name, .pluginPath = question.pluginPath});
        }
        inBackgroundThen(
            this, [tasks, access = m_access] { return helperIsNeeded(tasks, access); },
            [this, questions, answered, mayAsk](bool needed) {
                if (needed) {
                    checkUpdateHelper(
                        this,
                        [this, questions, answered](bool) { answerRemovals(questions, true, answered); },
                        mayAsk);
                } else {
                    answerRemovals(questions, false, answered);
                }
            });
    });
}

void BrevokAppInstaller::answerRemovals(
    const QList<RemovalQuestion> &questions, bool withHelper, const RemovalAnswers &done)
{
    QSet<QString> names;
    for (const RemovalQuestion &question : questions) {
        names.insert(question.name);
    }
    const CatalogueSnapshot known = catalogueOf(names, m_with.plugins, m_with.packages);
    inBackgroundThen(
        this,
        [questions, known, withHelper, valid = valid(), access = m_access] {
            return removalAnswers(questions, known,
                {.access = access, .helper = withHelper ? access.installer(valid) : nullptr});
        },
        done);
}

void BrevokAppInstaller::foresee(const QList<CommandTask> &tasks, QObject *context,
    const std::function<void(const QList<PluginOutcome> &)> &done)
{
    inBackgroundThen(
        context,
        [tasks, access = m_access.unattended(), &applications = m_with.applications] {
            return brevok::foresee(tasks, access, applications);
        },
        done);
}

} // namespace brevok
