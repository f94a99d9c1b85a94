#pragma once

#include "platform/linux/updates/FetchStatus.h"

#include <QByteArray>
#include <QList>
#include <QNetworkAccessManager>
#include <QSslCertificate>
#include <QString>
#include <QUrl>

#include <chrono>

class QNetworkReply;

namespace quillon {

/// Fetches the body at one https address: at most MAX_FEED_BYTES, within a time for all of it, and
/// through redirects to https only. Sends nothing but the request: no cookies, no credentials.
class FeedDownload
{
public:
    /// In place of the authorities that the system trusts.
    void trustOnly(const QList<QSslCertificate> &authorities);
    /// Runs an event loop until it is done. Once for each object.
    FetchStatus fetch(const QUrl &address, std::chrono::milliseconds patience);

    /// The bytes as they were sent, once fetched.
    const QByteArray &body() const { return body_; }
    /// For a person, when it was not fetched.
    const QString &failure() const { return failure_; }

private:
    QNetworkRequest request(const QUrl &address) const;
    /// False when this is more than a feed can be.
    bool take(QNetworkReply &reply);
    FetchStatus fail(FetchStatus status, const QString &failure);
    FetchStatus judge(QNetworkReply &reply);

    QNetworkAccessManager network_;
    QList<QSslCertificate> authorities_;
    QByteArray body_;
    QString failure_;
};

} // namespace quillon
