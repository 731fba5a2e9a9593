#pragma once

#include "ByteSource.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace meridyn::polymesh {

/// A word, number, quoted text or one of the marks ( ) { } [ ] ; of a file.
struct FoamToken {
    enum Kind {
        End,
        Mark, ///< `text` is the one character
        Word, ///< also numbers
        Text  ///< was quoted; `text` is what stood between the quotes
    };
    Kind kind = End;
    std::string text;

    bool is(char mark) const { return kind == Mark && text[0] == mark; }
    bool is(std::string_view word) const { return kind == Word && text == word; }
};

/// What the entry FoamFile at the head of a file says.
struct FoamHeader {
    std::string className;               ///< empty when the file has no such entry
    std::string version;                 ///< of the file format, "2.0"
    std::string note;                    ///< what people wrote into it
    std::vector<std::string> directives; ///< "#include "file"" and its like in front of the head
    bool isBinary = false;
    bool isBigEndian = false; ///< the order of bytes in binary data
    unsigned labelBytes = 4;
    unsigned scalarBytes = 8;
};

/// Reads the tokens of a file and its lists of numbers, the latter in the file's own form, binary or text.
///
/// Every failure is a FoamError that names the file and the line; inside binary data, the byte.
class FoamReader {
public:
    /// As largest count of a list: as many as labels can tell apart. Such a list has to have its entries written out.
    static constexpr std::uint64_t anyCount = 0xfffffffeU;

    explicit FoamReader(ByteSource& source) : _source(source) {}

    /// Reads the entry FoamFile, if it is next.
    const FoamHeader& readHeader();

    /// The same, for a file that needs one of certain classes. An empty list takes any.
    const FoamHeader& readHeader(const std::vector<std::string>& classNames);

    const FoamHeader& header() const { return _header; }
    const std::string& path() const { return _source.path(); }

    FoamToken next();

    /// Whether a character is next, behind blanks and comments; whether one of the marks is, or the file ends.
    bool sees(char character);
    bool seesMark();

    /// Takes a mark that has to be next.
    void expect(char mark);

    /// Takes a word or a quoted text that has to be next.
    std::string word(const char* what);

    /// Takes a whole number from 0 on that has to be next.
    std::uint64_t count(const char* what);

    /// Takes a number that has to be next.
    double number(const char* what);

    /// Passes over what is left of an entry: to its ";", or over its "{...}". Knows lists in binary form.
    void skipEntry();

    /// Passes over the rest of a list whose type name, like "List<vector>", was just taken.
    void skipList(const std::string& type);

    /// The rest of a list whose type name was just taken, as text: "3(1 2 3)", also where it is in binary form. None,
    /// and the list is passed over, when it has more entries than that.
    std::optional<std::string> listText(const std::string& type, std::uint64_t largestCount);

    /// A list of labels, each below `limit`: "n ( a b c )", "( a b c )", "n { a }" or binary.
    ///
    /// @param largestCount  more entries are an error
    std::vector<std::uint32_t> labels(const char* what, std::uint64_t limit, std::uint64_t largestCount);

    /// A list of numbers, `components` for each entry, given one entry after the other. A list of one value for all is
    /// written out; `largestCount` bounds the entries.
    ///
    /// @param inParentheses  whether entries in text form stand in parentheses, as all but plain numbers do
    std::vector<double> scalars(const char* what, unsigned components, bool inParentheses, std::uint64_t largestCount);

    /// The same list in text form, whatever the form of the file: as sets of labels are written.
    std::vector<std::uint32_t> textLabels(const char* what, std::uint64_t limit, std::uint64_t largestCount);

    /// A list of yes and no, as 1 and 0.
    std::vector<unsigned char> flags(const char* what, std::uint64_t largestCount);

    /// A list of lists of labels.
    void faces(std::vector<std::uint64_t>& offsets, std::vector<std::uint32_t>& nodes, std::uint64_t limit);

    /// @throws FoamError with the file and the present line, or the byte in binary data
    [[noreturn]] void fail(const std::string& problem) const;
    [[noreturn]] void failExpecting(const std::string& expected, const FoamToken& found) const;

private:
    struct Opening {
        bool hasCount = false;
        bool isRepeated = false; ///< "n { value }"
        bool isCountAlone = false;
        std::uint64_t count = 0;
    };

    void skipBlanks();
    void skipComment();
    FoamToken quoted();
    FoamToken verbatim();
    FoamToken plain();
    Opening open(const char* what, std::uint64_t bytesPerEntry, std::uint64_t largestCount);
    bool isRaw(const Opening& opening) const;
    void endRaw();
    bool atClose(const Opening& opening, std::uint64_t index, const char* what);
    template <class Number>
    bool takeNumber(Number& value);
    std::uint64_t textLabel(const char* what);
    double textScalar(const char* what);
    void rawLabels(std::uint64_t count, std::vector<std::uint32_t>& values);
    void checkLabels(const char* what, const std::vector<std::uint32_t>& values, std::size_t from, std::uint64_t limit);
    void rawScalars(std::uint64_t count, std::vector<double>& values);
    void rawBytes(char* to, std::uint64_t count);
    template <class Number>
    void rawNumbers(Number* to, std::uint64_t count);
    void skipRaw(std::uint64_t bytes);
    void skipText();
    std::string context() const;
    void compactFaces(std::vector<std::uint64_t>& offsets, std::vector<std::uint32_t>& nodes, std::uint64_t limit);
    void plainFaces(std::vector<std::uint64_t>& offsets, std::vector<std::uint32_t>& nodes, std::uint64_t limit);

    ByteSource& _source;
    FoamHeader _header;
    bool _inRawData = false;
};

/// Number of values of one entry of a type name ("scalar", "vector", "symmTensor", "tensor", "sphericalTensor"), or 0.
unsigned foamComponents(std::string_view type);

/// Reads a number that fills the whole text.
bool foamNumber(std::string_view text, double& value);

} // namespace meridyn::polymesh
