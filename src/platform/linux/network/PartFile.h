// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QFile>

namespace brevok {

/// A file on its way to its place, ".part-…" beside it. Whatever happens to the program, the place holds a
/// whole file or nothing new; what a program that was killed left behind goes with the next file for the same
/// place.
class PartFile final {
public:
    explicit PartFile(QString destination);
    ~PartFile();
    Q_DISABLE_COPY_MOVE(PartFile)

    /// @return false with errno set
    [[nodiscard]] bool open();
    [[nodiscard]] bool write(QByteArrayView data);
    [[nodiscard]] QString errorText() const { return m_file.errorString(); }
    [[nodiscard]] QString path() const { return m_file.fileName(); }
    /// The file stays. @return its path
    [[nodiscard]] QString release();

private:
    void removeLeftovers() const;

    QString m_destination;
    QFile m_file;
    bool m_ours = false;
};

} // namespace brevok
