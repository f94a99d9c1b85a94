#pragma once

#include <QString>

namespace quillon {

class SearchBase;
class SearchBaseLogger;

/// "file_tree ", the seconds since 1970 at this moment with their fraction, ".txt".
QString proposedDumpName();

/// Writes the recent lines of the log and then everything that is indexed to a text file, piece by
/// piece; says its beginning and its end on the log's output. Whatever fails, what stood at the
/// path before is untouched. Empty when the file was written, else the reason in the user's
/// language. May take seconds, so it belongs on a worker thread.
QString dumpTree(const QString &path, const SearchBase &searchBase, SearchBaseLogger &logger);

} // namespace quillon
