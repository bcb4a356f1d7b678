// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/Sha256.h"
#include "platform/linux/network/Gunzip.h"
#include "platform/linux/network/PartFile.h"
#include "platform/linux/network/TransferWork.h"

#include <array>
#include <chrono>
#include <optional>

#include <curl/curl.h>

namespace brevok {

/// One request on the thread that moves the data: what the library is told, and what it brings.
class CurlTransfer final {
public:
    using Clock = std::chrono::steady_clock;

    CurlTransfer(TransferDesk &desk, const HttpSetup &setup, TransferOrder order);
    ~CurlTransfer();
    Q_DISABLE_COPY_MOVE(CurlTransfer)

    [[nodiscard]] CURL *handle() const { return m_easy.get(); }
    [[nodiscard]] static CurlTransfer *of(CURL *handle);
    [[nodiscard]] quint64 number() const { return m_order.transfer; }
    [[nodiscard]] const TransferOrder &order() const { return m_order; }

    /// When nothing more is waited for.
    [[nodiscard]] Clock::time_point deadline() const;
    /// Tells the desk how it ended. @p result is the library's word
    void end(CURLcode result);
    void endLate();

private:
    struct FreeEasy {
        void operator()(CURL *handle) const { curl_easy_cleanup(handle); }
    };
    struct FreeList {
        void operator()(curl_slist *list) const { curl_slist_free_all(list); }
    };

    template <typename Value> void set(CURLoption option, Value value)
    {
        curl_easy_setopt(m_easy.get(), option, value);
    }
    void setRequest();
    void setTrust(const HttpSetup &setup);
    void setHeaders();
    void addHeader(const QByteArray &line);

    static size_t headerArrived(const char *data, size_t size, size_t count, void *transfer);
    static size_t bodyArrived(const char *data, size_t size, size_t count, void *transfer);
    static int moved(
        void *transfer, curl_off_t total, curl_off_t done, curl_off_t upTotal, curl_off_t upDone);

    void noteProgress(qint64 bytes);
    [[nodiscard]] bool takeHeader(QByteArrayView line);
    [[nodiscard]] bool takeBody(QByteArrayView data);
    [[nodiscard]] bool keep(QByteArrayView data);
    [[nodiscard]] bool keepInFile(QByteArrayView data);
    [[nodiscard]] bool isForFile() const;
    [[nodiscard]] bool failToStore(int code);
    [[nodiscard]] bool fail(HttpFailure failure, const QString &reason, int code = 0);
    void judge(CURLcode result);
    void judgeBody();
    [[nodiscard]] HttpFailure failureOf(CURLcode result) const;
    [[nodiscard]] long info(CURLINFO what) const;

    TransferDesk &m_desk;
    TransferOrder m_order;
    std::unique_ptr<CURL, FreeEasy> m_easy;
    std::unique_ptr<curl_slist, FreeList> m_headers;
    std::array<char, CURL_ERROR_SIZE> m_error = {};
    Clock::time_point m_moved = Clock::now();
    Clock::time_point m_told; ///< of the progress
    qint64 m_progress = 0; ///< bytes since then
    curl_off_t m_uploaded = 0;
    qint64 m_bodyBytes = 0; ///< as they came
    qint64 m_headerBytes = 0;
    bool m_headWhole = false;
    bool m_enough = false; ///< broken off because nothing more is wanted
    std::optional<Gunzip> m_gzip;
    std::optional<PartFile> m_part;
    Sha256 m_checksum; ///< of the file, where one is expected
    HttpReply m_reply;
};

} // namespace brevok
