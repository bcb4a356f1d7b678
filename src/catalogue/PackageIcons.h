// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"
#include "service/Validator.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QQueue>
#include <QSet>
#include <QString>

namespace brevok {

class ServiceClient;

/// A package's icon: the bytes of an image file, or the built-in generic one.
struct PackageIcon {
    QByteArray data{}; ///< empty for the generic icon
    Validator validator{}; ///< of these bytes, where they were downloaded in this run
    [[nodiscard]] bool isGeneric() const { return data.isEmpty(); }
};

/// Whether @p data begins like an image file, as the machine's table of file types knows them; no image
/// library is loaded for it.
[[nodiscard]] bool looksLikeImage(const QByteArray &data);

/// The file name under which the icon at @p address is cached, the last component of its path; empty when
/// that is no plain name, or one that the program itself uses in the data folder. Such an icon is shown, but
/// not cached.
[[nodiscard]] QString iconFileName(const QString &address);

/// The icons of the packages by package name, their download and their cache files. Main thread.
class PackageIcons final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageIcons)

public:
    PackageIcons(ServiceClient &service, QString folder, QObject *parent);
    ~PackageIcons() override;

    [[nodiscard]] const QHash<QString, PackageIcon> &icons() const { return m_icons; }

    /// Gives a package that has no icon the generic one.
    void ensureIcon(const QString &package);
    /// Uses the image file at @p path, which is read in the background with all that are asked for meanwhile.
    /// Where it is none, the icon at @p address, if any, is downloaded.
    void load(const QString &package, const QString &path, const QString &address = {});
    /// Fetches the icon at @p address. A failure is silent. A later address for the same package wins.
    void download(const QString &package, const QString &address);
    /// Whether no file is being read, and no download waiting or under way, the writing of its cache file
    /// included.
    [[nodiscard]] bool idle() const { return m_reading == 0 && m_waiting.isEmpty() && m_running == 0; }

Q_SIGNALS:
    void iconChanged();
    /// The downloaded bytes stand in the file @p path.
    void cached(const QString &package, const QString &path);
    /// After every download, and after files were read, whatever became of it.
    void downloadEnded();

private:
    /// A file that is to be read, and what was found in it.
    struct StoredIcon {
        QString package;
        QString path;
        QString address;
        quint64 turn = 0;
        QByteArray data{}; ///< empty when it is no image
    };

    void readUnread();
    void take(const QList<StoredIcon> &icons);
    void startDownloads();
    void show(const QString &package, const PackageIcon &icon);
    void store(const QString &package, const QString &address, const QByteArray &data);
    void downloadEnds();

    ServiceClient &m_service;
    QString m_folder;
    SerialQueue m_disk; ///< reads and writes the cache files, of two with the same name the later one last
    QList<StoredIcon> m_unread;
    qsizetype m_reading = 0; ///< those not read yet, and those whose data are not here yet
    QHash<QString, quint64> m_turns; ///< what was asked for last, by package
    quint64 m_turn = 0;
    QHash<QString, PackageIcon> m_icons;
    QQueue<QString> m_waiting;
    QSet<QString> m_queued; ///< what m_waiting holds
    QHash<QString, QString> m_addresses; ///< the latest address by package
    int m_running = 0;
};

} // namespace brevok
