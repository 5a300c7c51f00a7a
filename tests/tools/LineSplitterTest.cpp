#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "tools/orvu/LineSplitter.h"

namespace OrvuTests {
namespace {

using OrvuTool::LineSplitter;
using Lines = std::vector<std::string>;

/// The lines of `stream` when it comes in pieces of `size` bytes, the last one included.
Lines linesInPieces(const std::string& stream, std::size_t size)
{
    LineSplitter splitter;
    Lines lines;
    for (std::size_t at = 0; at < stream.size(); at += size) {
        splitter.add(std::string_view(stream).substr(at, size));
        while (std::optional<std::string> line = splitter.next())
            lines.push_back(*line);
    }
    EXPECT_EQ(splitter.size(), splitter.rest().size());
    lines.push_back(splitter.rest());
    return lines;
}

TEST(Lines, AreWithoutTheirLineFeeds)
{
    const std::string stream("one\n\ntwo\r\n\0\n last", 17);
    const Lines expected = {"one", "", "two\r", std::string(1, '\0'), " last"};
    for (const std::size_t size : {100, 1, 2, 3, 4, 5})
        EXPECT_EQ(linesInPieces(stream, size), expected) << "in pieces of " << size;
}

TEST(Lines, AreNoneInNothing)
{
    EXPECT_EQ(linesInPieces("", 1), Lines{""});
}

TEST(Lines, MayBeTakenLater)
{
    LineSplitter splitter;
    splitter.add("one\ntwo");
    EXPECT_EQ(splitter.size(), 7u);
    splitter.add("\nthr");
    EXPECT_EQ(splitter.next(), "one");
    splitter.add("ee\n");
    EXPECT_EQ(splitter.next(), "two");
    EXPECT_EQ(splitter.next(), "three");
    EXPECT_EQ(splitter.next(), std::nullopt);
    EXPECT_EQ(splitter.size(), 0u);
}

}  // namespace
}  // namespace OrvuTests
