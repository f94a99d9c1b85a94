#pragma once

#include "base/Require.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quillon {

using namespace Qt::StringLiterals;

/// An https server on this machine with a certificate of its own, for the name localhost. It
/// answers from the event loop of the thread that made it.
class FeedServer
{
public:
    using Answer = std::function<void(QSslSocket &)>;

    /// The certificate and its key are written to the folder.
    explicit FeedServer(const std::string &folder) : certificate_(folder + "/certificate.pem")
    {
        const QString key = QString::fromStdString(folder + "/certificate-key.pem");
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
                      {u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                       u"ec_paramgen_curve:prime256v1"_s, u"-nodes"_s, u"-days"_s, u"2"_s,
                       u"-subj"_s, u"/CN=localhost"_s, u"-addext"_s,
                       u"subjectAltName=DNS:localhost"_s, u"-keyout"_s, key, u"-out"_s,
                       QString::fromStdString(certificate_)});
        require(openssl.waitForFinished(60000) && openssl.exitCode() == 0,
                "openssl makes a certificate");

        QFile keyFile(key);
        require(keyFile.open(QIODevice::ReadOnly), "openssl has written the key");
        QSslConfiguration security;
        security.setLocalCertificateChain(
            QSslCertificate::fromPath(QString::fromStdString(certificate_)));
        security.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
        server_.setSslConfiguration(security);
        require(server_.listen(QHostAddress::LocalHost), "a port is free");
        QObject::connect(&server_, &QTcpServer::pendingConnectionAvailable, &server_,
                         [this] { accept(); });
    }

    /// Returns the path of a file with the certificate to trust.
    const std::string &certificate() const { return certificate_; }
    std::string address(const std::string &path, const std::string &host = "localhost") const
    {
        return "https://" + host + ":" + std::to_string(server_.serverPort()) + path;
    }
    /// Sets the answer to requests for a path, whatever their query.
    void setAnswer(const std::string &path, Answer answer) { answers_[path] = std::move(answer); }
    void setBody(const std::string &path, const std::string &body)
    {
        setAnswer(path, [body](QSslSocket &socket) { reply(socket, "200 OK", {}, body); });
    }
    static void reply(QSslSocket &socket, const std::string &status, const std::string &headers,
                      const std::string &body)
    {
        const std::string head = "HTTP/1.1 " + status + "\r\nConnection: close\r\n" + headers +
                                 "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
        socket.write(QByteArray::fromStdString(head + body));
        socket.disconnectFromHost();
    }

    /// Returns the paths with their queries that were requested, in order.
    const std::vector<std::string> &requests() const { return requests_; }
    /// Returns how many clients have disconnected.
    int departures() const { return departures_; }

private:
    void accept()
    {
        auto *socket = qobject_cast<QSslSocket *>(server_.nextPendingConnection());
        if (!socket)
            return;
        QObject::connect(socket, &QSslSocket::disconnected, socket, [this, socket] {
            ++departures_;
            socket->deleteLater();
        });
        QObject::connect(socket, &QSslSocket::readyRead, socket, [this, socket] { read(*socket); });
        read(*socket);
    }
    void read(QSslSocket &socket)
    {
        if (!socket.peek(8192).contains("\r\n\r\n"))
            return;
        const std::string request = socket.readAll().toStdString();
        const std::size_t begin = request.find(' ') + 1;
        const std::string target = request.substr(begin, request.find(' ', begin) - begin);
        requests_.push_back(target);
        const auto answer = answers_.find(target.substr(0, target.find('?')));
        if (answer == answers_.end())
            reply(socket, "404 Not Found", {}, "nothing here");
        else
            answer->second(socket);
    }

    std::string certificate_;
    QSslServer server_;
    std::map<std::string, Answer> answers_;
    std::vector<std::string> requests_;
    int departures_ = 0;
};

} // namespace quillon
