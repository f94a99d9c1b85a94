#pragma once

#include <QString>

namespace quillon {

class SearchBase;
class SearchBaseLogger;

/// Returns "file_tree ", the seconds since 1970 at this moment with their fraction, and ".txt".
QString proposedDumpName();

/// Writes the recent lines of the log and then everything that is indexed to a text file, piece by
/// piece, and reports its beginning and its end on the log's output. If anything fails, the former
/// file at the path is untouched. Returns an empty text when the file was written, and otherwise
/// the reason in the user's language. It may take seconds, so it belongs on a worker thread.
QString dumpTree(const QString &path, const SearchBase &searchBase, SearchBaseLogger &logger);

} // namespace quillon
