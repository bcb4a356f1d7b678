// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/ZipReader.h"

#include <QByteArrayList>
#include <QHash>

namespace brevok {

/// Decides entry by entry whether an archive may be unpacked. No input or output. The same rules judge the
/// archive before anything is written and again while it is unpacked.
class ZipRules final {
public:
    /// What unpacking makes of an entry that everybody may write to.
    enum class OpenModes { Closed, Refused };

    explicit ZipRules(qint64 archiveSize, OpenModes openModes = OpenModes::Closed)
        : m_archiveSize(archiveSize)
        , m_openModes(openModes)
    {
    }

    enum class Verdict {
        Take,
        Skip, ///< nothing of use here: resource forks, Finder's notes
        Refuse, ///< with the whole archive; see refusal()
    };
    [[nodiscard]] Verdict judge(const ZipEntry &entry);

    /// Where the entry just taken belongs: relative, without "." and empty components.
    [[nodiscard]] const QByteArray &path() const { return m_path; }
    /// The names taken so far that stand at the top.
    [[nodiscard]] const QByteArrayList &topLevel() const { return m_topLevel; }
    [[nodiscard]] const QString &refusal() const { return m_refusal; }

private:
    [[nodiscard]] bool checkName(const ZipEntry &entry, QByteArrayList *components);
    [[nodiscard]] bool checkKind(const ZipEntry &entry, qsizetype depth);
    [[nodiscard]] bool checkSize(const ZipEntry &entry);
    [[nodiscard]] bool place(const QByteArrayList &components, const ZipEntry &entry);
    bool refuse(const ZipEntry &entry, const QString &reason);

    qint64 m_archiveSize;
    OpenModes m_openModes;
    qint64 m_total = 0;
    int m_entries = 0;
    int m_links = 0;
    QHash<QByteArray, ZipEntry::Kind> m_placed; ///< everything taken and the folders above it
    QByteArrayList m_topLevel;
    QByteArray m_path;
    QString m_refusal;
};

} // namespace brevok
