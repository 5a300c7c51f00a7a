#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvu/MediaPlayers.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Ids = std::vector<std::string>;

Ids idsOf(const MediaPlayerList& list)
{
    Ids ids;
    for (const MediaPlayer* player : list.players)
        ids.push_back(player->id);
    return ids;
}

TEST(AMediaPlayerList, DropsPlayersThatCannotBeRead)
{
    MediaPlayerList list;
    EXPECT_TRUE(list.deserialize(R"({"PLAYERS": [
        {"id": "A", "schemesSupported": [], "formatsSupported": []}, {"id": "B", "schemesSupported": []},
        {"id": "C", "formatsSupported": []}, 5, null, "x", [],
        {"id": "D", "schemesSupported": null, "formatsSupported": 5, "drmsSupported": [{}]}], "players": []} more)"));
    EXPECT_EQ(idsOf(list), (Ids{"A", "D"}));
    EXPECT_EQ(list.players[1]->drmsSupported.size(), 1u);
    EXPECT_TRUE(list.deserialize(R"({"players": {"x": {"id": "E", "schemesSupported": [], "formatsSupported": []}}})"));
    EXPECT_EQ(idsOf(list), (Ids{"A", "D", "E"}));
    EXPECT_EQ(textOf(*list.players[2]).substr(0, 11), "{\n\t\"HEADER\"");
}

TEST(AMediaPlayerList, LetsTheExceptionsOfItsPlayersPass)
{
    MediaPlayerList list;
    EXPECT_THROW(list.deserialize(R"({"players": [{"id": "A", "schemesSupported": [], "formatsSupported": []},
                                     {"schemesSupported": [], "formatsSupported": [], "pos": {"x": "ab%"}}]})"),
                 std::invalid_argument);
    EXPECT_EQ(idsOf(list), (Ids{"A"}));
}

}  // namespace
}  // namespace OrvuTests
