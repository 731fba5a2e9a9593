#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormatPlugin.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace meridyn {

namespace {

/// Keeps nothing but the number of nodes. Takes its time for each range when THIN_SLOW is set.
class ThinWriter : public KelFileConsumer {
public:
    ~ThinWriter() override
    {
        std::error_code error;
        std::filesystem::remove(_partial, error);
    }

    using KelConsumer::setCoordinatesForNodesInRange;
    void setCoordinatesForNodesInRange(unsigned64, unsigned64 lastId, const double*, unsigned64) override
    {
        _nodes = lastId;
        if (std::getenv("THIN_SLOW") != nullptr)
            std::this_thread::sleep_for(std::chrono::milliseconds(150));
    }

protected:
    bool openData(KelDataClass, const std::string& fileName) override
    {
        _partial = fileName + ".partial";
        return std::ofstream(_partial).good();
    }

    bool closeData(KelDataClass dataClass) override
    {
        std::ofstream(_partial) << "thin ok " << _nodes << '\n';
        std::error_code error;
        std::filesystem::rename(_partial, getFile(dataClass), error);
        return !error;
    }

private:
    std::string _partial;
    unsigned64 _nodes = 0;
};

/// Finds out only whether a file is damaged. Fails in a way that no reader should when THIN_THROWS is set.
class ThinReader : public KelFileProvider {
public:
    ThinReader()
    {
        if (std::getenv("THIN_THROWS") != nullptr)
            throw std::runtime_error("no licence");
    }

protected:
    bool openData(KelDataClass, const std::string& fileName) override
    {
        std::ifstream in(fileName);
        std::string thin, ok;
        in >> thin >> ok;
        if (ok != "ok")
            getMessageRegistrar()->registerMessage(
                KelError(std::filesystem::path(fileName).filename().string() + ": 'ok' expected,\nfound '" + ok + "'",
                         "openData"));
        return ok == "ok";
    }
    bool closeData(KelDataClass) override { return true; }
};

bool isThin(const std::string& path)
{
    std::string word;
    std::ifstream in(path);
    return in >> word && word == "thin";
}

KelFormatPlugin makePlugin()
{
    KelFormatPlugin plugin;
    plugin.format.name = "thin";
    plugin.format.description = "Counts nodes";
    plugin.format.suffixes = {".thin"};
    plugin.format.reads = formatFamily(KEL_FAMILY_ZONE_PROPERTIES);
    plugin.format.writes = formatFamily(KEL_FAMILY_COORDINATES);
    plugin.format.probe = isThin;
    plugin.format.files = [](const std::string& path, bool) { return KelFormatFiles{path, ""}; };
    plugin.format.makeReader = [] { return std::make_unique<ThinReader>(); };
    plugin.format.makeWriter = [] { return std::make_unique<ThinWriter>(); };
    return plugin;
}

} // namespace

} // namespace meridyn

extern "C" const meridyn::KelFormatPlugin* kelFormatPlugin()
{
    static const meridyn::KelFormatPlugin plugin = meridyn::makePlugin();
    return &plugin;
}
