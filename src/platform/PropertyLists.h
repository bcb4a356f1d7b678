// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"
#include "platform/FileState.h"

#include <QString>

#include <optional>

namespace brevok {

/// The dictionary in the property list (XML or binary) at @p path; nothing when the file is absent, too large
/// (4 MiB), not a regular file, broken, or not a dictionary. Dates and data become text. Any thread.
/// @p state is what the file was before it was read, when it could be opened.
[[nodiscard]] std::optional<Record> readPropertyList(const QString &path, FileState *state = nullptr);

/// Of the dictionary in the property list at @p path, the values of @p keys; a third of the work when there
/// are few.
[[nodiscard]] std::optional<Record> readPropertyListValues(
    const QString &path, const QList<QByteArray> &keys, FileState *state = nullptr);

/// The path of the information dictionary of the bundle at @p bundlePath.
[[nodiscard]] QString informationPath(const QString &bundlePath);
/// That dictionary, under the rules above.
[[nodiscard]] std::optional<Record> bundleInformation(const QString &bundlePath);

/// What this program knows of itself, from one Info.plist.
class MainBundle {
public:
    /// Reads `Info.plist` in @p resourceFolder. @p bundlePath is what identifies this copy (its executable).
    MainBundle(QString bundlePath, QString resourceFolder);

    /// The bundle of the running program: its resources stand in `../share/tolvane-brevok` beside the
    /// executable.
    static MainBundle ofRunningProgram();
    /// The same for the copy of this program at @p executable.
    static MainBundle ofExecutable(const QString &executable);

    [[nodiscard]] const QString &bundlePath() const { return m_bundlePath; }
    [[nodiscard]] const Record &information() const { return m_information; }
    [[nodiscard]] QString identifier() const;
    /// The short and the full display name, under which running copies are recognised.
    [[nodiscard]] QStringList displayNames() const;
    /// "CFBundleVersion", empty when missing.
    [[nodiscard]] QString version() const;
    /// "CFBundleShortVersionString", else version().
    [[nodiscard]] QString shortVersion() const;
    /// The path of the resource @p name of @p type ("Tolvane", "xml"); empty when there is none.
    [[nodiscard]] QString resourcePath(const QString &name, const QString &type) const;

private:
    QString m_bundlePath;
    QString m_resourceFolder;
    Record m_information;
};

} // namespace brevok
