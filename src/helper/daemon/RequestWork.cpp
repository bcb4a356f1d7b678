// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/RequestWork.h"

#include "daemon/TargetPath.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "helper/BrevokInstaller.h"
#include "platform/linux/files/GuardedPath.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestSource = qint64(1024) * 1024 * 1024;

HelperAnswer forbidden(const std::optional<BrevokError> &error)
{
    HelperAnswer answer;
    answer.refusal = HelperAnswer::Refusal::Forbidden;
    answer.reason = error ? error->description : QString();
    return answer;
}

HelperAnswer answerOf(bool yes, const std::optional<BrevokError> &error)
{
    HelperAnswer answer;
    answer.yes = yes;
    answer.error = error;
    if (error && !yes) {
        answer.failure = causeOf(*error);
    }
    return answer;
}

/// What a source is or where it is would tell about somebody else's files; a shortage does not.
HelperAnswer withoutSource(const std::optional<BrevokError> &error)
{
    constexpr std::array shortages{ENOSPC, EDQUOT, EFBIG, EIO, ENOMEM};
    const bool isShortage = error && std::ranges::find(shortages, error->code) != shortages.end();
    return isShortage ? answerOf(false, error) : forbidden(error);
}

HelperAnswer systemFailure()
{
    return answerOf(false,
        BrevokError{
            .domain = QString::fromLatin1(fileErrorDomain), .code = errno, .description = reasonOf(errno)});
}

WorkDone install(const HelperRequest &request, const std::shared_ptr<GuardedFileOperations> &files,
    const WorkJournal &journal)
{
    const QString entry = journal.begin(request.target, false, !files->fileExists(request.target));
    if (entry.isEmpty()) {
        return {systemFailure()};
    }
    const InstallResult result = BrevokInstaller(*files).install({.source = request.source,
        .target = request.target,
        .user = request.user,
        .checksum = request.checksum});
    HelperAnswer answer = answerOf(result.answer, result.error);
    answer.failure = result.failure;
    return {answer, [files, journal, entry] {
                if (files->finish()) {
                    journal.end(entry);
                }
            }};
}

WorkDone remove(const HelperRequest &request, const std::shared_ptr<GuardedFileOperations> &files,
    const WorkJournal &journal)
{
    // On a full disk nothing is remembered, and removing still helps.
    const QString entry = journal.begin(request.target, true, false);
    std::optional<BrevokError> error;
    const bool removed = BrevokInstaller(*files).removeItemAtPath(request.target, &error);
    return {answerOf(removed, error), [files, journal, entry] {
                if (files->finish() && !entry.isEmpty()) {
                    journal.end(entry);
                }
            }};
}

/// Nobody is asked before these, so they tell nobody what he could not see himself.
HelperAnswer look(const HelperRequest &request, const UserRights &caller, const GuardedFileOperations &files)
{
    using Operation = HelperRequest::Operation;
    HelperAnswer answer;
    if (!guardedpath::isVisible(QFile::encodeName(request.target), caller)) {
        return answer;
    }
    if (request.operation == Operation::IsReadable) {
        answer.yes = files.isReadable(request.target);
    } else if (request.operation == Operation::IsWritable) {
        answer.yes = files.isWritable(request.target);
    } else if (request.operation == Operation::IsExecutable) {
        answer.yes = files.isExecutable(request.target);
    } else if (request.operation == Operation::IsDeletable) {
        answer.yes = files.isDeletable(request.target);
    } else {
        answer.yes = files.fileExists(request.target, &answer.isDirectory);
    }
    return answer;
}

} // namespace

OpenedSource openSource(const HelperRequest &request, quint32 user, bool isAsked)
{
    using Bytes = GuardedFileOperations::Bytes;
    std::optional<BrevokError> error;
    auto source = GuardedFileOperations::openSource(
        request.source, user, longestSource, isAsked ? Bytes::AsSeen : Bytes::Any, &error);
    if (!source) {
        return {.refusal = withoutSource(error)};
    }
    // Whoever lets go of it must not wait for the file system that it is on.
    return {.source = SourcePtr(new GuardedFileOperations::Source(std::move(*source)),
                [](GuardedFileOperations::Source *done) { inBackground([done] { delete done; }); })};
}

std::optional<HelperAnswer> takeSource(GuardedFileOperations::Source &source, const QString &scratch)
{
    std::optional<BrevokError> error;
    return GuardedFileOperations::takeSource(source, scratch, &error) ? std::nullopt
                                                                      : std::optional(withoutSource(error));
}

WorkDone carryOut(const HelperRequest &request, const UserRights &caller, const SourcePtr &source,
    const WorkJournal &journal)
{
    using Operation = HelperRequest::Operation;
    const auto files = std::make_shared<GuardedFileOperations>(
        caller.user, request.target, source ? std::move(*source) : GuardedFileOperations::Source());
    switch (request.operation) {
    case Operation::Install:
        return install(request, files, journal);
    case Operation::Remove:
        return remove(request, files, journal);
    case Operation::SetAttributes:
        BrevokInstaller(*files).setUID(request.user, request.permissions, request.target, request.recursive);
        return {};
    default:
        return {look(request, caller, *files)};
    }
}

void repairInterruptedWork(const WorkJournal &journal, const WorkJournal::Entry &entry)
{
    if (const std::optional<QString> target = targetPath(entry.target)) {
        switch (GuardedFileOperations::repair(*target, {entry.removal, entry.fresh, entry.rebooted})) {
        case replaceditem::Repair::NothingToDo:
            logLine(u"interrupted work had left nothing: %1"_s.arg(*target));
            break;
        case replaceditem::Repair::Cleaned:
            logLine(u"removed what interrupted work had left: %1"_s.arg(*target));
            break;
        case replaceditem::Repair::Restored:
            logLine(u"brought back what interrupted work had replaced: %1"_s.arg(*target));
            break;
        }
    }
    journal.end(entry.id);
}

} // namespace brevok
