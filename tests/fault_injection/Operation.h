// Runs a job repeatedly, each time with a later call failing, until it completes without reaching the fault.
// After every failure, the same job must succeed again with the original result.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/base/RunTimeFailure.h"
#include "core/codecs/CBitmap.h"
#include "core/image/Picture.h"
#include "core/sprite/hlspr.h"
#include "fault_injection/Faults.h"
#include "support/RecordedServices.h"
#include "support/TemporaryFolder.h"

namespace varnoth::test {

using FileBytes = Bytes;

/// Platform services that are exempt from faults, since the test's own bookkeeping is not under test.
class FaultFreeServices : public RecordedServices {
  protected:
    void show(std::string_view text) override {
        const FaultsSuspended meanwhile;
        RecordedServices::show(text);
    }

    Picture load(const std::string& path) override {
        const FaultsSuspended meanwhile;
        return RecordedServices::load(path);
    }
};

/// How a job ended: its answer or its failure, and its messages.
struct Outcome {
    bool answer = false;
    std::optional<Failure> failure;
    Texts messages;

    friend bool operator==(const Outcome&, const Outcome&) = default;

    friend std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
        stream << (outcome.failure ? name_of(*outcome.failure) : outcome.answer ? "true" : "false");
        for (const std::string& message : outcome.messages) {
            stream << ", \"" << message << '"';
        }
        return stream;
    }
};

inline Outcome answered(bool answer, Texts messages = {}) {
    return {answer, std::nullopt, std::move(messages)};
}

inline Outcome ended(Failure failure, Texts messages = {}) {
    return {false, failure, std::move(messages)};
}

class Job {
  public:
    virtual ~Job() = default;

    /// Restores the state from before the first run.
    virtual void prepare() = 0;

    /// Runs the job and returns its answer.
    virtual bool run() = 0;

    /// The result of the last run: in memory, and in the files that it wrote.
    virtual FileBytes result() = 0;

    /// Checks what must hold after any failure, such as other files being unchanged.
    virtual void expect_kept() {}

    /// The distance between two tested calls; more than 1 for a slow job.
    virtual int step() const { return 1; }

    /// Called before the job runs again after a failure. Does nothing unless state of the failed run may
    /// remain.
    virtual void before_second_run() {}
};

/// Runs the job once and returns how it ended, classified as the exception barrier does it.
inline Outcome outcome_of(Job& job, FaultFreeServices& services, const Fault* fault = nullptr,
                          bool* hit = nullptr) {
    services.messages.clear();
    Outcome outcome;
    std::optional<FaultInjection> injection;
    if (fault != nullptr) {
        injection.emplace(*fault);
    }
    try {
        outcome.answer = job.run();
    } catch (const RunTimeFailure& failure) {
        outcome.failure = failure.failure();
    } catch (const std::bad_alloc&) {
        outcome.failure = Failure::OutOfMemory;
    } catch (const std::length_error&) {
        outcome.failure = Failure::OutOfMemory;
    }
    if (hit != nullptr) {
        *hit = injection->hit();
    }
    injection.reset();
    outcome.messages = services.messages;
    return outcome;
}

/// Makes call 1, 2, 3 and so on fail until the job completes without reaching the fault. `judge` checks every
/// outcome; returns the number of faults reached.
inline int fail_each_call(Job& job, FaultFreeServices& services, Fault fault,
                          const std::function<void(const Outcome&)>& judge) {
    job.prepare();
    const Outcome expected = outcome_of(job, services);
    const FileBytes result = job.result();
    const int open_before = open_streams(); // other code, such as coverage counters, may hold some open
    int met = 0;
    for (fault.number = 1;; fault.number += job.step()) {
        SCOPED_TRACE("call " + std::to_string(fault.number));
        job.prepare();
        bool hit = false;
        const Outcome outcome = outcome_of(job, services, &fault, &hit);
        EXPECT_EQ(open_streams(), open_before);
        if (!hit) {
            EXPECT_EQ(outcome, expected);
            EXPECT_TRUE(job.result() == result);
            return met;
        }
        ++met;
        judge(outcome);
        job.expect_kept();
        job.before_second_run();
        EXPECT_EQ(outcome_of(job, services), expected) << "at the second run";
        EXPECT_TRUE(job.result() == result) << "at the second run";
        if (testing::Test::HasFailure()) {
            return met;
        }
    }
}

/// Adds to the number of faults that the current test has reached, which is part of its report.
inline void record_faults(int count) {
    static const testing::TestInfo* test = nullptr;
    static int met = 0;
    const testing::TestInfo* const running = testing::UnitTest::GetInstance()->current_test_info();
    met = std::exchange(test, running) == running ? met + count : count;
    testing::Test::RecordProperty("injected faults", met);
}

/// Calls fail_each_call with calls that fail once and with calls that fail from then on. Fails the test if
/// the job makes no such call; records the number of faults as a property of the test.
inline int fail_once_and_always(Job& job, FaultFreeServices& services, const Fault& fault,
                                const std::function<void(const Outcome&)>& judge) {
    int met = 0;
    for (const Repeat repeat : {Repeat::Once, Repeat::Always}) {
        SCOPED_TRACE(repeat == Repeat::Once ? "once" : "forever");
        Fault next = fault;
        next.repeat = repeat;
        met += fail_each_call(job, services, next, judge);
    }
    EXPECT_GT(met, 0) << "no such call";
    record_faults(met);
    return met;
}

/// Expects every outcome to equal this one.
inline std::function<void(const Outcome&)> always(const Outcome& expected) {
    return [expected](const Outcome& outcome) { EXPECT_EQ(outcome, expected); };
}

/// Expects every outcome to be one of these, and each of them to occur unless the series of calls has gaps.
class OneOf {
  public:
    explicit OneOf(std::vector<Outcome> expected, bool has_gaps = false)
        : expected_(std::move(expected)), met_(expected_.size()), has_gaps_(has_gaps) {}

    ~OneOf() {
        for (std::size_t i = 0; i < expected_.size(); ++i) {
            EXPECT_TRUE(met_[i] || has_gaps_) << "did not occur: " << expected_[i];
        }
    }

    OneOf(const OneOf&) = delete;
    OneOf& operator=(const OneOf&) = delete;

    void operator()(const Outcome& outcome) {
        const auto found = std::ranges::find(expected_, outcome);
        if (found == expected_.end()) {
            ADD_FAILURE() << "unexpected: " << outcome;
        } else {
            met_[static_cast<std::size_t>(found - expected_.begin())] = true;
        }
    }

  private:
    std::vector<Outcome> expected_;
    std::vector<bool> met_;
    bool has_gaps_;
};

/// The document and all its frames as bytes.
inline FileBytes document_bytes() {
    const SpriteDocument& sprite = hlspr::document();
    FileBytes bytes;
    const auto append = [&](const auto& more) { bytes.insert(bytes.end(), more.begin(), more.end()); };
    append(to_bytes(sprite.SpriteHeader));
    append(to_bytes(sprite.Palette));
    append(to_bytes(sprite.FrameHeader));
    for (const ByteArray& frame : sprite.FrameStore) {
        append(frame.bytes());
        bytes.push_back('/');
    }
    for (const std::int16_t number : sprite.FrameOrder) {
        bytes.push_back(static_cast<std::uint8_t>(number));
    }
    return bytes;
}

/// The bytes of the last decoded picture; empty if there is none.
inline FileBytes decoded_bytes() {
    const auto picture = CBitmap::CurrentBitmap;
    return picture == nullptr ? FileBytes() : FileBytes(picture->bytes().begin(), picture->bytes().end());
}

inline bool is_start_of(const FileBytes& bytes, const FileBytes& whole) {
    return bytes.size() <= whole.size() && std::equal(bytes.begin(), bytes.end(), whole.begin());
}

} // namespace varnoth::test
