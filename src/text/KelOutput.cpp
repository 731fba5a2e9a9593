#include "KelOutput.h"

#include <iostream>
#include <memory>
#include <mutex>
#include <utility>

namespace meridyn {

namespace {

using KelOutput::Callback;

/// The callback of the process, with a lock for the moment of taking or changing it. It is never held while a callback
/// runs: a callback may print and redirect.
class Redirection {
public:
    std::shared_ptr<const Callback> get()
    {
        const std::lock_guard lock(_mutex);
        return _callback;
    }

    Callback exchange(Callback callback)
    {
        auto next = callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
        {
            const std::lock_guard lock(_mutex);
            _callback.swap(next);
        }
        return next != nullptr ? *next : Callback();
    }

private:
    std::mutex _mutex;
    std::shared_ptr<const Callback> _callback; // null: the streams
};

/// Never destroyed: statics of a program may print while they are made and when they go.
Redirection& redirection()
{
    static auto* const made = new Redirection;
    return *made;
}

/// Whether a callback is running on this thread.
thread_local bool isInCallback = false;

/// Marks the time of a callback.
class CallbackScope {
public:
    CallbackScope() { isInCallback = true; }
    ~CallbackScope() { isInCallback = false; }
    CallbackScope(const CallbackScope&) = delete;
    CallbackScope& operator=(const CallbackScope&) = delete;
};

/// Hands a line to the callback; false when there is none, or when it has failed, and the line is still to be printed.
bool isTaken(KelOutputStream stream, const std::string& line)
{
    if (isInCallback)
        return false;
    const std::shared_ptr<const Callback> callback = redirection().get();
    if (callback == nullptr)
        return false;
    const CallbackScope scope;
    try {
        (*callback)(stream, line);
        return true;
    } catch (...) { // no operation that prints throws
        return false;
    }
}

} // namespace

KelOutput::Callback KelOutput::redirect(Callback callback)
{
    return redirection().exchange(std::move(callback));
}

KelOutput::Callback KelOutput::silence()
{
    return redirect([](KelOutputStream, const std::string&) {});
}

KelOutput::Callback KelOutput::reset()
{
    return redirect({});
}

void KelOutput::print(KelOutputStream stream, const std::string& line)
{
    if (isTaken(stream, line))
        return;
    std::ostream& standard = stream == KEL_STANDARD_ERROR ? std::cerr : std::cout;
    standard << line + '\n'; // one piece, so that lines of two threads do not mix
}

} // namespace meridyn
