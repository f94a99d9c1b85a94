#include "platform/linux/PosixFolderLister.h"

#include <unistd.h>
