#pragma once

#include <iostream>
#include <streambuf>

namespace meridyn::tool {

/// Keeps what the library itself prints, which is no part of an answer, away from standard output.
class QuietLibrary {
public:
    QuietLibrary() : _before(std::cout.rdbuf(nullptr)) {}
    ~QuietLibrary() { speak(); }
    QuietLibrary(const QuietLibrary&) = delete;
    QuietLibrary& operator=(const QuietLibrary&) = delete;

    /// Lets the library print again.
    void speak() { std::cout.rdbuf(_before); }

private:
    std::streambuf* _before;
};

} // namespace meridyn::tool
