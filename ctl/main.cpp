// The program's engine on the command line.
//
//   CommandLine       reads the arguments and chooses the command
//   MatchCommand      ranks paths from standard input (RecordReader reads them)
//   FindCommand       searches the running application's index, else its own (OwnIndex)
//   PickCommand       lets the user choose in the terminal (PickSource, PickScreen)
//   ShellInit         holds what shells read at their start
//   OpenPathsCommand  has the running application open paths
//   UseCommand        counts that a path was opened
//   CrawlCommand      crawls folders and prints what would be indexed
//   WatchCommand      keeps an index of folders current, prints it or its changes
//   StatusCommand     prints the state of the running application
//   MatchPrinter      prints what find and match have found
//   Output            standard output, which scripts read; everything else goes to standard error
//
// ReadOnlySettings says what is searched: folders named by the user, else those of the settings.

#include "ctl/CommandLine.h"
#include "ctl/Output.h"

#include <csignal>

int main(int argc, char **argv)
{
    // If the reader is gone, a write has to fail instead of ending this program.
    std::signal(SIGPIPE, SIG_IGN);
    quillon::Output output;
    return quillon::runCommandLine(argc, argv, output);
}
