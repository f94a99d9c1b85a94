#pragma once

#include "core/SearchBase.h"
