// What nearly every test with widgets includes, compiled once.
#pragma once

#include <gtest/gtest.h>

#include "widgets.h"
