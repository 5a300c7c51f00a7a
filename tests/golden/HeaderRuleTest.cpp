#include <gtest/gtest.h>
#include <ostream>
#include <set>
#include <string>

#include "support/Messages.h"
#include "support/Samples.h"

using namespace Orvu;

namespace OrvuTests {

void PrintTo(const Sample& sample, std::ostream* out)
{
    *out << sample.name;
}

namespace {

using Names = std::set<std::string>;

/// Those that write "HEADER" whatever their flag says: results, lists, screens and a few more.
const Names kAlways = {
    "unknown",
    "emptyData",
    "illegalArgument",
    "platformUnavailable",
    "formatNotSupported",
    "actionNotSupported",
    "parameterNotSupported",
    "success",
    "serviceList",
    "emptyChannelList",
    "serviceNotFound",
    "resourceNotFound",
    "resourceUnavailable",
    "noSignal",
    "tableNotFound",
    "cannotConnectToServer",
    "components",
    "pairMobileAppScreen",
    "confirmationScreen",
    "qrCodeScreen",
    "pinScreen",
    "gingaAppList",
    "drms",
    "players",
    "gingaFileList",
    "dsmccFileList",
    "emptyResponse",
    "nclNodeList",
    "keyset",
    "targetApps",
    "eventInfoList",
    "serviceBindTokens",
    "serviceBindTokensList",
    "ServiceBoundTokenList",
    "clientApplicationList",
    "screenDescription",
    "missingArgument",
    "tvServiceNotInUse",
    "streamPidsRequest",
};

/// Those that never write it: records that travel nested.
const Names kNever = {
    "bounds",
    "pos",
    "displayLayers",
    "networkInterfaces",
    "drmSystem",
    "codecsSupported",
    "nclEvent",
    "NCLDocument",
    "contentDescription",
    "linkageDescriptor",
    "hyperlinkDescriptor",
    "seriesDescriptor",
    "eventGroupDescriptor",
    "eventGroup",
    "componentGroup",
    "componentGroupDescriptor",
    "cAUnit",
};

class AFilledMessage : public testing::TestWithParam<Sample> {
protected:
    /// The type that the message's text names first; "none" without one.
    static std::string headerWith(bool flag)
    {
        const auto message = GetParam().filled();
        message->serializeHeader(flag);
        const Tree tree = treeOf(textOf(*message));
        const cJSON* const header = cJSON_GetObjectItem(tree.get(), "HEADER");
        EXPECT_TRUE(!header || header == tree->child) << "behind other members";
        return header ? header->valuestring : "none";
    }
};

TEST_P(AFilledMessage, WritesItsHeaderByTheRuleOfItsKind)
{
    const std::string& name = GetParam().name;
    EXPECT_EQ(headerWith(true), kNever.count(name) ? "none" : name);
    EXPECT_EQ(headerWith(false), kAlways.count(name) ? name : "none");
}

INSTANTIATE_TEST_SUITE_P(EveryMessage, AFilledMessage, testing::ValuesIn(writtenSamples()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace OrvuTests
