#include "soak/Growth.h"

#include <algorithm>

namespace OrvuTests {
namespace {

constexpr double kSomeMemory = 1;
constexpr double kPartOfMemory = 0.05;

double medianOfFifth(std::size_t fifth, double Sample::*value, const std::vector<Sample>& samples)
{
    std::vector<double> values;
    for (std::size_t i = samples.size() * fifth / 5; i < samples.size() * (fifth + 1) / 5; ++i)
        values.push_back(samples[i].*value);
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

bool isMore(const Course& course, double tolerance)
{
    return course.late > course.early + tolerance;
}

}  // namespace

Course courseOf(double Sample::*value, const std::vector<Sample>& samples)
{
    return {medianOfFifth(1, value, samples), medianOfFifth(4, value, samples)};
}

bool grows(const std::vector<Sample>& samples)
{
    const Course resident = courseOf(&Sample::resident, samples);
    return isMore(courseOf(&Sample::descriptors, samples), 0) || isMore(courseOf(&Sample::threads, samples), 0) ||
           isMore(resident, std::max(kSomeMemory, resident.early * kPartOfMemory));
}

}  // namespace OrvuTests
