// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFile>
#include <QObject>

#include <memory>

QT_BEGIN_NAMESPACE
class QSslSocket;
QT_END_NAMESPACE

namespace brevok::demo {

/// Sends the rest of an open file as a response's body, no faster than the client takes it and without
/// holding more than a piece of it. Belongs to the socket and ends itself. (The HTTP server's own way of
/// sending a file does not survive a client that breaks off.)
class FileTransfer final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileTransfer)

public:
    /// Starts at once; the response's head has been written.
    FileTransfer(std::unique_ptr<QFile> file, QSslSocket *socket);
    ~FileTransfer() override;

private:
    void fill();

    std::unique_ptr<QFile> m_file;
    QSslSocket *m_socket;
    qint64 m_left; ///< bytes that the head has promised and that are not handed over yet
};

} // namespace brevok::demo
