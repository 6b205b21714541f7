#pragma once

#include <gtest/gtest.h>

#include <QTest>

/// Lets events run until the condition holds; a fatal failure after half a minute, which a busy
/// machine may need.  Qt's own macros of the kind let a GoogleTest pass then.
#define AWAIT(condition) \
    ASSERT_TRUE(QTest::qWaitFor([&] { return static_cast<bool>(condition); }, 30'000)) << #condition
