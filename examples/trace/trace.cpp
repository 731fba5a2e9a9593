// The bare writer shows what a client hands over, and in which order: a trace on standard output.

#include "two_cubes.h"

#include <iostream>

using namespace meridyn;

int main()
{
    KelConsumer writer("trace");
    declareTwoCubes(writer);
    std::cout << "Mesh\n\n";
    writeMesh(writer);
    std::cout << "Solution\n\n";
    writeSolution(writer);
    return 0;
}
