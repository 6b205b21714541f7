#pragma once

#include <gtest/gtest.h>

#include <QTest>

/// Lets events run until the condition holds.  Fails the test after half a minute, which a busy machine may
/// need.  A failure of Qt's QTRY_VERIFY would not fail a GoogleTest.
#define AWAIT(condition) \
    ASSERT_TRUE(QTest::qWaitFor([&] { return static_cast<bool>(condition); }, 30'000)) << #condition
