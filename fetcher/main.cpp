// fetch-feed ADDRESS writes the body at an https address to standard output, within narrow limits
// of size and time. It is a separate program, so that no process that stays loads the libraries of
// the network.

#include "fetcher/FeedDownload.h"

#include <QCoreApplication>
#include <QSslCertificate>

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>

namespace {

using quillon::FetchStatus;

int run(int argc, char **argv)
{
    std::string address;
    std::string authorities;
    long patience = 10000;
    CLI::App parser("Writes what stands at an https address to the standard output.", "fetch-feed");
    parser.add_option("ADDRESS", address)->required();
    parser.add_option("--patience", patience, "Milliseconds for the whole answer")
        ->check(CLI::PositiveNumber);
    parser.add_option("--authorities", authorities,
                      "A file of certificates to trust in place of the system's");
    try {
        parser.parse(argc, argv);
    } catch (const CLI::Success &success) {
        return parser.exit(success);
    } catch (const CLI::ParseError &error) {
        std::fprintf(stderr, "fetch-feed: %s\n", error.what());
        return static_cast<int>(FetchStatus::misused);
    }

    const QCoreApplication application(argc, argv);
    quillon::FeedDownload download;
    if (!authorities.empty())
        download.trustOnly(QSslCertificate::fromPath(QString::fromStdString(authorities)));
    FetchStatus status = download.fetch(QUrl(QString::fromStdString(address), QUrl::StrictMode),
                                        std::chrono::milliseconds(patience));
    if (status == FetchStatus::fetched) {
        const QByteArray &body = download.body();
        const auto size = static_cast<std::size_t>(body.size());
        if (std::fwrite(body.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0)
            status = FetchStatus::unreachable;
    } else {
        std::fprintf(stderr, "quillon: %s: %s\n", address.c_str(),
                     download.failure().toUtf8().constData());
    }
    return static_cast<int>(status);
}

} // namespace

int main(int argc, char **argv)
{
    const int status = run(argc, argv);
    // Looking up a host name that nobody resolves would delay the normal end of the process.
    std::fflush(nullptr);
    std::_Exit(status);
}
