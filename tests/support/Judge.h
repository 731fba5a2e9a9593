#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

namespace meridyn {

/// Whether a program is in a folder of PATH.
inline bool isInstalled(const std::string& program)
{
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (std::filesystem::exists(std::filesystem::path(folder) / program))
            return true;
    return false;
}

/// Whether a test without its judge fails: KEL_REQUIRE_JUDGES is set to anything but 0, as in .ci/run.
inline bool areJudgesRequired()
{
    const char* const value = std::getenv("KEL_REQUIRE_JUDGES");
    return value != nullptr && std::string(value) != "" && std::string(value) != "0";
}

} // namespace meridyn

/// First line of a test that asks a program which is not needed to build. Without that program the test is skipped, or
/// fails where judges are required.
#define KEL_NEEDS_JUDGE(PROGRAM)                                                                                       \
    if (!::meridyn::isInstalled(PROGRAM)) {                                                                            \
        if (::meridyn::areJudgesRequired())                                                                            \
            FAIL() << "there is no " << PROGRAM;                                                                       \
        GTEST_SKIP() << "there is no " << PROGRAM;                                                                     \
    }
