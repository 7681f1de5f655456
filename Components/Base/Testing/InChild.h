// Test helper: runs checks in a child process of their own, for behaviour
// that a process settles once (environment read on first use, paths found
// once). The child exits with 0 when all its checks held.
#pragma once

#include <cstdlib>

#include <gtest/gtest.h>

#define EXPECT_IN_CHILD(body)                                                                      \
    do {                                                                                           \
        GTEST_FLAG_SET(death_test_style, "threadsafe");                                            \
        EXPECT_EXIT(                                                                               \
            {                                                                                      \
                body;                                                                              \
                std::_Exit(testing::Test::HasFailure() ? 1 : 0);                                   \
            },                                                                                     \
            testing::ExitedWithCode(0), "");                                                       \
    } while (false)
