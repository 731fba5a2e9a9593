#include "solution/ParserMemory.h"

#include <gtest/gtest.h>

namespace meridyn {
namespace {

TEST(ParserMemory, EachStepHasSoManyBlocks)
{
    ParserMemory memory;
    for (int step = 0; step < 2; ++step) {
        memory.beginStep();
        for (std::size_t n = 0; n < ParserMemory::mostBlocks; ++n)
            ASSERT_NE(memory.allocate(1), nullptr) << "block " << n << " of step " << step;
        EXPECT_THROW(memory.allocate(1), xercesc::OutOfMemoryException);
    }
}

TEST(ParserMemory, BlocksThatWereGivenBackStillCountForTheStep)
{
    ParserMemory memory;
    for (std::size_t n = 0; n < ParserMemory::mostBlocks; ++n)
        memory.deallocate(memory.allocate(1));
    EXPECT_THROW(memory.allocate(1), xercesc::OutOfMemoryException);
}

TEST(ParserMemory, AllBytesCanBeTakenAndNoMore)
{
    ParserMemory memory;
    void* const most = memory.allocate(ParserMemory::mostBytes - 1);
    void* const last = memory.allocate(1);
    EXPECT_THROW(memory.allocate(1), xercesc::OutOfMemoryException);
    memory.deallocate(last);
    EXPECT_THROW(memory.allocate(2), xercesc::OutOfMemoryException);
    EXPECT_NE(memory.allocate(1), nullptr);
    memory.deallocate(most);
    EXPECT_NE(memory.allocate(ParserMemory::mostBytes - 1), nullptr);
    EXPECT_THROW(memory.allocate(1), xercesc::OutOfMemoryException);
}

TEST(ParserMemory, WhatIsNoneOfItsBlocksIsLeftAlone)
{
    ParserMemory memory;
    int other = 0;
    memory.deallocate(&other);
    memory.deallocate(nullptr);
    EXPECT_NE(memory.allocate(ParserMemory::mostBytes), nullptr);
}

} // namespace
} // namespace meridyn
