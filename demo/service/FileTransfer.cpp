// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "FileTransfer.h"

#include <QSslSocket>

#include <algorithm>

namespace brevok::demo {

namespace {

constexpr qint64 pieceSize = qint64{256} * 1024;
constexpr qint64 mostWaiting = qint64{4} * pieceSize;

} // namespace

FileTransfer::FileTransfer(std::unique_ptr<QFile> file, QSslSocket *socket)
    : QObject(socket)
    , m_file(std::move(file))
    , m_socket(socket)
    , m_left(m_file->size())
{
    connect(socket, &QSslSocket::encryptedBytesWritten, this, &FileTransfer::fill);
    fill();
}

FileTransfer::~FileTransfer() = default;

void FileTransfer::fill()
{
    while (m_left > 0 && m_socket->bytesToWrite() + m_socket->encryptedBytesToWrite() < mostWaiting) {
        const QByteArray piece = m_file->read(std::min(m_left, pieceSize));
        if (piece.isEmpty()) {
            m_socket->abort(); // the file has shrunk: a broken connection says so, too few bytes might not
            return;
        }
        m_left -= piece.size();
        m_socket->write(piece);
    }
    if (m_left == 0) {
        deleteLater();
    }
}

} // namespace brevok::demo
