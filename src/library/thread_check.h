// SPDX-License-Identifier: MIT
#pragma once

#include "platform/thread_check.h"
