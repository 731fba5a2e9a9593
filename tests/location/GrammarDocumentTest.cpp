// Runs the examples of docs/location-grammar.md.
#include "KelLocationModel.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>

namespace {

using namespace meridyn;
using Ints = std::vector<int>;

std::vector<std::string> linesOfBlocks(const std::string& kind)
{
    std::ifstream file(KEL_SOURCE_DIR "/docs/location-grammar.md");
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, 3, "```") == 0)
            inside = line == "```" + kind;
        else if (inside)
            lines.push_back(line);
    }
    return lines;
}

/// Builds the model of the document; a line that cannot be read is a failure of the test.
class DocumentModel {
public:
    DocumentModel()
    {
        for (const std::string& line : linesOfBlocks("model"))
            if (!read(line))
                ADD_FAILURE() << "not understood: " << line;
    }

    KelLocationModel model;

private:
    using Members = std::map<std::string, std::vector<std::pair<char, int>>>;

    bool read(const std::string& line)
    {
        std::istringstream words(line);
        std::string kind;
        std::string name;
        words >> kind >> std::quoted(name);
        if (kind == "part") {
            _partName = name;
            model.createPart(3, name, _part);
            return true;
        }
        if (kind == "body")
            return readBody(words, name);
        if (kind == "face")
            return model.createFace(_part, name, _id) && remember('f', name);
        if (kind == "use")
            return readUse(words, name);
        return kind == "composite" && readComposite(words, name);
    }

    bool readBody(std::istream& words, const std::string& name)
    {
        return model.createBody(_part, name, _id) && remember('b', name) &&
               model.setBodyZones(_id, 0, ints(words, "zones"));
    }

    bool readUse(std::istream& words, const std::string& body)
    {
        std::string face;
        int side = -1;
        std::string key;
        std::string name;
        words >> std::quoted(face) >> side >> key;
        if (key == "name")
            words >> name >> key;
        return key == "sides" && model.createFaceUse(find('b', body), find('f', face), side, _id) &&
               model.setFaceUseName(_id, name) && model.setFaceUseZoneSides(_id, 0, ints(words, ""));
    }

    bool readComposite(std::istream& words, const std::string& name)
    {
        std::map<char, Ints> members;
        std::string word;
        words >> word;
        while (words >> word)
            for (const auto& [kind, id] : _regions[word])
                members[kind].push_back(id);
        return model.createComposite(_part, name, _id) && remember('c', name) &&
               model.setCompositeComponents(_id, members['b'], members['f'], {}, members['c']);
    }

    static Ints ints(std::istream& words, const std::string& key)
    {
        std::string word = key;
        if (!key.empty())
            words >> word;
        EXPECT_EQ(word, key);
        Ints values;
        for (int value = 0; words >> value;)
            values.push_back(value);
        return values;
    }

    bool remember(char kind, const std::string& name)
    {
        _regions[name].emplace_back(kind, _id);
        _regions[_partName + "/" + name].emplace_back(kind, _id);
        return true;
    }

    /// The region of a kind by its qualified name, or of the current part.
    int find(char kind, const std::string& name)
    {
        for (const std::string& full : {_partName + "/" + name, name})
            for (const auto& [otherKind, id] : _regions[full])
                if (otherKind == kind)
                    return id;
        return 0;
    }

    std::string _partName;
    int _part = 0;
    int _id = 0;
    Members _regions;
};

std::string trimmed(const std::string& text)
{
    const std::size_t last = text.find_last_not_of(' ');
    return text.substr(0, last == std::string::npos ? 0 : last + 1);
}

/// "cells 1 2 sides -12", with one space between words, or "nothing".
std::string written(bool found, const Ints& cells, const Ints& sides)
{
    std::string text = found ? "" : "nothing ";
    const auto add = [&text](const char* word, const Ints& values) {
        for (std::size_t i = 0; i < values.size(); ++i)
            text += (i == 0 ? word : "") + std::to_string(values[i]) + " ";
    };
    add("cells ", cells);
    add("sides ", sides);
    return trimmed(text);
}

std::string singleSpaced(const std::string& text)
{
    std::istringstream words(text);
    std::string all;
    for (std::string word; words >> word;)
        all += (all.empty() ? "" : " ") + word;
    return all;
}

TEST(GrammarDocument, ExamplesComeOutAsWritten)
{
    const DocumentModel document;
    const std::vector<std::string> lines = linesOfBlocks("locations");
    EXPECT_GT(lines.size(), 30U);
    for (const std::string& line : lines) {
        const std::size_t arrow = line.find("=>");
        ASSERT_NE(arrow, std::string::npos) << line;
        Ints cells;
        Ints sides;
        const bool found = document.model.resolveLocation(trimmed(line.substr(0, arrow)), 0, 0, cells, sides);
        EXPECT_EQ(written(found, cells, sides), singleSpaced(line.substr(arrow + 2))) << line;
    }
}

} // namespace
