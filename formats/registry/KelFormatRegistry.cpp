#include "KelFormatRegistry.h"

#include "BuiltinFormats.h"
#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormatPlugin.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <exception>
#include <filesystem>
#include <mutex>
#include <sstream>

namespace meridyn {

namespace {

bool endsWith(const std::string& text, const std::string& suffix)
{
    return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

/// The shared objects in the folders of KEL_FORMAT_PLUGIN_DIR, by folder, then by name; notes folders that cannot be
/// read.
std::vector<std::string> pluginFiles(std::vector<std::string>& problems)
{
    std::vector<std::string> files;
    const char* variable = std::getenv("KEL_FORMAT_PLUGIN_DIR");
    std::istringstream folders(variable != nullptr ? variable : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (folder.empty())
            continue;
        std::vector<std::string> found;
        std::error_code error, ignored;
        for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error))
            if (entry->path().extension() == ".so" && entry->is_regular_file(ignored))
                found.push_back(entry->path().string());
        if (error)
            problems.push_back(folder + ": " + error.message());
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

const KelFormat* findIn(const std::vector<KelFormat>& formats, const std::string& name)
{
    const auto found =
        std::find_if(formats.begin(), formats.end(), [&name](const KelFormat& format) { return format.name == name; });
    return found != formats.end() ? &*found : nullptr;
}

using EntryPoint = const KelFormatPlugin* (*)();

/// What a plug-in hands over; an exception becomes a text, since its code goes with the shared object.
const KelFormatPlugin* pluginOf(EntryPoint entryPoint, std::string& failure)
{
    try {
        return entryPoint();
    } catch (const std::exception& exception) {
        failure = std::string("an exception, ") + exception.what();
    } catch (...) {
        failure = "something was thrown";
    }
    return nullptr;
}

/// Whether a path is one of a model's files, or lies in one that is a folder.
bool holds(const KelFormatFiles& files, const std::string& path)
{
    const auto isWithin = [&path](const std::string& file) {
        std::error_code error;
        std::filesystem::path at = std::filesystem::canonical(path, error);
        const std::filesystem::path top = file.empty() || error ? "" : std::filesystem::canonical(file, error);
        if (error || top.empty())
            return false;
        while (at != top && at != at.root_path())
            at = at.parent_path();
        return at == top;
    };
    return isWithin(files.caseFile) || isWithin(files.dataFile);
}

/// What keeps a format out of the registry, in which it may have a namesake; empty for one that may be added.
std::string whyRefused(const KelFormat& format, const KelFormat* namesake)
{
    const std::string name = "its format '" + format.name + "' ";
    if (format.name.empty())
        return "its format has no name";
    if (namesake != nullptr)
        return name + "has the name of one that is there already";
    if (!format.makeReader && !format.makeWriter)
        return name + "has neither a reader nor a writer";
    if (!format.files)
        return name + "does not say which files a model has ('files')";
    if (format.makeReader && !format.probe)
        return name + "cannot recognise what its reader reads ('probe')";
    return "";
}

} // namespace

/// The formats, as lists that never change: adding one makes a new list, and the old ones stay for those who read them.
/// Formats are few and added rarely, and what they are copied for is that a reader of the list needs no lock.
struct KelFormatRegistry::Lists {
    std::mutex mutex;                                               ///< held while a list is added or looked for
    std::vector<std::unique_ptr<const std::vector<KelFormat>>> all; ///< the last one is valid; there always is one
};

KelFormatRegistry::KelFormatRegistry() : _lists(std::make_unique<Lists>())
{
    _lists->all.push_back(std::make_unique<const std::vector<KelFormat>>());
}

KelFormatRegistry::KelFormatRegistry(KelFormatRegistry&& other) noexcept = default;
KelFormatRegistry::~KelFormatRegistry() = default;

KelFormatRegistry& KelFormatRegistry::instance()
{
    static KelFormatRegistry registry = [] {
        KelFormatRegistry made;
        for (KelFormat& format : builtinFormats())
            made.add(std::move(format));
        for (const std::string& file : pluginFiles(made._pluginProblems)) {
            std::string problem;
            if (!made.loadPlugin(file, problem))
                made._pluginProblems.push_back(problem);
        }
        return made;
    }();
    return registry;
}

bool KelFormatRegistry::add(KelFormat format)
{
    if (!whyRefused(format, nullptr).empty())
        return false;
    const std::lock_guard lock(_lists->mutex);
    const std::vector<KelFormat>& present = *_lists->all.back();
    if (findIn(present, format.name) != nullptr)
        return false;
    auto next = std::make_unique<std::vector<KelFormat>>(present);
    next->push_back(std::move(format));
    _lists->all.push_back(std::move(next));
    return true;
}

const std::vector<KelFormat>& KelFormatRegistry::formats() const
{
    const std::lock_guard lock(_lists->mutex);
    return *_lists->all.back();
}

const KelFormat* KelFormatRegistry::find(const std::string& name) const
{
    return findIn(formats(), name);
}

const KelFormat* KelFormatRegistry::probe(const std::string& path) const
{
    const std::vector<KelFormat>& present = formats(); // unlocked: a probe may take its time, and use the registry
    const auto found = std::find_if(present.begin(), present.end(),
                                    [&path](const KelFormat& format) { return format.probe && format.probe(path); });
    return found != present.end() ? &*found : nullptr;
}

std::vector<const KelFormat*> KelFormatRegistry::candidates(const std::string& path) const
{
    std::error_code ignored;
    const bool exists = std::filesystem::exists(path, ignored);
    std::vector<const KelFormat*> here, prefixed, elsewhere;
    for (const KelFormat& format : formats()) {
        if (!format.makeReader)
            continue;
        if (!format.prefix.empty()) {
            if (path.compare(0, format.prefix.size(), format.prefix) == 0)
                prefixed.push_back(&format);
        } else if (format.probe(path))
            (exists && holds(format.files(path, false), path) ? here : elsewhere).push_back(&format);
    }
    return !here.empty() ? here : !prefixed.empty() ? prefixed : elsewhere;
}

const KelFormat* KelFormatRegistry::forWriting(const std::string& path) const
{
    const KelFormat* best = nullptr;
    std::size_t bestLength = 0;
    const auto consider = [&](const KelFormat& format, std::size_t length) {
        if (format.makeWriter && length > bestLength) {
            best = &format;
            bestLength = length;
        }
    };
    for (const KelFormat& format : formats()) {
        if (path.compare(0, format.prefix.size(), format.prefix) == 0)
            consider(format, format.prefix.size());
        for (const std::string& suffix : format.suffixes)
            if (endsWith(path, suffix))
                consider(format, suffix.size());
    }
    return best;
}

bool KelFormatRegistry::loadPlugin(const std::string& path, std::string& problem)
{
    // A path without a slash would make the loader search the system's folders.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    void* object = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (object == nullptr) {
        const char* reason = dlerror();
        problem = path + ": not loaded: " + (reason != nullptr ? reason : "unknown reason");
        return false;
    }
    const auto refuse = [&](const std::string& reason) {
        problem = path + ": " + reason;
        dlclose(object);
        return false;
    };
    const auto entryPoint = reinterpret_cast<EntryPoint>(dlsym(object, "kelFormatPlugin"));
    if (entryPoint == nullptr)
        return refuse("no format plug-in: it exports no kelFormatPlugin");
    std::string failure;
    const KelFormatPlugin* plugin = pluginOf(entryPoint, failure);
    if (!failure.empty())
        return refuse("its kelFormatPlugin fails: " + failure);
    if (plugin == nullptr)
        return refuse("its kelFormatPlugin gives nothing");
    if (plugin->version != kelFormatPluginVersion)
        return refuse("made for plug-in version " + std::to_string(plugin->version) + ", expected " +
                      std::to_string(kelFormatPluginVersion));
    if (!add(plugin->format)) // what is there already may have come while this one was loaded
        return refuse(whyRefused(plugin->format, find(plugin->format.name)));
    return true; // the object stays loaded: the format's functions live in it
}

const std::vector<std::string>& KelFormatRegistry::pluginProblems() const
{
    return _pluginProblems;
}

} // namespace meridyn
