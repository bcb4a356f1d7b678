// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/ArchiveDownload.h"

#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/DurableFile.h"
#include "service/NetworkFactory.h"
#include "service/TransportErrors.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <chrono>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 readBuffer = qint64{1024} * 1024;
constexpr qsizetype pieceSize = qsizetype{256} * 1024;
constexpr auto progressInterval = 50ms;
constexpr auto partMark = ".part-"_L1;
constexpr int httpOk = 200;

BrevokError fileError(int code, const QFile &file)
{
    return {.domain = QString::fromLatin1(fileErrorDomain),
        .code = code,
        .description = Texts::tr("The downloaded file cannot be saved: %1").arg(file.errorString()),
        .details = {{u"Path"_s, file.fileName()}}};
}

} // namespace

ArchiveDownload::ArchiveDownload(QNetworkReply *reply, Job job, const QStringList &inUse, QObject *parent)
    : QObject(parent)
    , m_reply(reply)
    , m_job(std::move(job))
    , m_piece(pieceSize, Qt::Uninitialized)
{
    reply->setParent(this);
    reply->setReadBufferSize(readBuffer);
    connect(m_job.context, &QObject::destroyed, this, &ArchiveDownload::giveUp);
    connect(reply, &QNetworkReply::metaDataChanged, this, &ArchiveDownload::headArrived);
    connect(reply, &QNetworkReply::readyRead, this, &ArchiveDownload::dataArrived);
    connect(reply, &QNetworkReply::finished, this, &ArchiveDownload::ended);
    removeLeftovers(inUse);
    if (!openFile()) {
        settle(fileError(errno, m_file));
    }
}

ArchiveDownload::~ArchiveDownload()
{
    if (!m_settled) {
        m_file.remove();
    }
}

// Left by a program that was killed while it downloaded.
void ArchiveDownload::removeLeftovers(const QStringList &inUse) const
{
    const QFileInfo destination(m_job.destination);
    const QString start = destination.fileName() + partMark;
    const QFileInfoList files = destination.dir().entryInfoList(QDir::Files | QDir::System | QDir::Hidden);
    for (const QFileInfo &file : files) {
        if (file.fileName().startsWith(start) && !inUse.contains(file.filePath())) {
            QFile::remove(file.filePath());
        }
    }
}

// Only a file that this call makes will do: nobody may have put a link where it goes.
bool ArchiveDownload::openFile()
{
    const QString random = QString::number(QRandomGenerator::system()->generate64(), 36);
    m_file.setFileName(m_job.destination + partMark + random);
    return m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered);
}

void ArchiveDownload::headArrived()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != httpOk) {
        settle(replyError(
            status, Texts::tr("Server responded with HTTP code: %1.").arg(status), m_reply->url()));
    }
}

void ArchiveDownload::dataArrived()
{
    while (!m_settled) {
        const qint64 count = m_reply->read(m_piece.data(), m_piece.size());
        if (count <= 0) {
            return;
        }
        write(m_piece.constData(), count);
    }
}

void ArchiveDownload::write(const char *data, qint64 size)
{
    m_received += size;
    if (m_received > m_job.expectedSize) {
        settle(replyError(httpOk,
            Texts::tr("The download is longer than the expected %1 bytes.").arg(m_job.expectedSize),
            m_reply->url()));
        return;
    }
    errno = 0;
    if (m_file.write(data, size) != size) {
        settle(fileError(errno, m_file));
        return;
    }
    reportProgress(false);
}

void ArchiveDownload::reportProgress(bool last)
{
    const bool due = !m_lastProgress.isValid() || m_lastProgress.hasExpired(progressInterval.count());
    if ((last || due) && m_job.progress && m_job.context) {
        m_lastProgress.start();
        m_job.progress(m_received, m_job.expectedSize);
    }
}

void ArchiveDownload::ended()
{
    if (const std::optional<BrevokError> error = NetworkFactory::transportError(*m_reply)) {
        settle(error);
        return;
    }
    dataArrived();
    if (m_settled) {
        return;
    }
    if (m_received != m_job.expectedSize) {
        settle(replyError(httpOk,
            Texts::tr("The download has %1 of the expected %2 bytes.")
                .arg(m_received)
                .arg(m_job.expectedSize),
            m_reply->url()));
        return;
    }
    reportProgress(true);
    store();
}

// Waiting for the disk is no work for the main thread.
void ArchiveDownload::store()
{
    m_file.close();
    inBackground([self = QPointer<ArchiveDownload>(this), from = m_file.fileName(), to = m_job.destination] {
        std::optional<BrevokError> error;
        if (!renameDurably(from, to, &error)) {
            QFile::remove(from);
        }
        onMain(QCoreApplication::instance(), [self, error] {
            if (self) {
                self->settle(error);
            }
        });
    });
}

void ArchiveDownload::settle(const std::optional<BrevokError> &error)
{
    if (m_settled) {
        return;
    }
    m_settled = true;
    if (error) {
        m_file.remove();
    }
    if (m_job.context) {
        const DownloadResult result{.received = m_received, .stored = !error, .error = error};
        onMain(m_job.context, [handler = std::exchange(m_job.handler, nullptr), result] { handler(result); });
    }
    m_reply->disconnect(this);
    m_reply->abort();
    deleteLater();
}

// Nobody waits for the archive any more.
void ArchiveDownload::giveUp()
{
    settle(transportErrorFor(QNetworkReply::OperationCanceledError, m_reply->url(), {}));
}

} // namespace brevok
