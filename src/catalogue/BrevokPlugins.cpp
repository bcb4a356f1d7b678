// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPlugins.h"

#include "alerts/BrevokAlertQueue.h"
#include "catalogue/CatalogueKeys.h"
#include "catalogue/ListRefresh.h"
#include "foundation/Log.h"
#include "foundation/Texts.h"

#include <QJsonDocument>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokPlugins *sharedPlugins = nullptr;

ListRefresh::Wording wording()
{
    return {.path = u"/api/plugin/list"_s,
        .dateKey = CatalogueKeys::pluginsUpdateDate,
        .alertTitle = Texts::tr("Failed to update Plug-Ins data"),
        .failedWithError = u"Plugins update failed with error"_s,
        .failedWithResponse = u"Plugins update failed with response: "_s,
        .failedWithContent = u"Plugins definitions update failed!"_s};
}

QByteArray textOf(const QJsonArray &list)
{
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

template <typename Kept> QList<Kept> recordsOf(const QList<DefinitionPtr> &definitions)
{
    QList<Kept> records;
    records.reserve(definitions.size());
    for (const DefinitionPtr &definition : definitions) {
        records.append(definition->record);
    }
    return records;
}

} // namespace

BrevokPlugins::BrevokPlugins(
    StateStore &state, ServiceClient &service, BrevokAlertQueue &alerts, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_service(service)
    , m_alerts(alerts)
    , m_refresh(new ListRefresh(wording(), state, service, alerts, listOwner(), this))
{
    if (sharedPlugins == nullptr) {
        sharedPlugins = this;
    }
    m_nextSlice.setSingleShot(true);
    connect(&m_nextSlice, &QTimer::timeout, this, &BrevokPlugins::mergeOn);
    connect(m_refresh, &ListRefresh::due, this, [this] { checkForUpdates(); });
    connect(m_refresh, &ListRefresh::finished, this, &BrevokPlugins::checkFinished);
    connect(&state, &StateStore::becameReadable, this, [this] {
        Q_EMIT pluginsWillChange();
        load();
        Q_EMIT pluginsChanged({});
        start();
    });
    connect(&state, &StateStore::everythingWanted, this, [this] {
        m_tables.noteChangeOfEverything();
        storeKept(m_kept);
        save();
    });
    load();
}

BrevokPlugins::~BrevokPlugins()
{
    if (sharedPlugins == this) {
        sharedPlugins = nullptr;
    }
}

BrevokPlugins *BrevokPlugins::plugins()
{
    return sharedPlugins;
}

void BrevokPlugins::load()
{
    m_tables = {};
    m_named.clear();
    const int unusable = m_tables.load(
        m_state.entries(CatalogueKeys::pluginsData), m_state.entries(CatalogueKeys::pluginPrefixes));
    const Record list = m_state.entries(CatalogueKeys::pluginList).value(QString());
    m_kept = unusable == 0 ? KeptList::fromRecord(list, m_tables.listed()) : KeptList();
    if (unusable > 0) {
        logLine(u"Stored plug-in definitions: %1 unusable values left out."_s.arg(unusable));
    }
}

void BrevokPlugins::start(std::function<void()> then)
{
    const auto goOn = [this, then = std::move(then)] {
        checkForUpdates();
        if (then) {
            then();
        }
    };
    if (hasUnfinishedActions()) {
        askAboutUnfinishedActions(goOn);
    } else {
        goOn();
    }
}

void BrevokPlugins::askAboutUnfinishedActions(std::function<void()> answered)
{
    m_question = BrevokAlert::create(m_alerts.presenter());
    BrevokAlert *alert = m_question.get();
    alert->content.style = AlertStyle::Informational;
    alert->content.messageText = Texts::tr("Installer detected one or more unfinished actions. Do you want "
                                           "to finish or discard those actions?");
    alert->content.informativeText =
        Texts::tr("Tolvane Brevok application probably crashed, or was forced to quit. Unfinished "
                  "install/uninstall actions are left overs from previous session.");
    alert->content.buttons = {
        {.title = Texts::tr("Discard Actions")}, {.title = Texts::tr("Finish Actions"), .enabled = false}};
    auto ending = m_alerts.beginModal(*alert, this, [this, answered = std::move(answered)](int response) {
        m_question.reset();
        if (response == alertFirstButton) {
            discardActions();
        }
        answered();
    });
    if (m_question) {
        m_answerQuestion = std::move(ending);
    }
}

PackedSnapshot BrevokPlugins::snapshot() const
{
    PackedSnapshot snapshot;
    const DefinitionIndex &index = m_tables.byPrefix();
    snapshot.reserve(index.size());
    for (auto entry = index.cbegin(); entry != index.cend(); ++entry) {
        snapshot.insert(entry.key(), recordsOf<PackedRecord>(entry.value()));
    }
    return snapshot;
}

QList<Record> BrevokPlugins::snapshotOf(const QString &prefix) const
{
    return recordsOf<Record>(m_tables.byPrefix().value(prefix));
}

// An install asks several times, and must not take longer beside a long list.
BrevokPlugins::NamedPlugin BrevokPlugins::named(const QString &name) const
{
    if (m_named.isEmpty()) {
        const DefinitionIndex &index = m_tables.byPrefix();
        for (auto entry = index.cbegin(); entry != index.cend(); ++entry) {
            for (const DefinitionPtr &definition : entry.value()) {
                m_named[definition->name].prefixes.insert(entry.key());
            }
        }
        for (const DefinitionPtr &definition : m_tables.byBuild()) {
            m_named[definition->name].builds.append(definition);
        }
    }
    return m_named.value(name);
}

QSet<QString> BrevokPlugins::prefixesWith(const QString &name) const
{
    return named(name).prefixes;
}

QStringList BrevokPlugins::buildsOf(const QString &name, qint64 hostVersion) const
{
    QStringList keys;
    const QList<DefinitionPtr> builds = named(name).builds;
    for (const DefinitionPtr &definition : builds) {
        if (definition->hostVersion == hostVersion) {
            keys.append(definition->key);
        }
    }
    return keys;
}

QStringList BrevokPlugins::namesOf(const QStringList &keys) const
{
    QStringList names;
    for (const QString &key : keys) {
        if (const DefinitionPtr known = definition(key)) {
            names.append(known->name);
        }
    }
    return names;
}

DefinitionPtr BrevokPlugins::definition(const QString &key) const
{
    return m_tables.byBuild().value(key);
}

DefinitionPtr BrevokPlugins::pluginWithPrefix(const QString &prefix, const QString &version) const
{
    const qint64 wanted = leadingInteger(version);
    const QList<DefinitionPtr> definitions = m_tables.byPrefix().value(prefix);
    for (const DefinitionPtr &definition : definitions) {
        const qint64 host = definition->hostVersion;
        if (wanted / 10 == host / 10 && wanted % 10 >= host % 10) {
            return definition;
        }
    }
    return nullptr;
}

void BrevokPlugins::checkForUpdates(const ListRefresh::CheckHandler &ended, ListRefresh::Voice voice)
{
    m_refresh->check(ended, voice);
}

ListRefresh::Owner BrevokPlugins::listOwner()
{
    const auto read = [this](const QByteArray &json, const KeptList &as) -> ListRefresh::Taking {
        std::optional<PluginList> builds = newestBuilds(json);
        if (!builds) {
            return {};
        }
        // What is left out is told of each time.
        return [this, list = std::make_shared<PluginList>(std::move(*builds)), as](const Task &taken) {
            take({.list = list, .as = list->allValid ? as : KeptList(), .taken = taken});
            mergeOn();
        };
    };
    return {.read = [read](const QJsonArray &list, const KeptList &as) { return read(textOf(list), as); },
        .readText = read,
        .kept = [this] { return m_kept; },
        .keep =
            [this](const KeptList &as, const Task &taken) {
                if (as != m_kept) {
                    storeKept(as);
                }
                announceChange();
                taken();
            }};
}

void BrevokPlugins::updateWithArray(const QJsonArray &list)
{
    take({.list = std::make_shared<PluginList>(newestBuilds(textOf(list)).value_or(PluginList()))});
    finishMerge();
}

void BrevokPlugins::take(Merge merge)
{
    finishMerge();
    Q_EMIT pluginsWillChange();
    // From the first slice on, what is stored is no list's.
    if (!m_kept.mark.isEmpty()) {
        storeKept({});
    }
    m_merge = std::move(merge);
}

void BrevokPlugins::mergeOn()
{
    constexpr int sliceMs = 1; // the worker stores the first ones meanwhile
    const QDeadlineTimer slice(sliceMs);
    while (m_merge && !slice.hasExpired()) {
        mergeSome(slice);
    }
    m_merge ? m_nextSlice.start() : m_nextSlice.stop();
}

void BrevokPlugins::finishMerge()
{
    while (m_merge) {
        mergeSome(QDeadlineTimer(QDeadlineTimer::Forever));
    }
}

// One step: what fits into the slice, the announcement, or the end.
void BrevokPlugins::mergeSome(QDeadlineTimer slice)
{
    const QList<ListedPrefix> &prefixes = m_merge->list->prefixes;
    if (m_merge->next < prefixes.size()) {
        while (m_merge->next < prefixes.size() && !slice.hasExpired()) {
            const ListedPrefix &listed = prefixes[m_merge->next++];
            m_merge->announced ? m_tables.dropWhatIsNotListed(listed) : m_tables.merge(listed);
        }
        m_named.clear();
        save();
    } else if (!m_merge->announced) {
        // What is not listed goes after the announcement: observers see that with the next change.
        m_merge->announced = true;
        m_merge->next = 0;
        Q_EMIT pluginsChanged({});
    } else {
        const Merge done = *std::exchange(m_merge, std::nullopt);
        if (!done.as.mark.isEmpty()) {
            storeKept(done.as);
        }
        if (done.taken) {
            done.taken();
        }
        inBackground([list = done.list] {}); // to be freed there
    }
}

void BrevokPlugins::storeKept(const KeptList &list)
{
    m_kept = list;
    m_state.commit({{CatalogueKeys::pluginList, QString(),
        list.mark.isEmpty() ? std::nullopt : std::optional(list.toRecord(m_tables.listed()))}});
}

void BrevokPlugins::change(
    const QStringList &keys, const std::function<void()> &edit, QObject *context, StateStore::Done stored)
{
    Q_EMIT pluginsWillChange();
    QHash<DefinitionPtr, Record> before;
    for (const QString &key : keys) {
        if (const DefinitionPtr known = definition(key)) {
            before.insert(known, known->record);
        }
    }
    edit();
    for (auto known = before.cbegin(); known != before.cend(); ++known) {
        if (known.key()->record != known.value()) {
            m_tables.noteChange(buildKey(known.value()));
        }
    }
    save(context, std::move(stored));
    Q_EMIT pluginsChanged(namesOf(keys));
}

void BrevokPlugins::announceChange(const QStringList &keys)
{
    Q_EMIT pluginsWillChange();
    Q_EMIT pluginsChanged(namesOf(keys));
}

void BrevokPlugins::discardActions()
{
    if (m_question) {
        m_answerQuestion(alertFirstButton); // comes back here, without the question
        return;
    }
    change({}, [this] { m_tables.discardCommands(); });
}

bool BrevokPlugins::hasUnfinishedActions() const
{
    return m_tables.hasPendingCommands();
}

void BrevokPlugins::downloadPlugin(const DownloadOrder &order, QObject *context,
    ServiceClient::ProgressHandler progress, ServiceClient::DownloadHandler completionHandler)
{
    m_service.download(order, context, std::move(progress), std::move(completionHandler));
}

QTimer *BrevokPlugins::updateTimer() const
{
    return m_refresh->timer();
}

void BrevokPlugins::save(QObject *context, StateStore::Done stored)
{
    const StateChanges changes = m_tables.changes();
    if (!changes.isEmpty() || stored) {
        m_state.commit(changes, context, std::move(stored));
    }
}

} // namespace brevok
