// write_sample <case file> <data file> [level]: the sample of the tests, for scripts that look at it from outside.
#include "Sample.h"

#include <cstdio>

int main(int argc, char** argv)
{
    std::string errors;
    if (argc < 3 || !hdf5test::writeSample(argv[1], argv[2], errors)) {
        std::fprintf(stderr, "%s", argc < 3 ? "usage: write_sample <case file> <data file>\n" : errors.c_str());
        return 1;
    }
    return 0;
}
