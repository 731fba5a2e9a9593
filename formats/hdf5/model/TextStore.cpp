#include "TextStore.h"

#include "formats/hdf5/arrays/ArrayStore.h"
#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

namespace meridyn::hdf5 {

namespace {

Handle openIfThere(hid_t root, const std::string& first, const std::string& second)
{
    if (!hasLink(root, first))
        return {};
    const Handle outer = openGroup(root, first);
    return hasLink(outer.get(), second) ? openGroup(outer.get(), second) : Handle();
}

} // namespace

void writeSettings(hid_t root, const std::string& group, const TextPairs& pairs, bool replaces)
{
    const Handle settings = openOrCreateGroup(root, "settings");
    const Handle target = openOrCreateGroup(settings.get(), encodeName(group));
    for (const auto& [key, text] : pairs) {
        const std::string name = encodeName(key);
        if (replaces || !hasAttribute(target.get(), name))
            writeText(target.get(), name, text);
    }
}

std::optional<std::string> readSetting(hid_t root, const std::string& group, const std::string& key)
{
    const Handle settings = openIfThere(root, "settings", encodeName(group));
    return settings ? readText(settings.get(), encodeName(key)) : std::nullopt;
}

void removeSetting(hid_t root, const std::string& group, const std::string& key)
{
    const Handle settings = openIfThere(root, "settings", encodeName(group));
    if (settings && hasAttribute(settings.get(), encodeName(key)))
        removeAttribute(settings.get(), encodeName(key));
}

std::vector<std::string> settingsKeys(hid_t root, const std::string& group)
{
    const Handle settings = openIfThere(root, "settings", encodeName(group));
    std::vector<std::string> keys;
    if (settings)
        for (const std::string& name : attributeNames(settings.get()))
            keys.push_back(decodeName(name));
    return keys;
}

std::vector<std::string> settingsGroups(hid_t root)
{
    std::vector<std::string> groups;
    if (!hasLink(root, "settings"))
        return groups;
    const Handle settings = openGroup(root, "settings");
    for (const std::string& name : linkNames(settings.get()))
        groups.push_back(decodeName(name));
    return groups;
}

void writeLog(Hdf5File& file, hid_t root, const TextPairs& entries)
{
    std::vector<unsigned char> bytes;
    std::vector<std::uint64_t> lengths;
    for (const auto& [title, text] : entries) {
        bytes.insert(bytes.end(), title.begin(), title.end());
        bytes.insert(bytes.end(), text.begin(), text.end());
        lengths.insert(lengths.end(), {title.size(), text.size()});
    }
    writeArray(file, root, "log", bytes);
    writeArray(file, root, "log_lengths", lengths, 2);
}

TextPairs readLog(Hdf5File& file, hid_t root)
{
    TextPairs entries;
    if (!hasLink(root, "log") || !hasLink(root, "log_lengths"))
        return entries;
    const auto bytes = ArrayReader::open(file, root, "log")->readAll<unsigned char>();
    const auto lengths = ArrayReader::open(file, root, "log_lengths")->readAll<std::uint64_t>();
    std::size_t at = 0;
    const auto take = [&](std::uint64_t length) {
        if (length > bytes.size() - at)
            throw FormatError("/log has " + std::to_string(bytes.size()) +
                              " bytes, fewer than the lengths in log_lengths");
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        at += length;
        return std::string(begin, begin + static_cast<std::ptrdiff_t>(length));
    };
    for (std::size_t i = 0; i + 1 < lengths.size(); i += 2) {
        std::string title = take(lengths[i]);
        entries.emplace_back(std::move(title), take(lengths[i + 1]));
    }
    return entries;
}

void writeLongText(Hdf5File& file, hid_t group, const std::string& name, const std::string& text)
{
    writeArray(file, group, name, std::vector<unsigned char>(text.begin(), text.end()));
}

std::optional<std::string> readLongText(Hdf5File& file, hid_t group, const std::string& name)
{
    if (!hasLink(group, name))
        return std::nullopt;
    const auto bytes = ArrayReader::open(file, group, name)->readAll<unsigned char>();
    return std::string(bytes.begin(), bytes.end());
}

} // namespace meridyn::hdf5
