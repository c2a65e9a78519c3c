#pragma once
// Stand-ins for the frame's tests: a scripted clock and a recording screen.
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "frame/Frame.h"
#include "frame/FrameClock.h"
#include "frame/Window.h"

namespace Tolm::Test {

// A clock for the key reader that only moves when it waits: a wait takes the
// next scripted step (the seconds that pass, then its result), or without one
// lets its whole limit and a microsecond pass. It notes each wait's limit and
// whether the cursor showed.
class ScriptedClock : public FrameClock {
public:
    struct Step {
        long seconds;
        int result;
    };

    timeval Now() override { return timeval{_usec / 1000000, _usec % 1000000}; }
    int Wait(const timeval* limit) override
    {
        waits.push_back(limit ? std::optional<double>(limit->tv_sec + limit->tv_usec / 1e6) : std::nullopt);
        cursorAtWait.push_back(Window::_cursor);
        if (!script.empty()) {
            const Step step = script.front();
            script.pop_front();
            _usec += step.seconds * 1000000;
            return step.result;
        }
        if (!limit) {
            ADD_FAILURE() << "an unbounded wait with nothing scripted";
            throw TolmTimeout();
        }
        _usec += limit->tv_sec * 1000000L + limit->tv_usec + 1;
        return Frame::WAIT_TIMEOUT;
    }
    void Type(std::initializer_list<int> keys)
    {
        for (int key : keys) script.push_back({0, key});
    }
    double Elapsed() const { return static_cast<double>(_usec - kStart) / 1e6; }

    std::deque<Step> script;
    std::vector<std::optional<double>> waits;
    std::vector<bool> cursorAtWait;

private:
    static constexpr long kStart = 1'000'000'500'000;
    long _usec = kStart;
};

// A full screen that records how it was drawn and runs `body`.
class RecordingFrame : public Frame {
public:
    explicit RecordingFrame(Frame* parent = nullptr, std::function<int()> body = [] { return 0; })
        : Frame(parent, 0, 0, 80, 25, 0, 7), _body(std::move(body))
    {
    }
    void Draw(bool active) override
    {
        draws.push_back(active);
        Frame::Draw(active);
    }
    int Execute() override
    {
        seenForeground = fgFrame;
        return _body();
    }
    std::vector<bool> draws;
    Frame* seenForeground = nullptr;

private:
    std::function<int()> _body;
};

}  // namespace Tolm::Test
