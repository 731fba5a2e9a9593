#include "Tool.h"

int main(int argc, char** argv)
{
    return meridyn::tool::run(argc, argv);
}
