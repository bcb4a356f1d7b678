// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/ZipReader.h"

#include <QByteArrayList>
#include <QHash>

namespace brevok {

/// Decides entry by entry whether an archive may be unpacked. No input or output. The same rules judge the
/// archive before anything is written and again while it is unpacked.
class ZipRules final {
public:
    /// Nothing but the item @p only at the top of the archive is wanted. A name in another normal form of
    /// Unicode is that name too: archives from Macs have them decomposed.
    ZipRules(qint64 archiveSize, const QByteArray &only);

    enum class Verdict {
        Take,
        Skip, ///< nothing of use here: what stands beside the item, resource forks, Finder's notes
        Refuse, ///< with the whole archive; see refusal()
    };
    [[nodiscard]] Verdict judge(const ZipEntry &entry);

    /// Where the entry just taken belongs: relative, without "." and empty components.
    [[nodiscard]] const QByteArray &path() const { return m_path; }
    /// Whether something of the item was there.
    [[nodiscard]] bool found() const { return m_found; }
    [[nodiscard]] const QString &refusal() const { return m_refusal; }

private:
    [[nodiscard]] bool checkName(const ZipEntry &entry, QByteArrayList *components);
    [[nodiscard]] bool checkKind(const ZipEntry &entry, qsizetype depth);
    [[nodiscard]] bool checkSize(const ZipEntry &entry);
    [[nodiscard]] bool place(const QByteArrayList &components, const ZipEntry &entry);
    bool refuse(const ZipEntry &entry, const QString &reason);

    qint64 m_archiveSize;
    QByteArray m_only;
    QString m_composed; ///< the same name as Unicode composes it
    qint64 m_total = 0;
    int m_entries = 0;
    int m_links = 0;
    QHash<QByteArray, ZipEntry::Kind> m_placed; ///< everything taken and the folders above it
    bool m_found = false;
    QByteArray m_path;
    QString m_refusal;
};

} // namespace brevok
