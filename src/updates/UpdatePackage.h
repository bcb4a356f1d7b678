// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "updates/Appcast.h"

#include <QFile>
#include <QObject>

#include <memory>

namespace brevok {

class ServiceClient;
enum class UpdateError;

/// The package of one update on its way to this machine: downloaded into a private folder, its length checked
/// while it arrives, its signature, name and version once it is complete. A wrong package is removed at once,
/// a right one together with this object. Main thread.
class UpdatePackage final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UpdatePackage)

public:
    /// @p folder is this object's alone: what an earlier run left there goes. @p service outlives it.
    UpdatePackage(ServiceClient &service, QString folder, AppcastItem item, QByteArray publicKey,
        QObject *parent = nullptr);
    ~UpdatePackage() override;

    void start();
    /// The verified file; empty before ready().
    [[nodiscard]] QString path() const;
    /// The file outlives this object: somebody else still reads it. The next update removes it.
    void leaveFile() { m_left = true; }

Q_SIGNALS:
    void progress(qint64 done, qint64 total);
    void verifying();
    /// The file at path() is what its maker signed and the feed announced. It stays open, and nobody may
    /// write to it any more.
    void ready();
    void failed(const brevok::BrevokError &error);

private:
    void download();
    void verify();
    void verified(const std::optional<UpdateError> &fault);
    void fail(const BrevokError &error);

    ServiceClient &m_service;
    QString m_folder;
    AppcastItem m_item;
    QByteArray m_publicKey;
    std::shared_ptr<QFile> m_file;
    bool m_sound = false;
    bool m_left = false;
};

} // namespace brevok
