// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/RequestWork.h"
#include "daemon/TargetPath.h"
#include "fuzz/Fuzz.h"
#include "support/Folders.h"
#include "support/SampleBundles.h"
#include "support/ZipWriter.h"

#include <algorithm>
#include <filesystem>

#include <unistd.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using Operation = HelperRequest::Operation;
namespace fs = std::filesystem;

namespace {

// What a target is, by the words of the interface's description.
bool isTarget(const QString &path)
{
    const QStringList names = path.split(u'/');
    const bool isPlain = names.size() > 2 && names.first().isEmpty()
        && std::none_of(names.cbegin() + 1, names.cend(),
            [](const QString &name) { return name.isEmpty() || name == u"."_s || name == u".."_s; });
    const QString folder = isPlain ? names[names.size() - 2] : QString();
    const QString last = names.last();
    return isPlain && !path.contains(u'\n') && !path.contains(u'\0')
        && ((folder == u"Tolvane"_s && last.endsWith(u".InDesignPlugin"_s) && !last.startsWith(u'.'))
            || (folder == u"InDesign Workspaces"_s && last == u"Tolvane.xml"_s
                && names[names.size() - 3] == u"Presets"_s));
}

HelperRequest asked(const QList<QByteArray> &lines)
{
    const QList<QByteArray> numbers = (lines[0] + "    ").split(' ');
    const auto target = QString::fromUtf8(lines[1]);
    const auto source = QString::fromUtf8(lines[2]);
    return {.operation = static_cast<Operation>(numbers[0].toUInt() % 9),
        .caller = u":1.1"_s,
        .target = targetPath(target).value_or(target),
        .source = plainPath(source).value_or(source),
        .user = numbers[1] == "me" ? ::geteuid() : numbers[1].toUInt(),
        .permissions = numbers[2].toUInt(nullptr, 8),
        .recursive = numbers[3] == "r"};
}

// The same request, about the same path in a folder of its own.
HelperRequest moved(const HelperRequest &request, const QString &folder, const QString &source)
{
    return {.operation = request.operation,
        .caller = request.caller,
        .target = folder + request.target,
        .source = source,
        .user = request.user,
        .permissions = request.permissions,
        .recursive = request.recursive};
}

void carryOutIn(const QString &folder, const HelperRequest &request)
{
    const bool stoodThere = QFile::exists(request.target);
    const WorkJournal journal(folder + u"/journal"_s);
    SourcePtr source;
    if (request.operation == Operation::Install) {
        source = openSource(request, ::geteuid(), true).source;
        HOLDS(source && !takeSource(*source, journal.folder()));
    }
    const WorkDone done = carryOut(request, {.user = ::geteuid(), .groups = {::getegid()}}, source, journal);
    if (done.rest) {
        done.rest();
    }
    const bool isThere = QFile::exists(request.target);
    const bool mayChange = request.operation == Operation::Install || request.operation == Operation::Remove;
    HOLDS(mayChange || isThere == stoodThere);
    HOLDS(request.operation != Operation::Exists || done.answer.yes == stoodThere);
    HOLDS(request.operation != Operation::Remove
        || (done.answer.yes ? !isThere : done.answer.error.has_value()));
    HOLDS(request.operation != Operation::Install || done.answer.yes == isThere || done.answer.error);
    HOLDS(testing::modeOf(request.target) <= 0777);
    HOLDS(testing::entries(journal.folder()).isEmpty());
    HOLDS(testing::entries(folder) == (QStringList{u"beside"_s, u"journal"_s, u"root"_s, u"source.zip"_s}));
    HOLDS(testing::contentsOf(folder + u"/beside"_s) == "beside"
        && testing::modeOf(folder + u"/beside"_s) == 0644);
}

} // namespace

// "OPERATION USER PERMISSIONS RECURSIVE", the target and the source, a line each.
void fuzz::check(const QByteArray &input)
{
    const HelperRequest request = asked((input + "\n\n\n").split('\n'));
    if (!objectionTo(request, ::geteuid()).isEmpty()) {
        return;
    }
    HOLDS(isTarget(request.target));
    HOLDS(!request.namesUser() || request.user == ::geteuid());
    HOLDS(request.permissions <= 0777);
    HOLDS(request.operation != Operation::Install
        || (request.source.startsWith(u'/') && !request.source.split(u'/').contains(u".."_s)));
    const QString folder = scratchFolder() + u"/requests"_s;
    fs::remove_all(folder.toStdString());
    HOLDS(testing::writeFile(folder + u"/root/T/Tolvane/A.InDesignPlugin/code"_s, "code"));
    HOLDS(QDir().mkpath(folder + u"/journal"_s));
    put(folder + u"/beside"_s, "beside");
    const QByteArray name = QFile::encodeName(request.target.section(u'/', -1));
    put(folder + u"/source.zip"_s, testing::zipArchive({{name + "/code", "code"}}));
    const HelperRequest here = moved(request, folder + u"/root"_s, folder + u"/source.zip"_s);
    if (targetPath(here.target)) { // and not too long here
        carryOutIn(folder, here);
    }
}
