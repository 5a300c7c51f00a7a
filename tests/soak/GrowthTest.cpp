#include <gtest/gtest.h>

#include "soak/Growth.h"

using namespace OrvuTests;

namespace {

/// A run that warms up for its first fifth; after that it takes more by the same amount with each sample.
std::vector<Sample> run(const Sample& start, const Sample& step)
{
    std::vector<Sample> samples;
    for (int i = 0; i < 100; ++i) {
        const double warm = i < 20 ? i / 20.0 : 1;
        const double steps = i < 20 ? 0 : i - 20;
        samples.push_back({i * 1.0, warm * start.resident + steps * step.resident,
                           warm * start.descriptors + steps * step.descriptors,
                           warm * start.threads + steps * step.threads});
    }
    return samples;
}

const Sample kStart{0, 10, 14, 9};

TEST(AProcess, DoesNotGrowWhenItStaysAsItIsOnceItIsWarm)
{
    EXPECT_FALSE(grows(run(kStart, {})));
}

TEST(AProcess, GrowsWithASingleDescriptorOrThread)
{
    std::vector<Sample> samples = run(kStart, {});
    for (std::size_t i = 70; i < samples.size(); ++i)
        ++samples[i].descriptors;
    EXPECT_TRUE(grows(samples));
    for (std::size_t i = 70; i < samples.size(); ++i)
        --samples[i].descriptors, ++samples[i].threads;
    EXPECT_TRUE(grows(samples));
}

TEST(AProcess, GrowsWithMoreThanOneMebibyteOfMemory)
{
    EXPECT_FALSE(grows(run(kStart, {0, 0.9 / 60, 0, 0})));
    EXPECT_TRUE(grows(run(kStart, {0, 1.1 / 60, 0, 0})));
}

TEST(AProcess, GrowsWithMoreThanFivePercentWhenItIsLarge)
{
    const Sample large{0, 100, 14, 9};
    EXPECT_FALSE(grows(run(large, {0, 4.5 / 60, 0, 0})));
    EXPECT_TRUE(grows(run(large, {0, 5.5 / 60, 0, 0})));
}

TEST(AProcess, DoesNotGrowWhenAFewSamplesStickOut)
{
    std::vector<Sample> samples = run(kStart, {});
    for (std::size_t i = 80; i < samples.size(); i += 3)
        samples[i] = {samples[i].seconds, 50, 50, 50};
    EXPECT_FALSE(grows(samples));
}

TEST(AProcess, MayTakeLess)
{
    EXPECT_FALSE(grows(run(kStart, {0, -0.1, -0.1, -0.1})));
}

TEST(TheCourseOfARun, IsToldByTheMediansOfItsSecondAndItsLastFifth)
{
    std::vector<Sample> samples(25);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i].threads = static_cast<double>(i);
    const Course course = courseOf(&Sample::threads, samples);
    EXPECT_EQ(course.early, 7);
    EXPECT_EQ(course.late, 22);
}

}  // namespace
