// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/PartFile.h"

#include "platform/PartFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Tells the files of this run of the program from those of others.
QString ofThisRun()
{
    static const QString mark = QString::number(QRandomGenerator::system()->generate64(), 36);
    return partMark + mark;
}

} // namespace

PartFile::PartFile(QString destination)
    : m_destination(std::move(destination))
{
}

PartFile::~PartFile()
{
    if (m_ours) {
        m_file.remove();
    }
}

// Only a file that this call makes will do: nobody may have put a link where it goes.
bool PartFile::open()
{
    removeLeftovers();
    static quint64 count = 0;
    m_file.setFileName(m_destination + ofThisRun() + u'-' + QString::number(++count));
    errno = 0;
    m_ours = m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered);
    return m_ours;
}

bool PartFile::write(QByteArrayView data)
{
    errno = 0;
    return m_file.write(data.data(), data.size()) == data.size();
}

QString PartFile::release()
{
    m_file.close();
    m_ours = false;
    return m_file.fileName();
}

void PartFile::removeLeftovers() const
{
    const QFileInfo destination(m_destination);
    const QString name = destination.fileName();
    const QFileInfoList files = destination.dir().entryInfoList(QDir::Files | QDir::System | QDir::Hidden);
    for (const QFileInfo &file : files) {
        if (file.fileName().startsWith(name + partMark) && !file.fileName().startsWith(name + ofThisRun())) {
            QFile::remove(file.filePath());
        }
    }
}

} // namespace brevok
