#include "fetcher/FeedDownload.h"

#include "platform/linux/updates/UpdateFeed.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTimer>

#include <memory>

namespace quillon {

namespace {

constexpr int MOST_REDIRECTS = 5;
constexpr int STATUS_OK = 200;
/// Errors from this number on are answers of the server.
constexpr int FIRST_CONTENT_ERROR = QNetworkReply::ContentAccessDenied;

} // namespace

void FeedDownload::trustOnly(const QList<QSslCertificate> &authorities)
{
    authorities_ = authorities;
}

QNetworkRequest FeedDownload::request(const QUrl &address) const
{
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(MOST_REDIRECTS);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("quillon"));
    // Without this header the body would be unpacked, but the signature covers the bytes as they
    // are sent.
    request.setRawHeader("Accept-Encoding", "identity");
    if (!authorities_.isEmpty()) {
        QSslConfiguration security = request.sslConfiguration();
        security.setCaCertificates(authorities_);
        request.setSslConfiguration(security);
    }
    return request;
}

FetchStatus FeedDownload::fetch(const QUrl &address, std::chrono::milliseconds patience)
{
    if (!address.isValid() || address.scheme() != u"https")
        return fail(FetchStatus::insecure, QStringLiteral("not an https address"));
    const std::unique_ptr<QNetworkReply> reply(network_.get(request(address)));
    reply->setReadBufferSize(static_cast<qint64>(MAX_FEED_BYTES) + 1);
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, [this, &reply, &loop] {
        if (!take(*reply))
            loop.quit();
    });
    bool isTooSlow = false;
    // This limit is for the whole answer, since the request's own time-out begins anew with every
    // byte.
    QTimer::singleShot(patience, &loop, [&isTooSlow, &loop] {
        isTooSlow = true;
        loop.quit();
    });
    if (!reply->isFinished())
        loop.exec();
    reply->disconnect();
    if (isTooSlow)
        return fail(FetchStatus::tooSlow, QStringLiteral("no answer in time"));
    return judge(*reply);
}

bool FeedDownload::take(QNetworkReply &reply)
{
    body_ += reply.readAll();
    return static_cast<std::size_t>(body_.size()) <= MAX_FEED_BYTES;
}

FetchStatus FeedDownload::judge(QNetworkReply &reply)
{
    // The size is checked here too, since a fast network delivers the whole body at once.
    if (!take(reply))
        return fail(FetchStatus::refused, QStringLiteral("far too long for a feed"));
    const QNetworkReply::NetworkError error = reply.error();
    switch (error) {
    case QNetworkReply::NoError:
        break;
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::InsecureRedirectError:
        return fail(FetchStatus::insecure, reply.errorString());
    case QNetworkReply::TooManyRedirectsError:
        return fail(FetchStatus::refused, reply.errorString());
    default:
        return fail(error >= FIRST_CONTENT_ERROR ? FetchStatus::refused : FetchStatus::unreachable,
                    reply.errorString());
    }
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != STATUS_OK)
        return fail(FetchStatus::refused, QStringLiteral("status %1").arg(status));
    return FetchStatus::fetched;
}

FetchStatus FeedDownload::fail(FetchStatus status, const QString &failure)
{
    body_.clear();
    failure_ = failure;
    return status;
}

} // namespace quillon
