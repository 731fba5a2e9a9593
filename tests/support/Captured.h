#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace meridyn {

/// What `action` prints on standard output.
template <class Action>
std::string printedBy(Action&& action)
{
    ::testing::internal::CaptureStdout();
    std::forward<Action>(action)();
    return ::testing::internal::GetCapturedStdout();
}

} // namespace meridyn
