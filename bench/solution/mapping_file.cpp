// What does a mapping file of 10,000 variables cost beyond reading its XML?
// The two are run in turns; the counter "ratio" is the median of one over the median of the other.
#include "KelVariableAttributeFile.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <unistd.h>
#include <vector>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

using namespace meridyn;

namespace {

const int variableCount = 10000;

std::string keyOf(int n)
{
    return "Key-" + std::to_string(n * 7919 % variableCount);
}

/// A mapping file, deleted at the end.
class LargeFile {
public:
    LargeFile() : _path("/tmp/kel-mapping-" + std::to_string(getpid()) + ".xml")
    {
        std::ofstream file(_path);
        file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<mapping>\n"
             << attribute("Source", "QUORIX") << attribute("Target", "MERIDYN_GENERIC")
             << attribute("Case Insensitive Match", "yes") << "<contents>\n";
        for (int n = 0; n < variableCount; ++n)
            file << "<variable>\n"
                 << attribute("Name", keyOf(n)) << attribute("Common Name", "common-" + keyOf(n))
                 << attribute("Dataset Name", "group/dataset-" + keyOf(n)) << attribute("User Visible", "yes")
                 << attribute("Long Name", "The long name of " + keyOf(n)) << "</variable>\n";
        file << "</contents>\n</mapping>\n";
    }
    ~LargeFile() { std::remove(_path.c_str()); }
    LargeFile(const LargeFile&) = delete;
    LargeFile& operator=(const LargeFile&) = delete;

    const std::string& path() const { return _path; }

private:
    static std::string attribute(const std::string& key, const std::string& value)
    {
        return "  <attribute key=\"" + key + "\" value=\"" + value + "\"/>\n";
    }

    std::string _path;
};

void parseOnly(const std::string& path)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        xercesc::SAXParser parser;
        parser.useScanner(xercesc::XMLUni::fgWFXMLScanner);
        xercesc::HandlerBase nothing;
        parser.setDocumentHandler(&nothing);
        parser.parse(path.c_str());
    }
    xercesc::XMLPlatformUtils::Terminate();
}

template <typename Work>
double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// `work` in turns with reading the XML alone.
template <typename Work>
void compareWithParsing(benchmark::State& state, const LargeFile& file, Work work)
{
    parseOnly(file.path());
    work();
    std::vector<double> ours;
    std::vector<double> bare;
    for (auto _ : state) {
        bare.push_back(secondsOf([&file] { parseOnly(file.path()); }));
        ours.push_back(secondsOf(work));
        state.SetIterationTime(ours.back());
    }
    state.counters["xml_ms"] = median(bare) * 1e3;
    state.counters["ratio"] = median(ours) / median(bare);
}

void load(benchmark::State& state)
{
    const LargeFile file;
    compareWithParsing(state, file, [&file] { const KelVariableAttributeFile provider(file.path()); });
}
BENCHMARK(load)->UseManualTime()->Unit(benchmark::kMillisecond);

void probe(benchmark::State& state)
{
    const LargeFile file;
    compareWithParsing(state, file, [&file] {
        std::pair<std::string, std::string> sourceAndTarget;
        benchmark::DoNotOptimize(KelVariableAttributeFile::isMappingFile(file.path(), sourceAndTarget));
    });
}
BENCHMARK(probe)->UseManualTime()->Unit(benchmark::kMillisecond);

void lookUp(benchmark::State& state)
{
    const LargeFile file;
    KelVariableAttributeFile provider(file.path());
    int n = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(provider.getMappedKey(keyOf(n)));
        n = (n + 1) % variableCount;
    }
}
BENCHMARK(lookUp);

} // namespace

BENCHMARK_MAIN();
