// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/ServiceClient.h"

#include <QCoreApplication>
#include <QHash>
#include <QMetaObject>
#include <QPointer>
#include <QThreadPool>

namespace brevok::testing {

/// A service whose replies the test gives. Requests are kept until the test answers them.
class FakeServiceClient final : public ServiceClient {
public:
    struct ListRequest {
        QString path;
        Validator known;
        QPointer<QObject> context;
        ReplyHandler handler;
    };
    struct FileRequest {
        QUrl url;
        Validator known;
        QPointer<QObject> context;
        ReplyHandler handler;
    };
    struct DownloadRequest : DownloadOrder {
        QPointer<QObject> context;
        ProgressHandler progress;
        DownloadHandler handler;
    };

    bool reachable = true;
    QList<ListRequest> lists;
    QList<FileRequest> files;
    QList<DownloadRequest> downloads;

    [[nodiscard]] bool checkNetworkReachability() override { return reachable; }
    void getList(const QString &path, const Validator &known, QObject *context, ReplyHandler handler) override
    {
        lists.append({path, known, context, std::move(handler)});
    }
    void fetchFile(const QUrl &url, const Validator &known, QObject *context, ReplyHandler handler) override
    {
        files.append({url, known, context, std::move(handler)});
    }
    void download(const DownloadOrder &order, QObject *context, ProgressHandler progress,
        DownloadHandler handler) override
    {
        downloads.append({order, context, std::move(progress), std::move(handler)});
    }

    /// Answers the oldest list request, and waits until a list is read in the background and taken over.
    void answerList(const ServiceReply &reply)
    {
        const ListRequest request = lists.takeFirst();
        if (request.context) {
            request.handler(reply);
        }
        constexpr int sliceMs = 10;
        while (!QThreadPool::globalInstance()->waitForDone(sliceMs)) {
            QCoreApplication::sendPostedEvents();
        }
        QCoreApplication::sendPostedEvents();
    }
};

} // namespace brevok::testing
