#pragma once

#include "platform/linux/watching/FolderWatcher.h"
