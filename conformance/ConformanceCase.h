#pragma once

#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormat.h"

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace meridyn::conformance {

/// What one check works with: the format, names for its files, and what it found wrong.
class Case {
public:
    Case(const KelFormat& testedFormat, std::string scratchFolder, std::string checkName);

    /// Notes a failure unless the condition holds; gives the condition.
    bool expect(bool condition, const std::string& otherwise);

    /// Notes a failure unless what was found is what was expected, bit for bit; "what: expected 1 2, found 1 3".
    template <class T>
    bool same(const std::string& what, const std::vector<T>& expected, const std::vector<T>& found)
    {
        const bool equal = expected.size() == found.size() &&
                           std::equal(expected.begin(), expected.end(), found.begin(), sameValue<T>);
        return equal || expect(false, what + difference(textsOf(expected), textsOf(found)));
    }
    bool same(const std::string& what, const std::string& expected, const std::string& found);
    bool same(const std::string& what, unsigned64 expected, unsigned64 found);

    /// Whether reader and writer of the format both carry a family.
    bool carries(KelFormatFamily family) const;

    /// A writer of the format with the files of model `number` of this check.
    std::unique_ptr<KelFileConsumer> writer(int number = 0) const;
    /// A reader of the format with the same files.
    std::unique_ptr<KelFileProvider> reader(int number = 0) const;
    /// A reader with the files of something that exists elsewhere.
    std::unique_ptr<KelFileProvider> readerOf(const std::string& name) const;

    /// Writes one data class: startWriting, `body`, endWriting; notes a failure and gives false when one of them fails.
    bool write(KelFileConsumer& writer, KelDataClass dataClass, const std::function<void()>& body);
    /// Reads one data class in the same way.
    bool read(KelFileProvider& reader, KelDataClass dataClass, const std::function<void()>& body);

    /// The name of model `number`, as a user would give it for writing.
    std::string name(int number = 0) const;

    /// The scratch folder of the caller.
    const std::string& folder() const { return _folder; }

    const KelFormat& format;
    /// What was found wrong, the first few lines.
    const std::vector<std::string>& failures() const { return _failures; }

    template <class T>
    static bool sameValue(const T& one, const T& other)
    {
        if constexpr (std::is_floating_point_v<T>) // tells -0 from 0; any nan is as good as any other
            return (one == other && std::signbit(one) == std::signbit(other)) || (std::isnan(one) && std::isnan(other));
        else
            return one == other;
    }

    template <class T>
    static std::string textOf(const T& value)
    {
        if constexpr (std::is_floating_point_v<T>)
            return textOfReal(value);
        else if constexpr (std::is_same_v<T, std::string>)
            return quoted(value);
        else
            return std::to_string(value);
    }

    /// A text between quotes, shortened where it is long.
    static std::string quoted(const std::string& text);

private:
    static std::string textOfReal(double value);
    static std::string difference(const std::vector<std::string>& expected, const std::vector<std::string>& found);
    template <class T>
    static std::vector<std::string> textsOf(const std::vector<T>& values)
    {
        std::vector<std::string> texts;
        texts.reserve(values.size());
        for (const auto& value : values)
            texts.push_back(textOf<T>(value));
        return texts;
    }

    std::string _folder;
    std::string _check;
    std::vector<std::string> _failures;
};

/// The errors that an object has stored, behind a colon.
std::string errorsOf(KelBase& base);

} // namespace meridyn::conformance
