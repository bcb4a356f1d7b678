// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// openZipReader() of programs that may run for days before they see an archive: the library that reads them
// and all that it needs are loaded with the first one, out of a module of their own.

#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "platform/linux/ZipReader.h"

#include <QCoreApplication>
#include <QLibrary>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

using Open = ZipReader *(*)(int archive, size_t blockSize);

class NoReader final : public ZipReader {
public:
    [[nodiscard]] Step next(ZipEntry & /*entry*/) override { return Step::Failed; }
    [[nodiscard]] Step data(const char *& /*bytes*/, size_t & /*size*/) override { return Step::Failed; }
    [[nodiscard]] Failure failure() const override
    {
        return {Texts::tr("the library that reads archives is missing"), ELIBACC};
    }
};

Open loaded()
{
    QLibrary module(
        QCoreApplication::applicationDirPath() + u"/../lib/tolvane-brevok/tolvane-brevok-archives.so"_s);
    const auto open = reinterpret_cast<Open>(module.resolve("openArchive"));
    if (open == nullptr) {
        logLine(module.errorString());
    }
    return open;
}

} // namespace

std::unique_ptr<ZipReader> openZipReader(int archive, size_t blockSize)
{
    const Open open = loaded();
    return open != nullptr ? std::unique_ptr<ZipReader>(open(archive, blockSize))
                           : std::make_unique<NoReader>();
}

} // namespace brevok
