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

/// Keeps trees in files. What it throws becomes an error of the reader or writer, with the name of the file.
class TreeFiles : public KelTreeStore {
public:
    KelTreeFile load(KelDataClass, const std::string& path) override
    {
        std::ifstream file(path, std::ios::binary);
        if (!file)
            return nullptr;
        auto tree = std::make_shared<KelTree>();
        Archive archive(file, fs::file_size(path));
        archive(tree->settings, tree->log, tree->meshes);
        return tree;
    }

    /// Under another name first: until it is complete, what bears the name stays as it is. Only a regular file may be
    /// replaced: a rename would turn a device, a pipe or a link into a file. A link is followed to what it leads to.
    void save(KelDataClass, const std::string& name, const KelTreeFile& tree) override
    {
        std::error_code error;
        const std::string path = fs::is_symlink(name) ? fs::weakly_canonical(name, error).string() : name;
        if (error || (fs::exists(path) && !fs::is_regular_file(path)))
            throw std::runtime_error("is no regular file, and nothing else is replaced");
        KelTree copy = *tree;
        std::ofstream file(path + ".tmp", std::ios::binary);
        Archive archive(file);
        archive(copy.settings, copy.log, copy.meshes);
        file.close();
        if (!file.good())
            throw std::runtime_error("not all could be written");
        fs::rename(path + ".tmp", path);
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
    format.makeReader = [] { return std::make_unique<KelTreeProvider>(std::make_shared<TreeFiles>()); };
    format.makeWriter = [] { return std::make_unique<KelTreeConsumer>(std::make_shared<TreeFiles>()); };
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
