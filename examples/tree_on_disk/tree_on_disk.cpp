// A format of one's own: files that hold a tree as it is. It carries everything that the frames can, and passes every
// check of the conformance suite.
#include "Archive.h"

#include "KelFormatConformance.h"
#include "KelTreeConsumer.h"
#include "KelTreeProvider.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>

using namespace meridyn;
namespace fs = std::filesystem;

/// The tree in a file; throws when there is none.
static KelTreeFile read(const std::string& path)
{
    auto tree = std::make_shared<KelTree>();
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("there is no such file");
    Archive archive(file, fs::file_size(path));
    archive(tree->settings, tree->log, tree->meshes);
    return tree;
}

class TreeWriter : public KelTreeConsumer {
protected:
    KelTreeFile load(KelDataClass, const std::string& path) const override
    {
        try {
            return fs::exists(path) ? read(path) : nullptr;
        } catch (const std::exception& error) {
            fail(std::string("cannot be added to: ") + error.what());
            return nullptr;
        }
    }

    /// Under another name first: until it is complete, what bears the name stays as it is.
    bool save(KelDataClass, const std::string& path, KelTreeFile tree) override
    {
        KelTree copy = *tree;
        std::ofstream file(path + ".tmp", std::ios::binary);
        Archive archive(file);
        archive(copy.settings, copy.log, copy.meshes);
        file.close();
        return (file.good() && std::rename((path + ".tmp").c_str(), path.c_str()) == 0) || fail("cannot be written");
    }
};

class TreeReader : public KelTreeProvider {
protected:
    KelTreeFile load(KelDataClass, const std::string& path) override
    {
        try {
            return read(path);
        } catch (const std::exception& error) {
            fail(path + ": cannot be read: " + error.what());
            return nullptr;
        }
    }
};

static KelFormat treeFormat()
{
    KelFormat format;
    format.name = "tree";
    format.description = "Trees as they are";
    format.reads = allFormatFamilies;
    format.writes = allFormatFamilies;
    format.suffixes = {".case.tree"};
    format.probe = [](const std::string& path) { return fs::path(path).extension() == ".tree" && fs::exists(path); };
    format.files = [](const std::string& path, bool forWriting) {
        const std::string stem = path.substr(0, path.rfind(path.find(".case.") != path.npos ? ".case." : ".data."));
        const auto file = [&](const std::string& name) { return forWriting || fs::exists(name) ? name : ""; };
        return KelFormatFiles{file(stem + ".case.tree"), file(stem + ".data.tree")};
    };
    format.makeReader = [] { return std::make_unique<TreeReader>(); };
    format.makeWriter = [] { return std::make_unique<TreeWriter>(); };
    return format;
}

int main()
{
    const fs::path folder =
        fs::temp_directory_path() / ("kel-tree-" + std::to_string(std::hash<std::string>()(fs::current_path())));
    fs::create_directories(folder);
    KelFormatConformance suite(treeFormat(), folder.string());
    const bool passed = suite.run();
    fs::remove_all(folder);
    std::cout << (passed ? "Every check of the suite has passed.\n" : suite.text());
    return passed ? 0 : 1;
}
