// What a writer may put its file in place of.
#include "OutputTarget.h"
#include "LevelFile.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>

using namespace hdf5test;

namespace fs = std::filesystem;

namespace {

void makeSocket(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int made = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(made, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(made);
}

} // namespace

TEST(OutputTargets, OnlyRegularFilesAreReplaced)
{
    const Folder folder;
    std::map<std::string, std::string> kinds{
        {"folder", "is a folder"}, {"pipe", "is a pipe"}, {"socket", "is a socket"}};
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0666), 0);
    makeSocket(folder / "socket");
    if (::mknod((folder / "device").c_str(), S_IFCHR | 0666, makedev(1, 7)) == 0) // for root only
        kinds["device"] = "is a device";
    fs::create_symlink(folder / "circle", folder / "circle");
    kinds["circle"] = "is a symbolic link that leads in a circle";
    fs::create_symlink("pipe", folder / "link");
    kinds["link"] = "is a pipe";
    const std::vector<std::string> before = folder.names();
    for (const auto& [name, words] : kinds)
        for (const bool appends : {false, true}) {
            const auto kind = fs::symlink_status(folder / name).type();
            Writer writer;
            EXPECT_FALSE(addLevel(writer, folder / name, 1, appends)) << name;
            EXPECT_NE(writer.errors().find((folder / name) + ": " + words + ", only a regular file can be replaced"),
                      std::string::npos)
                << name << ": " << writer.errors();
            EXPECT_EQ(fs::symlink_status(folder / name).type(), kind) << name;
            Reader reader; // does not wait for the other end of a pipe
            EXPECT_FALSE(reader.startReading(folder / name, KEL_DATA)) << name;
        }
    EXPECT_EQ(folder.names(), before);
}

TEST(OutputTargets, WhatComesWhileAFileIsWrittenIsNotReplaced)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "x.data.kel", KEL_DATA));
    ASSERT_EQ(::mkfifo((folder / "x.data.kel").c_str(), 0666), 0);
    EXPECT_FALSE(writer.endWriting(KEL_DATA));
    EXPECT_NE(writer.errors().find("is a pipe, only a regular file can be replaced"), std::string::npos);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"x.data.kel"});
}

TEST(OutputTargets, SymbolicLinksAreFollowed)
{
    const Folder folder;
    fs::create_directory(folder / "there");
    const std::string path = folder / "there/real.data.kel";
    fs::create_symlink("there/real.data.kel", folder / "link.data.kel"); // to nothing at first
    for (const bool appends : {false, true, false}) {
        Writer writer;
        ASSERT_TRUE(addLevel(writer, folder / "link.data.kel", 4, appends)) << writer.errors();
        EXPECT_TRUE(fs::is_symlink(folder / "link.data.kel"));
        EXPECT_EQ(readableLevels(path), std::vector<int>{4});
        EXPECT_EQ(readableLevels(folder / "link.data.kel"), std::vector<int>{4});
        EXPECT_EQ(folder.names(), (std::vector<std::string>{"link.data.kel", "there"}));
    }
    // Whatever the name under which a file was changed, its journal lies beside the file itself.
    writeBytes(path + ".journal", {'x'});
    Writer writer;
    EXPECT_TRUE(addLevel(writer, folder / "link.data.kel", 5, true)) << writer.errors();
    EXPECT_FALSE(fs::exists(path + ".journal"));
}

TEST(OutputTargets, AChainOfLinksLeadsToItsEnd)
{
    const Folder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink(folder / "c", folder / "b");
    EXPECT_EQ(linkedFile(folder / "a"), folder / "c");
    EXPECT_EQ(linkedFile(folder / "none"), folder / "none");
    EXPECT_EQ(outputProblem(folder / "a"), "");
}
