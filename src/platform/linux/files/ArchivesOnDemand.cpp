// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// openZipReader() and sha256Of() of programs that may run for days before they see an archive: the libraries
// that read them and all that those need are loaded with the first one, out of a module of their own.

#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "platform/linux/files/FileDigest.h"
#include "platform/linux/files/ZipReader.h"

#include <QCoreApplication>
#include <QLibrary>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

class NoReader final : public ZipReader {
public:
    [[nodiscard]] Step next(ZipEntry & /*entry*/) override { return Step::Failed; }
    [[nodiscard]] Step data(const char *& /*bytes*/, size_t & /*size*/) override { return Step::Failed; }
    [[nodiscard]] Failure failure() const override
    {
        return {Texts::tr("the library for archives is missing"), ELIBACC};
    }
};

template <typename Function> Function loaded(const char *name)
{
    QLibrary module(
        QCoreApplication::applicationDirPath() + u"/../lib/tolvane-brevok/tolvane-brevok-archives.so"_s);
    const auto function = reinterpret_cast<Function>(module.resolve(name));
    if (function == nullptr) {
        logLine(module.errorString());
    }
    return function;
}

} // namespace

std::unique_ptr<ZipReader> openZipReader(int archive, size_t blockSize)
{
    const auto open = loaded<ZipReader *(*)(int, size_t)>("openArchive");
    return open != nullptr ? std::unique_ptr<ZipReader>(open(archive, blockSize))
                           : std::make_unique<NoReader>();
}

QByteArray sha256Of(int file, qint64 size)
{
    const auto digest = loaded<void (*)(int, qint64, QByteArray *)>("digestOfArchive");
    QByteArray result;
    errno = ELIBACC;
    if (digest != nullptr) {
        digest(file, size, &result);
    }
    return result;
}

} // namespace brevok
