#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>

#include "soak/Crowd.h"
#include "soak/Growth.h"
#include "soak/Subject.h"
#include "wire/Sockets.h"

/// orvu-soak SECONDS FILE: runs the library in all of its roles at full speed, in rounds of a second, against good and
/// bad peers. Between the rounds, when nothing is going on, it records in FILE the memory, descriptors and threads of
/// this process. The last line sums up; the exit code is 0 when every answer was right and nothing grew.

using namespace OrvuTests;

namespace {

constexpr double kMebibyte = 1 << 20;

struct Run {
    Tally tally;
    Work work;
    std::vector<Sample> samples;
};

void add(Run& run, const Tally& tally, const Work& work)
{
    run.tally.exchanges += tally.exchanges + work.asked;
    run.tally.clients += tally.clients;
    run.tally.wrong += tally.wrong + work.wrong;
    run.work.pushes += work.pushes;
    run.work.servers += work.servers;
    run.work.heard += work.heard;
}

Sample sampleNow(Clock::duration passed)
{
    return {std::chrono::duration<double>(passed).count(), static_cast<double>(residentMemory()) / kMebibyte,
            static_cast<double>(openDescriptors().size()), static_cast<double>(threadCount())};
}

std::ostream& operator<<(std::ostream& out, const Sample& sample)
{
    return out << sample.seconds << ',' << sample.resident << ',' << sample.descriptors << ',' << sample.threads;
}

Run runFor(std::chrono::seconds length, std::ofstream& file)
{
    const Crowd crowd;
    const Subject subject(crowd.port());
    const auto begin = Clock::now();
    Run run;
    while (Clock::now() < begin + length) {
        subject.listenAgain();
        crowd.begin(subject.ports());
        const Work work = subject.workUntil(Clock::now() + kRound);
        add(run, crowd.end(), work);
        subject.settle();
        run.samples.push_back(sampleNow(Clock::now() - begin));
        file << run.samples.back() << std::endl;
    }
    return run;
}

std::ostream& operator<<(std::ostream& out, const Course& course)
{
    return out << course.early << " to " << course.late;
}

void report(const Run& run)
{
    std::cout << run.tally.exchanges << " exchanges, " << run.work.pushes << " pushes to " << run.tally.clients
              << " clients, " << run.work.heard << " heard, " << run.work.servers << " servers, " << run.tally.wrong
              << " wrong answers; resident " << std::fixed << std::setprecision(1)
              << courseOf(&Sample::resident, run.samples) << " MiB, descriptors " << std::setprecision(0)
              << courseOf(&Sample::descriptors, run.samples) << ", threads " << courseOf(&Sample::threads, run.samples)
              << std::endl;
}

int soak(std::chrono::seconds length, const char* path)
{
    std::ofstream file(path);
    file << "seconds,resident MiB,descriptors,threads\n";
    const Run run = runFor(length, file);
    if (!file) throw std::runtime_error("cannot write the samples");
    if (run.samples.size() < 5) throw std::runtime_error("too short");
    report(run);
    return run.tally.wrong == 0 && !grows(run.samples) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: orvu-soak SECONDS FILE\n";
        return 64;
    }
    try {
        return soak(std::chrono::seconds(std::stoi(argv[1])), argv[2]);
    } catch (const std::exception& failure) {
        std::cerr << "orvu-soak: " << failure.what() << "\n";
        return 1;
    }
}
