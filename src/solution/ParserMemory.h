#pragma once

#include <memory>
#include <new>
#include <unordered_map>
#include <utility>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace meridyn {

/// The memory of one parse: as much as a mapping file needs, and not what any text can ask for.
///
/// The XML library compares each attribute of an element with all before it, and takes a few blocks for each. So the
/// limit on the blocks of one step, at some 2000 attributes, is one on time as well; a limit on attributes themselves
/// would come too late, when the element has been read.
class ParserMemory : public xercesc::MemoryManager {
public:
    static constexpr std::size_t mostBlocks = 10000;         ///< of one step
    static constexpr XMLSize_t mostBytes = 64 * 1024 * 1024; ///< at any time

    /// The next step of the parser: a tag, or what is between two.
    void beginStep() { _taken = 0; }

    /// @throws xercesc::OutOfMemoryException beyond the limits
    void* allocate(XMLSize_t size) override
    {
        if (_taken >= mostBlocks || size > mostBytes - _bytes)
            throw xercesc::OutOfMemoryException();
        try {
            std::unique_ptr<char[]> block(new char[size]);
            void* const address = block.get();
            _blocks.emplace(address, Block{std::move(block), size});
            _bytes += size;
            ++_taken;
            return address;
        } catch (const std::bad_alloc&) {
            throw xercesc::OutOfMemoryException();
        }
    }

    void deallocate(void* address) override
    {
        const auto found = _blocks.find(address);
        if (found == _blocks.end())
            return;
        _bytes -= found->second.size;
        _blocks.erase(found);
    }

    /// Exceptions may live longer than the parse.
    xercesc::MemoryManager* getExceptionMemoryManager() override { return xercesc::XMLPlatformUtils::fgMemoryManager; }

private:
    struct Block {
        std::unique_ptr<char[]> bytes;
        XMLSize_t size;
    };

    // What the library loses on its way out of a refused allocation goes with this.
    std::unordered_map<void*, Block> _blocks;
    XMLSize_t _bytes = 0;
    std::size_t _taken = 0;
};

} // namespace meridyn
