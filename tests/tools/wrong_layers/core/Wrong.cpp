#include "platform/linux/disk/PosixFolderLister.h"

#include <unistd.h>
