#include "app/preferences/TreeDump.h"

#include "core/SearchBase.h"
#include "indexing/SearchBaseLogger.h"

#include <QSaveFile>

#include <chrono>
#include <string>
#include <string_view>
#include <utility>

namespace quillon {

namespace {

/// The pieces of the tree are smaller than what is worth a write.
constexpr std::size_t WRITE_SIZE = 1U << 20;

/// Collects pieces into writes. After the first failure nothing more is written.
class DumpWriter
{
public:
    explicit DumpWriter(QSaveFile &file) : file_(file) { pending_.reserve(2 * WRITE_SIZE); }

    void append(std::string_view piece)
    {
        pending_ += piece;
        if (pending_.size() >= WRITE_SIZE)
            flush();
    }
    void flush()
    {
        const auto size = static_cast<qint64>(pending_.size());
        isWritten_ = isWritten_ && file_.write(pending_.data(), size) == size;
        pending_.clear();
    }
    bool isWritten() const { return isWritten_; }

private:
    QSaveFile &file_;
    std::string pending_;
    bool isWritten_ = true;
};

bool write(QSaveFile &file, const SearchBase &searchBase, const SearchBaseLogger &logger)
{
    // The writes are large enough, so another buffer would only copy them.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    DumpWriter writer(file);
    bool isFirst = true;
    for (const std::string &line : logger.recentLogItems()) {
        if (!std::exchange(isFirst, false))
            writer.append("\n");
        writer.append(line);
    }
    writer.append("\n\nFile Tree:\n\n");
    searchBase.treeDescription([&writer](std::string_view piece) { writer.append(piece); });
    writer.flush();
    return writer.isWritten() && file.commit();
}

} // namespace

QString proposedDumpName()
{
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return QStringLiteral("file_tree %1.txt").arg(now.count(), 0, 'f', 6);
}

QString dumpTree(const QString &path, const SearchBase &searchBase, SearchBaseLogger &logger)
{
    logger.print("*** ADVANCED_PREFS dump tree start " + path.toStdString());
    QSaveFile file(path);
    QString fault = write(file, searchBase, logger) ? QString() : file.errorString();
    logger.print("*** ADVANCED_PREFS dump tree end");
    return fault;
}

} // namespace quillon
