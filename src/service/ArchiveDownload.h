// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/ServiceClient.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPointer>

namespace brevok {

/// One archive on its way to the disk; see ServiceClient::download(). Owns the reply and deletes itself at
/// the end.
///
/// The body goes to a file ".part-…" beside the destination. Whatever happens to the program, the destination
/// holds a whole archive or nothing new; a file left behind is removed by the next download to the same
/// destination.
class ArchiveDownload final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ArchiveDownload)

public:
    struct Job {
        QString destination;
        qint64 expectedSize = 0;
        QPointer<QObject> context; ///< without it the download is given up
        ServiceClient::ProgressHandler progress;
        ServiceClient::DownloadHandler handler;
    };

    /// @p inUse are the temporary files of downloads that go on now; nothing else touches them.
    ArchiveDownload(QNetworkReply *reply, Job job, const QStringList &inUse, QObject *parent);
    ~ArchiveDownload() override;

    [[nodiscard]] QString temporaryFile() const { return m_file.fileName(); }

private:
    void removeLeftovers(const QStringList &inUse) const;
    bool openFile();
    void headArrived();
    void dataArrived();
    void write(const char *data, qint64 size);
    void reportProgress(bool last);
    void ended();
    void store();
    void settle(const std::optional<BrevokError> &error);
    void giveUp();

    QNetworkReply *m_reply;
    Job m_job;
    QFile m_file;
    QByteArray m_piece;
    qint64 m_received = 0;
    QElapsedTimer m_lastProgress;
    bool m_settled = false;
};

} // namespace brevok
