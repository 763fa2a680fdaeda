// What every test of the window reads first, compiled once.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/Precompiled.h"
