// A job of the program that is run over and over, each time with another call below it failing, until it goes
// through without having met the fault. After every failure the same job must go through, with the result of
// the first time.
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

#include "base/RunTimeFailure.h"
#include "codecs/CBitmap.h"
#include "faults/Faults.h"
#include "platform/Services.h"
#include "sprite/hlspr.h"
#include "support/TemporaryFolder.h"

namespace varnoth::test {

using FileBytes = std::vector<std::uint8_t>;
using Texts = std::vector<std::string>;

/// Platform services that meet no fault themselves: what a test notes is not the program's work.
class SteadyServices : private MessageBoxes, private PictureLoader {
  public:
    SteadyServices() : installation_({this, nullptr, this, nullptr}) {}

    Texts messages;
    std::map<std::string, Picture> pictures; ///< by path; any other path fails with InvalidPicture

  private:
    void show(std::string_view text) override {
        const FaultsSuspended meanwhile;
        messages.emplace_back(text);
    }

    bool ask(std::string_view /*question*/) override { return true; }

    Picture load(const std::string& path) override {
        const FaultsSuspended meanwhile;
        const auto found = pictures.find(path);
        if (found == pictures.end()) {
            fail(Failure::InvalidPicture);
        }
        return found->second;
    }

    ServicesInstallation installation_;
};

/// How a job ended: what it answered and said, or the failure in which it ended.
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

    /// Everything as it is before the job runs for the first time.
    virtual void prepare() = 0;

    /// The job alone. What it answers, where it answers.
    virtual bool run() = 0;

    /// What it left behind: in memory, and in the file that it wrote.
    virtual FileBytes result() = 0;

    /// What must hold after any failure: files that are not its own are as they were.
    virtual void expect_kept() {}

    /// How many calls lie between one that fails and the next, for a job that takes long.
    virtual int step() const { return 1; }

    /// Before the job runs again after a failure. Nothing, unless something of the failed run is meant to
    /// stay.
    virtual void before_second_run() {}
};

/// Runs the job once; every way in which it may end, as the edge of an event handler tells it.
inline Outcome outcome_of(Job& job, SteadyServices& services, const Fault* fault = nullptr,
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

/// Lets call 1, 2, 3 and so on fail until the job goes through without it. `judge` looks at every outcome;
/// the number of faults met comes back.
inline int fail_one_by_one(Job& job, SteadyServices& services, Fault fault,
                           const std::function<void(const Outcome&)>& judge) {
    job.prepare();
    const Outcome expected = outcome_of(job, services);
    const FileBytes result = job.result();
    const int open_before =
        open_streams(); // what runs beside the tests, such as a counter of lines, has its own
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

/// Adds to the number of faults that the running test has met, which stands in its report.
inline void note_faults_met(int count) {
    static const testing::TestInfo* test = nullptr;
    static int met = 0;
    const testing::TestInfo* const running = testing::UnitTest::GetInstance()->current_test_info();
    met = std::exchange(test, running) == running ? met + count : count;
    testing::Test::RecordProperty("faults met", met);
}

/// The same for a call that fails once and for one that fails from then on. The number goes to the test's
/// properties; a job that makes no such call at all would test nothing.
inline int fail_in_both_manners(Job& job, SteadyServices& services, const Fault& fault,
                                const std::function<void(const Outcome&)>& judge) {
    int met = 0;
    for (const Manner manner : {Manner::Once, Manner::ForEver}) {
        SCOPED_TRACE(manner == Manner::Once ? "once" : "for ever");
        Fault next = fault;
        next.manner = manner;
        met += fail_one_by_one(job, services, next, judge);
    }
    EXPECT_GT(met, 0) << "no such call";
    note_faults_met(met);
    return met;
}

/// Every outcome must be this one.
inline std::function<void(const Outcome&)> always(const Outcome& expected) {
    return [expected](const Outcome& outcome) { EXPECT_EQ(outcome, expected); };
}

/// The outcome is one of these, and over a series without gaps each of them is met.
class OneOf {
  public:
    explicit OneOf(std::vector<Outcome> expected, bool has_gaps = false)
        : expected_(std::move(expected)), met_(expected_.size()), has_gaps_(has_gaps) {}

    ~OneOf() {
        for (std::size_t i = 0; i < expected_.size(); ++i) {
            EXPECT_TRUE(met_[i] || has_gaps_) << "never met: " << expected_[i];
        }
    }

    OneOf(const OneOf&) = delete;
    OneOf& operator=(const OneOf&) = delete;

    void operator()(const Outcome& outcome) {
        const auto found = std::ranges::find(expected_, outcome);
        if (found == expected_.end()) {
            ADD_FAILURE() << "not expected: " << outcome;
        } else {
            met_[static_cast<std::size_t>(found - expected_.begin())] = true;
        }
    }

  private:
    std::vector<Outcome> expected_;
    std::vector<bool> met_;
    bool has_gaps_;
};

/// The document with all its frames, byte by byte.
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

/// The picture last decoded; empty when there is none.
inline FileBytes decoded_bytes() {
    const auto picture = CBitmap::CurrentBitmap;
    return picture == nullptr ? FileBytes() : FileBytes(picture->bytes().begin(), picture->bytes().end());
}

inline bool is_start_of(const FileBytes& bytes, const FileBytes& whole) {
    return bytes.size() <= whole.size() && std::equal(bytes.begin(), bytes.end(), whole.begin());
}

} // namespace varnoth::test
