// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/ZipRules.h"

#include "foundation/Texts.h"

#include <QFile>
#include <QLocale>

#include <algorithm>

namespace brevok {

namespace {

constexpr int maximumEntries = 200'000;
constexpr int maximumLinks = 10'000;
constexpr int maximumDepth = 64;
constexpr int maximumName = 255;
constexpr int maximumPath = 4095;
constexpr int maximumLinkTarget = 1024;
constexpr qint64 maximumTotal = qint64(8) * 1024 * 1024 * 1024;
/// Below this much an archive may unpack to any multiple of its size, above it to this multiple.
constexpr qint64 harmlessTotal = qint64(64) * 1024 * 1024;
constexpr qint64 maximumRatio = 200;

bool isClutter(const QByteArrayList &components)
{
    return components.first() == "__MACOSX" || components.last() == ".DS_Store"
        || std::any_of(components.cbegin(), components.cend(),
            [](const QByteArray &component) { return component.startsWith("._"); });
}

QString composed(const QByteArray &name)
{
    return QFile::decodeName(name).normalized(QString::NormalizationForm_C);
}

/// Whether a link @p depth folders deep can only lead to something in its own top-level folder, through
/// whatever other links of which the same is true: it goes up first, through real folders, and only then
/// down.
bool staysInside(const QByteArray &target, qsizetype depth)
{
    if (target.isEmpty() || target.size() > maximumLinkTarget || target.startsWith('/')) {
        return false;
    }
    bool down = false;
    const QByteArrayList components = target.split('/');
    for (const QByteArray &component : components) {
        if (component.isEmpty() || component == ".") {
            continue;
        }
        if (component != "..") {
            down = true;
        } else if (down || --depth < 1) {
            return false;
        }
    }
    return depth >= 1;
}

} // namespace

ZipRules::ZipRules(qint64 archiveSize, const QByteArray &only)
    : m_archiveSize(archiveSize)
    , m_only(only)
    , m_composed(composed(only))
{
}

ZipRules::Verdict ZipRules::judge(const ZipEntry &entry)
{
    QByteArrayList components;
    if (++m_entries > maximumEntries) {
        refuse(entry, Texts::tr("it has more than %1 entries").arg(QLocale().toString(maximumEntries)));
        return Verdict::Refuse;
    }
    if (!checkName(entry, &components)) {
        return Verdict::Refuse;
    }
    if (components.isEmpty() || isClutter(components)) {
        return Verdict::Skip;
    }
    if (!checkKind(entry, components.size() - 1) || !checkSize(entry) || !place(components, entry)) {
        return Verdict::Refuse;
    }
    const bool wanted = components.first() == m_only;
    m_found = m_found || wanted;
    return wanted ? Verdict::Take : Verdict::Skip;
}

bool ZipRules::checkName(const ZipEntry &entry, QByteArrayList *components)
{
    if (entry.name.isEmpty()) {
        return refuse(entry, Texts::tr("an entry has no name"));
    }
    if (entry.name.startsWith('/') || entry.name.contains('\\')) {
        return refuse(entry, Texts::tr("the name of the entry is not relative"));
    }
    const QByteArrayList parts = entry.name.split('/');
    for (const QByteArray &part : parts) {
        if (part.isEmpty() || part == ".") {
            continue;
        }
        if (part == "..") {
            return refuse(entry, Texts::tr("the entry points outside the folder"));
        }
        if (part.size() > maximumName) {
            return refuse(entry, Texts::tr("the name of the entry is too long"));
        }
        components->append(part);
    }
    if (!components->isEmpty() && components->first() != m_only
        && composed(components->first()) == m_composed) {
        components->first() = m_only;
    }
    m_path = components->join('/');
    if (components->size() > maximumDepth || m_path.size() > maximumPath) {
        return refuse(entry, Texts::tr("the entry is nested too deeply"));
    }
    // A folder is told by its name or by its kind; only the archive's root has neither.
    return !components->isEmpty() || entry.kind == ZipEntry::Kind::Folder
        || refuse(entry, Texts::tr("an entry has no name"));
}

bool ZipRules::checkKind(const ZipEntry &entry, qsizetype depth)
{
    if (entry.encrypted) {
        return refuse(entry, Texts::tr("the entry is encrypted"));
    }
    switch (entry.kind) {
    case ZipEntry::Kind::Folder:
        return true;
    case ZipEntry::Kind::File:
        return !entry.setId || refuse(entry, Texts::tr("the entry would run with another user's rights"));
    case ZipEntry::Kind::Link:
        if (!staysInside(entry.linkTarget, depth)) {
            return refuse(entry, Texts::tr("the entry is a link that points outside the folder"));
        }
        return ++m_links <= maximumLinks || refuse(entry, Texts::tr("it has too many links"));
    case ZipEntry::Kind::Other:
        break;
    }
    return refuse(entry, Texts::tr("the entry is neither a file nor a folder"));
}

bool ZipRules::checkSize(const ZipEntry &entry)
{
    if (entry.kind != ZipEntry::Kind::File) {
        return true;
    }
    if (entry.size < 0 || entry.size > maximumTotal - m_total) {
        return refuse(entry, Texts::tr("its unpacked contents are too large"));
    }
    m_total += entry.size;
    return m_total <= harmlessTotal || m_total / maximumRatio <= m_archiveSize
        || refuse(entry, Texts::tr("its unpacked contents are too large for the size of the archive"));
}

bool ZipRules::place(const QByteArrayList &components, const ZipEntry &entry)
{
    QByteArray above;
    for (qsizetype i = 0; i + 1 < components.size(); ++i) {
        above += above.isEmpty() ? components[i] : '/' + components[i];
        const auto known = m_placed.constFind(above);
        if (known == m_placed.constEnd()) {
            m_placed.insert(above, ZipEntry::Kind::Folder);
        } else if (*known != ZipEntry::Kind::Folder) {
            return refuse(entry, Texts::tr("the entry is inside something that is not a folder"));
        }
    }
    const auto known = m_placed.constFind(m_path);
    if (known != m_placed.constEnd() && (*known != entry.kind || entry.kind != ZipEntry::Kind::Folder)) {
        return refuse(entry, Texts::tr("the entry occurs twice"));
    }
    m_placed.insert(m_path, entry.kind);
    return true;
}

bool ZipRules::refuse(const ZipEntry &entry, const QString &reason)
{
    m_refusal =
        entry.name.isEmpty() ? reason : QStringLiteral("%1 (%2)").arg(reason, QFile::decodeName(entry.name));
    return false;
}

} // namespace brevok
