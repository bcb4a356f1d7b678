// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "HttpServer.h"
#include "RequestLog.h"

#include <QHash>
#include <QString>

namespace brevok::demo {

struct CertificateFiles;

/// The web service over the files of one root folder. Accounts and lists are read again at every request;
/// sessions last as long as the process.
class DemoService final : public HttpServer {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DemoService)

public:
    explicit DemoService(QString root, QObject *parent = nullptr);
    ~DemoService() override;

    /// Starts serving HTTPS on loopback. @return what went wrong; empty once it serves
    [[nodiscard]] QString start(quint16 port, const CertificateFiles &certificates);

    /// "https://localhost:PORT"
    [[nodiscard]] const QString &url() const { return m_url; }

private:
    std::unique_ptr<QFile> fileFor(const Request &request) override;
    Response answer(const Request &request) override;

    void log(const Request &request);
    Response signIn(const Request &request);
    Response signOut(const Request &request);
    Response pluginList(const Request &request);
    Response productList(const Request &request);
    Response updateFeed(const Request &request);
    Response acceptReport(const Request &request);
    Response homePage(const Request &request);
    Response accountPage(const Request &request);
    Response packagePage(const Request &request);
    Response redirect(const Request &request);
    [[nodiscard]] Response list(const Request &request, const QString &fileName) const;
    [[nodiscard]] QString storedFile(const QString &path) const;
    [[nodiscard]] QJsonValue withAddresses(const QJsonValue &element) const;

    QString m_root;
    QString m_url;
    RequestLog m_log;
    QHash<QString, QString> m_sessions; // id to e-mail address
};

} // namespace brevok::demo
