#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace arbor::xml {

/// Reads the elements of an XML text one by one, in a single pass and without a document in memory.
///
/// It accepts what a tree of elements with attributes needs: an XML declaration (UTF-8), comments and processing
/// instructions, which it skips, and one root. It refuses everything else that XML knows: document types and with
/// them entities, character data other than blanks, CDATA, names that are not ASCII words.
class Reader {
public:
    enum class Token {
        Open,  ///< an element begins: name(), attributes()
        Close, ///< the innermost open element ends; an empty element gives Open and Close
        End,   ///< the root has ended and nothing is behind it
        Bad    ///< no such text; the same from then on
    };

    struct Attribute {
        std::string_view name;
        std::string_view value; ///< as it stands between the quotes, for unescape()
    };

    static constexpr std::size_t maxAttributes = 8; ///< of one element; no element of ours has more

    /// @param text      must outlive the reader
    /// @param maxDepth  elements open at one time
    Reader(std::string_view text, std::size_t maxDepth);

    Token next();
    std::string_view name() const { return _name; }
    const std::vector<Attribute>& attributes() const { return _attributes; }

private:
    Token fail();
    Token open();
    Token close();
    Token readClosingTag();
    bool readDeclaration();
    bool readAttributes();
    bool readAttribute();
    bool readName(std::string_view& name);
    bool skip(char character);
    bool skip(std::string_view word);
    bool skipBehind(std::string_view word);
    bool skipBlanks();
    bool skipComment();
    bool skipInstruction();

    std::string_view _rest;
    std::size_t _maxDepth;
    std::string_view _name;
    std::vector<Attribute> _attributes;
    std::vector<std::string_view> _openNames;
    bool _isEmptyElement = false; // the element just opened has no closing tag
    bool _hasRoot = false;
    bool _isBad = false;
};

} // namespace arbor::xml
