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

/// Fetches the body at one https address: at most MAX_FEED_BYTES, within one time for the whole,
/// and through redirects to https only. It sends only the request, without cookies and credentials.
class FeedDownload
{
public:
    /// Trusts these authorities instead of the system's.
    void trustOnly(const QList<QSslCertificate> &authorities);
    /// Runs an event loop until the download is done. It is called only once for each object.
    FetchStatus fetch(const QUrl &address, std::chrono::milliseconds patience);

    /// Returns the bytes as they were sent, once they are fetched.
    const QByteArray &body() const { return body_; }
    /// Says for the user why nothing was fetched.
    const QString &failure() const { return failure_; }

private:
    QNetworkRequest request(const QUrl &address) const;
    /// Returns false when there are more bytes than a feed can have.
    bool take(QNetworkReply &reply);
    FetchStatus fail(FetchStatus status, const QString &failure);
    FetchStatus judge(QNetworkReply &reply);

    QNetworkAccessManager network_;
    QList<QSslCertificate> authorities_;
    QByteArray body_;
    QString failure_;
};

} // namespace quillon
