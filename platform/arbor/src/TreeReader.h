#pragma once

#include "arbor/TObject.h"
#include "XmlReader.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace arbor {

/// Builds the tree that an XML text describes.
class TreeReader {
public:
    explicit TreeReader(const std::string& text);
    ~TreeReader();

    /// The root, or null when the text is no such text as a whole.
    std::unique_ptr<TObject> read();

private:
    /// The attributes that elements may have; the order is that of the table in the source.
    enum Field : unsigned {
        Version,
        Name,
        SecondName,
        Kind,
        Type,
        Unit,
        Value,
        FieldCount
    };

    bool readFields();
    bool hasFields(unsigned required, unsigned optional) const;
    bool open();
    bool openObject();
    bool openProperty();
    bool openItem();
    void close();

    xml::Reader _reader;
    std::unique_ptr<TObject> _root;
    TObject* _object = nullptr;                 // the innermost open node
    std::vector<std::string>* _items = nullptr; // of the open property, when it is a list of texts
    bool _isInProperty = false;
    bool _isInItem = false;
    std::size_t _entryCount = 0;
    std::array<std::string, FieldCount> _fields; // of the element just opened
    unsigned _present = 0;                       // bit n: field n is there
};

} // namespace arbor
