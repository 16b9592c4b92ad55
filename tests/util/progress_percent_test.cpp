#include <cadgeom/util/progress_percent.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::uint64_t kMaxCount = std::numeric_limits<std::uint64_t>::max();

void PushTask(ProgressPercent& progress, std::uint64_t numElements, std::uint64_t numElementsProcessed)
{
    progress.pushTask(numElements);
    progress.setNumElementsProcessed(numElementsProcessed);
}

ProgressPercent OneTask(std::uint64_t numElements, std::uint64_t numElementsProcessed)
{
    ProgressPercent progress;
    PushTask(progress, numElements, numElementsProcessed);
    return progress;
}

} // namespace

TEST(ProgressPercent, StartsEmptyAtZero)
{
    const ProgressPercent progress;
    EXPECT_TRUE(progress.isEmpty());
    EXPECT_EQ(progress.computePercent(), 0.0);
}

TEST(ProgressPercent, ReportsTheShareOfOneTask)
{
    EXPECT_EQ(OneTask(8, 0).computePercent(), 0.0);
    EXPECT_EQ(OneTask(8, 3).computePercent(), 37.5);
    EXPECT_EQ(OneTask(8, 8).computePercent(), 100.0);
    EXPECT_FALSE(OneTask(8, 0).isEmpty());
}

TEST(ProgressPercent, StartsANewTaskWithNothingDone)
{
    ProgressPercent progress = OneTask(4, 4);
    progress.popTask();
    progress.pushTask(4);
    EXPECT_EQ(progress.computePercent(), 0.0);
}

TEST(ProgressPercent, ReportsZeroForATaskWithoutElements)
{
    EXPECT_EQ(OneTask(0, 0).computePercent(), 0.0);
}

TEST(ProgressPercent, TreatsMoreElementsThanAnnouncedAsComplete)
{
    EXPECT_EQ(OneTask(5, 7).computePercent(), 100.0);
    EXPECT_EQ(OneTask(0, 1).computePercent(), 100.0);
}

TEST(ProgressPercent, CountsTheInnerTaskAsPartOfOneOuterElement)
{
    ProgressPercent progress;
    PushTask(progress, 10, 3);
    PushTask(progress, 4, 1);
    EXPECT_EQ(progress.computePercent(), 32.5);
    progress.popTask();
    EXPECT_EQ(progress.computePercent(), 30.0);
}

TEST(ProgressPercent, PassesProgressThroughATaskWithoutElements)
{
    ProgressPercent progress;
    PushTask(progress, 10, 3);
    PushTask(progress, 0, 0);
    PushTask(progress, 4, 1);
    EXPECT_EQ(progress.computePercent(), 32.5);
    PushTask(progress, 0, 0);
    EXPECT_EQ(progress.computePercent(), 32.5);
}

TEST(ProgressPercent, NeverExceedsHundredPercentWhenTheOuterTaskIsAlreadyComplete)
{
    ProgressPercent progress;
    PushTask(progress, 5, 5);
    PushTask(progress, 2, 1);
    EXPECT_EQ(progress.computePercent(), 100.0);
}

TEST(ProgressPercent, LimitsOnlyTheOverallFraction)
{
    ProgressPercent progress;
    PushTask(progress, 4, 1);
    PushTask(progress, 4, 4);
    PushTask(progress, 2, 1);
    EXPECT_EQ(progress.computePercent(), (1 + (4 + 0.5) / 4) / 4 * 100);
}

TEST(ProgressPercent, IncrementsTheInnermostTaskOnly)
{
    ProgressPercent progress;
    PushTask(progress, 4, 1);
    progress.pushTask(2);
    progress.incrementNumElementsProcessed();
    EXPECT_EQ(progress.computePercent(), (1 + 0.5) / 4 * 100);
    progress.popTask();
    EXPECT_EQ(progress.computePercent(), 25.0);
}

TEST(ProgressPercent, TakesCountsAsUnsigned)
{
    EXPECT_EQ(OneTask(kMaxCount, std::uint64_t{1} << 63).computePercent(), 50.0);
    EXPECT_EQ(OneTask(kMaxCount, kMaxCount).computePercent(), 100.0);
    EXPECT_EQ(OneTask(kMaxCount, 1).computePercent(), 100 * 0x1p-64);
}

TEST(ProgressPercent, WrapsTheCountOfElementsDone)
{
    ProgressPercent progress = OneTask(4, kMaxCount);
    progress.incrementNumElementsProcessed();
    EXPECT_EQ(progress.computePercent(), 0.0);
}

TEST(ProgressPercent, IgnoresElementsDoneWhenThereIsNoTask)
{
    ProgressPercent progress;
    progress.setNumElementsProcessed(3);
    progress.incrementNumElementsProcessed();
    EXPECT_TRUE(progress.isEmpty());
    EXPECT_EQ(progress.computePercent(), 0.0);
    progress.pushTask(4);
    EXPECT_EQ(progress.computePercent(), 0.0);
}

TEST(ProgressPercent, ThrowsLengthErrorWhenThereIsNoTaskToPop)
{
    ProgressPercent progress;
    EXPECT_THROW(progress.popTask(), std::length_error);
    EXPECT_TRUE(progress.isEmpty());
    PushTask(progress, 4, 1);
    EXPECT_EQ(progress.computePercent(), 25.0);
}

TEST(ProgressPercent, ForgetsAllTasksOnReset)
{
    ProgressPercent progress;
    PushTask(progress, 4, 1);
    PushTask(progress, 4, 1);
    progress.reset();
    EXPECT_TRUE(progress.isEmpty());
    EXPECT_EQ(progress.computePercent(), 0.0);
}

TEST(ProgressPercent, CopiesAreIndependent)
{
    const ProgressPercent original = OneTask(4, 1);
    ProgressPercent copy = original;
    copy.incrementNumElementsProcessed();
    EXPECT_EQ(original.computePercent(), 25.0);
    EXPECT_EQ(copy.computePercent(), 50.0);
    copy = original;
    EXPECT_EQ(copy.computePercent(), 25.0);
}

TEST(ProgressPercent, MovingLeavesTheSourceEmpty)
{
    ProgressPercent source = OneTask(4, 1);
    ProgressPercent constructed = std::move(source);
    EXPECT_EQ(constructed.computePercent(), 25.0);
    EXPECT_TRUE(source.isEmpty()); // NOLINT(bugprone-use-after-move)

    ProgressPercent assigned;
    assigned = std::move(constructed);
    EXPECT_EQ(assigned.computePercent(), 25.0);
    EXPECT_TRUE(constructed.isEmpty()); // NOLINT(bugprone-use-after-move)
}

TEST(ProgressPercent, GrowsSteadilyWhileNestedLoopsRun)
{
    constexpr std::uint32_t kSeed = 20240611;
    SCOPED_TRACE(kSeed);
    std::mt19937 random(kSeed);
    std::uniform_int_distribution<std::uint64_t> elements(0, 5);

    ProgressPercent progress;
    double previous = 0;
    const auto expectGrowth = [&] {
        const double percent = progress.computePercent();
        EXPECT_GE(percent, previous * (1 - 1e-15));
        EXPECT_LE(percent, 100.0);
        previous = percent;
    };
    const std::uint64_t outerCount = 20;
    progress.pushTask(outerCount);
    for (std::uint64_t outer = 0; outer < outerCount; ++outer) {
        const std::uint64_t innerCount = elements(random);
        progress.pushTask(innerCount);
        for (std::uint64_t inner = 0; inner < innerCount; ++inner) {
            expectGrowth();
            progress.incrementNumElementsProcessed();
        }
        expectGrowth();
        progress.popTask();
        progress.incrementNumElementsProcessed();
        expectGrowth();
    }
    EXPECT_EQ(previous, 100.0);
}
