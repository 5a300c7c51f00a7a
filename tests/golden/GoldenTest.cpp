#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

#include "support/Messages.h"
#include "support/Samples.h"

/// The texts of every message class, as new and filled in, against the recorded ones in texts/. `scripts/golden`
/// accepts a change on purpose.

namespace OrvuTests {
namespace {

struct GoldenText {
    std::string name;  // of the file, without its ending
    std::function<std::string()> write;
};

void PrintTo(const GoldenText& golden, std::ostream* out)
{
    *out << golden.name;
}

std::vector<GoldenText> goldenTexts()
{
    std::vector<GoldenText> texts;
    for (const Sample& sample : writtenSamples()) {
        texts.push_back({sample.name + ".default", [sample] { return textOf(*sample.empty()); }});
        texts.push_back({sample.name + ".filled", [sample] { return textOf(*sample.filled()); }});
    }
    for (const SecondText& second : secondTexts()) {
        texts.push_back({second.name + ".default", second.empty});
        texts.push_back({second.name + ".filled", second.filled});
    }
    return texts;
}

std::string pathOf(const std::string& name)
{
    return std::string(ORVU_GOLDEN_TEXTS) + "/" + name + ".json";
}

std::string recorded(const std::string& name)
{
    std::ifstream file(pathOf(name), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// Where two trees differ first, as a path of keys and what stands there; empty when they are alike.
std::string differenceOf(const cJSON* before, const cJSON* now, const std::string& path)
{
    const auto shown = [](const cJSON* item) {
        char* const text = item ? cJSON_PrintUnformatted(item) : nullptr;
        const std::string copy = text ? text : "nothing";
        cJSON_free(text);
        return copy;
    };
    const bool areContainers = before && now && before->type == now->type && (before->child || now->child);
    if (!areContainers) {
        return shown(before) == shown(now) ? "" : path + " was " + shown(before) + " and is " + shown(now);
    }
    const cJSON* a = before->child;
    const cJSON* b = now->child;
    for (int i = 0; a || b; ++i, a = a ? a->next : a, b = b ? b->next : b) {
        const cJSON* const named = a ? a : b;
        const std::string key = named->string ? "." + std::string(named->string) : "[" + std::to_string(i) + "]";
        if (a && b && a->string && std::string(a->string) != b->string) {
            return path + key + " was here; now it is ." + b->string;
        }
        const std::string difference = differenceOf(a, b, path + key);
        if (!difference.empty()) return difference;
    }
    return "";
}

class AGoldenText : public testing::TestWithParam<GoldenText> {};

TEST_P(AGoldenText, IsWrittenAsItWasRecorded)
{
    const std::string name = GetParam().name;
    std::string now = GetParam().write();
    if (name == "clientApplication.default") now = withoutBornTimes(now);
    if (std::getenv("ORVU_ACCEPT_GOLDEN")) std::ofstream(pathOf(name), std::ios::binary) << now;

    const std::string before = recorded(name);
    ASSERT_FALSE(before.empty()) << name << " has no recorded text; scripts/golden records it.";
    if (before == now) return;
    ADD_FAILURE() << name << ": " << differenceOf(treeOf(before).get(), treeOf(now).get(), "$")
                  << "\n(or the print style). `scripts/golden` accepts the change.\nNow:\n"
                  << now;
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AGoldenText, testing::ValuesIn(goldenTexts()), [](const auto& info) {
    std::string name = info.param.name;
    for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    }
    return name;
});

}  // namespace
}  // namespace OrvuTests
