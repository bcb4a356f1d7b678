// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/UpdatePackage.h"

#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/SoftwareInstaller.h"
#include "service/ServiceClient.h"
#include "updates/PackageSignature.h"
#include "updates/UpdateErrors.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto ownerAlone = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

// The system tells the kind of a package by its name's ending; nothing else of the address is taken over.
QString packageName(const QUrl &address)
{
    static const QRegularExpression plainEnding(u"^[A-Za-z0-9]{1,8}$"_s);
    const QString ending = QFileInfo(address.fileName()).suffix();
    return u"tolvane-brevok-update."_s + (plainEnding.match(ending).hasMatch() ? ending : u"package"_s);
}

bool isSignedWhole(QFile &file, const AppcastItem &item, const QByteArray &publicKey)
{
    const uchar *data = file.size() == item.length ? file.map(0, item.length) : nullptr;
    return isSigned(data, item.length, signatureFrom(item.signature), publicKey);
}

// A package's version may have an epoch before and a revision behind the program's own.
bool isAnnounced(const SoftwareIdentity &package, const AppcastItem &item)
{
    static const QRegularExpression epoch(u"^[0-9]+:"_s);
    const QString version = QString(package.version).remove(epoch);
    const qsizetype revision = version.lastIndexOf(u'-');
    return package.name == "tolvane-brevok"_L1
        && (version == item.shownVersion()
            || (revision > 0 && version.first(revision) == item.shownVersion()));
}

std::optional<UpdateError> faultOf(QFile &file, const AppcastItem &item, const QByteArray &publicKey)
{
    if (!isSignedWhole(file, item, publicKey)) {
        return UpdateError::WrongSignature;
    }
    const std::optional<SoftwareIdentity> package = softwareIdentity(file.fileName());
    return package && isAnnounced(*package, item) ? std::nullopt : std::optional(UpdateError::WrongPackage);
}

bool prepareFolder(const QString &path)
{
    const QFileInfo folder(path);
    const QDir above = folder.dir();
    if (folder.isSymLink() || !above.mkpath(u"."_s)
        || (!folder.isDir() && !above.mkdir(folder.fileName(), ownerAlone))
        || !QFile::setPermissions(path, ownerAlone)) {
        return false;
    }
    const QFileInfoList left =
        QDir(path).entryInfoList(QDir::Files | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &file : left) {
        QFile::remove(file.filePath());
    }
    return true;
}

} // namespace

UpdatePackage::UpdatePackage(
    ServiceClient &service, QString folder, AppcastItem item, QByteArray publicKey, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_folder(std::move(folder))
    , m_item(std::move(item))
    , m_publicKey(std::move(publicKey))
    , m_file(std::make_shared<QFile>(m_folder + u'/' + packageName(m_item.address)))
{
}

UpdatePackage::~UpdatePackage()
{
    if (!m_left) {
        QFile::remove(m_file->fileName());
    }
}

QString UpdatePackage::path() const
{
    return m_sound ? m_file->fileName() : QString();
}

void UpdatePackage::start()
{
    inBackgroundThen(
        this, [folder = m_folder] { return prepareFolder(folder); },
        [this](bool prepared) {
            if (prepared) {
                download();
                return;
            }
            fail(updateError(UpdateError::FileFailure,
                Texts::tr("The folder for the update cannot be used: %1")
                    .arg(QDir::toNativeSeparators(m_folder))));
        });
}

void UpdatePackage::download()
{
    m_service.download(
        {.url = m_item.address, .destination = m_file->fileName(), .expectedSize = m_item.length}, this,
        [this](qint64 done, qint64 total) { Q_EMIT progress(done, total); },
        [this](const DownloadResult &result) {
            if (result.error) {
                fail(*result.error);
            } else {
                verify();
            }
        });
}

// Verified is the open file, not what may bear its name by then.
void UpdatePackage::verify()
{
    if (!m_file->setPermissions(QFile::ReadOwner) || !m_file->open(QIODevice::ReadOnly)) {
        fail(updateError(UpdateError::FileFailure,
            Texts::tr("The downloaded file cannot be read: %1").arg(m_file->errorString())));
        return;
    }
    inBackgroundThen(
        this, [file = m_file, item = m_item, key = m_publicKey] { return faultOf(*file, item, key); },
        [this](const std::optional<UpdateError> &fault) { verified(fault); });
    Q_EMIT verifying();
}

void UpdatePackage::verified(const std::optional<UpdateError> &fault)
{
    m_sound = !fault;
    if (m_sound) {
        Q_EMIT ready();
    } else if (fault == UpdateError::WrongPackage) {
        fail(updateError(*fault,
            Texts::tr("The downloaded update is not version %1 of Tolvane Brevok. It was not installed, and "
                      "the file was removed.")
                .arg(m_item.shownVersion())));
    } else {
        fail(updateError(*fault,
            Texts::tr("The downloaded update is not signed by the maker of Tolvane Brevok. It was not "
                      "installed, and the file was removed.")));
    }
}

void UpdatePackage::fail(const BrevokError &error)
{
    QFile::remove(m_file->fileName());
    onMain(this, [this, error] { Q_EMIT failed(error); });
}

} // namespace brevok
